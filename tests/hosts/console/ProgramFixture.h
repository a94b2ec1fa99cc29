// A fixture that runs the program with a data file, a host description and a state folder for each
// test.
#ifndef TESTS_HOSTS_CONSOLE_PROGRAMFIXTURE_H_
#define TESTS_HOSTS_CONSOLE_PROGRAMFIXTURE_H_

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::console {

/// The host has two public features and one internal feature. The data file has a change with a
/// rating request for each public feature, a bug fix, and an unmatched change.
class ProgramTest : public testing::Test {
 protected:
  ProgramTest();

  /// Returns a call of the program. Replaces `{data}` with the data file, and `{host}` with
  /// `--host` and the host description.
  test_support::ProgramCall Call(const std::vector<std::string>& words) const;

  /// Runs the program with the arguments of `Call`.
  test_support::ProgramResult Run(const std::vector<std::string>& words) const;

  /// Runs the program and returns its standard output. Expects success and an empty standard error.
  std::string OutputOf(const std::vector<std::string>& words) const;

  std::filesystem::path DataFile() const { return folder_.Path() / "whats new.csv"; }
  std::filesystem::path HostFile() const { return folder_.Path() / "host.json"; }
  std::filesystem::path StateFile() const { return folder_.Path() / "state/ornwhatsnew/state.db"; }

  /// Replaces the host description.
  void WriteHost(std::string_view version, bool isInternal) const;
  /// Replaces the data file with a header and these rows.
  void WriteData(std::string_view rows) const;

  test_support::TemporaryFolder folder_;
};

/// Returns the path of the program.
std::string ProgramFile();

}  // namespace hosts::console

#endif  // TESTS_HOSTS_CONSOLE_PROGRAMFIXTURE_H_
