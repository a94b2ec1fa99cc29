#include "hosts/author/FileRewrite.h"

#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "hosts/common/TextFile.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::author {
namespace {

namespace fs = std::filesystem;

class FileRewrite : public testing::Test {
 protected:
  std::size_t CountFiles() const {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(folder_.Path())) ++count;
    return count;
  }

  fs::path File() const { return folder_.Path() / "data.csv"; }

  test_support::TemporaryFolder folder_;
};

TEST_F(FileRewrite, WritesANewFileWithTheUsualMode) {
  const mode_t mask = ::umask(022);
  WriteWholeFile(File(), "new");
  EXPECT_EQ(022U, ::umask(mask));
  EXPECT_EQ("new", common::ReadTextFile(File()));
  EXPECT_EQ(0644U, static_cast<unsigned>(fs::status(File()).permissions()));
  EXPECT_EQ(1U, CountFiles());
}

TEST_F(FileRewrite, ReplacesAFileAndKeepsItsMode) {
  folder_.Write("data.csv", "old");
  fs::permissions(File(), fs::perms(0640));
  WriteWholeFile(File(), "new");
  EXPECT_EQ("new", common::ReadTextFile(File()));
  EXPECT_EQ(0640U, static_cast<unsigned>(fs::status(File()).permissions()));
}

TEST_F(FileRewrite, WritesTheFileThatALinkLeadsTo) {
  folder_.Write("data.csv", "old");
  fs::create_symlink("data.csv", folder_.Path() / "link.csv");
  WriteWholeFile(folder_.Path() / "link.csv", "new");
  EXPECT_EQ("new", common::ReadTextFile(File()));
  EXPECT_TRUE(fs::is_symlink(folder_.Path() / "link.csv"));
}

TEST_F(FileRewrite, RefusesWhatItMustNotReplace) {
  fs::create_directory(File());
  EXPECT_THROW(WriteWholeFile(File(), "new"), std::system_error);
  const fs::path fifo = folder_.Path() / "fifo";
  ASSERT_EQ(0, ::mkfifo(fifo.c_str(), 0600));
  EXPECT_THROW(WriteWholeFile(fifo, "new"), std::system_error);
  EXPECT_TRUE(fs::is_fifo(fifo));
  EXPECT_THROW(WriteWholeFile(folder_.Path() / "missing/data.csv", "new"), std::system_error);
  EXPECT_FALSE(fs::exists(folder_.Path() / "missing"));
}

using FileRewriteDeathTest = FileRewrite;

// The write to the temporary file exceeds the file size limit of 0, so SIGXFSZ kills the program.
TEST_F(FileRewriteDeathTest, IgnoresTheTemporaryFileOfAKilledProgram) {
  folder_.Write("data.csv", "old");
  const auto write = [this] {
    constexpr rlimit kNothing = {0, 0};
    ::setrlimit(RLIMIT_CORE, &kNothing);
    ::setrlimit(RLIMIT_FSIZE, &kNothing);
    WriteWholeFile(File(), "new");
  };
  EXPECT_EXIT(write(), testing::KilledBySignal(SIGXFSZ), "");
  EXPECT_EQ(2U, CountFiles());
  WriteWholeFile(File(), "new");
  ReplaceWholeFile(File(), "new", "newer");
  EXPECT_EQ("newer", common::ReadTextFile(File()));
  EXPECT_EQ(2U, CountFiles());
}

TEST_F(FileRewrite, ChangesAFile) {
  folder_.Write("data.csv", "old");
  ChangeWholeFile(File(), [](std::string_view bytes) { return std::string(bytes) + ", new"; });
  EXPECT_EQ("old, new", common::ReadTextFile(File()));
  EXPECT_EQ(1U, CountFiles());
}

TEST_F(FileRewrite, ChangesNothingIfTheChangeFails) {
  folder_.Write("data.csv", "old");
  const auto fail = [](std::string_view) -> std::string { throw std::runtime_error("no"); };
  EXPECT_THROW(ChangeWholeFile(File(), fail), std::runtime_error);
  EXPECT_EQ("old", common::ReadTextFile(File()));
  EXPECT_EQ(1U, CountFiles());
}

TEST_F(FileRewrite, CreatesNoFileToChange) {
  const auto keep = [](std::string_view bytes) { return std::string(bytes); };
  EXPECT_THROW(ChangeWholeFile(File(), keep), std::system_error);
  EXPECT_EQ(0U, CountFiles());
}

// If `WriteWholeFile` did not lock the file, it could replace the file during a call to
// `ChangeWholeFile`. This call would then fail.
TEST_F(FileRewrite, WritersWaitForEachOther) {
  constexpr int kWrites = 15;
  folder_.Write("data.csv", "old");
  std::thread writer([this] {
    for (int i = 0; i < kWrites; ++i) EXPECT_NO_THROW(WriteWholeFile(File(), "theirs"));
  });
  const auto change = [](std::string_view bytes) { return std::string(bytes); };
  for (int i = 0; i < kWrites; ++i) EXPECT_NO_THROW(ChangeWholeFile(File(), change));
  writer.join();
  EXPECT_EQ("theirs", common::ReadTextFile(File()));
  EXPECT_EQ(1U, CountFiles());
}

TEST_F(FileRewrite, ReplacesOnlyTheExpectedContent) {
  folder_.Write("data.csv", "theirs");
  try {
    ReplaceWholeFile(File(), "old", "new");
    FAIL() << "replaced another program's content";
  } catch (const std::system_error& error) {
    EXPECT_THAT(error.what(), testing::StartsWith("cannot write '" + File().native() +
                                                  "', which another program has changed: "));
  }
  EXPECT_EQ("theirs", common::ReadTextFile(File()));
  ReplaceWholeFile(File(), "theirs", "new");
  EXPECT_EQ("new", common::ReadTextFile(File()));
}

TEST_F(FileRewrite, DoesNotOverwriteAFileThatAnotherProgramReplaces) {
  folder_.Write("data.csv", "old");
  const auto replace = [this](std::string_view) {
    folder_.Write("other.csv", "theirs");
    fs::rename(folder_.Path() / "other.csv", File());
    return std::string("ours");
  };
  EXPECT_THROW(ChangeWholeFile(File(), replace), std::system_error);
  EXPECT_EQ("theirs", common::ReadTextFile(File()));
}

}  // namespace
}  // namespace hosts::author
