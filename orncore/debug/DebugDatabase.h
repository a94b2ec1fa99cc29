// Debug settings: strings by key that developers and testers edit, in a store that the host can
// replace.
#ifndef ORNCORE_DEBUG_DEBUGDATABASE_H_
#define ORNCORE_DEBUG_DEBUGDATABASE_H_

#include <concepts>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace orncore::debug {

/// The interface that a host implements to keep the debug settings; see `DebugDatabase::SetStore`.
/// The database passes on what it throws.
///
/// Threads: called on the thread that calls the database, one at a time.
class ORN_EXPORT DebugStore {
 public:
  DebugStore(const DebugStore&) = delete;
  DebugStore& operator=(const DebugStore&) = delete;
  virtual ~DebugStore();

  /// Returns the string stored under `key`; nothing if there is none. An empty string is an entry.
  [[nodiscard]] virtual std::optional<string::UTF8String> Find(std::string_view key) const = 0;

  /// Stores `value` under `key`. Replaces the previous value.
  virtual void Store(std::string_view key, std::string_view value) = 0;

 protected:
  DebugStore() = default;
};

/// A store in memory.
///
/// Threads: one thread at a time.
class ORN_EXPORT MemoryDebugStore final : public DebugStore {
 public:
  /// Entries by key, both UTF-8.
  using EntryMap = std::map<string::UTF8String, string::UTF8String, std::less<>>;

  /// Creates a store with `entries`.
  explicit MemoryDebugStore(EntryMap entries = {});
  ~MemoryDebugStore() override;

  [[nodiscard]] std::optional<string::UTF8String> Find(std::string_view key) const override;
  void Store(std::string_view key, std::string_view value) override;

  /// Returns all entries. The reference is valid as long as the store.
  [[nodiscard]] const EntryMap& Entries() const noexcept;

 private:
  EntryMap entries_;
};

/// The debug settings of the process. Every call queries the store; nothing is cached. Not
/// copyable, so that all users share one.
///
/// Threads: one thread at a time.
class ORN_EXPORT DebugDatabase {
 public:
  /// Returns the database of the process. It is never destroyed, so static constructors and
  /// destructors may use it.
  static DebugDatabase& Instance();

  /// Creates a separate database with an empty `MemoryDebugStore`.
  DebugDatabase();
  DebugDatabase(const DebugDatabase&) = delete;
  DebugDatabase& operator=(const DebugDatabase&) = delete;
  ~DebugDatabase();

  /// Returns the string stored under `key`; empty if there is none.
  [[nodiscard]] string::UTF8String GetEntry(std::string_view key) const;

  /// Returns the string stored under `key`, also if it is empty; `defaultText` if there is none.
  [[nodiscard]] string::UTF8String GetEntry(std::string_view key,
                                            std::string_view defaultText) const;

  /// Stores `value` under `key`.
  void SetEntry(std::string_view key, std::string_view value);

  /// Returns the entry as a switch: true for "true", false for any other string ("True", "1" and
  /// the empty string included), `defaultValue` if there is no entry.
  template <std::same_as<bool> T>
  [[nodiscard]] T GetEntryAs(std::string_view key, T defaultValue) const {
    return GetEntry(key, defaultValue ? "true" : "false") == "true";
  }

  /// Replaces the store; the database shares ownership of `store`. Null sets an empty
  /// `MemoryDebugStore`. Entries are not copied from the previous store.
  void SetStore(std::shared_ptr<DebugStore> store);

 private:
  std::shared_ptr<DebugStore> store_;  // never null
};

}  // namespace orncore::debug

#endif  // ORNCORE_DEBUG_DEBUGDATABASE_H_
