// Declares `WhatsNew`, which adds a What's New panel to an application with Qt Widgets.
//
//     ornwhatsnewqt::Settings settings;
//     settings.buildNumber = u"118"_qs;
//     settings.features = MakeFeatureService();
//     auto* whatsNew = new ornwhatsnewqt::WhatsNew(u":/whatsnew.csv"_qs, settings, &mainWindow);
//     helpMenu->addAction(whatsNew->showAction());
//     helpMenu->addAction(whatsNew->rateAction());
#ifndef ORNWHATSNEWQT_WHATSNEW_H_
#define ORNWHATSNEWQT_WHATSNEW_H_

#include <memory>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <ornwhatsnewqt/Export.h>
#include <ornwhatsnewqt/Settings.h>

QT_BEGIN_NAMESPACE
class QAction;
QT_END_NAMESPACE

namespace ornwhatsnewqt {

class PanelController;

/// Loads a list, provides two actions that open its panel, and shows the panel in a window.
///
/// Requires a `QApplication`. Use this class only on the thread of the `QApplication`. Services and
/// callbacks in the settings must not throw exceptions. If the parent is a widget, the panel's
/// window belongs to that widget's window.
class ORNWHATSNEWQT_EXPORT WhatsNew : public QObject {
  Q_OBJECT
 public:
  /// Installs the services that `settings` selects and loads the list from `dataFile`, which is the
  /// path of a file or of a Qt resource. If the file cannot be read, the list has no changes; see
  /// `isLoaded`. Prints a warning if `settings.applicationVersion` is an empty string.
  explicit WhatsNew(const QString& dataFile, const Settings& settings = Settings(),
                    QObject* parent = nullptr);
  ~WhatsNew() override;

  /// Returns the action that opens the panel. Its text contains the number of new changes. If no
  /// change is new, but a feature or section is, the text contains a bullet. This object owns the
  /// action.
  QAction* showAction() const;

  /// Returns the action that opens the rating page of the panel. The action is enabled if a feature
  /// needs a rating, the user allows usage logging, and the first start was at least 14 days ago.
  /// After the user has opened the rating page and closed the panel, the action is disabled until
  /// the application is started again. This object owns the action.
  QAction* rateAction() const;

  /// Returns whether the data file was read.
  bool isLoaded() const;

  /// Returns why the data file was not read, or an empty string if it was read.
  QString errorString() const;

 public Q_SLOTS:
  /// Reads the data file and the beta features again, and updates the actions and open panels. If
  /// the data file cannot be read, keeps the changes that were read before.
  void refresh();

  /// Shows in all panels that `Settings::stateSetter` could not store the state. `reason` is the
  /// cause, preferably in the user's language. If `reason` is empty, hides the message.
  void setStateError(const QString& reason);

 Q_SIGNALS:
  /// The user has rated a feature. `featureKey` is the epic key of the feature, `stars` is between
  /// 1 and 5, and `comment` can be empty. The application should send the rating to its developers.
  /// Emitted at most once for each feature until `refresh` is called.
  void rated(const QString& featureKey, int stars, const QString& comment);

  /// The window with the panel was opened. Not emitted for a `PanelWidget` that the application
  /// creates.
  void opened();

  /// The user has activated a link. The companion opens the link in a browser.
  void linkActivated(const QUrl& url);

 private:
  friend class PanelWidget;
  struct Impl;
  PanelController* controller() const;

  const std::unique_ptr<Impl> impl_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_WHATSNEW_H_
