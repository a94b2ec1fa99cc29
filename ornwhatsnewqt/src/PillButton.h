// Defines buttons with the appearance of the panel. For the keyboard and for assistive
// technologies, they behave like the Qt buttons from which they are derived.
#ifndef ORNWHATSNEWQT_SRC_PILLBUTTON_H_
#define ORNWHATSNEWQT_SRC_PILLBUTTON_H_

#include <QtCore/QSize>
#include <QtWidgets/QAbstractButton>

namespace ornwhatsnewqt {

/// How a button of the panel is drawn.
enum class PillLook {
  Choice,  ///< a rounded outline, filled while the button is checked
  Action,  ///< filled while the button is enabled
  Tab,     ///< large text, underlined while the button is checked
};

/// The width of the space around the shape of a button, in device-independent pixels. The focus
/// ring is drawn in this space.
inline constexpr int kRingSpace = 3;

/// Draws `button`, and a ring around it if it has the focus.
void paintPill(QAbstractButton& button, PillLook look);

/// Returns the preferred size of `button`, including the space for the focus ring.
QSize pillSize(const QAbstractButton& button, PillLook look);

/// A `QCheckBox`, `QRadioButton` or `QPushButton` with the appearance of the panel.
template <class Button>
class Pill : public Button {
 public:
  Pill(PillLook look, QWidget* parent) : Button(parent), look_(look) {
    this->setCursor(Qt::PointingHandCursor);
    this->setAttribute(Qt::WA_Hover);
  }

  QSize sizeHint() const override { return pillSize(*this, look_); }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool hitButton(const QPoint& position) const override { return this->rect().contains(position); }
  void paintEvent(QPaintEvent* /*event*/) override { paintPill(*this, look_); }

 private:
  PillLook look_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_PILLBUTTON_H_
