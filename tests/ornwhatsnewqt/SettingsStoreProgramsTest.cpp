#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <ornwhatsnew/utility/PersistedList.h>

#include "ornwhatsnewqt/src/SettingsStore.h"
#include "tests/ornwhatsnewqt/QtTests.h"
#include "tests/ornwhatsnewqt/TestWorld.h"

namespace {

using ornwhatsnew::kAllSeenItemsKey;
using ornwhatsnewqt::Settings;
using ornwhatsnewqt::SettingsStore;

constexpr int kPrograms = 4;
// The number of rounds if the environment variable ORNWHATSNEWQT_TEST_ROUNDS is not set.
// `./dev check --release` sets this variable to 500.
constexpr int kDefaultRounds = 25;

int rounds() {
  const int number = qEnvironmentVariableIntValue("ORNWHATSNEWQT_TEST_ROUNDS");
  return number > 0 ? number : kDefaultRounds;
}

/// Adds one element to the value of `kAllSeenItemsKey` in each round, as a display does. Returns
/// the exit status of the program.
int runWriter(const QString& file, const std::string& name) {
  Settings settings;
  settings.settingsFile = file;
  // Increase the maximum time that a write waits, because the writers wait for each other. On a
  // busy machine, the default could be too short.
  SettingsStore store(settings, std::chrono::minutes(1));
  for (int round = 0; round < rounds(); ++round) {
    const std::string before = store.state(kAllSeenItemsKey);
    store.setState(kAllSeenItemsKey, before + " " + name + "-" + std::to_string(round));
    store.commit();
    if (!store.error().isEmpty()) {
      qWarning("%s", qPrintable(store.error()));
      return EXIT_FAILURE;
    }
  }
  return EXIT_SUCCESS;
}

class SettingsStoreProgramsTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void severalProgramsLoseNothing();
};

void SettingsStoreProgramsTest::severalProgramsLoseNothing() {
  const test_support::TestWorld world;
  const QString file = world.settings().settingsFile;
  std::vector<std::unique_ptr<QProcess>> writers;
  for (int program = 0; program < kPrograms; ++program) {
    writers.push_back(std::make_unique<QProcess>());
    writers.back()->setProcessChannelMode(QProcess::ForwardedChannels);
    writers.back()->start(QCoreApplication::applicationFilePath(),
                          {QLatin1String(staticMetaObject.className()), QStringLiteral("--writer"),
                           file, QString::number(program)});
  }
  for (const auto& writer : writers) {
    QVERIFY(writer->waitForFinished(-1));
    QCOMPARE(writer->exitCode(), EXIT_SUCCESS);
  }
  SettingsStore store(world.settings());
  const std::string list = store.state(kAllSeenItemsKey);
  QCOMPARE(ornwhatsnew::SplitPersistedList(list).size(),
           static_cast<std::size_t>(kPrograms * rounds()));
}

int runTestOrWriter(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.value(1) == QStringLiteral("--writer")) {
    return runWriter(arguments.value(2), arguments.value(3).toStdString());
  }
  SettingsStoreProgramsTest test;
  return QTest::qExec(&test, argc, argv);
}

const test_support::RegisteredMain kSettingsStoreProgramsTest(
    SettingsStoreProgramsTest::staticMetaObject.className(), &runTestOrWriter);

}  // namespace

#include "SettingsStoreProgramsTest.moc"
