#include "ornwhatsnewqt/src/PanelController.h"

#include <QtCore/QFile>
#include <QtCore/QTranslator>
#include <QtGui/QDesktopServices>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include "ornwhatsnewqt/src/Services.h"
#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestWorld.h"

namespace {

using ornwhatsnewqt::FirstStart;
using ornwhatsnewqt::PanelController;
using ornwhatsnewqt::Settings;
using test_support::ChangeRow;
using test_support::kMapChange;
using test_support::TestWorld;

const ChangeRow kWinChange{
    .version = "4.3", .groupingID = "MISC", .platform = "Win", .description = "New tray icon"};
const ChangeRow kRequest{.version = "4.3",
                         .groupingID = "EPIC-1",
                         .ratingRequest = "RequestRating",
                         .description = "Prints maps"};

QString textOf(const PanelController& controller) {
  return QString::fromStdU16String(controller.layout().text);
}

std::unique_ptr<PanelController> controllerFor(const TestWorld& world, const Settings& settings) {
  ornwhatsnewqt::installServices(settings);
  return std::make_unique<PanelController>(world.dataFile(), settings);
}

std::unique_ptr<PanelController> controllerFor(const TestWorld& world) {
  return controllerFor(world, world.settings());
}

/// Returns settings of a user who allows usage logging.
Settings settingsWithLogging(const TestWorld& world) {
  Settings settings = world.settings();
  settings.usageLogging = [] { return true; };
  return settings;
}

/// Records the links that would be opened in a browser.
class BrowserSpy : public QObject {
  Q_OBJECT
 public:
  BrowserSpy() { QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "open"); }
  ~BrowserSpy() override { QDesktopServices::unsetUrlHandler(QStringLiteral("https")); }

  QList<QUrl> urls;

 public Q_SLOTS:
  void open(const QUrl& url) { urls.append(url); }
};

class PanelControllerTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void aNewUserHasSeenEverything();
  void aNewUserHasSeenADataFileThatArrivesLater();
  void aPanelWithoutADataFileLeavesANewUserNew();
  void aNewUserSeesEverythingIfTheApplicationWantsIt();
  void aDisplayMarksItsChangesAsSeen();
  void otherFiltersKeepWhatThePanelHasShown();
  void theHeadingKeepsTheLastVersionWhileThePanelIsOpen();
  void aDisplayOfTheHostsStoreKeepsWhatWasShownWithOtherFilters();
  void closingTheLastPanelEmptiesTheLayout();
  void remembersTheFilters();
  void countsWithTheFilters();
  void reloadShowsTheNewFileInTheOpenPanel();
  void reloadMarksNothingAsSeenWhileThePanelIsClosed();
  void reloadKeepsTheChangesIfTheFileCannotBeRead();
  void reportsAMissingDataFile();
  void reportsADataFileThatCannotBeRead();
  void offersRatingsAfterTwoWeeksOnly();
  void offersNoRatingsWithoutUsageLogging();
  void theRatingPageLeavesTheStateUnchanged();
  void reportsAndStoresARating();
  void reportsOneRatingOfAFeature();
  void reportsASecondRatingAfterANewRequest();
  void offersRatingsOnceInASession();
  void opensSafeLinksOnly();
  void reportsAStoreThatCannotBeWritten();
  void keepsWhatWasShownWithOtherFiltersIfTheStoreCannotBeWritten();
  void displaysAgainInANewLanguage();
  void reportsErrorsInANewLanguage();
};

void PanelControllerTest::aNewUserHasSeenEverything() {
  const TestWorld world;
  world.writeData({kMapChange});
  QCOMPARE(controllerFor(world)->countNew(), ornwhatsnew::NewCount{});
  // The state is stored, so that the next version does not treat the user as a new user.
  QCOMPARE(world.stored(QStringLiteral("WhatsNew.LastVersionSeenWhatsNew")),
           QStringLiteral("4.3.0.118"));
}

