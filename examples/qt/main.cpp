// A window with a What's New panel. Its Help menu has an action that opens the panel, and its
// status bar has a badge.
#include <memory>

#include <QtCore/QDebug>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QStatusBar>

#include <ornappsupport/feature/FeatureService.h>
#include <ornwhatsnewqt/WhatsNew.h>
#include <ornwhatsnewqt/WhatsNewBadge.h>

namespace {

using ornappsupport::feature::BetaFeature;
using ornappsupport::feature::FixedFeatureService;
using ornappsupport::feature::VisibilityInAllClientApps;

// Returns a service with two beta features. Both are switched on.
std::shared_ptr<const FixedFeatureService> MakeFeatureService() {
  auto features = std::make_shared<FixedFeatureService>();
  features->Add("herbarium.scanner",
                BetaFeature("ORN-1204", u"Sheet scanner", u"Scans a sheet in its true colours.",
                            VisibilityInAllClientApps::kPublic),
                true, true);
  features->Add("herbarium.map",
                BetaFeature("ORN-1187", u"Map of finds", u"Shows where each sheet was collected.",
                            VisibilityInAllClientApps::kPublic),
                true, true);
  return features;
}

// Prints a rating. A real application would send the rating to its developers.
void SendRating(const QString& featureKey, int stars, const QString& comment) {
  qInfo().noquote() << featureKey << stars << comment;
}

}  // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QCoreApplication::setOrganizationName(QStringLiteral("Tarsa"));
  QCoreApplication::setApplicationName(QStringLiteral("Herbarium"));
  QCoreApplication::setApplicationVersion(QStringLiteral("4.3"));

  QTranslator translator;
  if (translator.load(QLocale(), QStringLiteral("ornwhatsnew"), QStringLiteral("_"),
                      QStringLiteral(":/ornwhatsnewqt"))) {
    QCoreApplication::installTranslator(&translator);
  }

  QMainWindow mainWindow;
  QMenu* const helpMenu = mainWindow.menuBar()->addMenu(QStringLiteral("Help"));

  ornwhatsnewqt::Settings settings;  // version from QCoreApplication, state in QSettings
  settings.buildNumber = QStringLiteral("118");
  settings.features = MakeFeatureService();
  auto* const whatsNew =
      new ornwhatsnewqt::WhatsNew(QStringLiteral(":/whatsnew.csv"), settings, &mainWindow);
  QObject::connect(whatsNew, &ornwhatsnewqt::WhatsNew::rated, &mainWindow, SendRating);
  helpMenu->addAction(whatsNew->showAction());  // "What's New (3)": opens the panel
  helpMenu->addAction(whatsNew->rateAction());  // disabled until something can be rated

  mainWindow.statusBar()->addPermanentWidget(new ornwhatsnewqt::WhatsNewBadge(whatsNew));
  mainWindow.resize(800, 500);
  mainWindow.show();
  return QApplication::exec();
}
