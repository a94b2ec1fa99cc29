#include <ornwhatsnewqt/WhatsNew.h>

#include <QtCore/QPointer>
#include <QtGui/QAction>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QTextBrowser>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <orncore/config/ClientInfo.h>
#include <ornwhatsnewqt/PanelWidget.h>
#include <ornwhatsnewqt/WhatsNewBadge.h>

#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestWorld.h"

namespace {

using ornwhatsnewqt::Settings;
using ornwhatsnewqt::WhatsNew;
using ornwhatsnewqt::WhatsNewBadge;
using test_support::ChangeRow;
using test_support::kMapChange;
using test_support::TestWorld;

const ChangeRow kScannerChange{
    .version = "4.3", .groupingID = "EPIC-2", .description = "Reads faster"};

/// Returns the open window, or null if no window is open.
QDialog* openWindow() {
  for (QWidget* const widget : QApplication::topLevelWidgets()) {
    auto* const dialog = qobject_cast<QDialog*>(widget);
    if (dialog != nullptr && dialog->isVisible()) return dialog;
  }
  return nullptr;
}

class WhatsNewTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void init();
  void cleanup();
  void theActionShowsTheNumberOfNewChanges();
  void theActionShowsADotIfOnlyAFeatureIsNew();
  void thePanelClearsTheNumber();
  void refreshUpdatesTheActions();
  void refreshReadsTheBetaFeaturesAgain();
  void refreshShowsANewBetaFeatureInTheOpenPanel();
  void escapeClosesTheWindowAndReturnsTheFocus();
  void aSecondTriggerKeepsTheWindow();
  void aClosedWindowIsDeleted();
  void destroysTheOpenWindow();
  void theParentMayBeDestroyedWhileTheWindowIsOpen();
  void aPanelMayOutliveTheObject();
  void opensAfterAnUpdateIfTheApplicationWantsIt();
  void opensNothingByDefault();
  void reportsAMissingDataFile();
  void installsOnlyTheServicesOfTheSettings();
  void warnsAboutAMissingVersion();
  void theBadgeShowsTheTextOfTheAction();
  void theBadgeIsDisabledWithoutItsObject();

 private:
  std::unique_ptr<TestWorld> world_;
};

void WhatsNewTest::init() {
  world_ = std::make_unique<TestWorld>();
  world_->writeData({kMapChange});
  world_->storeEarlierUse();
}

void WhatsNewTest::cleanup() {
  world_.reset();
}

void WhatsNewTest::theActionShowsTheNumberOfNewChanges() {
  const WhatsNew whatsNew(world_->dataFile(), world_->settings());
  QVERIFY(whatsNew.isLoaded());
  QCOMPARE(whatsNew.showAction()->text(), QStringLiteral("What's New (1)"));
  QCOMPARE(whatsNew.showAction()->toolTip(), QStringLiteral("New changes: 1"));
  QCOMPARE(whatsNew.rateAction()->text(), QStringLiteral("Rate Features"));
  QVERIFY(!whatsNew.rateAction()->isEnabled());
}

void WhatsNewTest::theActionShowsADotIfOnlyAFeatureIsNew() {
  world_->writeData({});
  const WhatsNew whatsNew(world_->dataFile(), world_->settings());
  QCOMPARE(whatsNew.showAction()->text(), QStringLiteral("What's New \u2022"));
}

void WhatsNewTest::thePanelClearsTheNumber() {
  const WhatsNew whatsNew(world_->dataFile(), world_->settings());
  whatsNew.showAction()->trigger();
  QCOMPARE(whatsNew.showAction()->text(), QStringLiteral("What's New"));
}

void WhatsNewTest::refreshUpdatesTheActions() {
  WhatsNew whatsNew(world_->dataFile(), world_->settings());
  ChangeRow other = kMapChange;
  other.description = "Prints maps";
  world_->writeData({kMapChange, other});
  whatsNew.refresh();
  QCOMPARE(whatsNew.showAction()->text(), QStringLiteral("What's New (2)"));
}

