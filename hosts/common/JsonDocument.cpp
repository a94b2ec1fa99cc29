#include "hosts/common/JsonDocument.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include <orncore/string/Conversion.h>
#include <nlohmann/json.hpp>

namespace hosts::common {

using nlohmann::json;

namespace {

/// The maximum length, in bytes, of the parser's message in an error message. The parser quotes its
/// input, which can be long.
constexpr std::size_t kMaximumDetail = 200;

/// The maximum length, in bytes, of a string that an error message quotes.
constexpr std::size_t kMaximumQuotation = 60;

/// Returns `text` as one line of well-formed UTF-8. Replaces control characters with escapes
/// such as "\u000a", and ill-formed UTF-8 with U+FFFD.
std::string Visible(std::string_view text) {
  constexpr std::u16string_view kDigits = u"0123456789abcdef";
  std::u16string visible;
  for (const char16_t unit : orncore::string::UTF8to16(text)) {
    if (unit >= 0x20 && (unit < 0x7F || unit >= 0xA0)) {
      visible += unit;
      continue;
    }
    visible += u"\\u00";
    visible += kDigits[unit >> 4];
    visible += kDigits[unit & 0xF];
  }
  return orncore::string::UTF16to8(visible);
}

/// Returns the line and the column of the byte at `position`. The position, the line and the column
/// count from 1. The column counts characters, as editors do.
std::string LineAndColumn(std::string_view text, std::size_t position) {
  const std::string_view before = text.substr(0, position == 0 ? 0 : position - 1);
  const auto lines = std::ranges::count(before, '\n');
  const std::size_t lastBreak = before.rfind('\n');
  const std::string_view line =
      lastBreak == std::string_view::npos ? before : before.substr(lastBreak + 1);
  const auto characters = std::ranges::count_if(
      line, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; });
  return "line " + std::to_string(lines + 1) + ", column " + std::to_string(characters + 1);
}

/// Returns the parser's message without its prefix, which repeats the position in another form.
/// Replaces the middle of a long message with " ... ".
std::string ParserDetail(std::string_view message) {
  for (const std::string_view prefixEnd : {"] ", ": "}) {
    const std::size_t end = message.find(prefixEnd);
    if (end != std::string_view::npos) message.remove_prefix(end + prefixEnd.size());
    if (!message.starts_with("parse error")) break;
  }
  if (message.size() <= kMaximumDetail) return std::string(message);
  return std::string(message.substr(0, kMaximumDetail / 2)) + " ... " +
         std::string(message.substr(message.size() - kMaximumDetail / 2));
}

/// Builds a JSON value from the parser's events and rejects duplicate members. The builder of
/// nlohmann-json would overwrite the first of two duplicates. Its parser callback could reject
/// them, but takes quadratic time for objects with many members.
class DocumentBuilder : public nlohmann::json_sax<json> {
 public:
  DocumentBuilder(std::string_view text, std::string_view sourceName)
      : text_(text), sourceName_(sourceName) {}

  json TakeValue() { return std::move(root_); }

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
  /// An array or object that is not closed yet. For an object, `member` and `slot` are the name and
  /// the value of its last member.
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
    if (frame.container->is_array()) return frame.container->emplace_back();
    return *frame.slot;
  }

  template <class Value>
  bool Add(Value&& value) {
    Slot() = std::forward<Value>(value);
    return true;
  }

  bool Open(json container) {
    if (frames_.size() == JsonDocument::kMaximumDepth) {
      Fail(Path(frames_.size()), "arrays and objects are nested more than " +
                                     std::to_string(JsonDocument::kMaximumDepth) + " deep");
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

  /// Returns the JSON pointer of the value at nesting depth `depth` that the parser is reading. The
  /// depth of the root value is 0.
  std::string Path(std::size_t depth) const {
    std::string path;
    for (std::size_t i = 0; i < depth; ++i) {
      const Frame& frame = frames_[i];
      path = frame.member ? JsonPath(path, *frame.member)
                          : JsonPath(path, std::max<std::size_t>(frame.container->size(), 1) - 1);
    }
    return path;
  }

  std::string_view text_;
  std::string_view sourceName_;
  json root_;
  std::vector<Frame> frames_;
};

}  // namespace

JsonDocument JsonDocument::Parse(std::string_view text, std::string_view sourceName) {
  DocumentBuilder builder(text, sourceName);
  json::sax_parse(text.begin(), text.end(), &builder);
  return JsonDocument(std::string(sourceName), builder.TakeValue());
}

JsonDocument::JsonDocument(std::string sourceName, json value)
    : sourceName_(std::move(sourceName)), value_(std::make_unique<const json>(std::move(value))) {}

JsonDocument::JsonDocument(JsonDocument&&) noexcept = default;
JsonDocument& JsonDocument::operator=(JsonDocument&&) noexcept = default;
JsonDocument::~JsonDocument() = default;

std::string JsonPath(std::string_view parent, std::string_view member) {
  std::string path(parent);
  path += '/';
  for (const char byte : member) {
    if (byte == '~') {
      path += "~0";
    } else if (byte == '/') {
      path += "~1";
    } else {
      path += byte;
    }
  }
  return path;
}

std::string JsonPath(std::string_view parent, std::size_t index) {
  return std::string(parent) + '/' + std::to_string(index);
}

std::string JsonMessage(std::string_view sourceName, std::string_view location,
                        std::string_view message) {
  std::string line(sourceName);
  for (const std::string_view part : {location, message}) {
    if (!part.empty()) line.append(": ").append(part);
  }
  return Visible(line);
}

std::string JsonQuoted(std::string_view text) {
  const bool isCut = text.size() > kMaximumQuotation;
  return json(text.substr(0, kMaximumQuotation))
             .dump(-1, ' ', false, json::error_handler_t::replace) +
         (isCut ? "..." : "");
}

}  // namespace hosts::common
