#include "ornwhatsnewqt/src/SettingsStore.h"

#include <csignal>
#include <map>
#include <string>

#include <sys/resource.h>

#include <QtCore/QFile>
#include <QtCore/QLockFile>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <ornwhatsnew/utility/PersistedList.h>

#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestWorld.h"

namespace {

using ornwhatsnew::kAllSeenItemsKey;
using ornwhatsnew::kAllVersionsSeenKey;
using ornwhatsnew::kLastVersionSeenKey;
using ornwhatsnewqt::Settings;
using ornwhatsnewqt::SettingsStore;
using test_support::TestWorld;

/// Limits the size of the files that this process writes, to simulate a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
    ::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit = {bytes, before_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before_); }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
};

/// Writes a file without `QSettings`, as another program can do.
void writeFile(const QString& name, const QByteArray& content) {
  QFile file(name);
  if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write the settings");
  file.write(content);
}

QByteArray contentOf(const QString& name) {
  QFile file(name);
  if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read the settings");
  return file.readAll();
}

class SettingsStoreTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void storesTheStringsOfTheState();
  void keepsWhatAnotherProgramHasStored();
  void keepsTheOtherSettingsOfTheApplication();
  void usesTheSettingsOfTheApplicationByDefault();
  void keepsUnsavedStringsUntilAWriteSucceeds();
  void aFullDiskLeavesTheSettingsUnchanged();
  void aFullDiskLeavesTheSettingsUnchangedIfAValueNeedsEscapes();
  void aFailedWriteDoesNotOverwriteLaterValues();
  void reportsAStoreThatAnotherProgramLocks();
  void usesTheCallbacksOfTheHost();
  void returnsTheStateOfTheSnapshot();
  void reportsAChangedValueToOneProgramOnly();
  void storesSeveralValuesAtOnce();
};

void SettingsStoreTest::storesTheStringsOfTheState() {
  const TestWorld world;
  SettingsStore store(world.settings());
  QVERIFY(store.isStateEmpty());
  store.setState(kLastVersionSeenKey, "4.3, \"beta\" \xC3\xA4");
  store.commit();
  SettingsStore later(world.settings());
  QCOMPARE(later.state(kLastVersionSeenKey), std::string("4.3, \"beta\" \xC3\xA4"));
  QVERIFY(!later.isStateEmpty());
}

void SettingsStoreTest::keepsWhatAnotherProgramHasStored() {
  const TestWorld world;
  SettingsStore one(world.settings());
  SettingsStore other(world.settings());
  QCOMPARE(one.state(kAllSeenItemsKey), std::string());
  other.setState(kAllSeenItemsKey, "b");
  other.commit();
  one.setState(kAllSeenItemsKey, "a");
  one.commit();
  QCOMPARE(other.state(kAllSeenItemsKey), std::string("a b"));
}

void SettingsStoreTest::keepsTheOtherSettingsOfTheApplication() {
  const TestWorld world;
  QSettings application(world.settings().settingsFile, QSettings::IniFormat);
  application.setValue(QStringLiteral("window/size"), 7);
  SettingsStore store(world.settings());
  store.setState(kLastVersionSeenKey, "4.3");
  store.commit();
  QCOMPARE(world.stored(QStringLiteral("window/size")), QStringLiteral("7"));
}

void SettingsStoreTest::usesTheSettingsOfTheApplicationByDefault() {
  QCoreApplication::setOrganizationName(QStringLiteral("Tarsa"));
  QCoreApplication::setApplicationName(QStringLiteral("SettingsStoreTest"));
  QSettings().clear();
  SettingsStore store{Settings()};
  store.setState(kLastVersionSeenKey, "4.3");
  store.commit();
  QCOMPARE(store.error(), QString());
  QCOMPARE(QSettings().value(QStringLiteral("WhatsNew.LastVersionSeenWhatsNew")).toString(),
           QStringLiteral("4.3"));
}

void SettingsStoreTest::keepsUnsavedStringsUntilAWriteSucceeds() {
  const TestWorld world;
  // A file has the name of the settings folder, so even root cannot create the settings file.
  QFile obstacle(world.filePath(QStringLiteral("config")));
  QVERIFY(obstacle.open(QIODevice::WriteOnly));
  Settings settings = world.settings();
  settings.settingsFile = obstacle.fileName() + QStringLiteral("/settings.ini");
  SettingsStore store(settings);
  const QSignalSpy errors(&store, &SettingsStore::errorChanged);
  store.setState(kAllSeenItemsKey, "a");
  store.commit();
  QVERIFY(store.error().contains(settings.settingsFile));
  QCOMPARE(errors.count(), 1);
  QCOMPARE(store.state(kAllSeenItemsKey), std::string("a"));

  QVERIFY(obstacle.remove());
  store.setState(kLastVersionSeenKey, "4.3");
  store.commit();
  QCOMPARE(store.error(), QString());
  QCOMPARE(errors.count(), 2);
  QCOMPARE(SettingsStore(settings).state(kAllSeenItemsKey), std::string("a"));
}

// On a full disk, QSettings in Qt 6.4 can truncate the file and report success. `SettingsStore`
// must prevent this.
void SettingsStoreTest::aFullDiskLeavesTheSettingsUnchanged() {
  const TestWorld world;
  SettingsStore store(world.settings());
  store.setState(kAllSeenItemsKey, "a");
  store.commit();
  const QByteArray before = contentOf(world.settings().settingsFile);
  const std::string added(2000, 'b');
  store.setState(kAllSeenItemsKey, "a " + added);
  {
    const FileSizeLimit limit(1000);
    store.commit();
  }
  QVERIFY(!store.error().isEmpty());
  QCOMPARE(contentOf(world.settings().settingsFile), before);
  QCOMPARE(store.state(kAllSeenItemsKey), "a " + added);
  store.commit();
  QCOMPARE(store.error(), QString());
  QCOMPARE(SettingsStore(world.settings()).state(kAllSeenItemsKey), "a " + added);
}

