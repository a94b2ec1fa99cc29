// The three modes of the scenario runner.
#ifndef TESTS_CONFORMANCE_RUNNERPROGRAM_H_
#define TESTS_CONFORMANCE_RUNNERPROGRAM_H_

#include <iosfwd>
#include <string>
#include <vector>

namespace conformance {

/// Exit statuses. The higher one has priority.
inline constexpr int kAllWell = 0;
inline constexpr int kDifferences = 1;
inline constexpr int kNotRun = 2;

/// The streams of the program. Scenarios are read from `in` if there are no files.
struct Streams {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
};

/// Writes one JSON array with the results or the error of each scenario, in order.
int PrintResults(const std::vector<std::string>& files, Streams streams);

/// Compares the results of each scenario with the expected ones and writes a line per difference.
int CheckResults(const std::vector<std::string>& files, Streams streams);

/// Reads one scenario per line and writes one result per line at once. Ignores empty lines.
int RunBatch(Streams streams);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RUNNERPROGRAM_H_
