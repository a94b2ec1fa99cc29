// Declares the small buttons of the panel, which show a glyph instead of text.
#ifndef ORNWHATSNEWQT_SRC_GLYPHBUTTON_H_
#define ORNWHATSNEWQT_SRC_GLYPHBUTTON_H_

#include <QtGui/QKeySequence>
#include <QtWidgets/QAbstractButton>

namespace ornwhatsnewqt {

/// A symbol on a button. The panel draws its glyphs itself, because an icon theme is not always
/// installed.
enum class Glyph { Search, Print, Close, Up, Down };

/// A square button with a glyph.
class GlyphButton : public QAbstractButton {
  Q_OBJECT
 public:
  GlyphButton(Glyph glyph, QWidget* parent);

  /// Sets the name and the description for assistive technologies. The tooltip contains the name,
  /// and also `shortcut` if `shortcut` is not empty.
  void setNames(const QString& name, const QString& description,
                const QKeySequence& shortcut = QKeySequence());

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Glyph glyph_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_GLYPHBUTTON_H_
