// Converts a layout to the document of the news page.
#ifndef ORNWHATSNEWQT_SRC_NEWSDOCUMENT_H_
#define ORNWHATSNEWQT_SRC_NEWSDOCUMENT_H_

#include <vector>

#include <QtCore/QString>
#include <QtGui/QTextCursor>
#include <QtGui/QTextDocument>
#include <QtGui/QTextFormat>

#include <ornwhatsnew/PanelLayout.h>
#include "ornwhatsnewqt/src/PanelStyle.h"

namespace ornwhatsnewqt {

/// A part of a `NewsDocument` that is a separate object for assistive technologies.
struct NewsElement {
  enum class Kind { Heading, Paragraph, ListItem, Link };

  Kind kind = Kind::Paragraph;
  int position = 0;  ///< the position of its first character in the document
  int length = 0;    ///< the number of its characters
  QString href;      ///< the target of a link, or an empty string

  /// Returns whether `documentPosition` is in this element.
  bool contains(int documentPosition) const {
    return documentPosition >= position && documentPosition < position + length;
  }
};

/// The document of the news page. It has one block for each paragraph of a layout, except empty
/// paragraphs. A block begins with the bullet and a tab if the paragraph has a bullet. A link that
/// is not safe is plain text.
class NewsDocument : public QTextDocument {
  Q_OBJECT
 public:
  /// Whether a block is the first block of its item.
  enum ItemPart { FirstBlock = 1, LaterBlock };

  /// The format properties that `NewsDecoration` reads.
  enum Property {
    /// The `ItemPart` of a block. Blocks outside of items do not have this property.
    Part = QTextFormat::UserProperty + 1,
    /// Whether characters are part of a label, which needs a box.
    IsLabel,
  };

  /// Creates a document without an undo history. Does not use `layout` after construction.
  NewsDocument(const ornwhatsnew::PanelLayout& layout, const PanelStyle& style,
               QObject* parent = nullptr);

  /// Returns the elements in the order of the text. A link follows the paragraph that contains it.
  const std::vector<NewsElement>& elements() const { return elements_; }

  /// Returns the selected text of `cursor` as plain text. Line feeds separate paragraphs and lines.
  /// Tabs and no-break spaces become spaces. Omits the invisible characters before labels.
  static QString plainText(const QTextCursor& cursor);

  /// Returns the same text as `plainText`, but with the invisible characters, so that the text has
  /// one character for each position of the selection.
  static QString textWithPositions(const QTextCursor& cursor);

 private:
  std::vector<NewsElement> elements_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_NEWSDOCUMENT_H_