// After the escape `\x1`, QSettings writes each `b` as an escape of four bytes, because `b` is a
// hexadecimal digit.
void SettingsStoreTest::aFullDiskLeavesTheSettingsUnchangedIfAValueNeedsEscapes() {
  const TestWorld world;
  SettingsStore store(world.settings());
  const QString key = QStringLiteral("WhatsNew.Value");
  const QString escaped = QChar(1) + QString(1000, QLatin1Char('b'));
  QVERIFY(store.setValue(key, QStringLiteral("4.3")));
  const QByteArray before = contentOf(world.settings().settingsFile);
  {
    const FileSizeLimit limit(3000);
    QVERIFY(!store.setValue(key, escaped));
  }
  QCOMPARE(contentOf(world.settings().settingsFile), before);
  QVERIFY(store.setValue(key, escaped));
  QVERIFY(contentOf(world.settings().settingsFile).size() > 3000);
}

// After a failed write, QSettings keeps the values. The next sync writes them without merging them
// with the values of other programs. `SettingsStore` must prevent this.
void SettingsStoreTest::aFailedWriteDoesNotOverwriteLaterValues() {
  const TestWorld world;
  const QString file = world.settings().settingsFile;
  SettingsStore store(world.settings());
  const QByteArray stored = "[General]\nWhatsNew.AllSeenItems=a c\n";
  writeFile(file, "[General]\nWhatsNew.AllSeenItems=a\n");
  // The application has its own QSettings object for the same file.
  QSettings application(file, QSettings::IniFormat);
  // Use values that are larger than Qt's file buffer. For smaller values, Qt would not report the
  // failed write.
  const std::string added(20'000, 'b');
  store.setState(kAllSeenItemsKey, "a " + added);
  store.setState(kAllVersionsSeenKey, added);
  {
    const FileSizeLimit limit(1000);
    store.commit();
  }
  QVERIFY(!store.error().isEmpty());
  writeFile(file, stored);
  application.sync();
  QCOMPARE(contentOf(file), stored);
  store.commit();
  QCOMPARE(store.error(), QString());
  QCOMPARE(store.state(kAllSeenItemsKey), "a " + added + " c");
}

void SettingsStoreTest::reportsAStoreThatAnotherProgramLocks() {
  const TestWorld world;
  QLockFile lock(world.settings().settingsFile + QStringLiteral(".whatsnew.lock"));
  QVERIFY(lock.lock());
  SettingsStore store(world.settings(), std::chrono::milliseconds(0));
  store.setState(kLastVersionSeenKey, "4.3");
  store.commit();
  QVERIFY(store.error().contains(QStringLiteral("another program")));
  QCOMPARE(world.stored(QStringLiteral("WhatsNew.LastVersionSeenWhatsNew")), QString());
  lock.unlock();
  store.commit();
  QCOMPARE(store.error(), QString());
}

void SettingsStoreTest::usesTheCallbacksOfTheHost() {
  const TestWorld world;
  std::map<std::string, std::string> host = {{kAllSeenItemsKey, "a"}};
  Settings settings = world.settings();
  settings.stateGetter = [&host](const std::string& key) { return host[key]; };
  settings.stateSetter = [&host](const std::string& key, const std::string& value) {
    host[key] = value;
  };
  SettingsStore store(settings);
  QCOMPARE(store.state(kAllSeenItemsKey), std::string("a"));
  host[kAllSeenItemsKey] = "a c";
  store.setState(kAllSeenItemsKey, "a b");
  store.commit();
  QCOMPARE(host[kAllSeenItemsKey], std::string("a b c"));
  QVERIFY(!QFile::exists(settings.settingsFile));
}

void SettingsStoreTest::returnsTheStateOfTheSnapshot() {
  const TestWorld world;
  SettingsStore store(world.settings());
  store.setState(kAllSeenItemsKey, "a");
  store.takeSnapshot();
  store.setState(kAllSeenItemsKey, "a b");
  store.commit();
  store.useSnapshot(true);
  QCOMPARE(store.state(kAllSeenItemsKey), std::string("a"));
  store.useSnapshot(false);
  QCOMPARE(store.state(kAllSeenItemsKey), std::string("a b"));
}

void SettingsStoreTest::reportsAChangedValueToOneProgramOnly() {
  const TestWorld world;
  SettingsStore one(world.settings());
  SettingsStore other(world.settings());
  const QString key = QStringLiteral("WhatsNew.Value");
  QVERIFY(one.setValue(key, QStringLiteral("4.3")));
  QVERIFY(!other.setValue(key, QStringLiteral("4.3")));
  QVERIFY(other.setValue(key, QStringLiteral("4.4")));
  QCOMPARE(one.value(key).toString(), QStringLiteral("4.4"));
}

void SettingsStoreTest::storesSeveralValuesAtOnce() {
  const TestWorld world;
  SettingsStore store(world.settings());
  const QString first = QStringLiteral("WhatsNew.First");
  const QString second = QStringLiteral("WhatsNew.Second");
  QVERIFY(store.setValues({{first, true}, {second, 2}}));
  QVERIFY(!store.setValues({{first, true}, {second, 2}}));
  QVERIFY(store.setValues({{first, true}, {second, 3}}));
  QCOMPARE(world.stored(first), QStringLiteral("true"));
  QCOMPARE(world.stored(second), QStringLiteral("3"));
}

const test_support::RegisteredTest<SettingsStoreTest, QCoreApplication> kSettingsStoreTest;

}  // namespace

#include "SettingsStoreTest.moc"
