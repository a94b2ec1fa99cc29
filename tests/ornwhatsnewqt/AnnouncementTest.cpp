#include "ornwhatsnewqt/src/Announcement.h"

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QDialog>

#include <ornwhatsnew/utility/PersistedList.h>

#include "ornwhatsnewqt/src/Services.h"
#include "ornwhatsnewqt/src/SettingsStore.h"
#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestWorld.h"

namespace {

using ornwhatsnewqt::Announcement;
using ornwhatsnewqt::SettingsStore;
using test_support::TestWorld;

/// Stores that the user opened the panel in version 4.2.0.97, and installs services that return
/// version 4.3.0.118.
void update(const TestWorld& world) {
  world.storeEarlierUse(QStringLiteral("4.2.0.97"));
  ornwhatsnewqt::installServices(world.settings());
}

/// Simulates a start of the application. Returns whether the update is announced exactly once
/// within 50 milliseconds.
bool startAnnounces(const TestWorld& world, bool isAnythingNew = true) {
  SettingsStore store(world.settings());
  const Announcement announcement(store, [isAnythingNew] { return isAnythingNew; });
  const QSignalSpy due(&announcement, &Announcement::due);
  QTest::qWait(50);
  return due.count() == 1;
}

class AnnouncementTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void announcesAnUpdateOnce();
  void doesNotAnnounceAtTheFirstStart();
  void announcesTheUpdateAfterAFirstStart();
  void doesNotAnnounceAVersionInWhichThePanelWasOpened();
  void doesNotAnnounceAVersionAgainAfterAnotherOne();
  void doesNotAnnounceAnUpdateWithoutNews();
  void doesNotAnnounceToUsersWhoDoNotWantIt();
  void doesNotAnnounceIfItCannotRecordTheVersion();
  void onlyOneOfTwoProgramsAnnounces();
  void waitsUntilAModalDialogIsClosed();
};

void AnnouncementTest::announcesAnUpdateOnce() {
  const TestWorld world;
  update(world);
  QVERIFY(startAnnounces(world));
  QVERIFY(!startAnnounces(world));
}

void AnnouncementTest::doesNotAnnounceAtTheFirstStart() {
  const TestWorld world;
  ornwhatsnewqt::installServices(world.settings());
  QVERIFY(!startAnnounces(world));
  // At the second start, the state is still empty, because the user has not opened the panel.
  QVERIFY(!startAnnounces(world));
}

void AnnouncementTest::announcesTheUpdateAfterAFirstStart() {
  const TestWorld world;
  ornwhatsnewqt::Settings settings = world.settings();
  ornwhatsnewqt::installServices(settings);
  QVERIFY(!startAnnounces(world));
  settings.applicationVersion = QStringLiteral("4.4");
  ornwhatsnewqt::installServices(settings);
  QVERIFY(startAnnounces(world));
}

void AnnouncementTest::doesNotAnnounceAVersionInWhichThePanelWasOpened() {
  const TestWorld world;
  update(world);
  world.storeEarlierUse(QStringLiteral("4.3.0.118"));
  QVERIFY(!startAnnounces(world));
}

void AnnouncementTest::doesNotAnnounceAVersionAgainAfterAnotherOne() {
  const TestWorld world;
  update(world);
  SettingsStore store(world.settings());
  store.setState(ornwhatsnew::kAllVersionsSeenKey, "4.2.0.97 4.3.0.118");
  store.commit();
  QCOMPARE(world.stored(QStringLiteral("WhatsNew.LastVersionSeenWhatsNew")),
           QStringLiteral("4.2.0.97"));
  QVERIFY(!startAnnounces(world));
}

void AnnouncementTest::doesNotAnnounceAnUpdateWithoutNews() {
  const TestWorld world;
  update(world);
  QVERIFY(!startAnnounces(world, false));
  // A feature that becomes available later is not an update.
  QVERIFY(!startAnnounces(world));
}

void AnnouncementTest::doesNotAnnounceToUsersWhoDoNotWantIt() {
  const TestWorld world;
  update(world);
  SettingsStore store(world.settings());
  QVERIFY(Announcement::isWanted(store));
  Announcement::setWanted(store, false);
  QVERIFY(!Announcement::isWanted(store));
  QVERIFY(!startAnnounces(world));
}

void AnnouncementTest::doesNotAnnounceIfItCannotRecordTheVersion() {
  const TestWorld world;
  ornwhatsnewqt::Settings settings = world.settings();
  ornwhatsnewqt::installServices(settings);
  QFile obstacle(world.filePath(QStringLiteral("config")));
  QVERIFY(obstacle.open(QIODevice::WriteOnly));
  settings.settingsFile = obstacle.fileName() + QStringLiteral("/settings.ini");
  settings.stateGetter = [](const std::string&) { return std::string("4.2.0.97"); };
  settings.stateSetter = [](const std::string&, const std::string&) {};
  SettingsStore store(settings);
  const Announcement announcement(store, [] { return true; });
  const QSignalSpy due(&announcement, &Announcement::due);
  QTest::qWait(50);
  QCOMPARE(due.count(), 0);
}

void AnnouncementTest::onlyOneOfTwoProgramsAnnounces() {
  const TestWorld world;
  update(world);
  SettingsStore store(world.settings());
  SettingsStore other(world.settings());
  const Announcement one(store, [] { return true; });
  const Announcement two(other, [] { return true; });
  const QSignalSpy first(&one, &Announcement::due);
  const QSignalSpy second(&two, &Announcement::due);
  QTest::qWait(50);
  QCOMPARE(first.count() + second.count(), 1);
}

void AnnouncementTest::waitsUntilAModalDialogIsClosed() {
  const TestWorld world;
  update(world);
  SettingsStore store(world.settings());
  const Announcement announcement(store, [] { return true; });
  QSignalSpy due(&announcement, &Announcement::due);
  QDialog dialog;
  dialog.setModal(true);
  dialog.show();
  QTest::qWait(50);
  QCOMPARE(due.count(), 0);
  dialog.close();
  QVERIFY(due.wait());
}

const test_support::RegisteredTest<AnnouncementTest> kAnnouncementTest;

}  // namespace

#include "AnnouncementTest.moc"
