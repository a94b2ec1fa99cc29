#include "ornwhatsnewqt/src/NewsFormats.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QTextOption>

#include <ornwhatsnew/WhatsNewTypes.h>
#include "ornwhatsnewqt/src/NewsDocument.h"

namespace ornwhatsnewqt {
namespace {

using ornwhatsnew::ParagraphKind;
using ornwhatsnew::StyleID;

// The text of a label is smaller than the text beside it, so that the box of the label fits into
// the line.
constexpr float kLabelSize = 12;
constexpr qreal kLineSpacing = 4;
constexpr qreal kBulletSpacing = 12;

/// Returns the space above a paragraph, in device-independent pixels.
qreal spaceAbove(ParagraphKind kind, bool isFirst) {
  switch (kind) {
    case ParagraphKind::kTitle:
      // The first title has no card above it, so it needs no space for the padding of that card.
      return kCardPadding + kCardSpacing + (isFirst ? 0 : kCardPadding);
    case ParagraphKind::kNotice:
      // The first notice is in the upper third of a page without items.
      return isFirst ? 120 : 16;
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
  // Widen the space between the title and a label, because the box of the label begins there.
  QTextCharFormat& title = paragraphs_[static_cast<int>(ParagraphKind::kTitle)];
  title.setFontLetterSpacingType(QFont::AbsoluteSpacing);
  title.setFontLetterSpacing(kLabelPadding);
}

const QTextCharFormat& NewsFormats::ofSpan(ParagraphKind kind, std::optional<StyleID> style) const {
  // A notice has the style of a header, but it is the main text of a page without items. Therefore
  // use the text colour.
  const bool isNotice = kind == ParagraphKind::kNotice && style == StyleID::kStyleHeader;
  if (style && !isNotice) {
    const auto found = spans_.constFind(static_cast<int>(*style));
    if (found != spans_.cend()) return *found;
  }
  const auto found = paragraphs_.constFind(static_cast<int>(kind));
  return found != paragraphs_.cend() ? *found : labelStrut_;
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

const QTextBlockFormat& NewsFormats::ofBlock(ParagraphKind kind, const QString& bullet,
                                             Qt::LayoutDirection direction, bool isFirst) {
  const BlockKey key(kind, bullet, direction, isFirst);
  const auto found = blocks_.find(key);
  return found != blocks_.end() ? found->second
                                : blocks_.emplace(key, makeBlock(key)).first->second;
}

QTextBlockFormat NewsFormats::makeBlock(const BlockKey& key) const {
  const auto& [kind, bullet, direction, isFirst] = key;
  const bool isInCard = kind != ParagraphKind::kHeader && kind != ParagraphKind::kNotice;
  const bool isRightToLeft = direction == Qt::RightToLeft;
  const qreal margin = kPageMargin + (isInCard ? ornwhatsnew::kRightMargin : 0);
  const qreal indent = bullet.isEmpty() ? 0 : hangingIndent(bullet);
  QTextBlockFormat format;
  format.setLayoutDirection(direction);
  format.setTopMargin(spaceAbove(kind, isFirst));
  format.setLeftMargin(margin + (isRightToLeft ? 0 : indent));
  format.setRightMargin(margin + (isRightToLeft ? indent : 0));
  format.setLineHeight(kLineSpacing, QTextBlockFormat::LineDistanceHeight);
  if (kind == ParagraphKind::kNotice) format.setAlignment(Qt::AlignHCenter);
  if (isInCard) {
    format.setProperty(NewsDocument::Part, kind == ParagraphKind::kTitle
                                               ? NewsDocument::FirstBlock
                                               : NewsDocument::LaterBlock);
  }
  if (indent > 0) {
    format.setTextIndent(-indent);
    // Qt exchanges left and right tabs in right-to-left paragraphs.
    const auto tab = isRightToLeft ? QTextOption::RightTab : QTextOption::LeftTab;
    format.setTabPositions({QTextOption::Tab(indent, tab)});
  }
  return format;
}

qreal NewsFormats::hangingIndent(const QString& bullet) const {
  const QFontMetricsF metrics(style_.font(ornwhatsnew::kFontSize_NormalSmall));
  return metrics.horizontalAdvance(bullet) + kBulletSpacing;
}

}  // namespace ornwhatsnewqt
