// A parsed JSON text with the name of its source.
#ifndef HOSTS_COMMON_JSONDOCUMENT_H_
#define HOSTS_COMMON_JSONDOCUMENT_H_

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace hosts::common {

/// A JSON file or text that cannot be used. `what()` is one line of well-formed UTF-8: the source,
/// the path inside it (or line and column if the text is not JSON), what was expected and what was
/// found.
class JsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Movable, not copyable. Readers refer to the document, so it must not be moved or destroyed while
/// they are used. Threads may share it, because it never changes.
class JsonDocument {
 public:
  /// The maximum depth of nested arrays and objects. It keeps recursive functions over the value
  /// from exhausting the stack.
  static constexpr std::size_t kMaximumDepth = 100;

  /// Parses UTF-8 text, with or without a byte order mark. Error messages begin with `sourceName`.
  /// Throws `JsonError` for text that is not JSON, for a number beyond the range of a double, for
  /// duplicate members, and for nesting beyond `kMaximumDepth`.
  static JsonDocument Parse(std::string_view text, std::string_view sourceName);

  JsonDocument(JsonDocument&&) noexcept;
  JsonDocument& operator=(JsonDocument&&) noexcept;
  ~JsonDocument();

  /// Returns the value of the whole text. REQUIRES: the document has not been moved from.
  const nlohmann::json& Value() const { return *value_; }
  const std::string& SourceName() const { return sourceName_; }

 private:
  JsonDocument(std::string sourceName, nlohmann::json value);

  std::string sourceName_;
  std::unique_ptr<const nlohmann::json> value_;
};

/// Returns the JSON pointer of a member or an element of the value at `parent`.
std::string JsonPath(std::string_view parent, std::string_view member);
std::string JsonPath(std::string_view parent, std::size_t index);

/// Returns "source: place: message" as one line without control characters. An empty place, the
/// path of the whole document, is omitted.
std::string JsonMessage(std::string_view sourceName, std::string_view place,
                        std::string_view message);

/// Returns the text as a JSON string in quotation marks, for a message. A long text is cut.
std::string JsonQuoted(std::string_view text);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_JSONDOCUMENT_H_
