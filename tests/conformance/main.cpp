// scenario_runner: executes scenarios against the library.

#include <iostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "tests/conformance/RunnerProgram.h"

int main(int argc, char** argv) {
  CLI::App app("Executes scenarios and writes one JSON array of their results.");
  std::vector<std::string> files;
  bool check = false;
  bool batch = false;
  app.add_option("FILE", files,
                 "A scenario, or an array of them; standard input when there is none");
  CLI::Option* const checkFlag = app.add_flag(
      "--check", check, "Compare with what the scenarios expect; a line for each difference");
  CLI::Option* const batchFlag = app.add_flag(
      "--batch", batch, "Read a scenario a line from standard input, write a result a line");
  batchFlag->excludes(checkFlag)->excludes("FILE");
  app.footer("Exit status: 0 all well, 1 differences, 2 a scenario could not be run.");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? conformance::kAllWell : conformance::kNotRun;
  }

  std::ios::sync_with_stdio(false);
  const conformance::Streams streams{std::cin, std::cout, std::cerr};
  if (batch) return conformance::RunBatch(streams);
  return check ? conformance::CheckResults(files, streams)
               : conformance::PrintResults(files, streams);
}
