#include "ornwhatsnewqt/src/SettingsStore.h"

#include <algorithm>
#include <array>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLockFile>
#include <QtCore/QOperatingSystemVersion>
#include <QtCore/QSaveFile>

#include <ornwhatsnew/utility/PersistedList.h>

#include "ornwhatsnewqt/src/LocalizedText.h"

namespace ornwhatsnewqt {
namespace {

constexpr std::string_view kLockedText =
    "$$$/ornwhatsnewqt/Store/Locked=another program has locked '@0'";
constexpr std::string_view kNotWritableText =
    "$$$/ornwhatsnewqt/Store/NotWritable=cannot write '@0'";

constexpr std::array kStateKeys = {&ornwhatsnew::kAllSeenItemsKey,
                                   &ornwhatsnew::kLastVersionSeenKey,
                                   &ornwhatsnew::kAllVersionsSeenKey};

/// Returns whether `file` can be replaced by a file that contains the old content and `changes`.
/// Checks the permissions and the disk space, and leaves `file` unchanged.
bool canReplace(const QString& file, const QVariantMap& changes) {
  constexpr qint64 kBytesForSyntax = 64;
  // QSettings writes at most six bytes for a character, such as the escape `%U20AC` in a key or
  // `\x20ac` in a value. It also escapes a hexadecimal digit that follows an escape.
  constexpr qint64 kMaximumBytesOfCharacter = 6;
  qint64 bytes = QFileInfo(file).size();
  for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
    const qint64 characters = change.key().size() + change->toString().size();
    bytes += kMaximumBytesOfCharacter * characters + kBytesForSyntax;
  }
  // Do not call commit(), so that the destructor of QSaveFile discards the content.
  QSaveFile rehearsal(file);
  return rehearsal.open(QIODevice::WriteOnly) && rehearsal.write(QByteArray(bytes, ' ')) == bytes &&
         rehearsal.flush();
}

/// Writes `changes`. Returns whether the write succeeded.
///
/// Detects a full disk before QSettings receives the values. If a small file cannot be written
/// completely, Qt 6.4 truncates it and reports success. After a failure that Qt reports, QSettings
/// keeps the values in memory, and the next sync of any object for the file writes them. That would
/// overwrite what other programs have stored in the meantime.
bool writeChanges(QSettings& settings, const QVariantMap& changes) {
  if (changes.isEmpty()) return true;
  if (!canReplace(settings.fileName(), changes)) return false;
  for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
    settings.setValue(change.key(), *change);
  }
  settings.sync();
  return settings.status() == QSettings::NoError;
}

}  // namespace

SettingsStore::SettingsStore(const Settings& settings, std::chrono::milliseconds patience)
    : file_(settings.settingsFile), patience_(patience) {
  if (settings.stateGetter && settings.stateSetter) {
    getter_ = settings.stateGetter;
    setter_ = settings.stateSetter;
  }
}

SettingsStore::~SettingsStore() = default;

// Creates a new object for each access, because the status of a QSettings remains an error after
// the first failure. All objects for one file share their content.
std::unique_ptr<QSettings> SettingsStore::open() const {
  if (!file_.isEmpty()) return std::make_unique<QSettings>(file_, QSettings::IniFormat);
  // On Windows, QSettings uses the registry by default. `write` cannot lock the registry.
  if (QOperatingSystemVersion::currentType() == QOperatingSystemVersion::Windows) {
    return std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope,
                                       QCoreApplication::organizationName(),
                                       QCoreApplication::applicationName());
  }
  return std::make_unique<QSettings>();
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
    value = settings->value(QString::fromStdString(key)).toString().toStdString();
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
  const auto [unsaved, isFirst] = unsaved_.try_emplace(key, value);
  if (isFirst) return;
  // Merge the values. The unsaved value can contain elements that the last commit could not write.
  // If the list uses a snapshot, `value` does not contain these elements.
  unsaved->second = ornwhatsnew::MergePersistedValue(key, unsaved->second, read_[key], value);
}

void SettingsStore::commit() {
  if (setter_) {
    for (const auto& [key, value] : unsaved_) {
      setter_(key, ornwhatsnew::MergePersistedValue(key, getter_(key), read_[key], value));
    }
    unsaved_.clear();
    return;
  }
  const bool isWritten = write([this](const QSettings& settings) {
    QVariantMap changes;
    for (const auto& [key, value] : unsaved_) {
      const QString name = QString::fromStdString(key);
      const auto stored = settings.value(name).toString().toStdString();
      const auto merged = ornwhatsnew::MergePersistedValue(key, stored, read_[key], value);
      if (merged != stored) changes.insert(name, QString::fromStdString(merged));
    }
    return changes;
  });
  if (isWritten) unsaved_.clear();
}

QVariant SettingsStore::value(const QString& key) const {
  const auto settings = open();
  settings->sync();
  return settings->value(key);
}

bool SettingsStore::setValues(const QVariantMap& values) {
  bool isChanged = false;
  const bool isWritten = write([&](const QSettings& settings) {
    QVariantMap changes;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
      const bool isStored = settings.value(value.key()).toString() == value->toString();
      if (!isStored) changes.insert(value.key(), *value);
    }
    isChanged = !changes.isEmpty();
    return changes;
  });
  return isWritten && isChanged;
}

bool SettingsStore::write(const std::function<QVariantMap(const QSettings&)>& changesTo) {
  const auto settings = open();
  const QString file = QFileInfo(settings->fileName()).absoluteFilePath();
  QDir().mkpath(QFileInfo(file).absolutePath());
  // Do not use the suffix ".lock", because QSettings itself locks the file with this suffix during
  // each read and each write.
  QLockFile lock(file + QStringLiteral(".whatsnew.lock"));
  // By default, a lock expires after 30 seconds. A program that was suspended for that time could
  // then overwrite what another program has stored. The lock of a program that has ended never
  // blocks.
  lock.setStaleLockTime(0);
  if (!lock.tryLock(static_cast<int>(patience_.count())) &&
      lock.error() == QLockFile::LockFailedError) {
    setError(kLockedText, file);
    return false;
  }
  settings->sync();
  const bool isReadable = lock.isLocked() && settings->status() == QSettings::NoError;
  const bool isWritten = isReadable && writeChanges(*settings, changesTo(*settings));
  setError(isWritten ? std::string_view() : kNotWritableText, file);
  return isWritten;
}

void SettingsStore::setError(std::string_view keyText, const QString& file) {
  if (keyText == errorKeyText_) return;
  errorKeyText_ = keyText;
  errorFile_ = file;
  Q_EMIT errorChanged();
}

QString SettingsStore::error() const {
  return errorKeyText_.empty() ? QString() : localizedText(errorKeyText_, {errorFile_});
}

}  // namespace ornwhatsnewqt
