// The three ways in which the program works through scenarios.
#ifndef TESTS_CONFORMANCE_RUNNERPROGRAM_H_
#define TESTS_CONFORMANCE_RUNNERPROGRAM_H_

#include <iosfwd>
#include <string>
#include <vector>

namespace conformance {

/// Exit statuses; the higher one counts when both apply.
inline constexpr int kAllWell = 0;
inline constexpr int kDifferences = 1;
inline constexpr int kNotRun = 2;

/// Where scenarios come from and results go to. `files` empty: `in`.
struct Streams {
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
};

/// Writes one JSON array: for each scenario, in order, its results, or what is wrong with it.
int PrintResults(const std::vector<std::string>& files, Streams streams);

/// Compares each scenario's results with what it expects, and writes a line for each difference.
int CheckResults(const std::vector<std::string>& files, Streams streams);

/// Reads one scenario a line and writes one result a line, each as soon as it is there. Blank lines
/// are passed over.
int RunBatch(Streams streams);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_RUNNERPROGRAM_H_
