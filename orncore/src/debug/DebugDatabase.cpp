#include <orncore/debug/DebugDatabase.h>

#include <utility>

#include "orncore/src/utility/ServiceHolder.h"

namespace orncore::debug {
namespace {

// The constructor of the database sets the first store, so the store is not null while the database
// is in use.
utility::ServiceHolder<DebugStore> storeHolder;

}  // namespace

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
  // The database has no members, so it needs no destruction.
  static DebugDatabase instance;
  return instance;
}

DebugDatabase::DebugDatabase() {
  SetStore(nullptr);
}

UTF8String DebugDatabase::GetEntry(std::string_view key) const {
  return GetEntry(key, {});
}

UTF8String DebugDatabase::GetEntry(std::string_view key, std::string_view defaultText) const {
  std::optional<UTF8String> entry = storeHolder.Get()->Find(key);
  return entry ? *std::move(entry) : UTF8String(defaultText);
}

void DebugDatabase::SetEntry(std::string_view key, std::string_view value) {
  storeHolder.Get()->Store(key, value);
}

void DebugDatabase::SetStore(std::shared_ptr<DebugStore> store) {
  if (!store) store = std::make_shared<MemoryDebugStore>();
  storeHolder.Set(std::move(store));
}

}  // namespace orncore::debug
