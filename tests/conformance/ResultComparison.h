// Finds the differences between two JSON values.
#ifndef TESTS_CONFORMANCE_RESULTCOMPARISON_H_
#define TESTS_CONFORMANCE_RESULTCOMPARISON_H_

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace conformance {

/// A difference between two JSON values. `expected` and `got` are JSON on one line, shortened to
/// the part that differs. `expected` or `got` is "nothing" if that value has no member or element
/// at `path`.
struct Difference {
  /// The JSON pointer to the value that differs.
  std::string path;
  std::string expected;
  std::string got;
};

/// Returns each member and element that differs. Compares elements of arrays by index.
std::vector<Difference> CompareJson(const nlohmann::json& expected, const nlohmann::json& got);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RESULTCOMPARISON_H_
