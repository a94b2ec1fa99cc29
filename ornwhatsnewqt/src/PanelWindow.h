// Declares the window in which a `WhatsNew` opens its panel.
#ifndef ORNWHATSNEWQT_SRC_PANELWINDOW_H_
#define ORNWHATSNEWQT_SRC_PANELWINDOW_H_

#include <QtCore/QPointer>
#include <QtWidgets/QDialog>

#include <ornwhatsnewqt/PanelWidget.h>

namespace ornwhatsnewqt {

/// A window with a panel. The window does not block the application. Escape closes the window. A
/// closed window deletes itself and returns the focus to the widget that had it before the window
/// was created.
class PanelWindow : public QDialog {
  Q_OBJECT
 public:
  /// A member function of `PanelWidget` that shows one of the panel's pages.
  using Page = void (PanelWidget::*)();

  /// Creates a hidden window. If the parent of `whatsNew` is a widget, this widget is also the
  /// parent of the window.
  explicit PanelWindow(WhatsNew* whatsNew);
  ~PanelWindow() override;

  /// Shows a page of the panel, and activates the window.
  void showPage(Page page);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void updateTitle();
  void returnFocus();

  PanelWidget* panel_;
  QPointer<QWidget> focusBefore_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_PANELWINDOW_H_