void WhatsNewTest::refreshReadsTheBetaFeaturesAgain() {
  world_->writeData({kMapChange, kScannerChange});
  WhatsNew whatsNew(world_->dataFile(), world_->settings());
  QCOMPARE(whatsNew.showAction()->text(), QStringLiteral("What's New (1)"));
  world_->addScanner();
  whatsNew.refresh();
  QCOMPARE(whatsNew.showAction()->text(), QStringLiteral("What's New (2)"));
}

void WhatsNewTest::refreshShowsANewBetaFeatureInTheOpenPanel() {
  world_->writeData({kMapChange, kScannerChange});
  WhatsNew whatsNew(world_->dataFile(), world_->settings());
  whatsNew.showAction()->trigger();
  const auto* const page = openWindow()->findChild<QTextBrowser*>();
  QVERIFY(!page->toPlainText().contains(QStringLiteral("Reads faster")));
  world_->addScanner();
  whatsNew.refresh();
  QVERIFY(page->toPlainText().contains(QStringLiteral("Scanner")));
  QVERIFY(page->toPlainText().contains(QStringLiteral("Reads faster")));
  QVERIFY(page->toPlainText().contains(QStringLiteral("Faster map")));
}

void WhatsNewTest::escapeClosesTheWindowAndReturnsTheFocus() {
  QWidget mainWindow;
  auto* const field = new QLineEdit(&mainWindow);
  mainWindow.show();
  QApplication::setActiveWindow(&mainWindow);
  field->setFocus();
  auto* const whatsNew = new WhatsNew(world_->dataFile(), world_->settings(), &mainWindow);
  const QSignalSpy opened(whatsNew, &WhatsNew::opened);
  whatsNew->showAction()->trigger();
  QCOMPARE(opened.count(), 1);
  QDialog* const window = openWindow();
  QVERIFY(window != nullptr);
  QVERIFY(!window->isModal());
  QCOMPARE(window->windowTitle(), QStringLiteral("What's New"));
  QTRY_COMPARE(QApplication::activeWindow(), window);
  QTest::keyClick(window, Qt::Key_Escape);
  QVERIFY(openWindow() == nullptr);
  QTRY_COMPARE(QApplication::focusWidget(), field);
}

void WhatsNewTest::aSecondTriggerKeepsTheWindow() {
  const WhatsNew whatsNew(world_->dataFile(), world_->settings());
  const QSignalSpy opened(&whatsNew, &WhatsNew::opened);
  whatsNew.showAction()->trigger();
  const QDialog* const window = openWindow();
  const auto* const page = window->findChild<QTextBrowser*>();
  const QString news = page->toPlainText();
  QVERIFY(news.contains(QStringLiteral("Faster map")));
  whatsNew.showAction()->trigger();
  QCOMPARE(openWindow(), window);
  QCOMPARE(opened.count(), 1);
  QCOMPARE(page->toPlainText(), news);
}

void WhatsNewTest::aClosedWindowIsDeleted() {
  const WhatsNew whatsNew(world_->dataFile(), world_->settings());
  const QSignalSpy opened(&whatsNew, &WhatsNew::opened);
  whatsNew.showAction()->trigger();
  const QPointer<QDialog> first = openWindow();
  first->close();
  // The first window still exists. The action must open a second window.
  whatsNew.showAction()->trigger();
  QVERIFY(openWindow() != nullptr);
  QVERIFY(openWindow() != first);
  QCOMPARE(opened.count(), 2);
  QTRY_VERIFY(first.isNull());
}

void WhatsNewTest::destroysTheOpenWindow() {
  auto whatsNew = std::make_unique<WhatsNew>(world_->dataFile(), world_->settings());
  whatsNew->showAction()->trigger();
  QVERIFY(openWindow() != nullptr);
  whatsNew.reset();
  QVERIFY(openWindow() == nullptr);
}

void WhatsNewTest::theParentMayBeDestroyedWhileTheWindowIsOpen() {
  auto mainWindow = std::make_unique<QWidget>();
  mainWindow->show();
  auto* const whatsNew = new WhatsNew(world_->dataFile(), world_->settings(), mainWindow.get());
  // The main window deletes its children in the order of their creation, so it destroys the panel
  // and the badge after the `WhatsNew` object.
  auto* const panel = new ornwhatsnewqt::PanelWidget(whatsNew, mainWindow.get());
  panel->show();
  new WhatsNewBadge(whatsNew, mainWindow.get());
  whatsNew->showAction()->trigger();
  const QPointer<QDialog> window = openWindow();
  QVERIFY(!window.isNull());
  mainWindow.reset();
  QVERIFY(window.isNull());
}

