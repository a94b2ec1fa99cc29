// Where a host keeps what the library remembers through its two callbacks: which features and
// changes were seen or rated, and in which versions the list was opened. One small SQLite file per
// user, shared by every program that shows the list.
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

/// The store cannot be read or written. The message names the file, says what is wrong with it and
/// what to do. A file that is refused is left byte for byte as it was.
class StateStoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Persisted values by key.
using StateValues = std::map<ornwhatsnew::UTF8String, ornwhatsnew::UTF8String, std::less<>>;

/// The keys under which the library keeps its three values.
using ornwhatsnew::kAllSeenItemsKey;
using ornwhatsnew::kAllVersionsSeenKey;
using ornwhatsnew::kLastVersionSeenKey;

/// The location of a store that lives and ends with the program.
inline constexpr std::string_view kMemoryLocation = ":memory:";

/// `ornwhatsnew/state.db` in the user's state folder: `$XDG_STATE_HOME` when that is an absolute
/// path, else `~/.local/state`. Throws `StateStoreError` when neither that nor `$HOME` is one.
std::filesystem::path DefaultStateLocation();

/// The kept values, as of the last reading, and the changes that are still to be written.
///
/// What is `Set` is only buffered; `Commit` writes all of it in one transaction, or nothing. So one
/// display pass, which sets three values, is remembered whole or not at all, and a program killed
/// at any moment leaves the old state or the new one. Lists of identities and versions are merged
/// with what other programs have written in the meantime; of any other value the last writer's
/// stands.
///
/// The file is opened for each reading and each writing and is not held in between. It is made,
/// with its folder, by the first `Commit`; reading makes nothing.
///
/// One thread at a time. Any number of programs may use one file; each waits a bounded time for
/// the others.
class StateStore {
 public:
  /// How long a reading or writing waits for another program to finish.
  static constexpr std::chrono::milliseconds kDefaultPatience{5000};

  /// Reads what is kept at `location`: a file, which need not exist yet, or `kMemoryLocation`.
  /// Throws `StateStoreError`.
  explicit StateStore(const std::filesystem::path& location,
                      std::chrono::milliseconds patience = kDefaultPatience);

  /// The callbacks of a list refer to the store, so it stays where it is.
  StateStore(const StateStore&) = delete;
  StateStore& operator=(const StateStore&) = delete;

  /// The absolute path of the file, or `kMemoryLocation`.
  const std::filesystem::path& Location() const { return location_; }

  /// What was last set under the key, else what is kept there, else an empty text.
  ornwhatsnew::UTF8String Get(std::string_view key) const;

  /// Buffers a value for the next `Commit`.
  void Set(std::string_view key, std::string_view value);

  /// Everything that is kept, with the changes that are still to be written.
  StateValues Values() const;

  /// Writes the buffered changes and reads back what is kept then. Writes nothing when that makes
  /// no difference. Throws `StateStoreError`; the changes then stay buffered and the file stays
  /// as it was.
  void Commit();

  /// Reads again what is kept; buffered changes stay. Throws `StateStoreError`.
  void Refresh();

  /// Removes everything that is kept, in one transaction, and forgets the buffered changes. Does
  /// not make the file. Throws `StateStoreError`.
  void Reset();

  /// Callbacks for a list. They refer to this store, which must outlive the list.
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
