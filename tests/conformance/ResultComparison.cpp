#include "tests/conformance/ResultComparison.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include <nlohmann/json.hpp>

#include "hosts/common/JsonDocument.h"
#include "tests/conformance/ResultJson.h"

namespace conformance {

using hosts::common::JsonPath;
using nlohmann::json;

namespace {

/// The number of bytes that are shown before and after the first difference.
constexpr std::size_t kShownBefore = 60;
constexpr std::size_t kShownBehind = 140;

std::string Dump(const json* value) {
  return value ? LineOf(*value) : "nothing";
}

/// Returns the part of `text` around `place`.
std::string Excerpt(std::string_view text, std::size_t place) {
  const std::size_t begin = place > kShownBefore ? place - kShownBefore : 0;
  const std::size_t end = std::min(text.size(), place + kShownBehind);
  return (begin > 0 ? "..." : "") + std::string(text.substr(begin, end - begin)) +
         (end < text.size() ? "..." : "");
}

class Comparison {
 public:
  void Compare(const std::string& path, const json* expected, const json* got) {
    const bool bothThere = expected && got;
    if (bothThere && *expected == *got) return;
    if (bothThere && expected->is_object() && got->is_object()) {
      CompareObjects(path, *expected, *got);
    } else if (bothThere && expected->is_array() && got->is_array()) {
      CompareArrays(path, *expected, *got);
    } else {
      Note(path, Dump(expected), Dump(got));
    }
  }

  std::vector<Difference> Take() { return std::move(differences_); }

 private:
  void CompareObjects(const std::string& path, const json& expected, const json& got) {
    for (const auto& [name, value] : expected.items()) {
      const auto other = got.find(name);
      Compare(JsonPath(path, name), &value, other == got.end() ? nullptr : &*other);
    }
    for (const auto& [name, value] : got.items()) {
      if (!expected.contains(name)) Compare(JsonPath(path, name), nullptr, &value);
    }
  }

  void CompareArrays(const std::string& path, const json& expected, const json& got) {
    for (std::size_t i = 0; i < std::max(expected.size(), got.size()); ++i) {
      Compare(JsonPath(path, i), i < expected.size() ? &expected[i] : nullptr,
              i < got.size() ? &got[i] : nullptr);
    }
  }

  void Note(const std::string& path, std::string_view expected, std::string_view got) {
    const auto parted = std::ranges::mismatch(expected, got);
    const auto place = static_cast<std::size_t>(parted.in1 - expected.begin());
    differences_.push_back({path, Excerpt(expected, place), Excerpt(got, place)});
  }

  std::vector<Difference> differences_;
};

}  // namespace

std::vector<Difference> CompareJson(const json& expected, const json& got) {
  Comparison comparison;
  comparison.Compare("", &expected, &got);
  return comparison.Take();
}

}  // namespace conformance