void PanelControllerTest::aNewUserHasSeenADataFileThatArrivesLater() {
  const TestWorld world;
  QCOMPARE(controllerFor(world)->countNew(), ornwhatsnew::NewCount{});
  // The application downloads its data file in the second session.
  const auto controller = controllerFor(world);
  world.writeData({kMapChange});
  controller->reload();
  QCOMPARE(controller->countNew(), ornwhatsnew::NewCount{});
  world.writeData({kMapChange, kRequest});
  controller->reload();
  QCOMPARE(controller->countNew(), (ornwhatsnew::NewCount{1, 1}));
  QCOMPARE(controllerFor(world)->countNew(), (ornwhatsnew::NewCount{1, 1}));
}

void PanelControllerTest::aPanelWithoutADataFileLeavesANewUserNew() {
  const TestWorld world;
  const auto controller = controllerFor(world);
  controller->openPanel();
  controller->display();
  controller->closePanel();
  QVERIFY(world.stored(QStringLiteral("WhatsNew.LastVersionSeenWhatsNew")).isEmpty());
  // The application downloads its data file after the session.
  world.writeData({kMapChange});
  QCOMPARE(controllerFor(world)->countNew(), ornwhatsnew::NewCount{});
}

void PanelControllerTest::aNewUserSeesEverythingIfTheApplicationWantsIt() {
  const TestWorld world;
  world.writeData({kMapChange});
  Settings settings = world.settings();
  settings.firstStart = FirstStart::ShowAll;
  QCOMPARE(controllerFor(world, settings)->countNew(), (ornwhatsnew::NewCount{1, 1}));
}

void PanelControllerTest::aDisplayMarksItsChangesAsSeen() {
  const TestWorld world;
  world.writeData({kMapChange});
  world.storeEarlierUse();
  const auto controller = controllerFor(world);
  QCOMPARE(controller->countNew(), (ornwhatsnew::NewCount{1, 1}));
  const QSignalSpy counts(controller.get(), &PanelController::countChanged);
  const QSignalSpy changes(controller.get(), &PanelController::changed);
  controller->display();
  QVERIFY(textOf(*controller).contains(QStringLiteral("Faster map")));
  QCOMPARE(controller->countNew(), ornwhatsnew::NewCount{});
  QCOMPARE(counts.count(), 1);
  QCOMPARE(changes.count(), 1);
  QCOMPARE(controllerFor(world)->countNew(), ornwhatsnew::NewCount{});
}

void PanelControllerTest::otherFiltersKeepWhatThePanelHasShown() {
  const TestWorld world;
  world.writeData({kMapChange, kWinChange});
  world.storeEarlierUse();
  const auto controller = controllerFor(world);
  controller->openPanel();
  controller->display();
  QVERIFY(!textOf(*controller).contains(QStringLiteral("New tray icon")));
  controller->setFilters({.onlyNew = true, .thisPlatform = false, .myVersions = true});
  QVERIFY(textOf(*controller).contains(QStringLiteral("Faster map")));
  QVERIFY(textOf(*controller).contains(QStringLiteral("New tray icon")));
  // After the panel is closed, both changes count as seen.
  controller->closePanel();
  controller->display();
  QVERIFY(!controller->layout().hasItems);
}

void PanelControllerTest::theHeadingKeepsTheLastVersionWhileThePanelIsOpen() {
  const TestWorld world;
  world.writeData({kMapChange});
  world.storeEarlierUse(QStringLiteral("4.2.0.97"));
  const auto controller = controllerFor(world);
  controller->display();
  const QString heading = QStringLiteral("last opened in v4.2.0.97");
  QVERIFY(textOf(*controller).contains(heading));
  controller->setFilters({.onlyNew = true, .thisPlatform = true, .myVersions = false});
  QVERIFY(textOf(*controller).contains(heading));
}

void PanelControllerTest::aDisplayOfTheHostsStoreKeepsWhatWasShownWithOtherFilters() {
  const TestWorld world;
  world.writeData({kMapChange, kWinChange});
  std::map<std::string, std::string> host;
  Settings settings = world.settings();
  settings.firstStart = FirstStart::ShowAll;
  settings.stateGetter = [&host](const std::string& key) { return host[key]; };
  settings.stateSetter = [&host](const std::string& key, const std::string& value) {
    host[key] = value;
  };
  const auto controller = controllerFor(world, settings);
  controller->setFilters({.onlyNew = true, .thisPlatform = false, .myVersions = true});
  controller->openPanel();
  controller->display();
  controller->setFilters({.onlyNew = true, .thisPlatform = true, .myVersions = true});
  controller->closePanel();
  controller->setFilters({.onlyNew = true, .thisPlatform = false, .myVersions = true});
  QCOMPARE(controller->countNew(), ornwhatsnew::NewCount{});
}

