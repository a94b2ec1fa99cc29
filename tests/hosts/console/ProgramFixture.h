// A fixture that runs the program. Each test has its own data file, host description and state
// folder.
#ifndef TESTS_HOSTS_CONSOLE_PROGRAMFIXTURE_H_
#define TESTS_HOSTS_CONSOLE_PROGRAMFIXTURE_H_

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "hosts/common/ToolError.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::console {

/// The exit statuses that several tests expect.
inline constexpr int kUsage = static_cast<int>(common::ExitStatus::kUsage);
inline constexpr int kInput = static_cast<int>(common::ExitStatus::kInput);
inline constexpr int kOutput = static_cast<int>(common::ExitStatus::kOutput);

/// Runs the program. The host description has two public features and one internal feature. The
/// data file has a change with a rating request for each public feature, a bug fix, and an
/// unmatched change.
class ProgramTest : public testing::Test {
 protected:
  ProgramTest();

  /// Returns a `ProgramCall` with the arguments `words`. Replaces `{data}` with the path of the
  /// data file, and `{host}` with `--host` and the path of the host description.
  test_support::ProgramCall Call(const std::vector<std::string>& words) const;

  /// Runs the program with `Call(words)` and returns the result.
  test_support::ProgramResult Run(const std::vector<std::string>& words) const;

  /// Runs the program like `Run` and returns its standard output. Expects success and no error
  /// output.
  std::string OutputOf(const std::vector<std::string>& words) const;

  std::filesystem::path DataFile() const { return folder_.Path() / "whats new.csv"; }
  std::filesystem::path HostFile() const { return folder_.Path() / "host.json"; }
  std::filesystem::path StateFile() const {
    return folder_.Path() / "state/ornwhatsnew/state.json";
  }

  /// Replaces the host description. `version` is the version of the application. `isInternal` says
  /// whether the user is an internal user.
  void WriteHost(std::string_view version, bool isInternal) const;
  /// Replaces the data file. The new file has a header row and then `rows`.
  void WriteData(std::string_view rows) const;

  test_support::TemporaryFolder folder_;
};

/// Returns the path of the program.
std::string ProgramFile();

}  // namespace hosts::console

#endif  // TESTS_HOSTS_CONSOLE_PROGRAMFIXTURE_H_
