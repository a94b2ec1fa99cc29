// Defines how each style and each kind of paragraph looks in the document of the news page.
#ifndef ORNWHATSNEWQT_SRC_NEWSFORMATS_H_
#define ORNWHATSNEWQT_SRC_NEWSFORMATS_H_

#include <map>
#include <optional>
#include <tuple>

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtGui/QTextFormat>

#include <ornwhatsnew/PanelLayout.h>
#include "ornwhatsnewqt/src/PanelStyle.h"

namespace ornwhatsnewqt {

// The following distances are in device-independent pixels.

/// The distance between the edge of the view and the edge of a card.
inline constexpr int kPageMargin = 16;
/// The distance above and below the text of a card.
inline constexpr int kCardPadding = 20;
/// The distance between two cards.
inline constexpr int kCardSpacing = 14;
/// The distance between the text of a label and the sides of its box.
inline constexpr int kLabelPadding = 8;
/// The radius of the corners of a card.
inline constexpr int kCardRadius = 10;
/// The maximum width of a page. Longer lines are hard to read.
inline constexpr int kMaximumColumnWidth = 820;

/// The formats of a `NewsDocument`. Creates each format only once, because creating a format takes
/// longer than inserting a span. Does not keep the formats of links, because each link has its own
/// target.
class NewsFormats {
 public:
  explicit NewsFormats(const PanelStyle& style);

  /// Returns the format of a span with `style` in a paragraph of the kind `kind`. If `style` has no
  /// value, returns the format of text without a style in this paragraph.
  const QTextCharFormat& ofSpan(ornwhatsnew::ParagraphKind kind,
                                std::optional<ornwhatsnew::StyleID> style) const;

  /// Returns the format of a span with `style` that is a link to `href`. A title keeps its colour
  /// and is not underlined.
  QTextCharFormat ofLink(ornwhatsnew::ParagraphKind kind, std::optional<ornwhatsnew::StyleID> style,
                         const QString& href) const;

  /// Returns the format of the invisible character before a label. With this format, the character
  /// is as high as a title and as wide as the padding of a label.
  const QTextCharFormat& ofLabelStrut() const { return labelStrut_; }

  /// Returns the format of a paragraph of the kind `kind`. The lines after the first line are
  /// aligned with the text after `bullet`. `isFirst` states whether the paragraph is the first
  /// paragraph of its kind.
  const QTextBlockFormat& ofBlock(ornwhatsnew::ParagraphKind kind, const QString& bullet,
                                  Qt::LayoutDirection direction, bool isFirst);

 private:
  using BlockKey = std::tuple<ornwhatsnew::ParagraphKind, QString, Qt::LayoutDirection, bool>;

  QTextBlockFormat makeBlock(const BlockKey& key) const;
  qreal hangingIndent(const QString& bullet) const;
  QTextCharFormat characters(float size, QFont::Weight weight, const QColor& color) const;
  /// Returns the distance by which to raise a label, in percent of the height of `labelFont`. This
  /// distance centres the label vertically on the title beside the label.
  qreal labelOffset(const QFont& labelFont) const;
  void addSpanFormats();
  void addParagraphFormats();

  PanelStyle style_;
  QHash<int, QTextCharFormat> spans_;
  QHash<int, QTextCharFormat> paragraphs_;
  std::map<BlockKey, QTextBlockFormat> blocks_;
  QTextCharFormat labelStrut_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_NEWSFORMATS_H_
