// Debug settings: a table of texts by key that developers and testers edit, over a store that the
// host can replace by its own.
#ifndef ORNCORE_DEBUG_DEBUGDATABASE_H_
#define ORNCORE_DEBUG_DEBUGDATABASE_H_

#include <concepts>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Types.h>

namespace orncore::debug {

/// Where the debug settings are kept. A host derives its own and gives it to
/// `DebugDatabase::SetStore`. What it throws reaches whoever asked the database. Called on one
/// thread at a time, that of the database's caller.
class ORN_EXPORT DebugStore {
 public:
  DebugStore(const DebugStore&) = delete;
  DebugStore& operator=(const DebugStore&) = delete;
  virtual ~DebugStore();

  /// The text stored under `key`, or nothing when there is none. An empty text is an entry.
  [[nodiscard]] virtual std::optional<string::UTF8String> Find(std::string_view key) const = 0;

  /// Stores `value` under `key`, in place of what was there.
  virtual void Store(std::string_view key, std::string_view value) = 0;

 protected:
  DebugStore() = default;
};

/// A store that lives as long as the object. One thread at a time.
class ORN_EXPORT MemoryDebugStore final : public DebugStore {
 public:
  /// Entries by key, both UTF-8.
  using EntryMap = std::map<string::UTF8String, string::UTF8String, std::less<>>;

  /// Starts with these entries, by default none.
  explicit MemoryDebugStore(EntryMap entries = {});
  ~MemoryDebugStore() override;

  [[nodiscard]] std::optional<string::UTF8String> Find(std::string_view key) const override;
  void Store(std::string_view key, std::string_view value) override;

  /// Everything stored. The reference lives as long as the store.
  [[nodiscard]] const EntryMap& Entries() const noexcept;

 private:
  EntryMap entries_;
};

/// The process's debug settings. Nothing is cached: each call asks the store. One thread at a time.
/// Neither copied nor moved, so that everybody speaks to the same one.
class ORN_EXPORT DebugDatabase {
 public:
  /// The one that the system uses. It exists from the first call to the end of the process, so
  /// static constructors and destructors may use it.
  static DebugDatabase& Instance();

  /// A database of one's own, over a fresh `MemoryDebugStore`.
  DebugDatabase();
  DebugDatabase(const DebugDatabase&) = delete;
  DebugDatabase& operator=(const DebugDatabase&) = delete;
  ~DebugDatabase();

  /// The text stored under `key`, empty when there is none.
  [[nodiscard]] string::UTF8String GetEntry(std::string_view key) const;

  /// The text stored under `key`, or `defaultText` when there is none. An entry with an empty text
  /// is an entry.
  [[nodiscard]] string::UTF8String GetEntry(std::string_view key,
                                            std::string_view defaultText) const;

  /// Stores `value` under `key`.
  void SetEntry(std::string_view key, std::string_view value);

  /// The entry as a switch: true for the text "true" and false for any other, `True`, `1` and the
  /// empty text included; `defaultValue` when there is no entry.
  template <std::same_as<bool> T>
  [[nodiscard]] T GetEntryAs(std::string_view key, T defaultValue) const {
    return GetEntry(key, defaultValue ? "true" : "false") == "true";
  }

  /// Puts `store` in place of the one before, which is released; null puts a fresh
  /// `MemoryDebugStore` there. The database shares ownership. Entries are not carried over.
  void SetStore(std::shared_ptr<DebugStore> store);

 private:
  std::shared_ptr<DebugStore> store_;  // never null
};

}  // namespace orncore::debug

#endif  // ORNCORE_DEBUG_DEBUGDATABASE_H_
