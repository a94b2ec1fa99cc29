#include <ornwhatsnewqt/PanelWidget.h>

#include <ornwhatsnewqt/WhatsNew.h>

#include "ornwhatsnewqt/src/PanelController.h"

namespace ornwhatsnewqt {

PanelWidget::PanelWidget(WhatsNew* whatsNew, QWidget* parent)
    : QWidget(parent), whatsNew_(whatsNew) {}

PanelWidget::~PanelWidget() {
  whatsNew_->controller()->endDisplay();
}

void PanelWidget::showNews() {
  whatsNew_->controller()->display();
}

void PanelWidget::showRatings() {
  whatsNew_->controller()->ratingLayout();
}

}  // namespace ornwhatsnewqt
