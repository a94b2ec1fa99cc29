// The file of a `StateStore`: an SQLite database with one table of keys and values, identified by
// its application ID. All other files are rejected and never changed.
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

/// The application ID in the header of a state database ("ORNW" in ASCII), and the version of its
/// layout.
inline constexpr int kStateApplicationId = 0x4F524E57;
inline constexpr int kStateLayoutVersion = 1;

/// An open state database. Every operation throws `StateStoreError` on failure and then leaves the
/// stored values unchanged. Not thread-safe.
class StateDatabase {
 public:
  /// Opens the file. Returns `std::nullopt` if it does not exist. An empty file is a database
  /// without values. Each operation waits at most `patience` until other programs release the file.
  static std::optional<StateDatabase> OpenExisting(const std::filesystem::path& file,
                                                   std::chrono::milliseconds patience);

  /// Opens the file. Creates the file and its folder if they do not exist.
  static StateDatabase OpenOrMake(const std::filesystem::path& file,
                                  std::chrono::milliseconds patience);

  StateDatabase(StateDatabase&&) noexcept;
  StateDatabase& operator=(StateDatabase&&) noexcept;
  ~StateDatabase();

  /// Returns all values, read in one transaction.
  StateValues Read();

  /// Reads the values, applies `change` to them and writes the differences. One transaction covers
  /// all three steps and excludes other writers. Returns the new values.
  StateValues Change(const std::function<void(StateValues&)>& change);

 private:
  StateDatabase(std::filesystem::path file, std::chrono::milliseconds patience, int openFlags);

  std::filesystem::path file_;
  std::chrono::milliseconds patience_;
  std::unique_ptr<SQLite::Database> database_;
};

}  // namespace hosts::common

#endif  // HOSTS_COMMON_STATEDATABASE_H_
