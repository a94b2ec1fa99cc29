#include "hosts/common/JsonDocument.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include <orncore/string/SafeText.h>
#include <nlohmann/json.hpp>

#include "hosts/common/MessageText.h"

namespace hosts::common {

using nlohmann::json;

namespace {

/// The maximum length, in bytes, of a member's name in a JSON pointer.
constexpr std::size_t kMaximumName = 100;

/// The maximum number of bytes that an error message quotes from a string.
constexpr std::size_t kMaximumQuotation = 60;

/// Returns the line and the column of the byte at `position`. Positions, lines and columns are
/// counted from 1. Columns are counted in characters, as in editors.
std::string LineAndColumn(std::string_view text, std::size_t position) {
  const std::string_view before = text.substr(0, position == 0 ? 0 : position - 1);
  const auto lines = std::ranges::count(before, '\n');
  const std::size_t lastBreak = before.rfind('\n');
  const std::string_view line =
      lastBreak == std::string_view::npos ? before : before.substr(lastBreak + 1);
  const auto characters = std::ranges::count_if(line, IsCharacterStart);
  return "line " + std::to_string(lines + 1) + ", column " + std::to_string(characters + 1);
}

/// Returns a message of nlohmann-json without its prefix, which repeats the position in another
/// form.
std::string ParserDetail(std::string_view message) {
  for (const std::string_view prefixEnd : {"] ", ": "}) {
    const std::size_t end = message.find(prefixEnd);
    if (end != std::string_view::npos) message.remove_prefix(end + prefixEnd.size());
  }
  // Shorten the message, because it quotes the input, which can be long.
  return WithoutMiddle(message);
}

/// Builds a JSON value from the events of nlohmann-json's SAX parser. Rejects duplicate members,
/// and enforces the limits for the nesting depth and for the number of array elements.
/// `json::parse` would overwrite the first of two duplicate members. A callback of `json::parse`
/// could reject duplicates, but would take quadratic time for objects with many members.
class DocumentBuilder : public nlohmann::json_sax<json> {
 public:
  DocumentBuilder(std::string_view text, std::string_view sourceName, std::size_t maximumDepth,
                  std::size_t maximumElements)
      : text_(text),
        sourceName_(sourceName),
        maximumDepth_(maximumDepth),
        maximumElements_(maximumElements) {}

  json Build() {
    // nlohmann-json stops at a NUL and ignores all bytes after it.
    const std::size_t nul = text_.find('\0');
    if (nul != std::string_view::npos) {
      Fail(LineAndColumn(text_, nul + 1), "not valid JSON: the text contains a NUL character");
    }
    json::sax_parse(text_.begin(), text_.end(), this);
    return std::move(root_);
  }

  bool null() override { return Add(nullptr); }
  bool boolean(bool value) override { return Add(value); }
  bool number_integer(std::int64_t value) override { return Add(value); }
  bool number_unsigned(std::uint64_t value) override { return Add(value); }
  bool number_float(double value, const std::string&) override { return Add(value); }
  bool string(std::string& value) override { return Add(std::move(value)); }
  bool binary(json::binary_t&) override { return false; }

  bool start_object(std::size_t) override { return Open(json::object()); }
  bool start_array(std::size_t) override { return Open(json::array()); }
  bool end_object() override { return Close(); }
  bool end_array() override { return Close(); }

  bool key(std::string& name) override {
    Frame& frame = frames_.back();
    const auto [member, added] = frame.container->emplace(name, nullptr);
    frame.member = &member.key();
    frame.slot = &member.value();
    if (!added) {
      Fail(Path(frames_.size() - 1), "duplicate member " + JsonQuoted(name) + "; keep only one");
    }
    return true;
  }

  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception& error) override {
    Fail(LineAndColumn(text_, position), "not valid JSON: " + ParserDetail(error.what()));
  }

 private:
  /// An array or object whose end nlohmann-json has not reported yet. For an object, `member` and
  /// `slot` are the name and the value of the member that nlohmann-json reported last.
  struct Frame {
    json* container;
    const std::string* member = nullptr;
    json* slot = nullptr;
  };

  [[noreturn]] void Fail(std::string_view location, std::string_view message) const {
    throw JsonError(JsonMessage(sourceName_, location, message));
  }

  json& Slot() {
    if (frames_.empty()) return root_;
    const Frame& frame = frames_.back();
    if (!frame.container->is_array()) return *frame.slot;
    if (elements_ == maximumElements_) {
      Fail(Path(frames_.size() - 1),
           "all arrays together have more than " + std::to_string(maximumElements_) + " elements");
    }
    ++elements_;
    return frame.container->emplace_back();
  }

  template <class Value>
  bool Add(Value&& value) {
    Slot() = std::forward<Value>(value);
    return true;
  }

  bool Open(json container) {
    if (frames_.size() == maximumDepth_) {
      Fail(Path(frames_.size()),
           "arrays and objects are nested more than " + std::to_string(maximumDepth_) + " deep");
    }
    json& slot = Slot();
    slot = std::move(container);
    frames_.push_back({.container = &slot});
    return true;
  }

  bool Close() {
    frames_.pop_back();
    return true;
  }

  /// Returns the JSON pointer of the value at nesting depth `depth` that nlohmann-json is reading.
  /// The depth of the root value is 0.
  std::string Path(std::size_t depth) const {
    std::string path;
    for (std::size_t i = 0; i < depth; ++i) {
      const Frame& frame = frames_[i];
      path += frame.member ? JsonPath("", *frame.member)
                           : JsonPath("", std::max<std::size_t>(frame.container->size(), 1) - 1);
    }
    return path;
  }

  std::string_view text_;
  std::string_view sourceName_;
  std::size_t maximumDepth_;
  std::size_t maximumElements_;
  std::size_t elements_ = 0;
  json root_;
  std::vector<Frame> frames_;
};

}  // namespace

JsonDocument JsonDocument::Parse(std::string_view text, std::string_view sourceName,
                                 std::size_t maximumDepth, std::size_t maximumElements) {
  return JsonDocument(std::string(sourceName),
                      DocumentBuilder(text, sourceName, maximumDepth, maximumElements).Build());
}

JsonDocument::JsonDocument(std::string sourceName, json value)
    : sourceName_(std::move(sourceName)), value_(std::make_unique<const json>(std::move(value))) {}

JsonDocument::JsonDocument(JsonDocument&&) noexcept = default;
JsonDocument& JsonDocument::operator=(JsonDocument&&) noexcept = default;
JsonDocument::~JsonDocument() = default;

std::string JsonPath(std::string_view parent, std::string_view member) {
  std::string path(parent);
  path += '/';
  for (const char byte : Prefix(member, kMaximumName)) {
    if (byte == '~') {
      path += "~0";
    } else if (byte == '/') {
      path += "~1";
    } else {
      path += byte;
    }
  }
  if (member.size() > kMaximumName) path += "...";
  return path;
}

std::string JsonPath(std::string_view parent, std::size_t index) {
  return std::string(parent) + '/' + std::to_string(index);
}

std::string JsonMessage(std::string_view sourceName, std::string_view location,
                        std::string_view message) {
  std::string line(sourceName);
  if (!location.empty()) line.append(": ").append(WithoutMiddle(location));
  if (!message.empty()) line.append(": ").append(message);
  return orncore::string::EscapeInvisible(line);
}

std::string JsonQuoted(std::string_view text) {
  const bool isCut = text.size() > kMaximumQuotation;
  return json(Prefix(text, kMaximumQuotation))
             .dump(-1, ' ', false, json::error_handler_t::replace) +
         (isCut ? "..." : "");
}

}  // namespace hosts::common
