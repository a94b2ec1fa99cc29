#include "ornwhatsnewqt/src/NewsFormats.h"

#include <algorithm>

#include <QtGui/QFontMetricsF>
#include <QtGui/QTextOption>

#include <ornwhatsnew/WhatsNewTypes.h>
#include "ornwhatsnewqt/src/NewsDocument.h"

namespace ornwhatsnewqt {
namespace {

using ornwhatsnew::ParagraphKind;
using ornwhatsnew::StyleID;

// A label is shorter than the text beside it, so that its box fits into the line.
constexpr float kLabelSize = 12;
constexpr qreal kLineSpacing = 4;
constexpr qreal kBulletSpacing = 12;

/// Returns the space above a paragraph. The space between two paragraphs is the larger one of the
/// spaces around them, and not their sum.
qreal spaceAbove(ParagraphKind kind) {
  switch (kind) {
    case ParagraphKind::kTitle:
      return 2 * kCardPadding + kCardSpacing;
    case ParagraphKind::kNotice:
      return 16;
    default:
      return 8;
  }
}

}  // namespace

NewsFormats::NewsFormats(const PanelStyle& style) : style_(style) {
  addSpanFormats();
  addParagraphFormats();
}

qreal NewsFormats::labelOffset(const QFont& labelFont) const {
  const QFontMetricsF label(labelFont);
  const QFontMetricsF title(style_.font(ornwhatsnew::kFontSize_Title, QFont::DemiBold));
  return 100 * (title.capHeight() - label.capHeight()) / 2 / label.height();
}

QTextCharFormat NewsFormats::characters(float size, QFont::Weight weight,
                                        const QColor& color) const {
  QTextCharFormat format;
  format.setFont(style_.font(size, weight));
  format.setForeground(color);
  return format;
}

void NewsFormats::addSpanFormats() {
  using namespace ornwhatsnew;
  const auto add = [this](StyleID id, float size, QFont::Weight weight, const QColor& color) {
    spans_.insert(static_cast<int>(id), characters(size, weight, color));
  };
  add(StyleID::kStyleFeatureTitle, kFontSize_Title, QFont::DemiBold, style_.text);
  add(StyleID::kStyleFeatureDescription, kFontSize_Normal, QFont::Normal, style_.text);
  add(StyleID::kStyleChangeText, kFontSize_NormalSmall, QFont::Normal, style_.text);
  add(StyleID::kStyleHeader, kFontSize_Header, QFont::Medium, style_.secondary);
  add(StyleID::kStyleInternalCode, kFontSize_NormalSmall, QFont::Normal, style_.secondary);
  add(StyleID::kStyleCommitLink, kFontSize_HotSpotCopy, QFont::Normal, style_.secondary);
  add(StyleID::kStyleHotSpot, kFontSize_HotSpot, QFont::Medium, style_.text);
  add(StyleID::kStyleIssueLink, kFontSize_HotSpotCopy, QFont::Normal, style_.secondary);
  add(StyleID::kStyleInternalWarning, kFontSize_NormalSmall, QFont::Normal, style_.warning);
  add(StyleID::kStyleUnlockLabel, kLabelSize, QFont::DemiBold, style_.accent);

  QTextCharFormat& label = spans_[static_cast<int>(StyleID::kStyleUnlockLabel)];
  label.setProperty(NewsDocument::IsLabel, true);
  label.setFontLetterSpacingType(QFont::AbsoluteSpacing);
  label.setFontLetterSpacing(0.6);
  label.setBaselineOffset(labelOffset(label.font()));
  labelStrut_ = characters(kFontSize_Title, QFont::DemiBold, style_.text);
  labelStrut_.setFontLetterSpacingType(QFont::AbsoluteSpacing);
  labelStrut_.setFontLetterSpacing(kLabelPadding);
  bullet_ = characters(kFontSize_NormalSmall, QFont::Bold, style_.accent);
}

void NewsFormats::addParagraphFormats() {
  const auto add = [this](ParagraphKind kind, StyleID style) {
    paragraphs_.insert(static_cast<int>(kind), spans_.value(static_cast<int>(style)));
  };
  add(ParagraphKind::kHeader, StyleID::kStyleHeader);
  add(ParagraphKind::kTitle, StyleID::kStyleInternalCode);
  add(ParagraphKind::kDescription, StyleID::kStyleFeatureDescription);
  add(ParagraphKind::kChange, StyleID::kStyleChangeText);
  paragraphs_.insert(static_cast<int>(ParagraphKind::kNotice),
                     characters(ornwhatsnew::kFontSize_Header, QFont::Medium, style_.text));
  // The space before a label would otherwise be too narrow.
  QTextCharFormat& title = paragraphs_[static_cast<int>(ParagraphKind::kTitle)];
  title.setFontLetterSpacingType(QFont::AbsoluteSpacing);
  title.setFontLetterSpacing(kLabelPadding);
}

const QTextCharFormat& NewsFormats::ofSpan(ParagraphKind kind, std::optional<StyleID> style) const {
  // A notice has the style of a header, but it is the only content of its page.
  const bool isNotice = kind == ParagraphKind::kNotice && style == StyleID::kStyleHeader;
  if (style && !isNotice) {
    const auto found = spans_.constFind(static_cast<int>(*style));
    if (found != spans_.cend()) return *found;
  }
  const auto found = paragraphs_.constFind(static_cast<int>(kind));
  return found != paragraphs_.cend() ? *found : bullet_;
}

QTextCharFormat NewsFormats::ofLink(ParagraphKind kind, std::optional<StyleID> style,
                                    const QString& href) const {
  QTextCharFormat format = ofSpan(kind, style);
  format.setAnchor(true);
  format.setAnchorHref(href);
  if (style == StyleID::kStyleFeatureTitle) return format;
  format.setForeground(style_.link);
  format.setFontUnderline(true);
  return format;
}

QTextBlockFormat NewsFormats::ofBlock(ParagraphKind kind, qreal hangingIndent,
                                      Qt::LayoutDirection direction) const {
  const bool isInCard = kind != ParagraphKind::kHeader && kind != ParagraphKind::kNotice;
  const qreal margin = kPageMargin + (isInCard ? ornwhatsnew::kRightMargin : 0);
  const bool isRightToLeft = direction == Qt::RightToLeft;
  QTextBlockFormat format;
  format.setLayoutDirection(direction);
  format.setTopMargin(spaceAbove(kind));
  format.setLeftMargin(margin + (isRightToLeft ? 0 : hangingIndent));
  format.setRightMargin(margin + (isRightToLeft ? hangingIndent : 0));
  if (kind == ParagraphKind::kNotice) format.setAlignment(Qt::AlignHCenter);
  format.setLineHeight(kLineSpacing, QTextBlockFormat::LineDistanceHeight);
  if (hangingIndent > 0) {
    format.setTextIndent(-hangingIndent);
    format.setTabPositions({QTextOption::Tab(hangingIndent, QTextOption::LeftTab)});
  }
  return format;
}

qreal NewsFormats::hangingIndent(const QString& bullet) const {
  const QFontMetricsF metrics(bullet_.font());
  return metrics.horizontalAdvance(bullet) + kBulletSpacing;
}

}  // namespace ornwhatsnewqt
