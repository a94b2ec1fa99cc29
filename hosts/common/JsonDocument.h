// Parses JSON documents and formats messages about errors in them.
#ifndef HOSTS_COMMON_JSONDOCUMENT_H_
#define HOSTS_COMMON_JSONDOCUMENT_H_

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace hosts::common {

/// Thrown if a JSON file or string, or a file that it names, cannot be used. `what()` is one line
/// of well-formed UTF-8 with the source, the location and the problem. The location is the JSON
/// pointer of the value, or the line and the column if the text is not valid JSON. There is no
/// location if the problem concerns a whole document or file. The message quotes at most a few
/// hundred bytes of the text.
class JsonError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A parsed JSON document. It can be moved but not copied. `JsonReader` objects refer to the
/// document, so the document must not be moved or destroyed while they exist. Several threads may
/// read one document at the same time, because it never changes.
class JsonDocument {
 public:
  /// The maximum depth of nested arrays and objects in any document. Deeper nesting could exhaust
  /// the stack in recursive functions.
  static constexpr std::size_t kMaximumDepth = 100;

  /// The value of `maximumElements` that means no limit.
  static constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

  /// Parses `text`, which is UTF-8 with or without a byte order mark, and returns the document.
  /// Error messages begin with `sourceName`. Stops at the first error and throws `JsonError`. These
  /// are errors:
  /// - `text` is not valid JSON, or it contains NUL.
  /// - A number is beyond the range of a double.
  /// - An object has duplicate members.
  /// - Arrays and objects are nested deeper than `maximumDepth`.
  /// - All arrays together have more than `maximumElements` elements.
  ///
  /// An element such as `[]` takes up to thirty times as much memory as its bytes in `text`.
  /// Therefore, limit the number of elements of a document from an untrusted source.
  ///
  /// REQUIRES: `maximumDepth` is at most `kMaximumDepth`.
  static JsonDocument Parse(std::string_view text, std::string_view sourceName,
                            std::size_t maximumDepth = kMaximumDepth,
                            std::size_t maximumElements = kAnyNumber);

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

/// Returns the JSON pointer of the member `member`, or of the element `index`, of the value whose
/// JSON pointer is `parent`. Shortens `member` if it has more than 100 bytes.
std::string JsonPath(std::string_view parent, std::string_view member);
std::string JsonPath(std::string_view parent, std::size_t index);

/// Returns "source: location: message" as one line. Replaces invisible characters and ill-formed
/// UTF-8 with escapes (`EscapeInvisible`). `location` is a JSON pointer, or a line and a column.
/// Omits an empty `location`, which means the whole document, and an empty `message`. In a
/// `location` of more than 200 bytes, replaces the middle with " ... ".
std::string JsonMessage(std::string_view sourceName, std::string_view location,
                        std::string_view message);

/// Returns `text` (UTF-8) as a JSON string in quotation marks, for an error message. If `text` has
/// more than 60 bytes, returns its beginning and appends "...". Replaces ill-formed UTF-8 with
/// U+FFFD.
std::string JsonQuoted(std::string_view text);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_JSONDOCUMENT_H_
