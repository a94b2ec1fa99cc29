// Decides when the panel opens without an action of the user.
#ifndef ORNWHATSNEWQT_SRC_ANNOUNCEMENT_H_
#define ORNWHATSNEWQT_SRC_ANNOUNCEMENT_H_

#include <functional>

#include <QtCore/QObject>
#include <QtCore/QTimer>

namespace ornwhatsnewqt {

class SettingsStore;

/// Announces an update once: at the first start of a new version, if something is new. If several
/// instances of the application start at the same time, only one of them announces the update.
///
/// There is no announcement at the first start of the application, or if the user has already
/// opened the panel in this version. Users can also switch announcements off. The announcement is
/// deferred while a modal window is open.
class Announcement : public QObject {
  Q_OBJECT
 public:
  /// Checks whether this is the first start after an update. If it is, starts a timer. When the
  /// timer expires, the object emits `due` if the user wants announcements and `isAnythingNew`
  /// returns true. At the first start of the application, the constructor only stores the version.
  /// Construct this object before the state of a new user is stored, because an empty state
  /// identifies a new user. `store` must outlive this object.
  Announcement(SettingsStore& store, std::function<bool()> isAnythingNew);
  ~Announcement() override;

  /// Returns whether the user wants announcements. The default is true.
  static bool isWanted(const SettingsStore& store);

  /// Stores whether the user wants announcements.
  static void setWanted(SettingsStore& store, bool isWanted);

 Q_SIGNALS:
  /// The panel should open now.
  void due();

 private:
  void announceUnlessBlocked();

  SettingsStore& store_;
  std::function<bool()> isAnythingNew_;
  QTimer timer_;
};

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_ANNOUNCEMENT_H_
