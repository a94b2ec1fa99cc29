#include "hosts/common/StateFormat.h"

#include <cstdint>
#include <limits>

#include <nlohmann/json.hpp>

#include "hosts/common/JsonReader.h"
#include "hosts/common/PanelJson.h"

namespace hosts::common {
namespace {

constexpr std::string_view kFormat = "ornwhatsnew state";
/// The version of the format that this program writes, and the newest version that it reads.
constexpr std::int64_t kFormatVersion = 1;

constexpr std::string_view kFormatMember = "format";
constexpr std::string_view kVersionMember = "formatVersion";
constexpr std::string_view kValuesMember = "values";

/// The nesting depth of the object that contains the values. `JsonDocument::Parse` rejects deeper
/// input early, because nested arrays and objects take up to thirty times as much memory as their
/// text.
constexpr std::size_t kStateDepth = 2;

/// The maximum number of array elements. This version of the format has no arrays, but a newer
/// version may have some. `JsonDocument::Parse` must accept them, so that the error message can
/// state that the store is newer.
constexpr std::size_t kMaximumStateElements = 1000;

[[noreturn]] void FailFormatting(const std::filesystem::path& file, std::string_view reason) {
  throw StateStoreError("cannot write the state store '" + file.native() +
                        "': " + std::string(reason));
}

/// Reads the values of a state. Checks the version before the members, because a newer version may
/// have more members.
StateValues ReadState(const JsonReader& root, const std::filesystem::path& file) {
  const auto format = root.Find(kFormatMember);
  if (!format || format->Value() != kFormat) root.Fail("it is not a state store");
  const std::int64_t version =
      root.Member(kVersionMember).Integer(1, std::numeric_limits<std::int64_t>::max());
  if (version > kFormatVersion) {
    throw StateStoreError("cannot use the state store '" + file.native() +
                          "': a newer version of this program wrote it (format " +
                          std::to_string(version) + "; this version supports format " +
                          std::to_string(kFormatVersion) +
                          "); update this program, or name another file with --state");
  }
  root.RequireObject({kFormatMember, kVersionMember, kValuesMember});
  return root.Member(kValuesMember).Texts();
}

}  // namespace

StateValues ParseState(std::string_view text, const std::filesystem::path& file) {
  // A write syncs the file before the rename, so no write of this program leaves an empty file. An
  // empty file may therefore have another purpose.
  if (text.empty()) {
    throw StateStoreError("cannot use the state store '" + file.native() +
                          "': the file is empty; delete it if you do not need it, or name "
                          "another one with --state");
  }
  try {
    const JsonDocument document =
        JsonDocument::Parse(text, "'" + file.native() + "'", kStateDepth, kMaximumStateElements);
    return ReadState(JsonReader(document), file);
  } catch (const JsonError& error) {
    throw StateStoreError(std::string("cannot use the state store ") + error.what() +
                          "; move the file, or name another one with --state");
  }
}

std::string FormatState(const StateValues& values, const std::filesystem::path& file) {
  std::string text;
  try {
    text = ToJsonText(
        {{kFormatMember, kFormat}, {kVersionMember, kFormatVersion}, {kValuesMember, values}});
  } catch (const nlohmann::json::type_error&) {
    FailFormatting(file, "a key or a value is not well-formed UTF-8");
  }
  if (text.size() > kMaximumStateSize) {
    FailFormatting(file, "the state is larger than 64 MiB; name another file with --state");
  }
  return text;
}

}  // namespace hosts::common
