// The three modes of the scenario runner.
#ifndef TESTS_CONFORMANCE_RUNNERPROGRAM_H_
#define TESTS_CONFORMANCE_RUNNERPROGRAM_H_

#include <iosfwd>
#include <string>
#include <vector>

namespace conformance {

/// Exit statuses. If several apply, the highest one is returned.
inline constexpr int kSuccess = 0;
inline constexpr int kDifferences = 1;
inline constexpr int kNotRun = 2;

/// The streams of the program. If no files are given, scenarios are read from `in`.
struct Streams {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
};

/// Writes one JSON array with the results or the error of each scenario, in order. Returns the exit
/// status.
int PrintResults(const std::vector<std::string>& files, Streams streams);

/// Compares the results of each scenario with the expected ones, and writes a line for each
/// difference. Returns the exit status.
int CheckResults(const std::vector<std::string>& files, Streams streams);

/// Reads one scenario per line. Writes and flushes its result as one line before it reads the next
/// scenario. Ignores blank lines. Returns the exit status.
int RunBatch(Streams streams);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RUNNERPROGRAM_H_
