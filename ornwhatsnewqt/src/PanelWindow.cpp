#include "ornwhatsnewqt/src/PanelWindow.h"

#include <QtWidgets/QApplication>
#include <QtWidgets/QVBoxLayout>

namespace ornwhatsnewqt {

PanelWindow::PanelWindow(WhatsNew* whatsNew)
    : QDialog(qobject_cast<QWidget*>(whatsNew->parent())),
      panel_(new PanelWidget(whatsNew, this)),
      focusBefore_(QApplication::focusWidget()) {
  setAttribute(Qt::WA_DeleteOnClose);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(panel_);
  connect(this, &QDialog::finished, this, &PanelWindow::returnFocus);
}

PanelWindow::~PanelWindow() = default;

void PanelWindow::open(void (PanelWidget::*showPage)()) {
  (panel_->*showPage)();
  show();
  raise();
  activateWindow();
}

void PanelWindow::returnFocus() {
  if (!focusBefore_) return;
  focusBefore_->activateWindow();
  focusBefore_->setFocus();
}

}  // namespace ornwhatsnewqt
