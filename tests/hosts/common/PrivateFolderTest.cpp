#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hosts/common/PrivateFolder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Threads.h"

namespace hosts::common {
namespace {

namespace fs = std::filesystem;

/// Calls `work`. Returns the error code of the `std::system_error` that it throws, or 0 if it
/// throws no exception.
int ErrorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::system_error& error) {
    return error.code().value();
  }
  return 0;
}

/// Calls `work`. Returns the message of the `std::system_error` that it throws, or an empty string
/// if it throws no exception.
std::string MessageOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const std::system_error& error) {
    return error.what();
  }
  return "";
}

class PrivateFolderTest : public testing::Test {
 protected:
  test_support::TemporaryFolder folder_;
};

TEST_F(PrivateFolderTest, OpensAFileAlsoIfStandardInputIsClosed) {
  const PrivateFolder folder(folder_.Path());
  const int standardInput = ::dup(STDIN_FILENO);
  ::close(STDIN_FILENO);
  const int error = ErrorOf([&] { folder.Open("file", O_CREAT | O_WRONLY); });
  ::dup2(standardInput, STDIN_FILENO);
  ::close(standardInput);
  EXPECT_EQ(error, 0);
}

TEST_F(PrivateFolderTest, DoesNotFollowALinkThatReplacedAFolder) {
  fs::create_directory(folder_.Path() / "a");
  const fs::path resolved = ResolveLinks(folder_.Path() / "a" / "new" / "state.json");
  fs::create_directory(folder_.Path() / "victim");
  fs::remove(folder_.Path() / "a");
  fs::create_directory_symlink("victim", folder_.Path() / "a");
  EXPECT_EQ(ENOTDIR, ErrorOf([&] { const PrivateFolder folder(resolved.parent_path()); }));
  EXPECT_TRUE(fs::is_empty(folder_.Path() / "victim"));
}

TEST_F(PrivateFolderTest, ReadsTheUmaskWhileOtherThreadsCreateFiles) {
  constexpr int kReads = 1'000;
  const mode_t before = ::umask(022);
  const PrivateFolder folder(folder_.Path());
  test_support::ThreadCounter correctReads;
  test_support::RunOnThreads(
      [&correctReads] {
        for (int read = 0; read < kReads; ++read) correctReads.Add(ReadUmask() == 022 ? 1 : 0);
      },
      [&folder] { folder.Open("file", O_WRONLY | O_CREAT); });
  EXPECT_EQ(022U, ::umask(before)) << "the umask has changed";
  EXPECT_EQ(test_support::kThreadCount * kReads, correctReads.Value());
}

TEST_F(PrivateFolderTest, RefusesAParentOfAMissingFolder) {
  // The system cannot open a path in which ".." follows a missing folder or a file. Lexical
  // normalization would make the path valid.
  folder_.Write("file", "");
  for (const char* path : {"missing/../state.json", "a/missing/../../state.json"}) {
    EXPECT_EQ(ENOENT, ErrorOf([&] { ResolveLinks(folder_.Path() / path); })) << path;
  }
  EXPECT_EQ(ENOTDIR, ErrorOf([&] { ResolveLinks(folder_.Path() / "file/../state.json"); }));
  fs::create_directory(folder_.Path() / "a");
  EXPECT_EQ(fs::canonical(folder_.Path()) / "state.json",
            ResolveLinks(folder_.Path() / "a/../state.json"));
}

TEST_F(PrivateFolderTest, FollowsAsManyLinksAsTheSystem) {
  folder_.Write("link0", "");
  for (int i = 1; i <= 41; ++i) {
    fs::create_symlink("link" + std::to_string(i - 1),
                       folder_.Path() / ("link" + std::to_string(i)));
  }
  EXPECT_TRUE(fs::exists(folder_.Path() / "link40"));
  EXPECT_EQ(fs::canonical(folder_.Path()) / "link0", ResolveLinks(folder_.Path() / "link40"));
  std::error_code error;
  EXPECT_FALSE(fs::exists(folder_.Path() / "link41", error));
  EXPECT_EQ(ELOOP, error.value());
  EXPECT_EQ(ELOOP, ErrorOf([&] { ResolveLinks(folder_.Path() / "link41"); }));
}

TEST_F(PrivateFolderTest, RefersToTheOpenedFolderAfterTheFolderIsReplaced) {
  const PrivateFolder folder(folder_.Path() / "a");
  fs::rename(folder_.Path() / "a", folder_.Path() / "moved");
  fs::create_directory_symlink("/nowhere", folder_.Path() / "a");
  static_cast<void>(folder.Open("file", O_WRONLY | O_CREAT));
  EXPECT_TRUE(fs::exists(folder_.Path() / "moved" / "file"));
}

TEST_F(PrivateFolderTest, OpensNoLinkAndDoesNotWaitForAPipe) {
  const PrivateFolder folder(folder_.Path());
  fs::create_symlink(folder_.Write("victim", "text"), folder_.Path() / "link");
  EXPECT_EQ(ELOOP, ErrorOf([&] { folder.Open("link", O_RDWR | O_CREAT); }));
  ASSERT_EQ(0, ::mkfifo((folder_.Path() / "pipe").c_str(), 0600));
  EXPECT_EQ(ENXIO, ErrorOf([&] { folder.Open("pipe", O_WRONLY); }));
}

TEST_F(PrivateFolderTest, ErrorsNameTheFileAndTheReason) {
  const fs::path file = folder_.Path() / "missing/../state.json";
  EXPECT_EQ("cannot open '" + file.native() + "': No such file or directory",
            MessageOf([&] { ResolveLinks(file); }));
  const PrivateFolder folder(folder_.Path());
  EXPECT_EQ("cannot open '" + (folder_.Path() / "file").native() + "': No such file or directory",
            MessageOf([&] { folder.Open("file", O_RDONLY); }));
}

}  // namespace
}  // namespace hosts::common
