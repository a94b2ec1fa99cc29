// JSON that people write for our programs, read with errors that say where and what: the source,
// the path inside it, what was expected and what stands there. Every program reads its JSON through
// this, so that a mistake reads the same everywhere.
#ifndef HOSTS_COMMON_JSONREADER_H_
#define HOSTS_COMMON_JSONREADER_H_

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "hosts/common/JsonDocument.h"

namespace hosts::common {

/// One value of a document and its place. Cheap to copy; refers to the document, which must outlive
/// it. Each function that asks for a kind of value throws `JsonError` when another stands there.
class JsonReader {
 public:
  using Names = std::span<const std::string_view>;

  /// The whole document.
  explicit JsonReader(const JsonDocument& document);

  const nlohmann::json& Value() const { return *value_; }
  /// The JSON pointer of the value, such as `/betaFeatures/3/visibility`; empty for the document.
  const std::string& Path() const { return path_; }

  bool IsArray() const;
  bool IsText() const;

  std::string Text() const;
  bool Boolean() const;
  /// An integer from `minimum` to `maximum`; a number with a fraction or an exponent is none.
  std::int64_t Integer(std::int64_t minimum, std::int64_t maximum) const;
  std::int32_t Integer32() const;

  /// The elements of an array.
  std::vector<JsonReader> Elements() const;
  /// An object of texts under any names.
  std::map<std::string, std::string, std::less<>> Texts() const;

  /// Requires an object whose members all have one of these names, none of them twice.
  void RequireObject(Names known) const;
  void RequireObject(std::initializer_list<std::string_view> known) const {
    RequireObject(Names(known.begin(), known.size()));
  }

  /// A member of an object, or nothing when it is absent.
  std::optional<JsonReader> Find(std::string_view name) const;
  /// A member that must be there.
  JsonReader Member(std::string_view name) const;

  /// Throws `JsonError` with this value's place and the message.
  [[noreturn]] void Fail(std::string_view message) const;
  /// The same, for another value than the one expected ("a text"); says what was found.
  [[noreturn]] void FailExpecting(std::string_view expected) const;

 private:
  JsonReader(const JsonDocument& document, const nlohmann::json& value, std::string path);
  void RequireUniqueMembers() const;

  const JsonDocument* document_;
  const nlohmann::json* value_;
  std::string path_;
};

/// The names in quotation marks, with commas between them.
std::string QuotedList(JsonReader::Names names);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_JSONREADER_H_
