#include <cerrno>
#include <string>

#include <gmock/gmock.h>

#include <orncore/config/TopLevel.h>

#include "hosts/common/TextFile.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::common {
namespace {

TEST(TextFile, GivesTheBytesAsTheyAre) {
  const test_support::TemporaryFolder folder;
  const std::string bytes("\xEF\xBB\xBF\0\r\n\xFF", 7);
  EXPECT_EQ(ReadTextFile(folder.Write("text file.bin", bytes)), bytes);
  EXPECT_EQ(ReadTextFile(folder.Write("empty", "")), "");
}

TEST(TextFile, NamesTheFileThatItCannotRead) {
  try {
    ReadTextFile("no/such file.json");
    FAIL() << "read a file that is not there";
  } catch (const orncore::config::ResultError& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("no/such file.json"));
  }
  const test_support::TemporaryFolder folder;
  EXPECT_THROW(ReadTextFile(folder.Path()), orncore::config::ResultError);
}

struct ReasonCase {
  int result;
  const char* reason;
};

TEST(TextFile, GivesTheReasonWithoutTheFile) {
  for (const ReasonCase& test :
       {ReasonCase{-ENOENT, "No such file or directory"}, ReasonCase{-EISDIR, "Is a directory"},
        ReasonCase{-EOPNOTSUPP, "it is no regular file"}}) {
    EXPECT_EQ(test.reason, ReasonOf(orncore::config::ResultError(test.result, "file: text")));
  }
}

}  // namespace
}  // namespace hosts::common
