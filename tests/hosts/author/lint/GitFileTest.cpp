#include "hosts/author/lint/GitFile.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::author {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

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

/// Creates a repository in `folder` if there is none, and commits all files in the folder.
void Commit(const std::filesystem::path& folder) {
  RunGit(folder, {"init", "-q"});
  RunGit(folder, {"add", "."});
  RunGit(folder, {"commit", "-q", "-m", "a commit"});
}

/// git sets GIT_DIR when it runs a hook in a linked worktree.
TEST(GitFile, ReadsAFileBelowTheTopFolderIfGitDirIsSet) {
  const test_support::TemporaryFolder folder;
  std::filesystem::create_directory(folder.Path() / "sub");
  folder.Write("sub/data.csv", "old");
  Commit(folder.Path());
  folder.Write("sub/data.csv", "new");
  ::setenv("GIT_DIR", (folder.Path() / ".git").c_str(), 1);
  EXPECT_EQ(ProblemOf("HEAD", folder.Path() / "sub" / "data.csv"), "");
  EXPECT_EQ(ReadGitFile("HEAD", folder.Path() / "sub" / "data.csv", kNoLimit), "old");
  ::unsetenv("GIT_DIR");
}

TEST(GitFile, KeepsStandardInputOpen) {
  const test_support::TemporaryFolder folder;
  folder.Write("data.csv", "old");
  Commit(folder.Path());
  const int flags = ::fcntl(STDIN_FILENO, F_GETFD);
  ASSERT_GE(flags, 0) << "standard input must be open";
  EXPECT_EQ(ReadGitFile("HEAD", folder.Path() / "data.csv", kNoLimit), "old");
  EXPECT_EQ(::fcntl(STDIN_FILENO, F_GETFD), flags);
}

TEST(GitFile, RejectsARevisionThatIsAnOption) {
  const test_support::TemporaryFolder folder;
  EXPECT_THAT(ProblemOf("--output=x", folder.Path() / "data.csv"), HasSubstr("not a git revision"));
  EXPECT_THAT(ProblemOf("", folder.Path() / "data.csv"), HasSubstr("not a git revision"));
}

TEST(GitFile, RejectsAFileThatIsTooLarge) {
  const test_support::TemporaryFolder folder;
  folder.Write("data.csv", "old");
  Commit(folder.Path());
  EXPECT_EQ(ReadGitFile("HEAD", folder.Path() / "data.csv", 3), "old");
  EXPECT_THROW(ReadGitFile("HEAD", folder.Path() / "data.csv", 2), std::runtime_error);
}

TEST(GitFile, FailureHasTheFirstErrorLineOfGit) {
  const test_support::TemporaryFolder folder;
  const std::filesystem::path file = folder.Path() / "data.csv";
  EXPECT_THAT(
      ProblemOf("main", file),
      AllOf(HasSubstr("cannot read '" + file.native() + "' in the revision 'main': git: "),
            HasSubstr("not a git repository"), Not(HasSubstr("\n")), Not(HasSubstr("shallow"))));
  folder.Write("other.csv", "old");
  Commit(folder.Path());
  EXPECT_THAT(ProblemOf("no-such-revision", file),
              AllOf(HasSubstr("'no-such-revision': git: "), Not(HasSubstr("shallow"))));
  EXPECT_THAT(ProblemOf("HEAD", file), HasSubstr("does not exist in 'HEAD'"));
}

TEST(GitFile, ErrorsOfGitAreInEnglish) {
  const test_support::TemporaryFolder folder;
  folder.Write("git", "#!/bin/sh\necho \"the language is $LC_ALL\" >&2\nexit 1\n");
  std::filesystem::permissions(folder.Path() / "git", std::filesystem::perms::owner_all);
  const std::string path = std::getenv("PATH");
  ::setenv("PATH", folder.Path().c_str(), 1);
  ::setenv("LC_ALL", "C.UTF-8", 1);
  const std::string problem = ProblemOf("HEAD", folder.Path() / "data.csv");
  ::unsetenv("LC_ALL");
  ::setenv("PATH", path.c_str(), 1);
  EXPECT_THAT(problem, testing::EndsWith("git: the language is C"));
}

TEST(GitFile, MissingRevisionOfAShallowCloneHasAHint) {
  const test_support::TemporaryFolder folder;
  const std::filesystem::path origin = folder.Path() / "origin";
  std::filesystem::create_directory(origin);
  folder.Write("origin/data.csv", "old");
  Commit(origin);
  folder.Write("origin/data.csv", "new");
  Commit(origin);
  RunGit(folder.Path(), {"clone", "-q", "--depth=1", "file://" + origin.native(), "clone"});
  const std::filesystem::path file = folder.Path() / "clone" / "data.csv";
  EXPECT_EQ(ReadGitFile("HEAD", file, kNoLimit), "new");
  EXPECT_THAT(ProblemOf("HEAD~1", file), HasSubstr("'git fetch --unshallow'"));
}

}  // namespace
}  // namespace hosts::author
