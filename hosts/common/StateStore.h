// Stores the state of lists for the library's two callbacks: which features and changes were seen
// or rated, and in which versions the list was opened. Each user has one SQLite file, which all
// programs that show a list share.
#ifndef HOSTS_COMMON_STATESTORE_H_
#define HOSTS_COMMON_STATESTORE_H_

#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

#include <ornwhatsnew/utility/PersistedList.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace hosts::common {

/// Thrown if the store cannot be read or written. The message contains the file, the problem and
/// what the user can do. A rejected file is not changed.
class StateStoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Persisted values by key.
using StateValues = std::map<ornwhatsnew::UTF8String, ornwhatsnew::UTF8String, std::less<>>;

/// The keys of the three strings of the state.
using ornwhatsnew::kAllSeenItemsKey;
using ornwhatsnew::kAllVersionsSeenKey;
using ornwhatsnew::kLastVersionSeenKey;

/// The location of a store in memory, which is lost when the program ends.
inline constexpr std::string_view kMemoryLocation = ":memory:";

/// Returns the path of `ornwhatsnew/state.db` in the user's state folder. That folder is
/// `$XDG_STATE_HOME`, or `$HOME/.local/state` if that variable does not contain an absolute path.
/// Throws `StateStoreError` if `$HOME` does not contain one either.
std::filesystem::path DefaultStateLocation();

/// The stored values as of the last read, and the values that are not written yet.
///
/// `Set` buffers a value. `Commit` writes all buffered values in one transaction. A display sets
/// three values, so either all three are stored or none, even if the program is killed. `Commit`
/// merges lists of identities and versions with the values that other programs have written since
/// the last read. For every other key, the last writer wins.
///
/// The store opens the file for each read and each write, and closes it afterwards. The first
/// `Commit` creates the file and its folder; a read creates nothing.
///
/// Not thread-safe. Any number of programs can use one file; each waits a limited time for the
/// others.
class StateStore {
 public:
  /// The time that a read or a write waits until other programs release the file.
  static constexpr std::chrono::milliseconds kDefaultPatience{5000};

  /// Reads the values at `location`, which is a file or `kMemoryLocation`. The file need not exist
  /// yet. Throws `StateStoreError`.
  explicit StateStore(const std::filesystem::path& location,
                      std::chrono::milliseconds patience = kDefaultPatience);

  /// A store is not copyable, because the callbacks of a list refer to the store.
  StateStore(const StateStore&) = delete;
  StateStore& operator=(const StateStore&) = delete;

  /// Returns the absolute path of the file, or `kMemoryLocation`.
  const std::filesystem::path& Location() const { return location_; }

  /// Returns the buffered value of the key. If there is none, returns the stored value, or an empty
  /// string.
  ornwhatsnew::UTF8String Get(std::string_view key) const;

  /// Buffers a value for the next `Commit`.
  void Set(std::string_view key, std::string_view value);

  /// Returns all values. A buffered value replaces the stored one.
  StateValues Values() const;

  /// Writes the buffered values and reads the result back. Writes nothing if no stored value would
  /// change. Throws `StateStoreError`; the values then stay buffered and the stored values do not
  /// change.
  void Commit();

  /// Reads the stored values again. Keeps the buffered values. Throws `StateStoreError`.
  void Refresh();

  /// Deletes all stored values in one transaction and discards the buffered values. Does not create
  /// the file. Throws `StateStoreError`.
  void Reset();

  /// Return the callbacks of a list. They refer to this store, which must outlive the list.
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
