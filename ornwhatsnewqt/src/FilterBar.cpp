#include "ornwhatsnewqt/src/FilterBar.h"

#include <QtCore/QSignalBlocker>
#include <QtWidgets/QCheckBox>

#include "ornwhatsnewqt/src/FlowLayout.h"
#include "ornwhatsnewqt/src/LocalizedText.h"
#include "ornwhatsnewqt/src/PanelAccessibility.h"
#include "ornwhatsnewqt/src/PanelController.h"
#include "ornwhatsnewqt/src/PanelStrings.h"
#include "ornwhatsnewqt/src/PillButton.h"

namespace ornwhatsnewqt {
namespace {

void showFilter(QCheckBox& box, bool isChecked, const char* name, const char* description) {
  // Emit no signals, because the user did not make these changes.
  const QSignalBlocker blocker(box);
  box.setChecked(isChecked);
  box.setText(localizedText(name));
  box.setAccessibleDescription(localizedText(description));
  box.setToolTip(box.accessibleDescription());
}

}  // namespace

FilterBar::FilterBar(PanelController* controller, QWidget* parent)
    : QWidget(parent), controller_(controller) {
  // Call this function first, because Qt can create the accessible interface of the bar as soon as
  // the bar has an accessible name.
  installPanelAccessibility();
  setLayout(new FlowLayout(2));
  onlyNew_ = addFilter("onlyNew");
  thisPlatform_ = addFilter("thisPlatform");
  myVersions_ = addFilter("myVersions");
  refresh();
}

QCheckBox* FilterBar::addFilter(const char* name) {
  auto* const box = new Pill<QCheckBox>(PillLook::Choice, this);
  box->setObjectName(QLatin1String(name));
  layout()->addWidget(box);
  connect(box, &QCheckBox::toggled, this, &FilterBar::applyFilters);
  return box;
}

void FilterBar::refresh() {
  const Filters filters = controller_->filters();
  setAccessibleName(localizedText(strings::kFilters));
  showFilter(*onlyNew_, filters.onlyNew, strings::kOnlyNew, strings::kOnlyNewDescription);
  showFilter(*thisPlatform_, filters.thisPlatform, strings::kThisPlatform,
             strings::kThisPlatformDescription);
  showFilter(*myVersions_, filters.myVersions, strings::kMyVersions,
             strings::kMyVersionsDescription);
}

void FilterBar::applyFilters() {
  if (!controller_) return;
  controller_->setFilters(
      {onlyNew_->isChecked(), thisPlatform_->isChecked(), myVersions_->isChecked()});
}

}  // namespace ornwhatsnewqt
