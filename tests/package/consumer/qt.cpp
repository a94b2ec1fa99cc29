// A host with Qt Widgets that fails unless the Qt companion can be used. It has no data file.
#include <QtCore/QTemporaryDir>
#include <QtGui/QAction>
#include <QtWidgets/QApplication>

#include <ornwhatsnewqt/PanelWidget.h>
#include <ornwhatsnewqt/WhatsNew.h>
#include <ornwhatsnewqt/WhatsNewBadge.h>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  const QTemporaryDir folder;
  ornwhatsnewqt::Settings settings;
  settings.applicationVersion = QStringLiteral("4.3");
  settings.settingsFile = folder.filePath(QStringLiteral("settings.ini"));
  ornwhatsnewqt::WhatsNew whatsNew(QStringLiteral(":/missing.csv"), settings);
  ornwhatsnewqt::PanelWidget panel(&whatsNew);
  const ornwhatsnewqt::WhatsNewBadge badge(&whatsNew);
  panel.show();
  const bool isUsable = !whatsNew.isLoaded() && badge.text() == whatsNew.showAction()->text();
  return isUsable ? 0 : 1;
}
