#include "ornwhatsnewqt/src/Announcement.h"

#include <algorithm>
#include <string>
#include <utility>

#include <QtGui/QGuiApplication>

#include <ornwhatsnew/WhatsNewTypes.h>
#include <ornwhatsnew/utility/PersistedList.h>

#include "ornwhatsnewqt/src/SettingsStore.h"

namespace ornwhatsnewqt {
namespace {

const QString kAnnouncedVersionKey = QStringLiteral("WhatsNew.AnnouncedVersion");
const QString kAnnouncesUpdatesKey = QStringLiteral("WhatsNew.AnnouncesUpdates");

constexpr int kMillisecondsBetweenAttempts = 500;

QString runningVersion() {
  return QString::fromStdU16String(ornwhatsnew::GetFullClientVersionString());
}

/// Stores the running version as the announced version. Returns true if this call stored it.
/// Returns false if it was already stored, or if the write failed.
bool recordRunningVersion(SettingsStore& store) {
  return store.setValue(kAnnouncedVersionKey, runningVersion());
}

bool isUpdate(SettingsStore& store) {
  // Check all versions in which the user opened the panel, because a user can have several versions
  // installed and start an older one again.
  const std::string opened = store.state(ornwhatsnew::kAllVersionsSeenKey);
  const std::string version = runningVersion().toStdString();
  return std::ranges::count(ornwhatsnew::SplitPersistedList(opened), version) == 0 &&
         store.value(kAnnouncedVersionKey).toString() != runningVersion();
}

}  // namespace

Announcement::Announcement(SettingsStore& store, std::function<bool()> isAnythingNew)
    : store_(store), isAnythingNew_(std::move(isAnythingNew)) {
  if (store_.isStateEmpty() && !store_.value(kAnnouncedVersionKey).isValid()) {
    recordRunningVersion(store_);
    return;
  }
  if (!isUpdate(store_)) return;
  connect(&timer_, &QTimer::timeout, this, &Announcement::announceUnlessBlocked);
  timer_.start(0);
}

Announcement::~Announcement() = default;

bool Announcement::isWanted(const SettingsStore& store) {
  const QVariant value = store.value(kAnnouncesUpdatesKey);
  return !value.isValid() || value.toBool();
}

void Announcement::setWanted(SettingsStore& store, bool isWanted) {
  store.setValue(kAnnouncesUpdatesKey, isWanted);
}

void Announcement::announceUnlessBlocked() {
  if (QGuiApplication::modalWindow() != nullptr) {
    timer_.start(kMillisecondsBetweenAttempts);
    return;
  }
  timer_.stop();
  // Check again, because the user may have opened the panel while a modal window was open.
  if (!isUpdate(store_)) return;
  // Announce the update only if this call stores the version. Otherwise, another instance has
  // stored it, or the write failed and the panel would open at every start.
  const bool isFirst = recordRunningVersion(store_);
  if (isFirst && isWanted(store_) && isAnythingNew_()) Q_EMIT due();
}

}  // namespace ornwhatsnewqt