void PanelControllerTest::closingTheLastPanelEmptiesTheLayout() {
  const TestWorld world;
  world.writeData({kMapChange});
  const auto controller = controllerFor(world);
  controller->openPanel();
  controller->openPanel();
  controller->display();
  controller->closePanel();
  QVERIFY(!controller->layout().paragraphs.empty());
  controller->closePanel();
  QVERIFY(controller->layout().paragraphs.empty());
}

void PanelControllerTest::remembersTheFilters() {
  const TestWorld world;
  const ornwhatsnewqt::Filters all{.onlyNew = false, .thisPlatform = false, .myVersions = false};
  QCOMPARE(controllerFor(world)->filters(), ornwhatsnewqt::Filters());
  controllerFor(world)->setFilters(all);
  QCOMPARE(controllerFor(world)->filters(), all);
}

void PanelControllerTest::countsWithTheFilters() {
  const TestWorld world;
  world.writeData({kMapChange, kWinChange});
  world.storeEarlierUse();
  const auto controller = controllerFor(world);
  const QSignalSpy counts(controller.get(), &PanelController::countChanged);
  QCOMPARE(controller->countNew().changes, std::size_t{1});
  controller->setFilters({.onlyNew = false, .thisPlatform = false, .myVersions = true});
  QCOMPARE(controller->countNew().changes, std::size_t{2});
  QCOMPARE(counts.count(), 1);
}

void PanelControllerTest::reloadShowsTheNewFileInTheOpenPanel() {
  const TestWorld world;
  world.writeData({kMapChange});
  world.storeEarlierUse();
  const auto controller = controllerFor(world);
  controller->display();
  world.writeData({kMapChange, kRequest});
  controller->reload();
  QVERIFY(textOf(*controller).contains(QStringLiteral("Faster map")));
  QVERIFY(textOf(*controller).contains(QStringLiteral("Prints maps")));
}

void PanelControllerTest::reloadMarksNothingAsSeenWhileThePanelIsClosed() {
  const TestWorld world;
  world.writeData({kMapChange});
  world.storeEarlierUse();
  const auto controller = controllerFor(world);
  world.writeData({kMapChange, kRequest});
  controller->reload();
  QCOMPARE(controller->countNew(), (ornwhatsnew::NewCount{1, 2}));
  QVERIFY(controller->layout().paragraphs.empty());
}

void PanelControllerTest::reloadKeepsTheChangesIfTheFileCannotBeRead() {
  const TestWorld world;
  world.writeData({kMapChange});
  world.storeEarlierUse();
  const auto controller = controllerFor(world);
  QVERIFY(QFile::remove(world.dataFile()));
  controller->reload();
  QVERIFY(!controller->isLoaded());
  QCOMPARE(controller->countNew(), (ornwhatsnew::NewCount{1, 1}));
  world.writeData({});
  controller->reload();
  QVERIFY(controller->isLoaded());
  QCOMPARE(controller->countNew().changes, std::size_t{0});
}

void PanelControllerTest::reportsAMissingDataFile() {
  const TestWorld world;
  const auto controller = controllerFor(world);
  QVERIFY(!controller->isLoaded());
  QVERIFY(controller->errorString().contains(world.dataFile()));
}

void PanelControllerTest::reportsADataFileThatCannotBeRead() {
  const TestWorld world;
  // This file can be opened, but its first byte cannot be read.
  const PanelController controller(QStringLiteral("/proc/self/mem"), world.settings());
  QVERIFY(!controller.isLoaded());
  QVERIFY(controller.errorString().contains(QStringLiteral("'/proc/self/mem'")));
}

void PanelControllerTest::offersRatingsAfterTwoWeeksOnly() {
  const TestWorld world;
  world.writeData({kRequest});
  QVERIFY(!controllerFor(world, settingsWithLogging(world))->canRate());
  world.storeFirstStart(QDateTime::currentDateTimeUtc().addDays(-15));
  QVERIFY(controllerFor(world, settingsWithLogging(world))->canRate());
}

