#include "hosts/author/lint/GitFile.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::author {
namespace {

using testing::AllOf;
using testing::EndsWith;
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

/// While the object exists, PATH consists of `folder`.
class OnlyFolderInPath {
 public:
  explicit OnlyFolderInPath(const std::filesystem::path& folder) {
    ::setenv("PATH", folder.c_str(), 1);
  }
  ~OnlyFolderInPath() { ::setenv("PATH", path_.c_str(), 1); }
  OnlyFolderInPath(const OnlyFolderInPath&) = delete;
  OnlyFolderInPath& operator=(const OnlyFolderInPath&) = delete;

 private:
  const std::string path_ = std::getenv("PATH");
};

/// Returns the problem if the program `git` is the shell script `script`. The script and the data
/// file are in `folder`.
std::string ProblemWithGit(const test_support::TemporaryFolder& folder, const std::string& script) {
  folder.Write("git", "#!/bin/sh\n" + script + "\nexit 1\n");
  std::filesystem::permissions(folder.Path() / "git", std::filesystem::perms::owner_all);
  const OnlyFolderInPath path(folder.Path());
  return ProblemOf("HEAD", folder.Path() / "data.csv");
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

TEST(GitFile, UsesGitDirIfGitWorkTreeIsSet) {
  const test_support::TemporaryFolder folder;
  folder.Write("tree/data.csv", "old");
  Commit(folder.Path() / "tree");
  std::filesystem::rename(folder.Path() / "tree" / ".git", folder.Path() / "store");
  ::setenv("GIT_DIR", (folder.Path() / "store").c_str(), 1);
  ::setenv("GIT_WORK_TREE", (folder.Path() / "tree").c_str(), 1);
  EXPECT_EQ(ProblemOf("HEAD", folder.Path() / "tree" / "data.csv"), "");
  ::unsetenv("GIT_WORK_TREE");
  ::unsetenv("GIT_DIR");
}

TEST(GitFile, ReadsAFileInTheCurrentFolder) {
  const test_support::TemporaryFolder folder;
  folder.Write("data.csv", "old");
  Commit(folder.Path());
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path());
  EXPECT_EQ(ProblemOf("HEAD", "data.csv"), "");
  std::filesystem::current_path(before);
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
  EXPECT_EQ(ProblemOf("--output=x", folder.Path() / "data.csv"),
            "'--output=x' is not a git revision");
  EXPECT_EQ(ProblemOf("", folder.Path() / "data.csv"), "'' is not a git revision");
}

TEST(GitFile, RejectsAFileThatIsTooLarge) {
  const test_support::TemporaryFolder folder;
  folder.Write("data.csv", "old");
  Commit(folder.Path());
  EXPECT_EQ(ReadGitFile("HEAD", folder.Path() / "data.csv", 3), "old");
  EXPECT_THROW(ReadGitFile("HEAD", folder.Path() / "data.csv", 2), std::runtime_error);
}

TEST(GitFile, MessageOnALargeFileHasTheLimit) {
  constexpr std::size_t kLimit = 1 << 20;
  const test_support::TemporaryFolder folder;
  const std::filesystem::path file = folder.Write("data.csv", std::string(2 * kLimit, 'x'));
  Commit(folder.Path());
  try {
    ReadGitFile("HEAD", file, kLimit);
    FAIL();
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(error.what(), "cannot read '" + file.native() +
                                "' in the revision 'HEAD': larger than 1 MiB; name a revision in "
                                "which the file is smaller");
  }
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
  ::setenv("LC_ALL", "C.UTF-8", 1);
  const std::string problem = ProblemWithGit(folder, "echo \"the language is $LC_ALL\" >&2");
  ::unsetenv("LC_ALL");
  EXPECT_THAT(problem, EndsWith("git: the language is C"));
}

TEST(GitFile, GitHasTheOtherEnvironmentVariables) {
  const test_support::TemporaryFolder folder;
  EXPECT_THAT(ProblemWithGit(folder, "echo \"the path is $PATH\" >&2"),
              EndsWith("git: the path is " + folder.Path().native()));
}

TEST(GitFile, GitDoesNotReadStandardInput) {
  const test_support::TemporaryFolder folder;
  const int before = ::dup(STDIN_FILENO);
  const int input = ::open(folder.Write("input", "text\n").c_str(), O_RDONLY | O_CLOEXEC);
  ::dup2(input, STDIN_FILENO);
  const std::string problem = ProblemWithGit(folder, "read line; echo \"read '$line'\" >&2");
  ::dup2(before, STDIN_FILENO);
  ::close(input);
  ::close(before);
  EXPECT_THAT(problem, EndsWith("git: read ''"));
}

TEST(GitFile, FailureWithoutAnErrorLineIsUnknown) {
  const test_support::TemporaryFolder folder;
  EXPECT_THAT(ProblemWithGit(folder, ""), EndsWith(": git: unknown error"));
}

TEST(GitFile, NamesTheReasonIfGitCannotRun) {
  const test_support::TemporaryFolder folder;
  const std::filesystem::path file = folder.Path() / "data.csv";
  {
    const OnlyFolderInPath path(folder.Path());
    EXPECT_EQ(ProblemOf("HEAD", file), "cannot run git: No such file or directory");
  }
  const int lowest = ::dup(STDIN_FILENO);
  ASSERT_GE(lowest, 0);
  ::close(lowest);
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  // Without a free descriptor, the pipe fails. With two, the file for the errors of git fails.
  for (const int free : {0, 2}) {
    const rlimit limit = {static_cast<rlim_t>(lowest + free), before.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &limit);
    const std::string problem = ProblemOf("HEAD", file);
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(problem, "cannot run git: Too many open files") << free;
  }
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
  EXPECT_THAT(ProblemOf("HEAD~1", file),
              EndsWith("; this is a shallow clone, so fetch the revision if it is missing, for "
                       "example with 'git fetch --unshallow'"));
}

}  // namespace
}  // namespace hosts::author
