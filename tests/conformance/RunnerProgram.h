// Implements the three modes of the scenario runner.
#ifndef TESTS_CONFORMANCE_RUNNERPROGRAM_H_
#define TESTS_CONFORMANCE_RUNNERPROGRAM_H_

#include <iosfwd>
#include <string>
#include <vector>

namespace conformance {

/// The exit statuses. If several apply, the program returns the highest one. It returns `kNotRun`
/// if a file could not be read, a scenario could not be run or checked, or the results could not be
/// written. It also returns `kNotRun` for invalid arguments.
inline constexpr int kSuccess = 0;
inline constexpr int kDifferences = 1;
inline constexpr int kNotRun = 2;

/// The standard streams of the program.
struct Streams {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
};

/// The scenarios that a check accepts: all of them, or only those that show a rule. A scenario
/// shows a rule if its member `intent` is not empty and its member `exactTexts` is true.
enum class Accepted { kAll, kRules };

/// Runs the scenarios of the files, or those of `streams.in` if there are no files. Writes one JSON
/// array to `streams.out`. It contains, in order, the results or the error of each scenario, and
/// the error of each input that is unreadable or not JSON. Returns the exit status.
int PrintResults(const std::vector<std::string>& files, Streams streams);

/// Runs the scenarios of the files, or those of `streams.in` if there are no files. Compares the
/// results of each scenario with the expected results, and writes a line to `streams.out` for each
/// difference and each error. It is an error if a scenario has no expected results or if `accepted`
/// excludes the scenario. Writes to `streams.err` how many of the scenarios have the expected
/// results. Returns the exit status.
int CheckResults(const std::vector<std::string>& files, Accepted accepted, Streams streams);

/// Reads one scenario per line from `streams.in` and runs it. Writes and flushes the results or the
/// error as one line before it reads the next scenario. Ignores lines that contain only white
/// space. Returns the exit status.
int RunBatch(Streams streams);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RUNNERPROGRAM_H_