void PanelControllerTest::offersNoRatingsWithoutUsageLogging() {
  TestWorld world;
  world.writeData({kRequest});
  world.storeFirstStart(QDateTime::currentDateTimeUtc().addDays(-15));
  QVERIFY(!controllerFor(world)->canRate());
  // Unlike the library, the panel offers no ratings to internal users without usage logging.
  world.features().SetInternalFeaturesAllowed(true);
  QVERIFY(!controllerFor(world)->canRate());
}

void PanelControllerTest::theRatingPageLeavesTheStateUnchanged() {
  const TestWorld world;
  world.writeData({kRequest});
  world.storeFirstStart(QDateTime::currentDateTimeUtc().addDays(-15));
  const auto controller = controllerFor(world, settingsWithLogging(world));
  const QString key = QStringLiteral("WhatsNew.AllSeenItems");
  const QString before = world.stored(key);
  const ornwhatsnew::PanelLayout layout = controller->ratingLayout();
  QCOMPARE(layout.ratingRequests.size(), std::size_t{1});
  QCOMPARE(layout.ratingRequests.front().itemKey, std::string("EPIC-1"));
  QCOMPARE(world.stored(key), before);
}

void PanelControllerTest::reportsAndStoresARating() {
  const TestWorld world;
  world.writeData({kRequest});
  world.storeFirstStart(QDateTime::currentDateTimeUtc().addDays(-15));
  const auto controller = controllerFor(world, settingsWithLogging(world));
  QSignalSpy ratings(controller.get(), &PanelController::rated);
  controller->rate(QStringLiteral("EPIC-1"), 4, QStringLiteral("fine"));
  QCOMPARE(ratings.count(), 1);
  QCOMPARE(ratings.front(), QVariantList({QStringLiteral("EPIC-1"), 4, QStringLiteral("fine")}));
  QVERIFY(!controller->canRate());
  QVERIFY(!controllerFor(world, settingsWithLogging(world))->canRate());
}

void PanelControllerTest::reportsOneRatingOfAFeature() {
  const TestWorld world;
  world.writeData({kRequest});
  const auto controller = controllerFor(world, settingsWithLogging(world));
  const QSignalSpy ratings(controller.get(), &PanelController::rated);
  controller->rate(QStringLiteral("EPIC-1"), 4, {});
  controller->rate(QStringLiteral("EPIC-1"), 2, {});
  QCOMPARE(ratings.count(), 1);
}

void PanelControllerTest::reportsASecondRatingAfterANewRequest() {
  const TestWorld world;
  world.writeData({kRequest});
  const auto controller = controllerFor(world, settingsWithLogging(world));
  QSignalSpy ratings(controller.get(), &PanelController::rated);
  controller->rate(QStringLiteral("EPIC-1"), 4, {});
  ChangeRow newRequest = kRequest;
  newRequest.ratingRequest = "Is printing faster?";
  world.writeData({kRequest, newRequest});
  controller->reload();
  // The rating page shows a rating request only after a display has shown the feature.
  controller->display();
  QCOMPARE(controller->ratingLayout().ratingRequests.size(), std::size_t{1});
  controller->rate(QStringLiteral("EPIC-1"), 2, {});
  QCOMPARE(ratings.count(), 2);
  QVERIFY(controller->ratingLayout().ratingRequests.empty());
}

void PanelControllerTest::offersRatingsOnceInASession() {
  const TestWorld world;
  world.writeData({kRequest});
  world.storeFirstStart(QDateTime::currentDateTimeUtc().addDays(-15));
  const auto controller = controllerFor(world, settingsWithLogging(world));
  controller->openPanel();
  controller->ratingLayout();
  QVERIFY(controller->canRate());
  const QSignalSpy counts(controller.get(), &PanelController::countChanged);
  controller->closePanel();
  QVERIFY(!controller->canRate());
  QCOMPARE(counts.count(), 1);
}

