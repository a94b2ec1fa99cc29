#include "tests/ornwhatsnewqt/TestWorld.h"

#include <string>

#include <QtCore/QFile>
#include <QtCore/QSettings>

#include <ornappsupport/Services.h>

namespace test_support {

using ornappsupport::feature::BetaFeature;
using ornappsupport::feature::FixedFeatureService;
using ornappsupport::feature::VisibilityInAllClientApps;

TestWorld::TestWorld() : features_(std::make_shared<FixedFeatureService>()) {
  ornappsupport::ResetServices();
  features_->Add("app.map",
                 BetaFeature("EPIC-1", u"Map", u"Shows finds on a map.",
                             VisibilityInAllClientApps::kUnlabelled),
                 true, true);
}

void TestWorld::addScanner() const {
  features_->Add(
      "app.scanner",
      BetaFeature("EPIC-2", u"Scanner", u"Reads labels.", VisibilityInAllClientApps::kUnlabelled),
      true, true);
}

TestWorld::~TestWorld() {
  ornappsupport::ResetServices();
}

void TestWorld::writeData(std::initializer_list<ChangeRow> rows) const {
  QFile file(dataFile());
  if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write the data file");
  file.write(QByteArray::fromStdString(DataFileText(rows)));
}

ornwhatsnewqt::Settings TestWorld::settings() const {
  ornwhatsnewqt::Settings settings;
  settings.applicationVersion = QStringLiteral("4.3");
  settings.buildNumber = QStringLiteral("118");
  settings.platform = QStringLiteral("Mac");
  settings.features = features_;
  settings.settingsFile = filePath(QStringLiteral("settings.ini"));
  return settings;
}

void TestWorld::storeEarlierUse(const QString& version) const {
  QSettings store(settings().settingsFile, QSettings::IniFormat);
  store.setValue(QStringLiteral("WhatsNew.LastVersionSeenWhatsNew"), version);
  store.setValue(QStringLiteral("WhatsNew.AllVersionSeenWhatsNew"), version);
}

void TestWorld::storeFirstStart(const QDateTime& time) const {
  QSettings store(settings().settingsFile, QSettings::IniFormat);
  store.setValue(QStringLiteral("WhatsNew.FirstStart"), time.toString(Qt::ISODate));
}

QString TestWorld::stored(const QString& key) const {
  QSettings store(settings().settingsFile, QSettings::IniFormat);
  store.sync();
  return store.value(key).toString();
}

}  // namespace test_support
