// Finds the differences between two JSON values.
#ifndef TESTS_CONFORMANCE_RESULTCOMPARISON_H_
#define TESTS_CONFORMANCE_RESULTCOMPARISON_H_

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace conformance {

/// One difference. `expected` and `got` are JSON on one line, shortened to the part that differs.
/// If one side has no value, its string is "nothing".
struct Difference {
  /// The JSON pointer of the value.
  std::string path;
  std::string expected;
  std::string got;
};

/// Returns all differences of members and elements. Compares arrays by index.
std::vector<Difference> CompareJson(const nlohmann::json& expected, const nlohmann::json& got);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RESULTCOMPARISON_H_
