#include <orncore/debug/DebugDatabase.h>

#include <utility>

#include "orncore/src/utility/NoDestructor.h"

namespace orncore::debug {

using string::UTF8String;

DebugStore::~DebugStore() = default;

MemoryDebugStore::MemoryDebugStore(EntryMap entries) : entries_(std::move(entries)) {}

MemoryDebugStore::~MemoryDebugStore() = default;

std::optional<UTF8String> MemoryDebugStore::Find(std::string_view key) const {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(key);
  if (found == entries_.end()) return std::nullopt;
  return found->second;
}

void MemoryDebugStore::Store(std::string_view key, std::string_view value) {
  const std::lock_guard lock(mutex_);
  const auto found = entries_.find(key);
  if (found != entries_.end()) {
    found->second = value;
  } else {
    entries_.emplace(key, value);
  }
}

DebugDatabase& DebugDatabase::Instance() {
  static utility::NoDestructor<DebugDatabase> instance;
  return *instance;
}

DebugDatabase::DebugDatabase() : store_(std::make_shared<MemoryDebugStore>()) {}

DebugDatabase::~DebugDatabase() = default;

UTF8String DebugDatabase::GetEntry(std::string_view key) const {
  return GetEntry(key, {});
}

UTF8String DebugDatabase::GetEntry(std::string_view key, std::string_view defaultText) const {
  std::optional<UTF8String> entry = CurrentStore()->Find(key);
  return entry ? *std::move(entry) : UTF8String(defaultText);
}

void DebugDatabase::SetEntry(std::string_view key, std::string_view value) {
  CurrentStore()->Store(key, value);
}

void DebugDatabase::SetStore(std::shared_ptr<DebugStore> store) {
  if (!store) store = std::make_shared<MemoryDebugStore>();
  // The swap makes the parameter own the previous store. The parameter is destroyed after the lock
  // is released, because the destructor of that store may use the database.
  const std::lock_guard lock(mutex_);
  store_.swap(store);
}

// Returns a shared pointer, because another thread or the store itself can replace the store while
// the caller uses it.
std::shared_ptr<DebugStore> DebugDatabase::CurrentStore() const {
  const std::lock_guard lock(mutex_);
  return store_;
}

}  // namespace orncore::debug
