// Reads and writes debug entries, which are strings that are stored under keys. Developers and
// testers edit them. The host can replace the store that contains them.
//
//   orncore::debug::DebugDatabase::Instance().SetStore(std::make_shared<PreferencesStore>());
//
// Keys and values are UTF-8, but the database passes on any bytes unchanged.
#ifndef ORNCORE_DEBUG_DEBUGDATABASE_H_
#define ORNCORE_DEBUG_DEBUGDATABASE_H_

#include <concepts>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace orncore::debug {

/// The interface that a host implements to store the debug entries. `DebugDatabase::SetStore`
/// registers an implementation. Exceptions that an implementation throws propagate to the caller of
/// the database.
///
/// Threads: the database calls the store on the thread of its own caller and holds no lock. If
/// lists are used on several threads, an implementation must be safe to use from all of them at the
/// same time.
class ORN_EXPORT DebugStore {
 public:
  DebugStore(const DebugStore&) = delete;
  DebugStore& operator=(const DebugStore&) = delete;
  virtual ~DebugStore();

  /// Returns the string stored under `key`. This string may be empty. Returns `std::nullopt` if
  /// there is no entry. The view `key` is valid only during the call.
  [[nodiscard]] virtual std::optional<string::UTF8String> Find(std::string_view key) const = 0;

  /// Stores a copy of `value` under `key`, and replaces any previous value. The views are valid
  /// only during the call.
  virtual void Store(std::string_view key, std::string_view value) = 0;

 protected:
  DebugStore() = default;
};

/// Stores debug entries in memory. The entries are lost when the object is destroyed. `DebugStore`
/// documents the overridden methods.
///
/// Threads: safe to use from any thread.
class ORN_EXPORT MemoryDebugStore final : public DebugStore {
 public:
  /// The entries by key. Keys and values are UTF-8.
  using EntryMap = std::map<string::UTF8String, string::UTF8String, std::less<>>;

  /// Creates a store that contains `entries`.
  explicit MemoryDebugStore(EntryMap entries = {});
  ~MemoryDebugStore() override;

  [[nodiscard]] std::optional<string::UTF8String> Find(std::string_view key) const override;
  void Store(std::string_view key, std::string_view value) override;

 private:
  mutable std::mutex mutex_;
  EntryMap entries_;
};

/// Reads and writes debug entries. Every call uses the store, and nothing is cached. A process has
/// one database, so that all callers share the same entries.
///
/// Threads: safe to use from any thread if the store is safe to use from any thread.
class ORN_EXPORT DebugDatabase {
 public:
  /// Returns the database of the process. Its store is an empty `MemoryDebugStore` at first. Static
  /// constructors and destructors may use the database, because the first call creates it and it is
  /// never destroyed.
  static DebugDatabase& Instance();

  DebugDatabase(const DebugDatabase&) = delete;
  DebugDatabase& operator=(const DebugDatabase&) = delete;

  /// Returns the string stored under `key`, or an empty string if there is no entry.
  [[nodiscard]] string::UTF8String GetEntry(std::string_view key) const;

  /// Returns the string stored under `key`, or `defaultText` if there is no entry. An entry with an
  /// empty string counts as an entry.
  [[nodiscard]] string::UTF8String GetEntry(std::string_view key,
                                            std::string_view defaultText) const;

  /// Stores `value` under `key` and replaces the previous value.
  void SetEntry(std::string_view key, std::string_view value);

  /// Returns the entry as a Boolean value: true for "true", and false for any other string, such as
  /// "True", "1" or an empty string. Returns `defaultValue` if there is no entry.
  template <std::same_as<bool> T>
  [[nodiscard]] T GetEntryAs(std::string_view key, T defaultValue) const {
    return GetEntry(key, defaultValue ? "true" : "false") == "true";
  }

  /// Replaces the store. The database shares ownership of `store`. Null sets a new, empty
  /// `MemoryDebugStore`. Entries are not copied from the previous store. A call on another thread
  /// may still use the previous store.
  ///
  /// If memory runs out, throws `std::bad_alloc` and keeps the previous store.
  void SetStore(std::shared_ptr<DebugStore> store);

 private:
  DebugDatabase();
};

}  // namespace orncore::debug

#endif  // ORNCORE_DEBUG_DEBUGDATABASE_H_
