#include <ornui/utility/ResourceManager.h>

#include <sys/stat.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orncore/string/Conversion.h>

#include "tests/support/TemporaryFolder.h"

namespace ornui::utility {
namespace {

namespace fs = std::filesystem;

// Returns the bytes of a resource, or std::nullopt if the manager does not find it. Expects that a
// failed load clears the buffer.
std::optional<std::string> Load(const ResourceManager& manager, const UTF16String& name,
                                const UTF16String& type = u"csv") {
  std::vector<unsigned char> bytes{'o', 'l', 'd'};
  const bool found = manager.LoadResource(name, type, bytes);
  if (!found) {
    EXPECT_TRUE(bytes.empty());
    return std::nullopt;
  }
  return std::string(bytes.begin(), bytes.end());
}

class FolderResourceManagerTest : public testing::Test {
 protected:
  FolderResourceManagerTest() {
    outer_.Write("secret.csv", "secret");
    outer_.Write("resources-not/secret.csv", "secret");
    outer_.Write("resources/news.csv", "news");
  }

  UTF16String OuterPath(const std::string& name) const {
    return orncore::string::UTF8to16((outer_.Path() / name).native());
  }

  test_support::TemporaryFolder outer_;
  fs::path folder_ = outer_.Path() / "resources";
  FolderResourceManager manager_{folder_};
};

TEST_F(FolderResourceManagerTest, LoadsAFileByName) {
  EXPECT_EQ(Load(manager_, u"news.csv"), "news");
  EXPECT_EQ(Load(manager_, u"news.csv", u"png"), "news");
}

TEST_F(FolderResourceManagerTest, AddsTheTypeIfTheNameDoesNotExist) {
  EXPECT_EQ(Load(manager_, u"news"), "news");
  EXPECT_EQ(Load(manager_, u"news", u"png"), std::nullopt);
  outer_.Write("resources/news", "without type");
  EXPECT_EQ(Load(manager_, u"news"), "without type");
}

TEST_F(FolderResourceManagerTest, LoadsBytesUnchanged) {
  const std::string bytes("\xEF\xBB\xBF\0\r\n\xFF", 7);
  outer_.Write("resources/bytes", bytes);
  EXPECT_EQ(Load(manager_, u"bytes"), bytes);
  outer_.Write("resources/empty", "");
  EXPECT_EQ(Load(manager_, u"empty"), "");
}

TEST_F(FolderResourceManagerTest, ReadsTheFileAtEveryLoad) {
  EXPECT_EQ(Load(manager_, u"news"), "news");
  outer_.Write("resources/news.csv", "newer");
  EXPECT_EQ(Load(manager_, u"news"), "newer");
}

TEST_F(FolderResourceManagerTest, LoadsFromSubfolders) {
  outer_.Write("resources/de/n\xC3\xA4\x68.csv", "nah");
  EXPECT_EQ(Load(manager_, u"de/n\u00E4h.csv"), "nah");
  EXPECT_EQ(Load(manager_, u"./de//n\u00E4h"), "nah");
}

TEST_F(FolderResourceManagerTest, FindsNoMissingResource) {
  EXPECT_EQ(Load(manager_, u"missing"), std::nullopt);
  EXPECT_EQ(Load(manager_, u"news.csv/below"), std::nullopt);
  EXPECT_EQ(Load(FolderResourceManager(outer_.Path() / "nowhere"), u"news"), std::nullopt);
  EXPECT_EQ(Load(FolderResourceManager(fs::path()), u"news"), std::nullopt);
}

TEST_F(FolderResourceManagerTest, ResolvesARelativeFolderAtEachLoad) {
  const FolderResourceManager manager("resources");
  const fs::path before = fs::current_path();
  fs::current_path(outer_.Path());
  EXPECT_EQ(Load(manager, u"news"), "news");
  fs::current_path(outer_.Path() / "resources");
  EXPECT_EQ(Load(manager, u"news"), std::nullopt);
  fs::current_path(before);
}

TEST_F(FolderResourceManagerTest, RefusesEmptyNamesAndNul) {
  outer_.Write("resources/.csv", "hidden");
  EXPECT_EQ(Load(manager_, u""), std::nullopt);
  EXPECT_EQ(Load(manager_, UTF16String(u"news.csv\0", 9)), std::nullopt);
  EXPECT_EQ(Load(manager_, UTF16String(u"\0news.csv", 9)), std::nullopt);
  EXPECT_EQ(Load(manager_, u"news", UTF16String(u"csv\0", 4)), std::nullopt);
}

TEST_F(FolderResourceManagerTest, RefusesUnpairedSurrogates) {
  outer_.Write("resources/\xEF\xBF\xBD", "replacement character");
  outer_.Write("resources/name.\xEF\xBF\xBD", "replacement character");
  EXPECT_EQ(Load(manager_, u"\xD800"), std::nullopt);
  EXPECT_EQ(Load(manager_, u"name", u"\xDC00"), std::nullopt);
  EXPECT_EQ(Load(manager_, u"\uFFFD"), "replacement character");
}

TEST_F(FolderResourceManagerTest, RefusesAbsoluteNames) {
  EXPECT_EQ(Load(manager_, OuterPath("secret.csv")), std::nullopt);
  EXPECT_EQ(Load(manager_, OuterPath("resources/news.csv")), std::nullopt);
  EXPECT_EQ(Load(manager_, u"/"), std::nullopt);
}

TEST_F(FolderResourceManagerTest, RefusesNamesWithDotSegments) {
  outer_.Write("resources/de/file", "x");
  for (const UTF16String name :
       {u"../secret.csv", u"../secret", u"de/../../secret.csv", u"de/../news.csv", u"..", u".",
        u"../resources-not/secret.csv", u"de/.."}) {
    EXPECT_EQ(Load(manager_, name), std::nullopt) << orncore::string::UTF16to8(name);
  }
}

TEST_F(FolderResourceManagerTest, RefusesATypeThatLeavesTheFolder) {
  fs::create_directory(folder_ / "x.");
  EXPECT_EQ(Load(manager_, u"x", u"/../../secret.csv"), std::nullopt);
}

TEST_F(FolderResourceManagerTest, RefusesLinksThatLeaveTheFolder) {
  fs::create_symlink("../secret.csv", folder_ / "link.csv");
  fs::create_symlink("..", folder_ / "up");
  fs::create_symlink("../resources-not", folder_ / "beside");
  EXPECT_EQ(Load(manager_, u"link.csv"), std::nullopt);
  EXPECT_EQ(Load(manager_, u"link"), std::nullopt);
  EXPECT_EQ(Load(manager_, u"up/secret.csv"), std::nullopt);
  EXPECT_EQ(Load(manager_, u"beside/secret.csv"), std::nullopt);
}

TEST_F(FolderResourceManagerTest, FollowsLinksInsideTheFolder) {
  fs::create_symlink("news.csv", folder_ / "latest.csv");
  EXPECT_EQ(Load(manager_, u"latest"), "news");
}

TEST_F(FolderResourceManagerTest, FindsNothingForACircularLink) {
  fs::create_symlink("circle", folder_ / "circle");
  EXPECT_EQ(Load(manager_, u"circle"), std::nullopt);
}

TEST_F(FolderResourceManagerTest, AcceptsALinkAsItsFolder) {
  fs::create_directory_symlink("resources", outer_.Path() / "linked");
  EXPECT_EQ(Load(FolderResourceManager(outer_.Path() / "linked"), u"news"), "news");
}

TEST_F(FolderResourceManagerTest, LoadsOnlyRegularFiles) {
  fs::create_directory(folder_ / "directory.csv");
  ASSERT_EQ(::mkfifo((folder_ / "fifo").c_str(), 0600), 0);
  EXPECT_EQ(Load(manager_, u"directory"), std::nullopt);
  EXPECT_EQ(Load(manager_, u"directory.csv"), std::nullopt);
  EXPECT_EQ(Load(manager_, u"fifo"), std::nullopt);
}

}  // namespace
}  // namespace ornui::utility
