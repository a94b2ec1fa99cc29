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

/// The maximum numbers of bytes that an excerpt contains before and after the first difference.
constexpr std::size_t kShownBefore = 60;
constexpr std::size_t kShownAfter = 140;

std::string Dump(const json* value) {
  return value ? LineOf(*value) : "nothing";
}

/// Returns the part of `text` around `offset`. Replaces omitted text at either end with "...".
std::string Excerpt(std::string_view text, std::size_t offset) {
  const std::size_t begin = offset > kShownBefore ? offset - kShownBefore : 0;
  const std::size_t end = std::min(text.size(), offset + kShownAfter);
  return (begin > 0 ? "..." : "") + std::string(text.substr(begin, end - begin)) +
         (end < text.size() ? "..." : "");
}

class Comparison {
 public:
  void Compare(const std::string& path, const json* expected, const json* got) {
    const bool bothExist = expected && got;
    if (bothExist && *expected == *got) return;
    if (bothExist && expected->is_object() && got->is_object()) {
      CompareObjects(path, *expected, *got);
    } else if (bothExist && expected->is_array() && got->is_array()) {
      CompareArrays(path, *expected, *got);
    } else {
      AddDifference(path, Dump(expected), Dump(got));
    }
  }

  std::vector<Difference> TakeDifferences() { return std::move(differences_); }

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

  void AddDifference(const std::string& path, std::string_view expected, std::string_view got) {
    const auto mismatch = std::ranges::mismatch(expected, got);
    const auto offset = static_cast<std::size_t>(mismatch.in1 - expected.begin());
    differences_.push_back({path, Excerpt(expected, offset), Excerpt(got, offset)});
  }

  std::vector<Difference> differences_;
};

}  // namespace

std::vector<Difference> CompareJson(const json& expected, const json& got) {
  Comparison comparison;
  comparison.Compare("", &expected, &got);
  return comparison.TakeDifferences();
}

}  // namespace conformance
