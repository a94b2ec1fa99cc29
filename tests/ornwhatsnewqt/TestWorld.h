// Provides an application for tests of the Qt companion: a folder, a data file, settings and beta
// features.
#ifndef TESTS_ORNWHATSNEWQT_TESTWORLD_H_
#define TESTS_ORNWHATSNEWQT_TESTWORLD_H_

#include <initializer_list>
#include <memory>

#include <QtCore/QDateTime>
#include <QtCore/QString>
#include <QtCore/QTemporaryDir>

#include <ornappsupport/feature/FeatureService.h>
#include <ornwhatsnewqt/Settings.h>

#include "tests/support/Builders.h"

namespace test_support {

/// A change of the feature "EPIC-1" in version 4.3.
inline const ChangeRow kMapChange{
    .version = "4.3", .groupingID = "EPIC-1", .description = "Faster map"};

/// An application with version 4.3, build 118, platform Mac and the feature "EPIC-1", which is
/// called "Map". Its settings and data file are in a temporary folder. The constructor and the
/// destructor restore the default services.
class TestWorld {
 public:
  /// Creates the application. The data file does not exist yet.
  TestWorld();
  ~TestWorld();
  TestWorld(const TestWorld&) = delete;
  TestWorld& operator=(const TestWorld&) = delete;

  /// Writes the data file with a header row and `rows`.
  void writeData(std::initializer_list<ChangeRow> rows) const;

  /// Returns the path of the data file.
  QString dataFile() const { return folder_.filePath(QStringLiteral("whatsnew.csv")); }

  /// Returns settings of the application, with a settings file in the folder.
  ornwhatsnewqt::Settings settings() const;

  /// Stores the state of a user who opened the panel in `version`. The user has seen no items.
  void storeEarlierUse(const QString& version = QStringLiteral("4.2.0.97")) const;

  /// Stores `time` as the time of the first start. The panel offers ratings only if this time was
  /// at least 14 days ago.
  void storeFirstStart(const QDateTime& time) const;

  /// Returns the value of `key` in the settings file.
  QString stored(const QString& key) const;

  /// Returns the path of a file in the folder.
  QString filePath(const QString& name) const { return folder_.filePath(name); }

  /// Adds the feature "EPIC-2", which is called "Scanner".
  void addScanner() const;

  ornappsupport::feature::FixedFeatureService& features() { return *features_; }

 private:
  QTemporaryDir folder_;
  std::shared_ptr<ornappsupport::feature::FixedFeatureService> features_;
};

}  // namespace test_support

#endif  // TESTS_ORNWHATSNEWQT_TESTWORLD_H_
