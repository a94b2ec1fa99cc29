// A parsed JSON text that remembers what its source is called, and which members it held twice.
#ifndef HOSTS_COMMON_JSONDOCUMENT_H_
#define HOSTS_COMMON_JSONDOCUMENT_H_

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace hosts::common {

/// A JSON text that cannot be used. `what()` is one line of well-formed UTF-8 for people.
class JsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Movable, not copyable: readers refer to it, so it stays where it is while they live. Threads may
/// share it, since nothing changes it.
class JsonDocument {
 public:
  /// How deep arrays and objects may be nested: more than anybody writes, and far from what would
  /// exhaust the stack of whoever walks the values.
  static constexpr std::size_t kMaximumDepth = 100;

  /// Parses UTF-8 text, with or without a byte order mark. `sourceName` is what errors call it.
  /// Throws `JsonError` for text that is not JSON (with line and column), for a number beyond the
  /// range of a double, and for nesting beyond `kMaximumDepth`.
  static JsonDocument Parse(std::string_view text, std::string_view sourceName);

  JsonDocument(JsonDocument&&) noexcept;
  JsonDocument& operator=(JsonDocument&&) noexcept;
  ~JsonDocument();

  /// The value of the whole text. REQUIRES: the document has not been moved from.
  const nlohmann::json& Value() const { return *value_; }
  const std::string& SourceName() const { return sourceName_; }

  /// The name of a member that stands more than once in the object at this path (a JSON pointer),
  /// if there is one. The value keeps only the last of them, so whoever reads an object asks first.
  std::optional<std::string> DuplicateMemberAt(std::string_view objectPath) const;

 private:
  /// From an object's path to the first name that came twice in it.
  using Duplicates = std::map<std::string, std::string, std::less<>>;

  JsonDocument(std::string sourceName, nlohmann::json value, Duplicates duplicates);

  std::string sourceName_;
  std::unique_ptr<const nlohmann::json> value_;
  Duplicates duplicates_;
};

/// The JSON pointer of a member or an element of the value at `parent`.
std::string JsonPath(std::string_view parent, std::string_view member);
std::string JsonPath(std::string_view parent, std::size_t index);

/// `source: path: message`, as every error reads: on one line and without control characters,
/// whatever the names and the message hold. The path of the whole document is left out.
std::string JsonMessage(std::string_view sourceName, std::string_view path,
                        std::string_view message);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_JSONDOCUMENT_H_
