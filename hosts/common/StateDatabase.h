// Reads and writes the file of a `StateStore`. The file is an SQLite database with one table of
// keys and values. The application ID in its header identifies it as a state database. Other files
// are rejected and never changed.
#ifndef HOSTS_COMMON_STATEDATABASE_H_
#define HOSTS_COMMON_STATEDATABASE_H_

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "hosts/common/StateStore.h"

namespace SQLite {  // NOLINT(readability-identifier-naming): the namespace of SQLiteCpp
class Database;
}  // namespace SQLite

namespace hosts::common {

/// The application ID in the header of a state database, "ORNW" in ASCII.
inline constexpr int kStateApplicationId = 0x4F524E57;
/// The version of the table layout that this program writes, and the newest one that it reads.
inline constexpr int kStateLayoutVersion = 1;

/// An open state database. Every operation throws `StateStoreError` on failure and then leaves the
/// stored values unchanged. Not thread-safe.
class StateDatabase {
 public:
  /// Opens `file`. Returns `std::nullopt` if it does not exist. An empty file is a database without
  /// values. Each operation waits at most `patience` for the locks of other programs.
  static std::optional<StateDatabase> OpenExisting(const std::filesystem::path& file,
                                                   std::chrono::milliseconds patience);

  /// Opens `file`. Creates the file and its folder if they do not exist.
  static StateDatabase OpenOrMake(const std::filesystem::path& file,
                                  std::chrono::milliseconds patience);

  StateDatabase(StateDatabase&&) noexcept;
  StateDatabase& operator=(StateDatabase&&) noexcept;
  ~StateDatabase();

  /// Returns all values, read in one transaction.
  StateValues Read();

  /// Reads all values, calls `change` to modify them, and writes those that differ. One transaction
  /// covers all three steps and excludes other writers. Returns the new values.
  StateValues Change(const std::function<void(StateValues&)>& change);

 private:
  StateDatabase(std::filesystem::path file, std::chrono::milliseconds patience, int openFlags);

  std::filesystem::path file_;
  std::chrono::milliseconds patience_;
  std::unique_ptr<SQLite::Database> database_;
};

}  // namespace hosts::common

#endif  // HOSTS_COMMON_STATEDATABASE_H_
