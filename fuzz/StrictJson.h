// Parses JSON for fuzzers that compare a reader with a second implementation of its rules.
#ifndef FUZZ_STRICTJSON_H_
#define FUZZ_STRICTJSON_H_

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

namespace fuzz {

/// Parses JSON. Returns a value of the type `discarded` if `text` is not valid JSON, contains a NUL
/// character, or has an object with duplicate member names.
inline nlohmann::json ParseStrictly(std::string_view text) {
  using nlohmann::json;
  if (text.find('\0') != std::string_view::npos) return json::value_t::discarded;
  std::vector<std::set<std::string>> open;
  bool isUnique = true;
  const auto check = [&](int, json::parse_event_t event, json& parsed) {
    if (event == json::parse_event_t::object_start) open.emplace_back();
    if (event == json::parse_event_t::key) {
      isUnique &= open.back().insert(parsed.get<std::string>()).second;
    }
    if (event == json::parse_event_t::object_end) open.pop_back();
    return true;
  };
  json value = json::parse(text, check, false);
  return isUnique ? value : json(json::value_t::discarded);
}

}  // namespace fuzz

#endif  // FUZZ_STRICTJSON_H_
