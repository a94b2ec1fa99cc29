// Decides what a panel shows, and stores what the user has seen and rated.
#ifndef ORNWHATSNEWQT_SRC_PANELCONTROLLER_H_
#define ORNWHATSNEWQT_SRC_PANELCONTROLLER_H_

#include <optional>

#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/PanelLayout.h>
#include <ornwhatsnewqt/Settings.h>

#include "ornwhatsnewqt/src/Announcement.h"
#include "ornwhatsnewqt/src/RatingPolicy.h"
#include "ornwhatsnewqt/src/SettingsStore.h"

namespace ornwhatsnewqt {

/// The filters that determine which changes a panel shows.
struct Filters {
  bool onlyNew = true;       ///< only what was new when the panel was opened
  bool thisPlatform = true;  ///< no changes for other platforms
  bool myVersions = true;    ///< no changes for versions that the user has not used

  friend bool operator==(const Filters&, const Filters&) = default;
};

/// Owns the list of a `WhatsNew`. Uses no widgets.
///
/// Several panels can be open at the same time, and show the same layout. Until all panels are
/// closed, the layout treats a change as new if it was new at the first call to `display`.
/// Therefore, the change remains new when the user selects other filters, another language, or the
/// rating page.
class PanelController : public QObject {
  Q_OBJECT
 public:
  /// Loads the list from `dataFile`. The services that `settings` selects must be installed.
  PanelController(const QString& dataFile, const Settings& settings, QObject* parent = nullptr);
  ~PanelController() override;

  bool isLoaded() const { return fileError_.isEmpty(); }  ///< see `WhatsNew`
  QString errorString() const;                            ///< see `WhatsNew`

  /// Reads the data file again, and displays open panels again; see `WhatsNew::refresh`.
  void reload();

  /// Returns how many items and changes are new with the current filters for platform and version.
  ornwhatsnew::NewCount countNew() const;

  /// Returns the stored filters.
  Filters filters() const { return filters_; }

  /// Replaces and stores the filters. Displays open panels again.
  void setFilters(const Filters& filters);

  /// Records that a panel was opened. Call `closePanel` when it is closed.
  void openPanel();

  /// Creates the layout of the open panels, and records that the user has seen it.
  void display();

  /// Records that a panel was closed. Empties the layout when the last panel is closed.
  void closePanel();

  /// Returns the layout of the open panels. It is empty until `display` is called, and after all
  /// panels have been closed.
  const ornwhatsnew::PanelLayout& layout() const { return layout_; }

  /// Returns the layout of the rating page. Does not change the state, because a user who opens the
  /// rating page has not seen the news. Counts as the one request to rate features that
  /// `RatingPolicy` allows in a session: after the next `closePanel`, `canRate` returns false.
  ornwhatsnew::PanelLayout ratingLayout();

  /// Returns whether the user can rate a feature; see `WhatsNew::rateAction`.
  bool canRate() const;

  /// Records that the user has rated the feature, and emits `rated`. If the feature was already
  /// rated since the last `reload`, does nothing, because several panels can show the same request.
  void rate(const QString& featureKey, int stars, const QString& comment);

  /// If `url` is a safe link, emits `linkActivated` and opens `url` in a browser.
  void activateLink(const QUrl& url);

  /// Returns why the state could not be stored, in the user's language, or an empty string if there
  /// was no error.
  QString stateError() const {
    return hostStateError_.isEmpty() ? store_.error() : hostStateError_;
  }

  /// Sets the reason why `Settings::stateSetter` could not store the state; see
  /// `WhatsNew::setStateError`.
  void setStateError(const QString& reason);

  /// Returns whether the settings of the application let the panel open after updates. If so, the
  /// panel should contain a switch that calls `setAnnouncesUpdates`.
  bool offersAnnouncements() const { return announcement_.has_value(); }

  /// Returns whether the user wants the panel to open after updates.
  bool announcesUpdates() const;

  /// Stores whether the user wants the panel to open after updates.
  void setAnnouncesUpdates(bool announces);

 Q_SIGNALS:
  void changed();  ///< the layout, the ratings or the language have changed: redraw
  /// `errorString()` or `stateError()` has changed. Not emitted if only the language
  /// of the messages has changed.
  void errorsChanged();
  void announcementDue();  ///< the panel should open now
  void countChanged();     ///< `countNew()`, `canRate()` or the language may have changed
  void ratingsChanged();   ///< a feature was rated, so its request is obsolete: redraw
  /// A feature was rated; see `WhatsNew`.
  void rated(const QString& featureKey, int stars, const QString& comment);
  void linkActivated(const QUrl& url);  ///< see `WhatsNew`

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void readDataFile();
  void loadList();
  void markAllSeen();
  void displayAgain();
  ornwhatsnew::DisplayOptions optionsForNews() const;

  QString dataFile_;
  ornwhatsnew::UTF8String dataText_;
  QString fileError_;       ///< why the data file was not read, or an empty string
  QString hostStateError_;  ///< why the host cannot store the state, or an empty string
  SettingsStore store_;
  RatingPolicy ratingPolicy_;
  QSet<QString> ratedKeys_;  ///< the features that were rated since the data file was read
  ornwhatsnew::FeatureListData list_;
  std::optional<Announcement> announcement_;
  Filters filters_;
  ornwhatsnew::PanelLayout layout_;
  bool marksAllSeen_ = false;  ///< whether the next data file counts as seen, for a new user
  int openPanels_ = 0;
  bool isDisplayed_ = false;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_PANELCONTROLLER_H_
