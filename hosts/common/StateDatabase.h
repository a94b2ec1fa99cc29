// The file behind a `StateStore`: an SQLite database with one table of keys and values, recognised
// by its application id. Nothing that is not such a file is ever written to.
#ifndef HOSTS_COMMON_STATEDATABASE_H_
#define HOSTS_COMMON_STATEDATABASE_H_

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "hosts/common/StateStore.h"

namespace SQLite {  // NOLINT(readability-identifier-naming): the engine's own name
class Database;
}  // namespace SQLite

namespace hosts::common {

/// The mark in the file's header that says whose it is ("ORNW"), and the layout's version.
inline constexpr int kStateApplicationId = 0x4F524E57;
inline constexpr int kStateLayoutVersion = 1;

/// An open file. Every operation throws `StateStoreError` on failure and then leaves the file as it
/// was. One thread at a time.
class StateDatabase {
 public:
  /// Opens the file, or answers nothing when there is none. An empty file is a store that holds
  /// nothing.
  static std::optional<StateDatabase> OpenExisting(const std::filesystem::path& file,
                                                   std::chrono::milliseconds patience);

  /// Opens the file, and makes it and its folder when they are missing.
  static StateDatabase OpenOrMake(const std::filesystem::path& file,
                                  std::chrono::milliseconds patience);

  StateDatabase(StateDatabase&&) noexcept;
  StateDatabase& operator=(StateDatabase&&) noexcept;
  ~StateDatabase();

  /// All values, as of one moment.
  StateValues Read();

  /// Lets `change` alter the values and writes the difference, alone with the file from reading to
  /// writing. Returns the values as they are kept then.
  StateValues Change(const std::function<void(StateValues&)>& change);

 private:
  StateDatabase(std::filesystem::path file, std::chrono::milliseconds patience, int openFlags);

  std::filesystem::path file_;
  std::chrono::milliseconds patience_;
  std::unique_ptr<SQLite::Database> database_;
};

}  // namespace hosts::common

#endif  // HOSTS_COMMON_STATEDATABASE_H_
