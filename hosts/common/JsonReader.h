// Reads the values of JSON documents and checks their types. Error messages contain the source, the
// path of the value, the expected type and the value found.
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

/// One value of a document, with its path. It refers to the document, which must outlive it. A
/// function that reads a type throws `JsonError` if the value has another type.
class JsonReader {
 public:
  using Names = std::span<const std::string_view>;

  /// Refers to the root value of the document.
  explicit JsonReader(const JsonDocument& document);

  /// Returns the value without a type check.
  const nlohmann::json& Value() const { return *value_; }
  /// Returns a string, in UTF-8.
  std::string Text() const;
  /// Returns a boolean value.
  bool Boolean() const;
  /// Returns an integer from `minimum` to `maximum`. A number with a fraction or an exponent is not
  /// an integer.
  std::int64_t Integer(std::int64_t minimum, std::int64_t maximum) const;
  /// Returns an integer in the range of `std::int32_t`.
  std::int32_t Integer32() const;

  /// Returns a reader for each element of an array.
  std::vector<JsonReader> Elements() const;
  /// Returns the members of an object whose values are all strings.
  std::map<std::string, std::string, std::less<>> Texts() const;

  /// Throws `JsonError` unless the value is an object and each of its members has a name in
  /// `known`.
  void RequireObject(Names known) const;
  void RequireObject(std::initializer_list<std::string_view> known) const {
    RequireObject(Names(known.begin(), known.size()));
  }

  /// Returns a member of an object, or `std::nullopt` if it is absent.
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
