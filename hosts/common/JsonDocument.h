// A parsed JSON document with the name of its source.
#ifndef HOSTS_COMMON_JSONDOCUMENT_H_
#define HOSTS_COMMON_JSONDOCUMENT_H_

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace hosts::common {

/// Thrown for a JSON file or string that cannot be used. `what()` is one line of well-formed UTF-8
/// with the source, the path of the value (or line and column if the text is not valid JSON), and
/// the problem.
class JsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A parsed document. It can be moved but not copied. `JsonReader` objects refer to the document,
/// so do not move or destroy it while they are in use. Several threads may read one document,
/// because it never changes.
class JsonDocument {
 public:
  /// The maximum depth of nested arrays and objects. The limit keeps recursive functions from
  /// exhausting the stack.
  static constexpr std::size_t kMaximumDepth = 100;

  /// Parses UTF-8 text, with or without a byte order mark. Error messages begin with `sourceName`.
  /// Throws `JsonError` for text that is not JSON, for a number beyond the range of a double, for
  /// duplicate members, and for nesting beyond `kMaximumDepth`.
  static JsonDocument Parse(std::string_view text, std::string_view sourceName);

  JsonDocument(JsonDocument&&) noexcept;
  JsonDocument& operator=(JsonDocument&&) noexcept;
  ~JsonDocument();

  /// Returns the root value. REQUIRES: the document has not been moved from.
  const nlohmann::json& Value() const { return *value_; }
  /// Returns the source name that `Parse` received.
  const std::string& SourceName() const { return sourceName_; }

 private:
  JsonDocument(std::string sourceName, nlohmann::json value);

  std::string sourceName_;
  std::unique_ptr<const nlohmann::json> value_;
};

/// Returns the JSON pointer of an object member or an array element of the value at `parent`.
std::string JsonPath(std::string_view parent, std::string_view member);
std::string JsonPath(std::string_view parent, std::size_t index);

/// Returns "source: location: message" as one line without control characters. Omits an empty
/// location, which is the path of the whole document.
std::string JsonMessage(std::string_view sourceName, std::string_view location,
                        std::string_view message);

/// Returns `text` as a JSON string in quotation marks, for a message. Cuts `text` after 60 bytes.
std::string JsonQuoted(std::string_view text);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_JSONDOCUMENT_H_
