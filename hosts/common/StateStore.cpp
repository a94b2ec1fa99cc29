#include "hosts/common/StateStore.h"

#include <cstdlib>
#include <system_error>

#include "hosts/common/ControlCharacters.h"
#include "hosts/common/StateFile.h"

namespace hosts::common {
namespace {

std::filesystem::path AbsoluteLocation(const std::filesystem::path& location) {
  if (location.empty()) {
    throw StateStoreError(
        "cannot use the state store '': empty name; name a file with --state, or ':memory:' to "
        "store nothing");
  }
  if (location == kMemoryLocation) return location;
  std::error_code error;
  std::filesystem::path absolute = std::filesystem::absolute(location, error);
  if (error) {
    throw StateStoreError("cannot use the state store '" + location.native() +
                          "': cannot find the current folder: " + error.message() +
                          "; use an absolute path, or change to another folder");
  }
  return absolute;
}

std::string_view Find(const StateValues& values, std::string_view key) {
  const auto found = values.find(key);
  return found == values.end() ? std::string_view() : std::string_view(found->second);
}

std::filesystem::path DefaultStateLocation() {
  const std::filesystem::path file = std::filesystem::path("ornwhatsnew") / "state.json";
  const char* const stateHome = std::getenv("XDG_STATE_HOME");
  if (stateHome != nullptr && std::filesystem::path(stateHome).is_absolute()) {
    return std::filesystem::path(stateHome) / file;
  }
  const char* const home = std::getenv("HOME");
  if (home != nullptr && std::filesystem::path(home).is_absolute()) {
    return std::filesystem::path(home) / ".local" / "state" / file;
  }
  throw StateStoreError(
      "cannot find a folder for the state store: neither XDG_STATE_HOME nor HOME contains an "
      "absolute path; set one of them, or name a file with --state");
}

}  // namespace

std::filesystem::path StateLocation(const std::optional<std::filesystem::path>& named) {
  return named ? *named : DefaultStateLocation();
}

StateStore::StateStore(const std::filesystem::path& location, std::chrono::milliseconds patience)
    : location_(AbsoluteLocation(location)), patience_(patience) {
  Refresh();
}

ornwhatsnew::UTF8String StateStore::Get(std::string_view key) const {
  const auto pending = pending_.find(key);
  return pending != pending_.end() ? pending->second : ornwhatsnew::UTF8String(Find(kept_, key));
}

void StateStore::Set(std::string_view key, std::string_view value) {
  pending_.insert_or_assign(ornwhatsnew::UTF8String(key), ornwhatsnew::UTF8String(value));
}

StateValues StateStore::Values() const {
  StateValues values = kept_;
  for (const auto& [key, value] : pending_) values[key] = value;
  return values;
}

void StateStore::Commit() {
  if (pending_.empty()) return;
  if (IsInMemory()) {
    MergePendingInto(kept_);
  } else {
    kept_ = ChangeStateFile(location_, patience_,
                            [this](StateValues& values) { MergePendingInto(values); });
  }
  pending_.clear();
}

void StateStore::Refresh() {
  if (!IsInMemory()) kept_ = ReadStateFile(location_).value_or(StateValues());
}

void StateStore::Reset() {
  if (!IsInMemory() && ReadStateFile(location_)) {
    ChangeStateFile(location_, patience_, [](StateValues& values) { values.clear(); });
  }
  kept_.clear();
  pending_.clear();
}

ornwhatsnew::StateGetter StateStore::Getter() const {
  return [this](const ornwhatsnew::UTF8String& key) {
    // The panel's heading can show the last version in which the user opened the panel. The text
    // after a newline in this version would look like a second line of the heading.
    return key == kLastVersionSeenKey ? WithoutControlCharacters(Get(key)) : Get(key);
  };
}

ornwhatsnew::StateSetter StateStore::Setter() {
  return [this](const ornwhatsnew::UTF8String& key, const ornwhatsnew::UTF8String& value) {
    Set(key, value);
  };
}

void StateStore::MergePendingInto(StateValues& values) const {
  for (const auto& [key, value] : pending_) {
    values[key] = ornwhatsnew::MergePersistedValue(key, Find(values, key), Find(kept_, key), value);
  }
}

}  // namespace hosts::common
