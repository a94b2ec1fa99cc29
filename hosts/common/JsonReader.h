// Reads JSON that people write for our programs. Error messages give the source, the path inside
// it, what was expected and what was found.
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

/// One value of a document and its path. It refers to the document, which must outlive it. Each
/// function that returns a kind of value throws `JsonError` if the value is of another kind.
class JsonReader {
 public:
  using Names = std::span<const std::string_view>;

  /// The whole document.
  explicit JsonReader(const JsonDocument& document);

  const nlohmann::json& Value() const { return *value_; }
  std::string Text() const;
  bool Boolean() const;
  /// An integer from `minimum` to `maximum`. A number with a fraction or an exponent is not one.
  std::int64_t Integer(std::int64_t minimum, std::int64_t maximum) const;
  std::int32_t Integer32() const;

  /// The elements of an array.
  std::vector<JsonReader> Elements() const;
  /// The members of an object whose values are all texts.
  std::map<std::string, std::string, std::less<>> Texts() const;

  /// Throws `JsonError` unless the value is an object whose members all have one of these names.
  void RequireObject(Names known) const;
  void RequireObject(std::initializer_list<std::string_view> known) const {
    RequireObject(Names(known.begin(), known.size()));
  }

  /// Returns a member of an object, or nothing if it is absent.
  std::optional<JsonReader> Find(std::string_view name) const;
  /// Returns a member of an object. Throws `JsonError` if it is absent.
  JsonReader Member(std::string_view name) const;

  /// Throws `JsonError` with this value's path and the message.
  [[noreturn]] void Fail(std::string_view message) const;
  /// Throws `JsonError` with a message such as "expected a text, found the number 3".
  [[noreturn]] void FailExpecting(std::string_view expected) const;

 private:
  JsonReader(const JsonDocument& document, const nlohmann::json& value, std::string path);

  const JsonDocument* document_;
  const nlohmann::json* value_;
  std::string path_;
};

}  // namespace hosts::common

#endif  // HOSTS_COMMON_JSONREADER_H_
