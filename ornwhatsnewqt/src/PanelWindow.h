// Declares the window in which a `WhatsNew` opens its panel.
#ifndef ORNWHATSNEWQT_SRC_PANELWINDOW_H_
#define ORNWHATSNEWQT_SRC_PANELWINDOW_H_

#include <QtCore/QPointer>
#include <QtWidgets/QDialog>

#include <ornwhatsnewqt/PanelWidget.h>
#include <ornwhatsnewqt/WhatsNew.h>

namespace ornwhatsnewqt {

/// A window with a panel that does not block the application. Escape closes it. It deletes itself
/// when it is closed, and returns the focus to the widget that had it before.
class PanelWindow : public QDialog {
  Q_OBJECT
 public:
  /// Creates a hidden window. Its parent is the parent of `whatsNew` if that is a widget.
  explicit PanelWindow(WhatsNew* whatsNew);
  ~PanelWindow() override;

  /// Shows a page of the panel, and activates the window.
  void open(void (PanelWidget::*showPage)());
  using QDialog::open;

 private:
  void returnFocus();

  PanelWidget* panel_;
  QPointer<QWidget> focusBefore_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_PANELWINDOW_H_
