// Finds the differences between two JSON values.
#ifndef TESTS_CONFORMANCE_RESULTCOMPARISON_H_
#define TESTS_CONFORMANCE_RESULTCOMPARISON_H_

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace conformance {

/// One difference. Both sides are JSON on one line; long strings are cut to the part that differs.
/// A side without a value is "nothing".
struct Difference {
  std::string path;
  std::string expected;
  std::string got;
};

/// Returns all differences of members and elements. The path is a JSON pointer. Arrays are compared
/// element by element.
std::vector<Difference> CompareJson(const nlohmann::json& expected, const nlohmann::json& got);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RESULTCOMPARISON_H_
