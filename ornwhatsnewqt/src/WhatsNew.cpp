#include <ornwhatsnewqt/WhatsNew.h>

#include <QtCore/QLocale>
#include <QtCore/QPointer>
#include <QtGui/QAction>

#include "ornwhatsnewqt/src/LocalizedText.h"
#include "ornwhatsnewqt/src/PanelController.h"
#include "ornwhatsnewqt/src/PanelWindow.h"

namespace ornwhatsnewqt {

struct WhatsNew::Impl {
  Impl(const QString& dataFile, const Settings& settings) : controller(dataFile, settings) {}

  PanelController controller;
  QAction showAction;
  QAction rateAction;
  QPointer<PanelWindow> window;

  void updateActions();
};

namespace {

/// Returns the text of the action that opens the panel.
QString showText(const ornwhatsnew::NewCount& count) {
  if (count.changes > 0) {
    return localizedText("$$$/ornwhatsnewqt/Action/ShowCount=What's New (@0)",
                         {QLocale().toString(static_cast<qulonglong>(count.changes))});
  }
  if (count.items > 0) return localizedText("$$$/ornwhatsnewqt/Action/ShowDot=What's New ^B");
  return localizedText("$$$/ornwhatsnewqt/Action/Show=What's New");
}

}  // namespace

void WhatsNew::Impl::updateActions() {
  showAction.setText(showText(controller.countNew()));
  rateAction.setText(localizedText("$$$/ornwhatsnewqt/Action/Rate=Rate Features"));
  rateAction.setEnabled(controller.canRate());
}

WhatsNew::WhatsNew(const QString& dataFile, const Settings& settings, QObject* parent)
    : QObject(parent), impl_(std::make_unique<Impl>(dataFile, settings)) {
  const auto openWindow = [this](void (PanelWidget::*showPage)()) {
    if (!impl_->window) {
      impl_->window = new PanelWindow(this);
      Q_EMIT opened();
    }
    impl_->window->open(showPage);
  };
  connect(&impl_->showAction, &QAction::triggered, this,
          [openWindow] { openWindow(&PanelWidget::showNews); });
  connect(&impl_->rateAction, &QAction::triggered, this,
          [openWindow] { openWindow(&PanelWidget::showRatings); });
  connect(&impl_->controller, &PanelController::countChanged, this,
          [this] { impl_->updateActions(); });
  connect(&impl_->controller, &PanelController::rated, this, &WhatsNew::rated);
  connect(&impl_->controller, &PanelController::linkActivated, this, &WhatsNew::linkActivated);
  impl_->updateActions();
}

// The window uses the controller.
WhatsNew::~WhatsNew() {
  delete impl_->window;
}

QAction* WhatsNew::showAction() const {
  return &impl_->showAction;
}

QAction* WhatsNew::rateAction() const {
  return &impl_->rateAction;
}

bool WhatsNew::isLoaded() const {
  return impl_->controller.isLoaded();
}

QString WhatsNew::errorString() const {
  return impl_->controller.errorString();
}

void WhatsNew::refresh() {
  impl_->controller.reload();
}

PanelController* WhatsNew::controller() const {
  return &impl_->controller;
}

}  // namespace ornwhatsnewqt
