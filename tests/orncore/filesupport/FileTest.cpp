#include <orncore/filesupport/File.h>

#include <filesystem>

#include <gtest/gtest.h>

#include <orncore/string/Conversion.h>

#include "tests/support/TemporaryFolder.h"

namespace orncore::filesupport {
namespace {

TEST(File, KeepsThePathUnchanged) {
  EXPECT_EQ(File(u" a/../\"b\" ").Path(), u" a/../\"b\" ");
  EXPECT_EQ(File(u"").Path(), u"");
}

TEST(File, MayHaveTwoGibibytes) {
  EXPECT_EQ(kMaxFileBytes, 2'147'483'648U);
}

struct PathCase {
  std::u16string_view path;
  std::u16string_view full;
};

TEST(File, NormalizesAbsolutePaths) {
  const PathCase cases[] = {
      {u"/", u"/"},
      {u"/a/b", u"/a/b"},
      {u"/a/./b//c", u"/a/b/c"},
      {u"/a/../b", u"/b"},
      {u"/../a", u"/a"},
      {u"/a b/\"c\"\n", u"/a b/\"c\"\n"},
      {u"/\u00FC/\U0001F600", u"/\u00FC/\U0001F600"},
      {u"/a\xD800", u"/a\uFFFD"},
      {u"", u""},
  };
  for (const PathCase& c : cases) EXPECT_EQ(File(UTF16String(c.path)).FullPath(), c.full);
}

TEST(File, ResolvesRelativePathsFromTheCurrentDirectory) {
  const UTF16String current = string::UTF8to16(std::filesystem::current_path().native());
  EXPECT_EQ(File(u"a/./b").FullPath(), current + u"/a/b");
  EXPECT_EQ(File(u" ").FullPath(), current + u"/ ");
}

TEST(File, ToleratesARemovedCurrentDirectory) {
  const std::filesystem::path before = std::filesystem::current_path();
  {
    const test_support::TemporaryFolder folder;
    std::filesystem::current_path(folder.Path());
  }
  EXPECT_EQ(File(u"a/../b").FullPath(), u"b");
  std::filesystem::current_path(before);
}

TEST(PathFromText, ConvertsTheTextToUTF8) {
  EXPECT_EQ(PathFromText(u"")->native(), "");
  EXPECT_EQ(PathFromText(u"a/n\u00E4h \U0001F600")->native(), "a/n\xC3\xA4h \xF0\x9F\x98\x80");
  EXPECT_EQ(PathFromText(u"\uFFFD")->native(), "\xEF\xBF\xBD");
}

TEST(PathFromText, ReturnsNothingForAnUnpairedSurrogate) {
  for (const std::u16string_view text : {u"\xD800", u"a\xDC00", u"\xD83D/\xDE00", u"a/\xD83D"}) {
    EXPECT_EQ(PathFromText(text), std::nullopt);
  }
}

}  // namespace
}  // namespace orncore::filesupport
