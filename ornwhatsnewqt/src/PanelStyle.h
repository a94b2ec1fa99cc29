// Defines the colours and fonts of the panel.
#ifndef ORNWHATSNEWQT_SRC_PANELSTYLE_H_
#define ORNWHATSNEWQT_SRC_PANELSTYLE_H_

#include <QtGui/QColor>
#include <QtGui/QFont>
#include <QtGui/QPalette>

QT_BEGIN_NAMESPACE
class QEvent;
class QLineEdit;
QT_END_NAMESPACE

namespace ornwhatsnewqt {

/// The colours and fonts of the panel, which follow the palette and the font of the desktop. The
/// colours `secondary`, `link`, `warning` and `accent` have a contrast ratio of at least 4.5:1
/// against their backgrounds. A colour for which this is impossible is the palette's text colour.
struct PanelStyle {
  /// Derives the colours from the active group of `palette`, and the fonts from `font`.
  PanelStyle(const QPalette& palette, const QFont& font);

  /// Returns the font of the desktop in `size` device-independent pixels, for example
  /// `kFontSize_Normal`. If the desktop's font is larger than `kFontSize_NormalSmall`, all sizes
  /// grow in proportion. Text in the size `kFontSize_NormalSmall` is therefore never smaller than
  /// text in the desktop's font.
  QFont font(float size, QFont::Weight weight = QFont::Normal) const;

  QColor page;           ///< the background of the panel
  QColor card;           ///< the background of an item
  QColor cardOutline;    ///< the outline of an item
  QColor text;           ///< text on a card
  QColor secondary;      ///< less important text on a card or the page
  QColor link;           ///< a link on a card or the page
  QColor warning;        ///< a warning on a card or the page
  QColor accent;         ///< the highlight colour, readable on `accentFill` and the page
  QColor accentFill;     ///< a background in a light tone of the highlight colour
  QColor accentText;     ///< text on `accent`
  QColor selection;      ///< the background of selected text
  QColor selectionText;  ///< selected text

 private:
  QFont font_;
  qreal scale_ = 1;
};

/// Returns whether a widget that receives `event` must redraw itself with a new `PanelStyle`.
bool changesPanelStyle(const QEvent& event);

/// Gives `field` rounded corners, and the font and the colours of `style`.
void setFieldStyle(QLineEdit& field, const PanelStyle& style);

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_PANELSTYLE_H_
