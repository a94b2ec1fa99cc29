// Where two JSON values differ, for people.
#ifndef TESTS_CONFORMANCE_RESULTCOMPARISON_H_
#define TESTS_CONFORMANCE_RESULTCOMPARISON_H_

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace conformance {

/// One place that differs. Both sides are JSON on one line, long texts cut to where they part;
/// "nothing" where one side has no value there.
struct Difference {
  std::string path;
  std::string expected;
  std::string got;
};

/// All places that differ, down to members and elements; the path is a JSON pointer from the given
/// values. Arrays are compared element by element.
std::vector<Difference> CompareJson(const nlohmann::json& expected, const nlohmann::json& got);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RESULTCOMPARISON_H_
