#include "hosts/common/JsonReader.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <orncore/string/Conversion.h>
#include <nlohmann/json.hpp>

namespace hosts::common {

using nlohmann::json;

namespace {

/// The longest text that a message quotes, in bytes.
constexpr std::size_t kLongestQuotation = 60;

/// A text in quotation marks, escaped, and cut when it is long.
std::string Quoted(std::string_view text) {
  const bool cut = text.size() > kLongestQuotation;
  const std::string_view head = cut ? text.substr(0, kLongestQuotation) : text;
  return json(head).dump(-1, ' ', false, json::error_handler_t::replace) + (cut ? "..." : "");
}

std::string Counted(std::size_t count, std::string_view one, std::string_view many) {
  return std::to_string(count) + ' ' + std::string(count == 1 ? one : many);
}

/// A value as a message shows it: its kind, and the value itself where that is short.
std::string Describe(const json& value) {
  if (value.is_string()) return "the text " + Quoted(value.get_ref<const std::string&>());
  if (value.is_number()) return "the number " + value.dump();
  if (value.is_array()) return "an array of " + Counted(value.size(), "element", "elements");
  if (value.is_object()) return "an object of " + Counted(value.size(), "member", "members");
  return value.dump();
}

bool IsIntegerWithin(const json& value, std::int64_t minimum, std::int64_t maximum) {
  if (!value.is_number_integer()) return false;
  if (value.is_number_unsigned() &&
      std::cmp_greater(value.get<std::uint64_t>(), std::numeric_limits<std::int64_t>::max())) {
    return false;
  }
  const auto number = value.get<std::int64_t>();
  return minimum <= number && number <= maximum;
}

}  // namespace

JsonReader::JsonReader(const JsonDocument& document)
    : document_(&document), value_(&document.Value()) {}

JsonReader::JsonReader(const JsonDocument& document, const json& value, std::string path)
    : document_(&document), value_(&value), path_(std::move(path)) {}

bool JsonReader::IsArray() const {
  return value_->is_array();
}

bool JsonReader::IsText() const {
  return value_->is_string();
}

std::string JsonReader::Text() const {
  if (!value_->is_string()) FailExpecting("a text");
  return value_->get<std::string>();
}

bool JsonReader::Boolean() const {
  if (!value_->is_boolean()) FailExpecting("true or false");
  return value_->get<bool>();
}

std::int64_t JsonReader::Integer(std::int64_t minimum, std::int64_t maximum) const {
  if (!IsIntegerWithin(*value_, minimum, maximum)) {
    FailExpecting("an integer from " + std::to_string(minimum) + " to " + std::to_string(maximum));
  }
  return value_->get<std::int64_t>();
}

std::int32_t JsonReader::Integer32() const {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(Integer(Limits::min(), Limits::max()));
}

std::vector<JsonReader> JsonReader::Elements() const {
  if (!value_->is_array()) FailExpecting("an array");
  std::vector<JsonReader> elements;
  elements.reserve(value_->size());
  for (const json& element : *value_) {
    elements.push_back(JsonReader(*document_, element, JsonPath(path_, elements.size())));
  }
  return elements;
}

std::map<std::string, std::string, std::less<>> JsonReader::Texts() const {
  if (!value_->is_object()) FailExpecting("an object of texts");
  RequireUniqueMembers();
  std::map<std::string, std::string, std::less<>> texts;
  for (const auto& [name, value] : value_->items()) {
    texts.emplace_hint(texts.end(), name,
                       JsonReader(*document_, value, JsonPath(path_, name)).Text());
  }
  return texts;
}

void JsonReader::RequireObject(Names known) const {
  if (!value_->is_object()) FailExpecting("an object");
  RequireUniqueMembers();
  for (const auto& [name, value] : value_->items()) {
    if (std::ranges::find(known, name) == known.end()) {
      Fail("unknown member " + Quoted(name) + "; known members: " + QuotedList(known));
    }
  }
}

void JsonReader::RequireUniqueMembers() const {
  if (const auto name = document_->DuplicateMemberAt(path_)) {
    Fail("the member " + Quoted(*name) + " stands there more than once; keep one of them");
  }
}

std::optional<JsonReader> JsonReader::Find(std::string_view name) const {
  if (!value_->is_object()) FailExpecting("an object");
  const auto found = value_->find(name);
  if (found == value_->end()) return std::nullopt;
  return JsonReader(*document_, *found, JsonPath(path_, name));
}

JsonReader JsonReader::Member(std::string_view name) const {
  auto member = Find(name);
  if (!member) Fail("the member " + Quoted(name) + " is missing");
  return *std::move(member);
}

void JsonReader::Fail(std::string_view message) const {
  throw JsonError(JsonMessage(document_->SourceName(), path_, message));
}

void JsonReader::FailExpecting(std::string_view expected) const {
  Fail("expected " + std::string(expected) + ", found " + Describe(*value_));
}

std::string QuotedList(JsonReader::Names names) {
  std::string list;
  for (const std::string_view name : names) {
    if (!list.empty()) list += ", ";
    list += Quoted(name);
  }
  return list;
}

}  // namespace hosts::common
