#include "hosts/author/lint/GitFile.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::author {
namespace {

using testing::HasSubstr;

constexpr std::size_t kNoLimit = 1'000'000;

std::string ProblemOf(const std::string& revision, const std::filesystem::path& file) {
  try {
    ReadGitFile(revision, file, kNoLimit);
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "";
}

void RunGit(const std::filesystem::path& folder, const std::vector<std::string>& arguments) {
  test_support::ProgramCall call;
  call.arguments = {"git", "-C", folder.native(), "-c", "user.name=a", "-c", "user.email=a@b"};
  call.arguments.insert(call.arguments.end(), arguments.begin(), arguments.end());
  const auto result = test_support::ChildProcess("/usr/bin/env", call).Wait();
  ASSERT_EQ(result.exitStatus, 0) << result.errors;
}

/// git sets GIT_DIR for a hook in a linked worktree.
TEST(GitFile, ReadsAFileBelowTheTopFolderIfGitDirIsSet) {
  const test_support::TemporaryFolder folder;
  std::filesystem::create_directory(folder.Path() / "sub");
  folder.Write("sub/data.csv", "old");
  RunGit(folder.Path(), {"init", "-q"});
  RunGit(folder.Path(), {"add", "."});
  RunGit(folder.Path(), {"commit", "-q", "-m", "old"});
  folder.Write("sub/data.csv", "new");
  ::setenv("GIT_DIR", (folder.Path() / ".git").c_str(), 1);
  EXPECT_EQ(ProblemOf("HEAD", folder.Path() / "sub" / "data.csv"), "");
  EXPECT_EQ(ReadGitFile("HEAD", folder.Path() / "sub" / "data.csv", kNoLimit), "old");
  ::unsetenv("GIT_DIR");
}

TEST(GitFile, RejectsARevisionThatIsAnOption) {
  const test_support::TemporaryFolder folder;
  EXPECT_THAT(ProblemOf("--output=x", folder.Path() / "data.csv"), HasSubstr("not a git revision"));
  EXPECT_THAT(ProblemOf("", folder.Path() / "data.csv"), HasSubstr("not a git revision"));
}

TEST(GitFile, MissingRevisionHasAHintAboutShallowClones) {
  const test_support::TemporaryFolder folder;
  EXPECT_THAT(ProblemOf("no-such-revision", folder.Path() / "data.csv"),
              HasSubstr("git fetch --unshallow"));
}

}  // namespace
}  // namespace hosts::author
