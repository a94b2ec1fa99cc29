// A fixture that runs the program with its own data file, host description and state folder.
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

/// Two public features that ask for a rating, one internal feature, and changes for all of them.
class ProgramTest : public testing::Test {
 protected:
  ProgramTest();

  /// The call of the program with these arguments. `{data}` and `{host}` are replaced by the files.
  test_support::ProgramCall Call(const std::vector<std::string>& words) const;

  test_support::ProgramResult Run(const std::vector<std::string>& words) const;

  /// Runs the program and expects success and no output on standard error.
  std::string OutputOf(const std::vector<std::string>& words) const;

  std::filesystem::path DataFile() const { return folder_.Path() / "whats new.csv"; }
  std::filesystem::path HostFile() const { return folder_.Path() / "host.json"; }
  std::filesystem::path StateFile() const { return folder_.Path() / "state/ornwhatsnew/state.db"; }

  /// Replaces the host description.
  void WriteHost(std::string_view version, bool isInternal) const;
  /// Replaces the data file by a header and these rows.
  void WriteData(std::string_view rows) const;

  test_support::TemporaryFolder folder_;
};

/// The path of the program.
std::string ProgramFile();

}  // namespace hosts::console

#endif  // TESTS_HOSTS_CONSOLE_PROGRAMFIXTURE_H_
