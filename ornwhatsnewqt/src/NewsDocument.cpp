#include "ornwhatsnewqt/src/NewsDocument.h"

#include <algorithm>
#include <set>
#include <string_view>

#include <QtGui/QGuiApplication>
#include <QtGui/QTextBlock>
#include <QtGui/QTextFrame>

#include <orncore/string/SafeLink.h>
#include <ornwhatsnew/WhatsNewTypes.h>
#include "ornwhatsnewqt/src/NewsFormats.h"
#include "ornwhatsnewqt/src/SafeText.h"

namespace ornwhatsnewqt {
namespace {

using ornwhatsnew::LayoutParagraph;
using ornwhatsnew::LayoutSpan;
using ornwhatsnew::ParagraphKind;
using ornwhatsnew::StyleID;

// An invisible character before each label, in the font size of the title. Without this character,
// a label that is alone on its line would be raised too far and would overlap the line above.
constexpr QChar kLabelStrut(0x2060);

/// Writes a layout into an empty document.
class Writer {
 public:
  Writer(QTextDocument& document, const ornwhatsnew::PanelLayout& layout, const PanelStyle& style,
         std::vector<NewsElement>& elements)
      : cursor_(&document), layout_(layout), formats_(style), elements_(elements) {}

  void write() {
    cursor_.beginEditBlock();
    for (const LayoutParagraph& paragraph : layout_.paragraphs) {
      // Omit empty paragraphs, because a bullet without text would look like a mistake.
      if (paragraph.range.length > 0) writeParagraph(paragraph);
    }
    addSpaceBelow();
    cursor_.endEditBlock();
  }

 private:
  QString textOf(const ornwhatsnew::TextRange& range) const {
    return safeText(std::u16string_view(layout_.text).substr(range.begin, range.length));
  }

  /// Returns the direction of the first character in `range` with a strong direction. If there is
  /// none, returns the direction of the application.
  Qt::LayoutDirection directionOf(const ornwhatsnew::TextRange& range) const {
    const auto text =
        QStringView(layout_.text)
            .mid(static_cast<qsizetype>(range.begin), static_cast<qsizetype>(range.length));
    // Check code points, because Qt regards a single surrogate as a left-to-right character.
    for (const char32_t codePoint : text.toUcs4()) {
      switch (QChar::direction(codePoint)) {
        case QChar::DirL:
          return Qt::LeftToRight;
        case QChar::DirR:
        case QChar::DirAL:
          return Qt::RightToLeft;
        default:
          break;
      }
    }
    return QGuiApplication::layoutDirection();
  }

  void writeParagraph(const LayoutParagraph& paragraph) {
    const QString bullet = safeText(paragraph.bullet);
    const bool isFirst = kinds_.insert(paragraph.kind).second;
    beginBlock(formats_.ofBlock(paragraph.kind, bullet, directionOf(paragraph.range), isFirst));
    const std::size_t element = elements_.size();
    elements_.push_back({kindOf(paragraph.kind), cursor_.position(), 0, {}});
    // Insert the bullet together with the text. For a long document, inserting each bullet
    // separately would take a quarter of the total time.
    QString prefix = bullet.isEmpty() ? QString() : bullet + u'\t';
    for (const LayoutSpan& span : paragraph.spans) {
      if (!prefix.isEmpty() && !isInParagraphFormat(paragraph, span)) {
        cursor_.insertText(prefix, formats_.ofSpan(paragraph.kind, {}));
        prefix.clear();
      }
      writeSpan(paragraph, span, prefix);
      prefix.clear();
    }
    elements_[element].length = cursor_.position() - elements_[element].position;
  }

  void beginBlock(const QTextBlockFormat& format) {
    if (elements_.empty()) {
      cursor_.setBlockFormat(format);
    } else {
      cursor_.insertBlock(format, QTextCharFormat());
    }
  }

