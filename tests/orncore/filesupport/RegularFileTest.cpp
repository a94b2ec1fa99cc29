#include "orncore/src/filesupport/RegularFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <latch>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <orncore/config/TopLevel.h>
#include <orncore/filesupport/File.h>

#include "tests/orncore/filesupport/FileFixture.h"

namespace orncore::filesupport {
namespace {

namespace fs = std::filesystem;

class RegularFileTest : public FileFixture {
 protected:
  // Reads the file. Returns the result code of the failure, or 0 on success.
  static int ResultOf(const fs::path& path) {
    try {
      ReadRegularFile(path);
      return 0;
    } catch (const config::ResultError& error) {
      return error.Result();
    }
  }

  // Opens and reads the file without the check that `ReadRegularFile` performs before it opens a
  // file. The read fails if the file has more than `maxBytes` bytes. Returns the result code of the
  // failure, or 0 on success.
  static int ResultOfReading(const fs::path& path, std::size_t maxBytes) {
    try {
      RegularFile(path).ReadToEnd(maxBytes, {});
      return 0;
    } catch (const config::ResultError& error) {
      return error.Result();
    }
  }
};

TEST_F(RegularFileTest, ReadsTheBytesUnchanged) {
  const std::string bytes(
      "\xEF\xBB\xBF"
      "a\0\r\n\xFF",
      8);
  EXPECT_EQ(Text(*ReadRegularFile(folder_.Write("file", bytes))), bytes);
}

TEST_F(RegularFileTest, ReadsAnEmptyFile) {
  EXPECT_TRUE(ReadRegularFile(folder_.Write("empty", ""))->Bytes().empty());
}

TEST_F(RegularFileTest, ReadsFilesAroundTheSizesOfItsBuffers) {
  for (const std::size_t size : {4095U, 4096U, 4097U, 1U << 20, (1U << 20) + 1, 3'000'000U}) {
    std::string bytes(size, 'x');
    bytes.back() = 'y';
    EXPECT_EQ(Text(*ReadRegularFile(folder_.Write("file", bytes))), bytes) << size;
  }
}

// Files in /proc have content but report a size of 0, like a file that grew after its size was
// queried.
TEST_F(RegularFileTest, ReadsAFileThatIsLongerThanItsReportedSize) {
  if (!fs::exists("/proc/self/status")) GTEST_SKIP() << "this system has no '/proc/self/status'";
  EXPECT_THAT(Text(*ReadRegularFile("/proc/self/status")), testing::HasSubstr("Name:"));
}

TEST_F(RegularFileTest, ReadsAFileThatIsMuchLongerThanItsReportedSize) {
  const fs::path path = "/proc/self/smaps";
  if (!fs::exists(path)) GTEST_SKIP() << "this system has no file " << path;
  const std::string text = Text(*ReadRegularFile(path));
  EXPECT_GT(text.size(), 10'000U);
  EXPECT_THAT(text, testing::HasSubstr(" rw-p "));
  EXPECT_TRUE(text.ends_with('\n'));
}

// A file in /sys reports the size of a memory page, but usually contains only one short line. Such
// a file behaves like a file that shrank after its size was queried.
TEST_F(RegularFileTest, ReadsAFileThatIsShorterThanItsReportedSize) {
  const fs::path path = "/sys/kernel/profiling";
  if (!fs::exists(path)) GTEST_SKIP() << "this system has no file " << path;
  const auto memory = ReadRegularFile(path);
  EXPECT_FALSE(memory->Bytes().empty());
  EXPECT_LT(memory->Bytes().size(), fs::file_size(path));
}

TEST_F(RegularFileTest, FollowsASymbolicLinkToAFile) {
  folder_.Write("file", "linked");
  fs::create_symlink("file", folder_.Path() / "link");
  EXPECT_EQ(Text(*ReadRegularFile(folder_.Path() / "link")), "linked");
}

TEST_F(RegularFileTest, ReadsAFileWithAnyName) {
  for (const std::string name : {"a b", "\"q\"", "line\nend", "\xFF\xFE", "*"}) {
    EXPECT_EQ(Text(*ReadRegularFile(folder_.Write(name, name))), name);
  }
}

TEST_F(RegularFileTest, IgnoresAnEarlierErrno) {
  const fs::path path = folder_.Write("file", "read");
  errno = EINTR;
  EXPECT_EQ(Text(*ReadRegularFile(path)), "read");
}

TEST_F(RegularFileTest, FailsOnAMissingFile) {
  EXPECT_EQ(ResultOf(folder_.Path() / "missing"), -ENOENT);
  EXPECT_EQ(ResultOf(""), -ENOENT);
  EXPECT_EQ(ResultOf(folder_.Write("file", "") / "below"), -ENOTDIR);
}

TEST_F(RegularFileTest, FailsOnDanglingAndCircularLinks) {
  fs::create_symlink("nowhere", folder_.Path() / "dangling");
  EXPECT_EQ(ResultOf(folder_.Path() / "dangling"), -ENOENT);
  fs::create_symlink("circle", folder_.Path() / "circle");
  EXPECT_EQ(ResultOf(folder_.Path() / "circle"), -ELOOP);
}

// Reading /proc/self/mem fails at offset 0, because no memory is mapped at address 0.
TEST_F(RegularFileTest, FailsOnAFileThatCannotBeRead) {
  if (!fs::exists("/proc/self/mem")) GTEST_SKIP() << "this system has no '/proc/self/mem'";
  EXPECT_EQ(ResultOf("/proc/self/mem"), -EIO);
}

TEST_F(RegularFileTest, AcceptsAndClosesDescriptorZero) {
  const fs::path path = folder_.Write("file", "read");
  const int standardInput = ::dup(STDIN_FILENO);
  ::close(STDIN_FILENO);
  errno = EINTR;  // of an earlier call
  const std::string text = Text(*ReadRegularFile(path));
  const bool isFree = ::fcntl(STDIN_FILENO, F_GETFD) == -1;
  ::dup2(standardInput, STDIN_FILENO);
  ::close(standardInput);
  EXPECT_EQ(text, "read");
  EXPECT_TRUE(isFree);
}

TEST_F(RegularFileTest, FailsOnADirectory) {
  EXPECT_EQ(ResultOf(folder_.Path()), -EISDIR);
}

TEST_F(RegularFileTest, FailsOnAnUnreadableFile) {
  const fs::path path = folder_.Write("secret", "x");
  fs::permissions(folder_.Path(), fs::perms::all);
  fs::permissions(path, fs::perms::none);
  const NotRoot notRoot;
  EXPECT_EQ(ResultOf(path), -EACCES);
}

TEST_F(RegularFileTest, RefusesAFifoWithoutWaitingForAWriter) {
  EXPECT_EQ(ResultOf(MakeFifo()), -EOPNOTSUPP);
}

TEST_F(RegularFileTest, RefusesDevicesAndSockets) {
  EXPECT_EQ(ResultOf("/dev/null"), -EOPNOTSUPP);
  EXPECT_EQ(ResultOf("/dev/zero"), -EOPNOTSUPP);
  EXPECT_EQ(ResultOf(MakeSocket()), -EOPNOTSUPP);
}

TEST_F(RegularFileTest, RefusesANameThatContainsNul) {
  const std::string name = folder_.Write("file", "x").string() + std::string("\0.csv", 5);
  EXPECT_EQ(ResultOf(name), -EINVAL);
}

TEST_F(RegularFileTest, RefusesAFileThatIsTooLarge) {
  const fs::path path = folder_.Write("sparse", "");
  fs::resize_file(path, (std::uintmax_t{2} << 30) + 1);
  EXPECT_EQ(ResultOf(path), -EFBIG);
  fs::resize_file(path, std::uintmax_t{1} << 42);
  EXPECT_EQ(ResultOf(path), -EFBIG) << "the size must be checked before memory is allocated";
}

TEST_F(RegularFileTest, ReadsAFileUpToTheLimit) {
  const fs::path path = folder_.Write("file", "12345");
  EXPECT_EQ(RegularFile(path).ReadToEnd(5, {}).size(), 5U);
  EXPECT_EQ(ResultOfReading(path, 4), -EFBIG);
}

TEST_F(RegularFileTest, RefusesAFileThatGrowsBeyondTheLimit) {
  const fs::path path = folder_.Write("file", "12345");
  RegularFile file(path);
  folder_.Write("file", "123456");
  try {
    file.ReadToEnd(5, {});
    FAIL() << "the read did not fail";
  } catch (const config::ResultError& error) {
    EXPECT_EQ(error.Result(), -EFBIG);
  }
}

// The test skips the check that `ReadRegularFile` performs before it opens a file, as if another
// process had replaced the file after this check.
TEST_F(RegularFileTest, RefusesOtherFilesAfterTheOpenWithoutWaiting) {
  EXPECT_EQ(ResultOfReading(MakeFifo(), 1), -EOPNOTSUPP);
  EXPECT_EQ(ResultOfReading("/dev/null", 1), -EOPNOTSUPP);
  EXPECT_EQ(ResultOfReading(folder_.Path(), 1), -EOPNOTSUPP);
  EXPECT_EQ(ResultOfReading(folder_.Path() / "missing", 1), -ENOENT);
}

TEST_F(RegularFileTest, ClosesAFileThatItRefuses) {
  const fs::path fifo = MakeFifo();
  const int before = ::dup(STDIN_FILENO);
  ::close(before);
  EXPECT_EQ(ResultOfReading(fifo, 1), -EOPNOTSUPP);
  const int after = ::dup(STDIN_FILENO);
  ::close(after);
  EXPECT_EQ(after, before);
}

TEST_F(RegularFileTest, NamesTheFileInTheErrorMessage) {
  const fs::path path = folder_.Path() / "missing";
  try {
    ReadRegularFile(path);
    FAIL() << "the read did not fail";
  } catch (const config::ResultError& error) {
    EXPECT_THAT(error.what(), testing::StartsWith(path.string() + ": "));
  }
}

TEST_F(RegularFileTest, StopsOnAStopRequest) {
  const fs::path path = folder_.Write("file", "x");
  std::stop_source stop;
  EXPECT_EQ(Text(*ReadRegularFile(path, stop.get_token())), "x");
  stop.request_stop();
  EXPECT_THROW(ReadRegularFile(path, stop.get_token()), config::FutureCancelled);
}

// The file is so large that the stop request arrives long before the end of the read.
TEST_F(RegularFileTest, StopsAReadInProgress) {
  const fs::path path = folder_.Write("sparse", "");
  fs::resize_file(path, std::uintmax_t{2} << 30);
  std::stop_source stop;
  std::latch started(1);
  std::jthread stopper([&] {
    started.wait();
    stop.request_stop();
  });
  started.count_down();
  EXPECT_THROW(ReadRegularFile(path, stop.get_token()), config::FutureCancelled);
}

}  // namespace
}  // namespace orncore::filesupport
