#include <ornwhatsnewqt/WhatsNew.h>

#include <memory>
#include <utility>

#include <QtCore/QLocale>
#include <QtCore/QPointer>
#include <QtGui/QAction>

#include "ornwhatsnewqt/src/LocalizedText.h"
#include "ornwhatsnewqt/src/PanelController.h"
#include "ornwhatsnewqt/src/PanelWindow.h"
#include "ornwhatsnewqt/src/Services.h"

namespace ornwhatsnewqt {

struct WhatsNew::Impl {
  explicit Impl(std::unique_ptr<PanelController> panelController)
      : controller(std::move(panelController)) {}

  void updateActions();
  void showPage(WhatsNew* whatsNew, PanelWindow::Page page);

  std::unique_ptr<PanelController> controller;
  QAction showAction;
  QAction rateAction;
  QPointer<PanelWindow> window;
};

namespace {

// Installs the services first, because the controller reads the version and the features when it
// loads the list.
std::unique_ptr<PanelController> createController(const QString& dataFile,
                                                  const Settings& settings) {
  installServices(settings);
  return std::make_unique<PanelController>(dataFile, settings);
}

}  // namespace

void WhatsNew::Impl::updateActions() {
  const ornwhatsnew::NewCount count = controller->countNew();
  const QString changes = QLocale().toString(static_cast<qulonglong>(count.changes));
  if (count.changes > 0) {
    showAction.setText(
        localizedText("$$$/ornwhatsnewqt/Action/ShowCount=What's New (@0)", {changes}));
    showAction.setToolTip(
        localizedText("$$$/ornwhatsnewqt/Action/NewChanges=New changes: @0", {changes}));
  } else if (count.items > 0) {
    showAction.setText(localizedText("$$$/ornwhatsnewqt/Action/ShowDot=What's New ^B"));
    showAction.setToolTip(localizedText("$$$/ornwhatsnewqt/Action/SomethingNew=Something is new"));
  } else {
    showAction.setText(localizedText("$$$/ornwhatsnewqt/Action/Show=What's New"));
    showAction.setToolTip(localizedText("$$$/ornwhatsnewqt/Action/NothingNew=Nothing is new"));
  }
  rateAction.setText(localizedText("$$$/ornwhatsnewqt/Action/Rate=Rate Features"));
  rateAction.setEnabled(controller->canRate());
}

void WhatsNew::Impl::showPage(WhatsNew* whatsNew, PanelWindow::Page page) {
  const bool isNew = !window;
  if (isNew) {
    window = new PanelWindow(whatsNew);
    // The closed window exists until the event loop runs. Do not show it again.
    connect(window, &QDialog::finished, whatsNew, [this] { window.clear(); });
  }
  window->showPage(page);
  if (isNew) Q_EMIT whatsNew->opened();
}

WhatsNew::WhatsNew(const QString& dataFile, const Settings& settings, QObject* parent)
    : QObject(parent), impl_(std::make_unique<Impl>(createController(dataFile, settings))) {
  const auto showNews = [this] { impl_->showPage(this, &PanelWidget::showNews); };
  connect(&impl_->showAction, &QAction::triggered, this, showNews);
  connect(&impl_->rateAction, &QAction::triggered, this,
          [this] { impl_->showPage(this, &PanelWidget::showRatings); });
  const PanelController* const controller = impl_->controller.get();
  connect(controller, &PanelController::announcementDue, this, showNews);
  connect(controller, &PanelController::countChanged, this, [this] { impl_->updateActions(); });
  connect(controller, &PanelController::rated, this, &WhatsNew::rated);
  connect(controller, &PanelController::linkActivated, this, &WhatsNew::linkActivated);
  impl_->updateActions();
}

// The window uses the controller, so the window must not outlive this object.
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
  return impl_->controller->isLoaded();
}

QString WhatsNew::errorString() const {
  return impl_->controller->errorString();
}

void WhatsNew::refresh() {
  impl_->controller->reload();
}

void WhatsNew::setStateError(const QString& reason) {
  impl_->controller->setStateError(reason);
}

PanelController* WhatsNew::controller() const {
  return impl_->controller.get();
}

}  // namespace ornwhatsnewqt
