#include <ornwhatsnewqt/WhatsNewBadge.h>

#include <QtGui/QAction>

#include <ornwhatsnewqt/WhatsNew.h>

#include "ornwhatsnewqt/src/LocalizedText.h"

namespace ornwhatsnewqt {

WhatsNewBadge::WhatsNewBadge(const WhatsNew* whatsNew, QWidget* parent) : QToolButton(parent) {
  QAction* const action = whatsNew->showAction();
  setDefaultAction(action);
  setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  connect(action, &QAction::changed, this, &WhatsNewBadge::updateName);
  connect(whatsNew, &QObject::destroyed, this, [this] { setEnabled(false); });
  updateName();
}

WhatsNewBadge::~WhatsNewBadge() = default;

// The accessible name omits the number or the bullet at the end of the action's text. The tooltip
// explains this number or bullet. Assistive technologies read the tooltip as the button's
// description.
void WhatsNewBadge::updateName() {
  setAccessibleName(localizedText("$$$/ornwhatsnewqt/Action/Show=What's New"));
}

}  // namespace ornwhatsnewqt
