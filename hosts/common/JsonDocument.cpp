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

/// The longest quotation from a text in a message, in bytes.
constexpr std::size_t kLongestDetail = 200;

void AppendEscaped(unsigned char code, std::string& line) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  line += "\\u00";
  line += kDigits[code >> 4];
  line += kDigits[code & 0xF];
}

/// Control characters as escapes: a message is one line, and shows what it quotes.
void AppendVisible(std::string_view text, std::string& line) {
  constexpr unsigned char kLeadOfUpperControls = 0xC2;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto code = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : '\0');
    if (code == kLeadOfUpperControls && next >= 0x80 && next < 0xA0) {
      AppendEscaped(next, line);
      ++i;
    } else if (code < 0x20 || code == 0x7F) {
      AppendEscaped(code, line);
    } else {
      line += text[i];
    }
  }
}

std::string WellFormed(std::string_view text) {
  return orncore::string::UTF16to8(orncore::string::UTF8to16(text));
}

/// Line and column of a byte, counted from 1; the column in characters, as editors show it.
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

/// What the parser says about an error, without its own name for it and where it stands: that is
/// told our way. It quotes the text, which may be long and need not be UTF-8.
std::string ParserDetail(std::string_view message) {
  if (const std::size_t end = message.find("] "); end != std::string_view::npos) {
    message.remove_prefix(end + 2);
  }
  if (message.starts_with("parse error")) {
    if (const std::size_t end = message.find(": "); end != std::string_view::npos) {
      message.remove_prefix(end + 2);
    }
  }
  if (message.size() <= kLongestDetail) return WellFormed(message);
  const std::string_view head = message.substr(0, kLongestDetail / 2);
  const std::string_view tail = message.substr(message.size() - kLongestDetail / 2);
  return WellFormed(head) + " ... " + WellFormed(tail);
}

/// Builds the value while the text is parsed. The library's own builder forgets a member that comes
/// twice, and its callbacks make objects of many members slow.
class DocumentBuilder : public nlohmann::json_sax<json> {
 public:
  DocumentBuilder(std::string_view text, std::string_view sourceName)
      : text_(text), sourceName_(sourceName) {}

  json TakeValue() { return std::move(root_); }
  std::map<std::string, std::string, std::less<>> TakeDuplicates() {
    return std::move(duplicates_);
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
    if (!added) duplicates_.emplace(Path(frames_.size() - 1), name);
    return true;
  }

  bool parse_error(std::size_t position, const std::string&,
                   const nlohmann::detail::exception& error) override {
    throw JsonError(JsonMessage(sourceName_, LineAndColumn(text_, position),
                                "not valid JSON: " + ParserDetail(error.what())));
  }

 private:
  /// An array or object that is still open; for an object, the member whose value comes next.
  struct Frame {
    json* container;
    const std::string* member = nullptr;
    json* slot = nullptr;
  };

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
      throw JsonError(JsonMessage(sourceName_, Path(frames_.size()),
                                  "arrays and objects are nested more than " +
                                      std::to_string(JsonDocument::kMaximumDepth) + " deep"));
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

  /// The path of the value inside the first `depth` open containers.
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
  std::string sourceName_;
  json root_;
  std::vector<Frame> frames_;
  std::map<std::string, std::string, std::less<>> duplicates_;
};

}  // namespace

JsonDocument JsonDocument::Parse(std::string_view text, std::string_view sourceName) {
  const std::string name = WellFormed(sourceName);
  DocumentBuilder builder(text, name);
  json::sax_parse(text.begin(), text.end(), &builder);
  json value = builder.TakeValue();
  return JsonDocument(name, std::move(value), builder.TakeDuplicates());
}

JsonDocument::JsonDocument(std::string sourceName, json value, Duplicates duplicates)
    : sourceName_(std::move(sourceName)),
      value_(std::make_unique<const json>(std::move(value))),
      duplicates_(std::move(duplicates)) {}

JsonDocument::JsonDocument(JsonDocument&&) noexcept = default;
JsonDocument& JsonDocument::operator=(JsonDocument&&) noexcept = default;
JsonDocument::~JsonDocument() = default;

std::optional<std::string> JsonDocument::DuplicateMemberAt(std::string_view objectPath) const {
  const auto found = duplicates_.find(objectPath);
  if (found == duplicates_.end()) return std::nullopt;
  return found->second;
}

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

std::string JsonMessage(std::string_view sourceName, std::string_view path,
                        std::string_view message) {
  std::string line;
  AppendVisible(sourceName, line);
  line += ": ";
  if (!path.empty()) {
    AppendVisible(path, line);
    line += ": ";
  }
  AppendVisible(message, line);
  return line;
}

}  // namespace hosts::common
