#include "hosts/common/JsonReader.h"

#include <algorithm>
#include <limits>

#include <nlohmann/json.hpp>

#include "hosts/common/MessageText.h"

namespace hosts::common {

using nlohmann::json;

namespace {

/// Describes a value for an error message, for example "the number 3", "an array of 2 elements" or
/// "true".
std::string Describe(const json& value) {
  if (value.is_string()) return "the string " + JsonQuoted(value.get_ref<const std::string&>());
  if (value.is_number()) return "the number " + value.dump();
  if (value.is_array()) return "an array of " + Counted(value.size(), "element");
  if (value.is_object()) return "an object of " + Counted(value.size(), "member");
  return value.dump();
}

/// Returns the JSON pointer from `value` to `target`, or `std::nullopt` if `target` is not a part
/// of `value`. Readers do not store paths, because the paths of all values of a large document
/// would take more memory than the document.
std::optional<std::string> PathTo(const json& target, const json& value) {
  if (&value == &target) return "";
  if (!value.is_structured()) return std::nullopt;
  for (const auto& [name, element] : value.items()) {
    const std::optional<std::string> path = PathTo(target, element);
    if (path) return JsonPath("", name) + *path;
  }
  return std::nullopt;
}

std::string QuotedList(JsonReader::Names names) {
  std::string list;
  for (const std::string_view name : names) {
    if (!list.empty()) list += ", ";
    list += JsonQuoted(name);
  }
  return list;
}

}  // namespace

JsonReader::JsonReader(const JsonDocument& document) : JsonReader(document, document.Value()) {}

JsonReader::JsonReader(const JsonDocument& document, const json& value)
    : document_(&document), value_(&value) {}

std::string JsonReader::Text() const {
  if (!value_->is_string()) FailExpecting("a string");
  return value_->get<std::string>();
}

bool JsonReader::Boolean() const {
  if (!value_->is_boolean()) FailExpecting("true or false");
  return value_->get<bool>();
}

std::int64_t JsonReader::Integer(std::int64_t minimum, std::int64_t maximum) const {
  // nlohmann-json stores non-negative integers as unsigned. Compare the unsigned value first,
  // because a large one would become negative in the conversion to std::int64_t.
  const bool fits =
      value_->is_number_integer() &&
      !(value_->is_number_unsigned() && std::cmp_greater(value_->get<std::uint64_t>(), maximum)) &&
      value_->get<std::int64_t>() >= minimum && value_->get<std::int64_t>() <= maximum;
  if (!fits) {
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
  for (const json& element : *value_) elements.push_back(JsonReader(*document_, element));
  return elements;
}

std::map<std::string, std::string, std::less<>> JsonReader::Texts() const {
  if (!value_->is_object()) FailExpecting("an object whose values are strings");
  std::map<std::string, std::string, std::less<>> texts;
  for (const auto& [name, value] : value_->items()) {
    texts.emplace_hint(texts.end(), name, JsonReader(*document_, value).Text());
  }
  return texts;
}

void JsonReader::RequireObject(Names known) const {
  if (!value_->is_object()) FailExpecting("an object");
  for (const auto& [name, value] : value_->items()) {
    if (std::ranges::find(known, name) == known.end()) {
      Fail("unknown member " + JsonQuoted(name) + "; known members: " + QuotedList(known));
    }
  }
}

std::optional<JsonReader> JsonReader::Find(std::string_view name) const {
  if (!value_->is_object()) FailExpecting("an object");
  const auto found = value_->find(name);
  if (found == value_->end()) return std::nullopt;
  return JsonReader(*document_, *found);
}

JsonReader JsonReader::Member(std::string_view name) const {
  auto member = Find(name);
  if (!member) Fail("the member " + JsonQuoted(name) + " is missing");
  return *member;
}

void JsonReader::Fail(std::string_view message) const {
  const std::optional<std::string> path = PathTo(*value_, document_->Value());
  throw JsonError(JsonMessage(document_->SourceName(), path.value_or(""), message));
}

void JsonReader::FailExpecting(std::string_view expected) const {
  Fail("expected " + std::string(expected) + ", found " + Describe(*value_));
}

}  // namespace hosts::common
