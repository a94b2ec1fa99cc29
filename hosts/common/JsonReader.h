// Reads the values of JSON documents and checks their types. If a value has the wrong type, the
// error message contains the source, the JSON pointer, the expected type and a description of the
// value.
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

/// Reads one value of a document. A reader refers to the document, which must outlive the reader.
/// It consists of two pointers, so copying it is cheap. Every function that requires a type throws
/// `JsonError` if the value has another type.
class JsonReader {
 public:
  using Names = std::span<const std::string_view>;

  /// Creates a reader of the root value of the document.
  explicit JsonReader(const JsonDocument& document);

  /// Returns the JSON value, which may have any type.
  const nlohmann::json& Value() const { return *value_; }
  /// Returns the value of a string, in UTF-8.
  std::string Text() const;
  /// Returns the value of a boolean.
  bool Boolean() const;
  /// Returns the value of an integer from `minimum` to `maximum`. Throws `JsonError` if the integer
  /// is outside of this range. A number with a fraction or an exponent is not an integer.
  std::int64_t Integer(std::int64_t minimum, std::int64_t maximum) const;
  /// Returns the value of an integer. Throws `JsonError` if it does not fit into `std::int32_t`.
  std::int32_t Integer32() const;

  /// Returns a reader for each element of an array, in order.
  std::vector<JsonReader> Elements() const;
  /// Returns the members of an object by name. Throws `JsonError` if one of their values is not a
  /// string.
  std::map<std::string, std::string, std::less<>> Texts() const;

  /// Throws `JsonError` if the value is not an object, or if it has a member whose name is not in
  /// `known`.
  void RequireObject(Names known) const;
  void RequireObject(std::initializer_list<std::string_view> known) const {
    RequireObject(Names(known.begin(), known.size()));
  }

  /// Returns a reader of the object's member `name`, or `std::nullopt` if there is no such member.
  std::optional<JsonReader> Find(std::string_view name) const;
  /// Returns a reader of the object's member `name`. Throws `JsonError` if there is no such member.
  JsonReader Member(std::string_view name) const;

  /// Throws `JsonError` with the source, the JSON pointer of the value, and `message`. Takes time
  /// linear in the size of the document.
  [[noreturn]] void Fail(std::string_view message) const;
  /// Throws `JsonError` with a message such as "expected a string, found the number 3". `expected`
  /// describes the expected value.
  [[noreturn]] void FailExpecting(std::string_view expected) const;

 private:
  JsonReader(const JsonDocument& document, const nlohmann::json& value);

  const JsonDocument* document_;
  const nlohmann::json* value_;
};

}  // namespace hosts::common

#endif  // HOSTS_COMMON_JSONREADER_H_