  /// Returns whether `span` has no link and its format equals that of text without a style.
  bool isInParagraphFormat(const LayoutParagraph& paragraph, const LayoutSpan& span) const {
    return span.link.empty() &&
           formats_.ofSpan(paragraph.kind, span.style) == formats_.ofSpan(paragraph.kind, {});
  }

  void writeSpan(const LayoutParagraph& paragraph, const LayoutSpan& span, const QString& prefix) {
    QString text = prefix + textOf(span.range);
    const bool isLabel = span.style == StyleID::kStyleUnlockLabel;
    // Use no-break spaces, so that a line break splits neither the box of a label nor a link such
    // as "View more".
    if (isLabel || span.style == StyleID::kStyleHotSpot) text.replace(u' ', QChar::Nbsp);
    if (!text.isEmpty() && orncore::string::IsSafeLink(span.link) && !isRepeated(paragraph, span)) {
      const QString href = QString::fromStdU16String(span.link);
      elements_.push_back(
          {NewsElement::Kind::Link, cursor_.position(), static_cast<int>(text.size()), href});
      cursor_.insertText(text, formats_.ofLink(paragraph.kind, span.style, href));
      return;
    }
    if (isLabel) cursor_.insertText(QString(kLabelStrut), formats_.ofLabelStrut());
    cursor_.insertText(text, formats_.ofSpan(paragraph.kind, span.style));
  }

  /// Returns whether `span` is a title whose link the next paragraph repeats as "View more". Such a
  /// title is not a link, because Tab would otherwise move the focus to two links with the same
  /// target.
  bool isRepeated(const LayoutParagraph& paragraph, const LayoutSpan& span) const {
    const LayoutParagraph* const next = &paragraph + 1;
    const bool isLast = &paragraph == &layout_.paragraphs.back();
    return span.style == StyleID::kStyleFeatureTitle && !isLast &&
           std::ranges::any_of(
               next->spans, [&span](const LayoutSpan& other) { return other.link == span.link; });
  }

  void addSpaceBelow() {
    QTextBlockFormat format;
    format.setBottomMargin(kCardPadding + kPageMargin);
    cursor_.mergeBlockFormat(format);
  }

  static NewsElement::Kind kindOf(ParagraphKind kind) {
    switch (kind) {
      case ParagraphKind::kTitle:
        return NewsElement::Kind::Heading;
      case ParagraphKind::kChange:
        return NewsElement::Kind::ListItem;
      default:
        return NewsElement::Kind::Paragraph;
    }
  }

  QTextCursor cursor_;
  const ornwhatsnew::PanelLayout& layout_;
  NewsFormats formats_;
  std::vector<NewsElement>& elements_;
  std::set<ParagraphKind> kinds_;  // the kinds of the paragraphs so far
};

}  // namespace

NewsDocument::NewsDocument(const ornwhatsnew::PanelLayout& layout, const PanelStyle& style,
                           QObject* parent)
    : QTextDocument(parent) {
  setUndoRedoEnabled(false);
  setDocumentMargin(0);
  setDefaultFont(style.font(ornwhatsnew::kFontSize_NormalSmall));
  QTextFrameFormat frame = rootFrame()->frameFormat();
  frame.setTopMargin(kPageMargin / 2.0);
  rootFrame()->setFrameFormat(frame);
  Writer(*this, layout, style, elements_).write();
}

QString NewsDocument::plainText(const QTextCursor& cursor) {
  return textWithPositions(cursor).remove(kLabelStrut);
}

QString NewsDocument::textWithPositions(const QTextCursor& cursor) {
  QString text = cursor.selectedText();
  for (QChar& character : text) {
    switch (character.unicode()) {
      case QChar::ParagraphSeparator:
      case QChar::LineSeparator:
        character = u'\n';
        break;
      case u'\t':
      case QChar::Nbsp:
        character = u' ';
        break;
      default:
        break;
    }
  }
  return text;
}

}  // namespace ornwhatsnewqt
