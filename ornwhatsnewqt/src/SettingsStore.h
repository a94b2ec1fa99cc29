// Stores the values of the companion in `QSettings`, and the state of a list in `QSettings` or
// through the callbacks of the application.
#ifndef ORNWHATSNEWQT_SRC_SETTINGSSTORE_H_
#define ORNWHATSNEWQT_SRC_SETTINGSSTORE_H_

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string_view>

#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QSettings>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <ornwhatsnew/utility/SharedTypes.h>
#include <ornwhatsnewqt/Settings.h>

namespace ornwhatsnewqt {

/// Reads and writes the three strings of the state, and values of the companion itself.
///
/// Several programs can use one `QSettings` at the same time. Each write acquires a lock file,
/// reads the stored values, merges the strings of the state with them, and writes the result. If
/// the disk is full before the write, the file is unchanged. After each failure, the object keeps
/// the strings of the state, and the next `commit` writes them.
class SettingsStore : public QObject {
  Q_OBJECT
 public:
  /// The default for the maximum time that a write waits for the writes of other programs. The
  /// application does not respond to user input during this time.
  static constexpr std::chrono::milliseconds kDefaultPatience{2000};

  /// Uses the callbacks and the file in `settings`; see `Settings::settingsFile`. Reads nothing.
  explicit SettingsStore(const Settings& settings,
                         std::chrono::milliseconds patience = kDefaultPatience);
  ~SettingsStore() override;

  /// Returns a string of the state: the buffered string or, if there is none, the stored string.
  /// After `useSnapshot(true)`, returns the copy of the string instead. Returns an empty string if
  /// the key has no value.
  ornwhatsnew::UTF8String state(const ornwhatsnew::UTF8String& key);

  /// Returns whether all three strings of the state are empty, which means that the user is new.
  bool isStateEmpty();

  /// Copies the strings of the state. From `useSnapshot(true)` to `useSnapshot(false)`, `state`
  /// returns these copies.
  void takeSnapshot();
  void useSnapshot(bool isUsed) { usesSnapshot_ = isUsed; }

  /// Buffers a string of the state for the next `commit`. Keeps the elements of a persisted list
  /// that the previous `commit` could not write.
  void setState(const ornwhatsnew::UTF8String& key, const ornwhatsnew::UTF8String& value);

  /// Writes the buffered strings of the state, merged with what other programs have stored; see
  /// `ornwhatsnew::MergePersistedValue`.
  void commit();

  /// Returns a value of the companion, or an invalid `QVariant` if there is none.
  QVariant value(const QString& key) const;

  /// Stores values of the companion. Returns whether this call changed a stored value. If several
  /// programs store the same values, only one of their calls returns true.
  bool setValues(const QVariantMap& values);
  bool setValue(const QString& key, const QVariant& value) { return setValues({{key, value}}); }

  /// Returns why the last write failed, in the user's language, or an empty string if it
  /// succeeded.
  QString error() const;

 Q_SIGNALS:
  /// `error()` has changed.
  void errorChanged();

 private:
  using StateValues = std::map<ornwhatsnew::UTF8String, ornwhatsnew::UTF8String, std::less<>>;

  std::unique_ptr<QSettings> open() const;
  bool write(const std::function<QVariantMap(const QSettings&)>& changesTo);
  void setError(std::string_view keyText, const QString& file);

  QString file_;
  std::chrono::milliseconds patience_;
  ornwhatsnew::StateGetter getter_;
  ornwhatsnew::StateSetter setter_;
  StateValues snapshot_;
  bool usesSnapshot_ = false;
  StateValues read_;               ///< the strings as they were read last
  StateValues unsaved_;            ///< the strings that are not written yet
  std::string_view errorKeyText_;  ///< the message for the last write's error, or empty
  QString errorFile_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_SETTINGSSTORE_H_
