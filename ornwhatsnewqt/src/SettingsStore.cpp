#include "ornwhatsnewqt/src/SettingsStore.h"

#include <algorithm>
#include <array>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLockFile>

#include <ornwhatsnew/utility/PersistedList.h>

#include "ornwhatsnewqt/src/LocalizedText.h"

namespace ornwhatsnewqt {
namespace {

constexpr int kLockPatienceInMilliseconds = 5000;

constexpr std::array kStateKeys = {&ornwhatsnew::kAllSeenItemsKey,
                                   &ornwhatsnew::kLastVersionSeenKey,
                                   &ornwhatsnew::kAllVersionsSeenKey};

QString fromUtf8(const ornwhatsnew::UTF8String& text) {
  return QString::fromStdString(text);
}

}  // namespace

SettingsStore::SettingsStore(const Settings& settings, QObject* parent)
    : QObject(parent), file_(settings.settingsFile) {
  if (settings.stateGetter && settings.stateSetter) {
    getter_ = settings.stateGetter;
    setter_ = settings.stateSetter;
  }
}

SettingsStore::~SettingsStore() = default;

// Creates a new object for each access, because the status of a QSettings remains an error after
// the first failure. All objects for one file share their content.
std::unique_ptr<QSettings> SettingsStore::open() const {
  if (file_.isEmpty()) return std::make_unique<QSettings>();
  return std::make_unique<QSettings>(file_, QSettings::IniFormat);
}

ornwhatsnew::UTF8String SettingsStore::state(const ornwhatsnew::UTF8String& key) {
  if (usesSnapshot_) return snapshot_[key];
  const auto unsaved = unsaved_.find(key);
  if (unsaved != unsaved_.end()) return unsaved->second;
  auto& value = read_[key];
  if (getter_) {
    value = getter_(key);
  } else {
    const auto settings = open();
    settings->sync();
    value = settings->value(fromUtf8(key)).toString().toStdString();
  }
  return value;
}

bool SettingsStore::isStateEmpty() {
  return std::ranges::all_of(kStateKeys, [this](const auto* key) { return state(*key).empty(); });
}

void SettingsStore::takeSnapshot() {
  for (const auto* key : kStateKeys) snapshot_[*key] = state(*key);
}

void SettingsStore::setState(const ornwhatsnew::UTF8String& key,
                             const ornwhatsnew::UTF8String& value) {
  if (setter_) {
    read_[key] = ornwhatsnew::MergePersistedValue(key, getter_(key), read_[key], value);
    setter_(key, read_[key]);
    return;
  }
  unsaved_[key] = value;
  if (change([this](QSettings& settings) { writeUnsavedTo(settings); })) unsaved_.clear();
}

void SettingsStore::writeUnsavedTo(QSettings& settings) {
  for (const auto& [key, value] : unsaved_) {
    const QString name = fromUtf8(key);
    const auto stored = settings.value(name).toString().toStdString();
    const auto merged = ornwhatsnew::MergePersistedValue(key, stored, read_[key], value);
    if (merged != stored) settings.setValue(name, fromUtf8(merged));
  }
}

QVariant SettingsStore::value(const QString& key) const {
  const auto settings = open();
  settings->sync();
  return settings->value(key);
}

bool SettingsStore::setValue(const QString& key, const QVariant& value) {
  bool isChanged = false;
  const bool isWritten = change([&](QSettings& settings) {
    isChanged = settings.value(key).toString() != value.toString();
    if (isChanged) settings.setValue(key, value);
  });
  return isWritten && isChanged;
}

bool SettingsStore::change(const std::function<void(QSettings&)>& edit) {
  const auto settings = open();
  const QFileInfo file(settings->fileName());
  QDir().mkpath(file.absolutePath());
  // QSettings itself locks the file with the suffix ".lock" during each read and each write.
  QLockFile lock(file.absoluteFilePath() + QStringLiteral(".whatsnew.lock"));
  if (!lock.tryLock(kLockPatienceInMilliseconds)) {
    setError(
        localizedText("$$$/ornwhatsnewqt/Store/Locked=What you have seen cannot be stored, because "
                      "another program locks the file @0.",
                      {file.absoluteFilePath()}));
    return false;
  }
  settings->sync();
  if (settings->status() == QSettings::NoError) {
    edit(*settings);
    settings->sync();
  }
  const bool isWritten = settings->status() == QSettings::NoError;
  setError(isWritten
               ? QString()
               : localizedText(
                     "$$$/ornwhatsnewqt/Store/NotWritable=What you have seen cannot be stored, "
                     "because the file @0 cannot be written.",
                     {file.absoluteFilePath()}));
  return isWritten;
}

void SettingsStore::setError(const QString& error) {
  if (error == error_) return;
  error_ = error;
  Q_EMIT errorChanged();
}

}  // namespace ornwhatsnewqt
