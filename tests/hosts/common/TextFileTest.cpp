#include <cerrno>
#include <filesystem>
#include <string>

#include <gmock/gmock.h>

#include <orncore/config/TopLevel.h>

#include "hosts/common/TextFile.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::common {
namespace {

TEST(TextFile, ReturnsTheBytesUnchanged) {
  const test_support::TemporaryFolder folder;
  const std::string bytes("\xEF\xBB\xBF\0\r\n\xFF", 7);
  EXPECT_EQ(ReadTextFile(folder.Write("text file.bin", bytes)), bytes);
  EXPECT_EQ(ReadTextFile(folder.Write("empty", "")), "");
}

TEST(TextFile, NamesTheFileInTheException) {
  try {
    ReadTextFile("no/such file.json");
    FAIL() << "read a file that does not exist";
  } catch (const orncore::config::ResultError& error) {
    EXPECT_THAT(error.what(), testing::HasSubstr("no/such file.json"));
  }
  const test_support::TemporaryFolder folder;
  EXPECT_THROW(ReadTextFile(folder.Path()), orncore::config::ResultError);
}

TEST(TextFile, RejectsAFileAboveTheLimit) {
  const test_support::TemporaryFolder folder;
  const std::filesystem::path file = folder.Write("file", "four");
  EXPECT_EQ(ReadTextFile(file, 4), "four");
  try {
    ReadTextFile(file, 3);
    FAIL() << "read a file above the limit";
  } catch (const orncore::config::ResultError& error) {
    EXPECT_EQ(error.Result(), -EFBIG);
  }
}

TEST(TextFile, RemovesOneByteOrderMarkAtTheStart) {
  EXPECT_EQ(WithoutByteOrderMark("\xEF\xBB\xBFtext"), "text");
  EXPECT_EQ(WithoutByteOrderMark("\xEF\xBB\xBF\xEF\xBB\xBF"), kByteOrderMark);
  EXPECT_EQ(WithoutByteOrderMark("text\xEF\xBB\xBF"), "text\xEF\xBB\xBF");
  EXPECT_EQ(WithoutByteOrderMark("\xEF\xBB"), "\xEF\xBB");
}

struct MessageCase {
  int result;
  const char* message;
};

TEST(TextFile, ExplainsWhyAFileCannotBeOpened) {
  for (const MessageCase& test :
       {MessageCase{-ENOENT, "cannot open 'a b': No such file or directory"},
        MessageCase{-EISDIR, "cannot open 'a b': Is a directory"},
        MessageCase{-EOPNOTSUPP, "cannot open 'a b': not a regular file"}}) {
    EXPECT_EQ(test.message,
              OpenErrorMessage("a b", orncore::config::ResultError(test.result, "text")));
  }
}

}  // namespace
}  // namespace hosts::common
