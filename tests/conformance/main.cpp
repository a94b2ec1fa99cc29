// Implements the program scenario_runner, which runs scenarios and prints or checks their results.

#include <iostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tests/conformance/RunnerProgram.h"

int main(int argc, char** argv) {
  CLI::App app("Runs scenarios and prints one JSON array of their results.");
  std::vector<std::string> files;
  bool check = false;
  bool batch = false;
  app.add_option("FILE", files,
                 "A file with one scenario or an array of scenarios (default: standard input)");
  CLI::Option* const checkFlag =
      app.add_flag("--check", check, "Print a line for each difference from the expected results");
  CLI::Option* const batchFlag =
      app.add_flag("--batch", batch,
                   "Read one scenario per line from standard input and print one result per line");
  batchFlag->excludes(checkFlag)->excludes("FILE");
  bool rules = false;
  app.add_flag("--rules", rules, "With --check: require an intent and exact texts of each scenario")
      ->needs(checkFlag);
  app.footer("Exit status: 0 success, 1 differences, 2 a scenario could not be run.");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? conformance::kSuccess : conformance::kNotRun;
  }

  std::ios::sync_with_stdio(false);
  const conformance::Streams streams{std::cin, std::cout, std::cerr};
  if (batch) return conformance::RunBatch(streams);
  if (!check) return conformance::PrintResults(files, streams);
  const auto accepted = rules ? conformance::Accepted::kRules : conformance::Accepted::kAll;
  return conformance::CheckResults(files, accepted, streams);
}
