// Stores the state of lists. The state contains the identities of the items and changes that the
// user has seen or rated. It also contains the versions of the application in which the user has
// opened the panel. By default, each user has one JSON file, which all programs that show a list
// share.
#ifndef HOSTS_COMMON_STATESTORE_H_
#define HOSTS_COMMON_STATESTORE_H_

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include <ornwhatsnew/utility/PersistedList.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace hosts::common {

/// Thrown if the store cannot be read or written. `what()` states the problem and, usually, the
/// file and a remedy. The stored values are then unchanged, with two exceptions. If only the sync
/// of the folder fails, the new values are stored, but a power failure can undo them. If another
/// program replaces the store or its lock file during the write, the stored values are unspecified.
class StateStoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The persisted values by key.
using StateValues = std::map<ornwhatsnew::UTF8String, ornwhatsnew::UTF8String, std::less<>>;

/// The keys of the three strings of the state.
using ornwhatsnew::kAllSeenItemsKey;
using ornwhatsnew::kAllVersionsSeenKey;
using ornwhatsnew::kLastVersionSeenKey;

/// The location that selects a store in memory. Its values are lost when the `StateStore` object is
/// destroyed.
inline constexpr std::string_view kMemoryLocation = ":memory:";

/// Returns `named`, the location that the user names on the command line. If `named` is absent,
/// returns the path of `ornwhatsnew/state.json` in the user's state folder. This folder is
/// `$XDG_STATE_HOME`, or `$HOME/.local/state` if `$XDG_STATE_HOME` is not an absolute path. Throws
/// `StateStoreError` if neither `$XDG_STATE_HOME` nor `$HOME` is an absolute path.
std::filesystem::path StateLocation(const std::optional<std::filesystem::path>& named);

/// A state store. An object contains a copy of the stored values as of the last read, and a buffer
/// of values that are not written yet.
///
/// `Set` buffers a value. `Commit` writes all buffered values and replaces the file atomically.
/// Either all three values of a display are stored or none, even if the program is killed or the
/// power fails. When `Commit` returns, the values are on the disk. `Commit` keeps the identities
/// and versions that other programs have added since the last read. For every other key, `Commit`
/// overwrites the stored value.
///
/// The store opens the file for each read and each write, and closes it afterwards. The first
/// `Commit` creates the file with the mode 0600, and missing folders with the mode 0700. A file
/// that exists keeps its mode. If the location is a symbolic link, the store is the file to which
/// the link points. A write creates two more files in the folder of this file. The lock file has
/// the suffix ".lock" and is not deleted. The temporary file has the suffix ".tmp". A read creates
/// nothing.
///
/// Not thread-safe. Any number of programs can use one file at the same time. A read never waits
/// for other programs. A write waits a limited time for other writers.
class StateStore {
 public:
  /// The default for the maximum time that a write waits for the writes of other programs.
  static constexpr std::chrono::milliseconds kDefaultPatience{5000};

  /// Reads the values at `location`, which is a file or `kMemoryLocation`. If the file does not
  /// exist, the store is empty. Throws `StateStoreError` if `location` is empty or cannot be
  /// resolved to an absolute path. Also throws it if the file cannot be read, is not a state store,
  /// or has a newer format than this program supports. `patience` is the maximum time that each
  /// later write waits for other programs.
  explicit StateStore(const std::filesystem::path& location,
                      std::chrono::milliseconds patience = kDefaultPatience);

  /// A store is not copyable, because the callbacks of a list refer to the store.
  StateStore(const StateStore&) = delete;
  StateStore& operator=(const StateStore&) = delete;

  /// Returns the absolute path of the file, or `kMemoryLocation`.
  const std::filesystem::path& Location() const { return location_; }

  /// Returns the buffered value of `key`. If there is none, returns the stored value. If there is
  /// no stored value either, returns an empty string.
  ornwhatsnew::UTF8String Get(std::string_view key) const;

  /// Buffers `value` for the next `Commit`. Replaces an earlier buffered value of `key`.
  void Set(std::string_view key, std::string_view value);

  /// Returns all values. If a key has a buffered value, returns that instead of the stored one.
  StateValues Values() const;

  /// Does nothing if there are no buffered values. Otherwise writes the buffered values and reads
  /// all stored values again. Writes nothing if no stored value would change. Throws
  /// `StateStoreError` if the file cannot be read or written, for example because a buffered key or
  /// value is not well-formed UTF-8. The buffered values are then unchanged.
  void Commit();

  /// Reads the stored values again. Does not change the buffered values. Throws `StateStoreError`
  /// on failure.
  void Refresh();

  /// Deletes all stored values with one write, and discards the buffered values. Does not create
  /// the file. Throws `StateStoreError` on failure.
  void Reset();

  /// `Getter` and `Setter` return the callbacks of a list. Both refer to this store, which must
  /// outlive the list. The setter buffers each value, as `Set` does. The getter replaces control
  /// characters in the value of `kLastVersionSeenKey`; see `WithoutControlCharacters`.
  ornwhatsnew::StateGetter Getter() const;
  ornwhatsnew::StateSetter Setter();

 private:
  bool IsInMemory() const { return location_ == kMemoryLocation; }
  void MergePendingInto(StateValues& values) const;

  std::filesystem::path location_;
  std::chrono::milliseconds patience_;
  StateValues kept_;
  StateValues pending_;
};

}  // namespace hosts::common

#endif  // HOSTS_COMMON_STATESTORE_H_