void PanelControllerTest::opensSafeLinksOnly() {
  const TestWorld world;
  const BrowserSpy browser;
  const auto controller = controllerFor(world);
  const QSignalSpy links(controller.get(), &PanelController::linkActivated);
  const QUrl safe(QStringLiteral("https://forum.tarsa.example/t/map?page=2#top"));
  controller->activateLink(safe);
  for (const char* const unsafe :
       {"http://forum.tarsa.example", "file:///etc/passwd", "javascript:alert(1)",
        "https://user@forum.tarsa.example", "https:forum"}) {
    controller->activateLink(QUrl(QString::fromLatin1(unsafe)));
  }
  QCOMPARE(browser.urls, QList<QUrl>{safe});
  QCOMPARE(links.count(), 1);
}

void PanelControllerTest::reportsAStoreThatCannotBeWritten() {
  const TestWorld world;
  world.writeData({kMapChange});
  QFile obstacle(world.filePath(QStringLiteral("config")));
  QVERIFY(obstacle.open(QIODevice::WriteOnly));
  Settings settings = world.settings();
  settings.settingsFile = obstacle.fileName() + QStringLiteral("/settings.ini");
  settings.firstStart = FirstStart::ShowAll;
  const auto controller = controllerFor(world, settings);
  const QSignalSpy errors(controller.get(), &PanelController::errorsChanged);
  QVERIFY(!controller->stateError().isEmpty());
  // Although the store cannot be written, items and changes that were shown count as seen until the
  // program ends.
  controller->display();
  QCOMPARE(controller->countNew(), ornwhatsnew::NewCount{});
  QVERIFY(obstacle.remove());
  controller->display();
  QCOMPARE(controller->stateError(), QString());
  QCOMPARE(errors.count(), 1);
}

void PanelControllerTest::keepsWhatWasShownWithOtherFiltersIfTheStoreCannotBeWritten() {
  const TestWorld world;
  world.writeData({kMapChange, kWinChange});
  Settings settings = world.settings();
  settings.settingsFile = QStringLiteral("/dev/null/settings.ini");
  settings.firstStart = FirstStart::ShowAll;
  const auto controller = controllerFor(world, settings);
  controller->setFilters({.onlyNew = true, .thisPlatform = false, .myVersions = true});
  controller->openPanel();
  controller->display();
  controller->setFilters({.onlyNew = true, .thisPlatform = true, .myVersions = true});
  controller->closePanel();
  controller->setFilters({.onlyNew = true, .thisPlatform = false, .myVersions = true});
  QCOMPARE(controller->countNew(), ornwhatsnew::NewCount{});
}

void PanelControllerTest::displaysAgainInANewLanguage() {
  const TestWorld world;
  world.writeData({kMapChange});
  world.storeEarlierUse();
  const auto controller = controllerFor(world);
  controller->display();
  const QSignalSpy changes(controller.get(), &PanelController::changed);
  QTranslator german;
  QVERIFY(german.load(QStringLiteral(":/ornwhatsnewqt/ornwhatsnew_de.qm")));
  QCoreApplication::installTranslator(&german);
  QCoreApplication::processEvents();
  QCOMPARE(changes.count(), 1);
  QVERIFY(textOf(*controller).contains(QStringLiteral("zuletzt in v4.2.0.97")));
  QVERIFY(textOf(*controller).contains(QStringLiteral("Faster map")));
}

void PanelControllerTest::reportsErrorsInANewLanguage() {
  const TestWorld world;
  Settings settings = world.settings();
  settings.settingsFile = QStringLiteral("/dev/null/settings.ini");
  const auto controller = controllerFor(world, settings);
  QVERIFY(controller->errorString().startsWith(QStringLiteral("cannot open")));
  QVERIFY(controller->stateError().startsWith(QStringLiteral("cannot write")));
  QTranslator german;
  QVERIFY(german.load(QStringLiteral(":/ornwhatsnewqt/ornwhatsnew_de.qm")));
  QCoreApplication::installTranslator(&german);
  QVERIFY(!controller->errorString().startsWith(QStringLiteral("cannot open")));
  QVERIFY(!controller->stateError().startsWith(QStringLiteral("cannot write")));
}

const test_support::RegisteredTest<PanelControllerTest> kPanelControllerTest;

}  // namespace

#include "PanelControllerTest.moc"
