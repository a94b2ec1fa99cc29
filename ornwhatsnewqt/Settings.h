// Defines the settings of a `WhatsNew`. The settings select the services to install, the location
// of the state, and the behaviour at the first start of the application and after an update.
#ifndef ORNWHATSNEWQT_SETTINGS_H_
#define ORNWHATSNEWQT_SETTINGS_H_

#include <functional>
#include <memory>
#include <optional>

#include <QtCore/QString>

#include <ornwhatsnew/utility/SharedTypes.h>
#include <ornwhatsnewqt/Export.h>

namespace ornappsupport::feature {
class FeatureService;
}  // namespace ornappsupport::feature

namespace ornwhatsnewqt {

/// What a `WhatsNew` does if the stored state is empty.
enum class FirstStart {
  /// Everything counts as seen, because the user is new. Only later changes are new.
  MarkAllSeen,
  /// Everything is new. Choose this value for the first release with a What's New panel if most
  /// users update from an earlier release. The state of these users is also empty.
  ShowAll,
};

/// The settings of a `WhatsNew`. The defaults suit an application that has set its name,
/// organization and version in `QCoreApplication`.
///
/// The members from `applicationVersion` to `usesTranslators` select services of the library.
/// Services belong to the process and not to a `WhatsNew`. The constructor of a `WhatsNew` installs
/// the selected services and leaves the others unchanged. `withoutServices` returns settings that
/// select no service.
struct ORNWHATSNEWQT_EXPORT Settings {
  /// Creates settings with the version of `QCoreApplication` and the platform of the build.
  Settings();

  /// Returns settings that select no service, for a second `WhatsNew` in the process.
  static Settings withoutServices();

  /// The version of the application, such as "4.3". Without a value, the client information is not
  /// installed, and `buildNumber` and `platform` have no effect.
  std::optional<QString> applicationVersion;
  /// The build number of the application, such as "118".
  QString buildNumber;
  /// The platform, as in data files: "Mac" or "Win". On other systems, the default is "Linux", so
  /// that the platform filter hides changes for Mac and Win.
  QString platform;
  /// The beta features and the internal-features permission. If null, no feature service is
  /// installed.
  std::shared_ptr<const ornappsupport::feature::FeatureService> features;
  /// Returns whether the user allows usage logging. If it returns false, the user cannot rate
  /// features. The default function returns false. If the function is empty, it is not installed.
  std::function<bool()> usageLogging;
  /// Whether the library translates its strings with the translators of the application. The
  /// context of the translations is "ornwhatsnew". If false, no dictionary is installed.
  bool usesTranslators = true;

  /// The path of the INI file that contains the state and the other values of the companion. If the
  /// path is empty, these values are in the `QSettings` of the application or, on Windows, in the
  /// application's INI file in `%APPDATA%`.
  QString settingsFile;
  /// Callbacks that replace `QSettings` for reading and writing the state. If one of them is empty,
  /// neither is used. If `stateSetter` cannot store the state, call `WhatsNew::setStateError`. The
  /// filters and the other values of the companion remain in `QSettings`.
  ornwhatsnew::StateGetter stateGetter;
  ornwhatsnew::StateSetter stateSetter;  ///< see `stateGetter`

  /// What happens if the stored state is empty.
  FirstStart firstStart = FirstStart::MarkAllSeen;
  /// Whether the panel opens by itself once after an update, if something is new. It does not open
  /// by itself at the first start of the application. If a modal dialog is open, the panel opens
  /// after the dialog is closed. Users can switch this off in the panel.
  bool announcesUpdates = false;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SETTINGS_H_
