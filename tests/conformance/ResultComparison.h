// Finds the differences between two JSON values.
#ifndef TESTS_CONFORMANCE_RESULTCOMPARISON_H_
#define TESTS_CONFORMANCE_RESULTCOMPARISON_H_

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace conformance {

/// A difference between two JSON values. `expected` and `got` contain the values at `path` as JSON
/// on one line, shortened to the text around the first difference. If one of the two values has no
/// member or element at `path`, its string is "nothing".
struct Difference {
  /// The JSON pointer to the value that differs.
  std::string path;
  std::string expected;
  std::string got;
};

/// Returns all differences. Compares objects member by member, and arrays element by element.
std::vector<Difference> CompareJson(const nlohmann::json& expected, const nlohmann::json& got);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RESULTCOMPARISON_H_