void WhatsNewTest::aPanelMayOutliveTheObject() {
  auto whatsNew = std::make_unique<WhatsNew>(world_->dataFile(), world_->settings());
  ornwhatsnewqt::PanelWidget panel(whatsNew.get());
  panel.showNews();
  panel.show();
  whatsNew.reset();
  panel.hide();
}

void WhatsNewTest::opensAfterAnUpdateIfTheApplicationWantsIt() {
  Settings settings = world_->settings();
  settings.announcesUpdates = true;
  const WhatsNew whatsNew(world_->dataFile(), settings);
  QSignalSpy opened(&whatsNew, &WhatsNew::opened);
  QVERIFY(opened.wait());
  QVERIFY(openWindow() != nullptr);
}

void WhatsNewTest::opensNothingByDefault() {
  const WhatsNew whatsNew(world_->dataFile(), world_->settings());
  QTest::qWait(50);
  QVERIFY(openWindow() == nullptr);
}

void WhatsNewTest::reportsAMissingDataFile() {
  const WhatsNew whatsNew(QStringLiteral(":/missing.csv"), world_->settings());
  QVERIFY(!whatsNew.isLoaded());
  QVERIFY(whatsNew.errorString().contains(QStringLiteral("':/missing.csv'")));
}

void WhatsNewTest::installsOnlyTheServicesOfTheSettings() {
  using ornappsupport::analytics::SDMUsageLogger;
  const WhatsNew first(world_->dataFile(), world_->settings());
  QVERIFY(orncore::config::GetClientVersion() == u"4.3");
  QVERIFY(!SDMUsageLogger::IsLogging());
  QVERIFY(ornappsupport::feature::IsFeatureEnabled("app.map"));

  SDMUsageLogger::SetLoggingQuery([] { return true; });
  Settings settings = Settings::withoutServices();
  settings.settingsFile = world_->settings().settingsFile;
  const WhatsNew second(world_->dataFile(), settings);
  QVERIFY(orncore::config::GetClientVersion() == u"4.3");
  QVERIFY(SDMUsageLogger::IsLogging());
  QVERIFY(ornappsupport::feature::IsFeatureEnabled("app.map"));
}

void WhatsNewTest::warnsAboutAMissingVersion() {
  Settings settings;
  QVERIFY(settings.applicationVersion->isEmpty());
  settings.settingsFile = world_->settings().settingsFile;
  QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("has no version")));
  const WhatsNew whatsNew(world_->dataFile(), settings);

  QCoreApplication::setApplicationVersion(QStringLiteral("5.0"));
  QCOMPARE(Settings().applicationVersion, QStringLiteral("5.0"));
  QCoreApplication::setApplicationVersion(QString());
}

void WhatsNewTest::theBadgeShowsTheTextOfTheAction() {
  const WhatsNew whatsNew(world_->dataFile(), world_->settings());
  WhatsNewBadge badge(&whatsNew);
  QCOMPARE(badge.text(), QStringLiteral("What's New (1)"));
  QCOMPARE(badge.accessibleName(), QStringLiteral("What's New"));
  QCOMPARE(badge.toolTip(), QStringLiteral("New changes: 1"));
  badge.click();
  QVERIFY(openWindow() != nullptr);
  QCOMPARE(badge.text(), QStringLiteral("What's New"));
}

void WhatsNewTest::theBadgeIsDisabledWithoutItsObject() {
  auto whatsNew = std::make_unique<WhatsNew>(world_->dataFile(), world_->settings());
  const WhatsNewBadge badge(whatsNew.get());
  QVERIFY(badge.isEnabled());
  whatsNew.reset();
  QVERIFY(!badge.isEnabled());
}

const test_support::RegisteredTest<WhatsNewTest> kWhatsNewTest;

}  // namespace

#include "WhatsNewTest.moc"
