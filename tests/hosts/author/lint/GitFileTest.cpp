#include "hosts/author/lint/GitFile.h"

#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
