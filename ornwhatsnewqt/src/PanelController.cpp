#include "ornwhatsnewqt/src/PanelController.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QFile>
#include <QtGui/QDesktopServices>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <orncore/string/SafeLink.h>

#include "ornwhatsnewqt/src/LocalizedText.h"

namespace ornwhatsnewqt {
namespace {

constexpr ornwhatsnew::DisplayOptions kRatings = ornwhatsnew::kRatingView |
                                                 ornwhatsnew::kFilterRelevantPlatform |
                                                 ornwhatsnew::kFilterRelevantVersion;

const QString kOnlyNewKey = QStringLiteral("WhatsNew.OnlyNew");
const QString kThisPlatformKey = QStringLiteral("WhatsNew.ThisPlatform");
const QString kMyVersionsKey = QStringLiteral("WhatsNew.MyVersions");

Filters readFilters(const SettingsStore& store) {
  const auto read = [&store](const QString& key) {
    const QVariant value = store.value(key);
    return !value.isValid() || value.toBool();
  };
  return {read(kOnlyNewKey), read(kThisPlatformKey), read(kMyVersionsKey)};
}

ornwhatsnew::DisplayOptions optionsOf(const Filters& filters) {
  ornwhatsnew::DisplayOptions options;
  if (filters.onlyNew) options = options | ornwhatsnew::kShowOnlyNew;
  if (filters.thisPlatform) options = options | ornwhatsnew::kFilterRelevantPlatform;
  if (filters.myVersions) options = options | ornwhatsnew::kFilterRelevantVersion;
  return options;
}

}  // namespace

PanelController::PanelController(const QString& dataFile, const Settings& settings, QObject* parent)
    : QObject(parent),
      dataFile_(dataFile),
      store_(settings),
      ratingPolicy_(store_),
      list_([this](const auto& key) { return store_.state(key); },
            [this](const auto& key, const auto& value) { store_.setState(key, value); }),
      filters_(readFilters(store_)) {
  connect(&store_, &SettingsStore::errorChanged, this, &PanelController::errorsChanged);
  loadList();
  if (settings.announcesUpdates) {
    announcement_.emplace(store_, [this] { return list_.IsAnythingNew(optionsForNews()); });
    connect(&*announcement_, &Announcement::due, this, &PanelController::announcementDue);
  }
  marksAllSeen_ = settings.firstStart == FirstStart::MarkAllSeen && store_.isStateEmpty();
  if (marksAllSeen_) markAllSeen();
  // Watch the application object, because it receives an event for a new language even if there is
  // no widget.
  QCoreApplication::instance()->installEventFilter(this);
}

PanelController::~PanelController() = default;

void PanelController::readDataFile() {
  QFile file(dataFile_);
  const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  fileError_ = file.error() == QFileDevice::NoError ? QString() : file.errorString();
  if (isLoaded()) dataText_ = text.toStdString();
}

QString PanelController::errorString() const {
  if (isLoaded()) return {};
  return localizedText("$$$/ornwhatsnewqt/DataFile/NotReadable=cannot open '@0': @1",
                       {dataFile_, fileError_});
}

void PanelController::loadList() {
  const QString previousError = fileError_;
  readDataFile();
  list_.InitWithData(dataText_);
  if (fileError_ != previousError) Q_EMIT errorsChanged();
}

// If the data file cannot be read, the stored state remains empty. The user therefore remains a new
// user. The first data file that can be read then counts as seen, even in a later session.
void PanelController::markAllSeen() {
  list_.MarkAllSeen();
  if (isLoaded()) {
    store_.commit();
    marksAllSeen_ = false;
  }
  list_.RefreshInternalSeenState();
}

void PanelController::reload() {
  loadList();
  // The data file can contain a new request for a feature that was rated.
  ratedKeys_.clear();
  if (marksAllSeen_) markAllSeen();
  displayAgain();
}

ornwhatsnew::NewCount PanelController::countNew() const {
  return list_.CountNew(optionsForNews());
}

ornwhatsnew::DisplayOptions PanelController::optionsForNews() const {
  return optionsOf({true, filters_.thisPlatform, filters_.myVersions});
}

void PanelController::setFilters(const Filters& filters) {
  if (filters == filters_) return;
  filters_ = filters;
  store_.setValues({{kOnlyNewKey, filters.onlyNew},
                    {kThisPlatformKey, filters.thisPlatform},
                    {kMyVersionsKey, filters.myVersions}});
  displayAgain();
}

void PanelController::openPanel() {
  ++openPanels_;
}

void PanelController::display() {
  // Take only one snapshot, so that a user who returns from the rating page, or triggers the action
  // again, sees the same news.
  if (!isDisplayed_) store_.takeSnapshot();
  isDisplayed_ = true;
  displayAgain();
}

void PanelController::closePanel() {
  --openPanels_;
  if (openPanels_ == 0) {
    isDisplayed_ = false;
    layout_ = {};
  }
  ratingPolicy_.close();
  Q_EMIT countChanged();
}

// Uses the snapshot, which contains the state from before the first display() of the open panels.
// Otherwise, a change that an open panel has shown would no longer be new.
void PanelController::displayAgain() {
  if (isDisplayed_) {
    store_.useSnapshot(true);
    list_.RefreshInternalSeenState();
    layout_ = list_.GetLayoutForDisplay(optionsOf(filters_));
    // Until the data file of a new user can be read, keep the stored state empty.
    if (!marksAllSeen_) store_.commit();
    store_.useSnapshot(false);
    list_.RefreshInternalSeenState();
  }
  Q_EMIT changed();
  Q_EMIT countChanged();
}

ornwhatsnew::PanelLayout PanelController::ratingLayout() {
  ratingPolicy_.open();
  return list_.PreviewLayout(kRatings);
}

bool PanelController::canRate() const {
  return ornappsupport::analytics::SDMUsageLogger::IsLogging() && ratingPolicy_.allowsRequest() &&
         list_.IsAnythingNew(kRatings);
}

void PanelController::rate(const QString& featureKey, int stars, const QString& comment) {
  if (ratedKeys_.contains(featureKey)) return;
  ratedKeys_.insert(featureKey);
  list_.MarkItemHasBeenRated(featureKey.toStdString());
  store_.commit();
  // Redraw the panels first, because the application may open a modal dialog when it receives the
  // rating. A later redraw would wait until the user closes this dialog.
  Q_EMIT ratingsChanged();
  Q_EMIT rated(featureKey, stars, comment);
  Q_EMIT countChanged();
}

void PanelController::activateLink(const QUrl& url) {
  if (!orncore::string::IsSafeLink(url.toString(QUrl::FullyEncoded).toStdU16String())) return;
  Q_EMIT linkActivated(url);
  QDesktopServices::openUrl(url);
}

void PanelController::setStateError(const QString& reason) {
  if (reason == hostStateError_) return;
  hostStateError_ = reason;
  Q_EMIT errorsChanged();
}

bool PanelController::announcesUpdates() const {
  return Announcement::isWanted(store_);
}

void PanelController::setAnnouncesUpdates(bool announces) {
  Announcement::setWanted(store_, announces);
}

bool PanelController::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::LanguageChange && watched == QCoreApplication::instance()) {
    displayAgain();
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace ornwhatsnewqt
