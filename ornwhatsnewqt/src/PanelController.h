// Decides what a panel shows, and stores what the user has seen and rated.
#ifndef ORNWHATSNEWQT_SRC_PANELCONTROLLER_H_
#define ORNWHATSNEWQT_SRC_PANELCONTROLLER_H_

#include <memory>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/PanelLayout.h>
#include <ornwhatsnewqt/Settings.h>

#include "ornwhatsnewqt/src/RatingPolicy.h"
#include "ornwhatsnewqt/src/SettingsStore.h"

namespace ornwhatsnewqt {

/// What a panel shows.
struct Filters {
  bool onlyNew = true;       ///< only what was new when the panel was opened
  bool thisPlatform = true;  ///< no changes for other platforms
  bool myVersions = true;    ///< no changes for versions that the user has not used

  friend bool operator==(const Filters&, const Filters&) = default;
};

/// Owns the list of a `WhatsNew`. Contains no widgets, so that tests need none.
///
/// From `display` to `endDisplay`, the panel is open. While it is open, new means new at the call
/// of `display`, so that a change of the filters or the language does not hide what was just shown.
class PanelController : public QObject {
  Q_OBJECT
 public:
  /// Installs the services that `settings` names, and loads the list from `dataFile`.
  PanelController(const QString& dataFile, const Settings& settings, QObject* parent = nullptr);
  ~PanelController() override;

  bool isLoaded() const { return errorString_.isEmpty(); }  ///< see `WhatsNew`
  QString errorString() const { return errorString_; }      ///< see `WhatsNew`

  /// Reads the data file again; see `WhatsNew::refresh`.
  void reload();

  /// Returns what is new with the current filters for platform and version.
  ornwhatsnew::NewCount countNew() const;

  /// Returns the filters, which are stored.
  Filters filters() const { return filters_; }

  /// Replaces and stores the filters. Displays the open panel again.
  void setFilters(const Filters& filters);

  /// Displays the news: creates the layout, and stores that the user has seen it. Opens the panel.
  void display();

  /// Closes the panel. The layout is released.
  void endDisplay();

  /// Returns the layout of the last display. It is empty if the panel is closed.
  const ornwhatsnew::PanelLayout& layout() const { return layout_; }

  /// Returns the layout of the rating page. Stores nothing, because a user who opens the rating
  /// page has not seen the news. Uses up the request of this session: after the next `endDisplay`,
  /// `canRate` returns false.
  ornwhatsnew::PanelLayout ratingLayout();

  /// Returns whether the user can rate a feature; see `WhatsNew::rateAction`.
  bool canRate() const;

  /// Reports a rating, and stores that the user has rated the feature.
  void rate(const QString& featureKey, int stars, const QString& comment);

  /// Returns the text for a key text of the companion, such as
  /// "$$$/ornwhatsnewqt/Panel/Search=Search".
  QString translate(const char* keyText) const;

  /// Opens `url` in a browser if it is a safe link.
  void activateLink(const QUrl& url);

  /// Returns why the state cannot be stored, for users, or an empty string.
  QString stateError() const { return store_.error(); }

 Q_SIGNALS:
  void changed();            ///< the layout, the ratings or the language have changed: draw again
  void stateErrorChanged();  ///< `stateError()` has changed
  void countChanged();       ///< `countNew()`, `canRate()` or the language may have changed
  void rated(const QString& featureKey, int stars, const QString& comment);  ///< see `WhatsNew`
  void linkActivated(const QUrl& url);                                       ///< see `WhatsNew`

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void readDataFile();
  void createList();
  void displayAgain();
  ornwhatsnew::DisplayOptions options() const;

  QString dataFile_;
  ornwhatsnew::UTF8String dataText_;
  QString errorString_;
  SettingsStore store_;
  RatingPolicy ratingPolicy_;
  std::unique_ptr<ornwhatsnew::FeatureListData> list_;
  Filters filters_;
  ornwhatsnew::PanelLayout layout_;
  bool isOpen_ = false;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_PANELCONTROLLER_H_
