// The program with a data file, a host description and a state folder of its own.
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

  /// The call of the program with these words; `{data}` and `{host}` stand for the two files.
  test_support::ProgramCall Call(const std::vector<std::string>& words) const;

  test_support::ProgramResult Run(const std::vector<std::string>& words) const;

  /// Runs the program and expects it to succeed without a word on standard error.
  std::string OutputOf(const std::vector<std::string>& words) const;

  std::filesystem::path DataFile() const { return folder_.Path() / "whats new.csv"; }
  std::filesystem::path HostFile() const { return folder_.Path() / "host.json"; }
  std::filesystem::path StateFile() const { return folder_.Path() / "state/ornwhatsnew/state.db"; }

  /// Describes the host anew.
  void WriteHost(std::string_view version, bool isInternal) const;
  /// Writes the data file; `rows` stand behind the header.
  void WriteData(std::string_view rows) const;

  test_support::TemporaryFolder folder_;
};

/// The program's file.
std::string ProgramFile();

}  // namespace hosts::console

#endif  // TESTS_HOSTS_CONSOLE_PROGRAMFIXTURE_H_
