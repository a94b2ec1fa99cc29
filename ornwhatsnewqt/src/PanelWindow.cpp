#include "ornwhatsnewqt/src/PanelWindow.h"

#include <QtCore/QEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QVBoxLayout>

#include <ornwhatsnewqt/WhatsNew.h>

#include "ornwhatsnewqt/src/LocalizedText.h"

namespace ornwhatsnewqt {
PanelWindow::PanelWindow(WhatsNew* whatsNew)
    : QDialog(qobject_cast<QWidget*>(whatsNew->parent())),
      panel_(new PanelWidget(whatsNew, this)),
      focusBefore_(QApplication::focusWidget()) {
  setAttribute(Qt::WA_DeleteOnClose);
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(panel_);
  updateTitle();
  connect(this, &QDialog::finished, this, &PanelWindow::returnFocus);
}

PanelWindow::~PanelWindow() = default;

void PanelWindow::showPage(Page page) {
  // Open the page first. A panel that becomes visible without an open page displays the news.
  (panel_->*page)();
  show();
  raise();
  activateWindow();
}

void PanelWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) updateTitle();
  QDialog::changeEvent(event);
}

void PanelWindow::updateTitle() {
  setWindowTitle(localizedText("$$$/ornwhatsnewqt/Action/Show=What's New"));
}

void PanelWindow::returnFocus() {
  if (!focusBefore_) return;
  focusBefore_->activateWindow();
  focusBefore_->setFocus();
}

}  // namespace ornwhatsnewqt
