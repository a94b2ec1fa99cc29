// Tests the portable implementation of RegularFile, for systems without POSIX functions. The build
// compiles this program's copy of the class with ORN_PORTABLE_FILES.
#include <cerrno>
#include <filesystem>
#include <stop_token>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orncore/config/TopLevel.h>

#include "orncore/src/filesupport/RegularFile.h"
#include "tests/orncore/filesupport/FileFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace orncore::filesupport {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kNoLimit = std::size_t{1} << 30;

class PortableFileTest : public testing::Test {
 protected:
  static std::string Read(const fs::path& path) {
    const std::vector<std::byte> bytes = RegularFile(path).ReadToEnd(kNoLimit, {});
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }

  // Reads the file. Returns the result code of the failure, or 0 on success.
  static int ResultOf(const fs::path& path, std::size_t maxBytes) {
    try {
      RegularFile(path).ReadToEnd(maxBytes, {});
      return 0;
    } catch (const config::ResultError& error) {
      return error.Result();
    }
  }

  test_support::TemporaryFolder folder_;
};

TEST_F(PortableFileTest, ReadsTheBytesUnchanged) {
  const std::string bytes("\xEF\xBB\xBF\0\r\n\x1A\xFF", 8);
  EXPECT_EQ(Read(folder_.Write("file", bytes)), bytes);
}

TEST_F(PortableFileTest, ReadsFilesAroundTheSizesOfItsBuffers) {
  for (const std::size_t size : {0U, 1U, 4095U, 4096U, 4097U, 1U << 20, (1U << 20) + 1}) {
    const std::string bytes(size, 'x');
    EXPECT_EQ(Read(folder_.Write("file", bytes)), bytes) << size;
  }
}

TEST_F(PortableFileTest, RefusesADirectory) {
  EXPECT_EQ(ResultOf(folder_.Path(), kNoLimit), -EOPNOTSUPP);
}

TEST_F(PortableFileTest, FailsOnAMissingFile) {
  EXPECT_LT(ResultOf(folder_.Path() / "missing", kNoLimit), 0);
}

TEST_F(PortableFileTest, FailsOnAnUnreadableFile) {
  const fs::path path = folder_.Write("secret", "x");
  fs::permissions(folder_.Path(), fs::perms::all);
  fs::permissions(path, fs::perms::none);
  const NotRoot notRoot;
  EXPECT_EQ(ResultOf(path, kNoLimit), -EACCES);
}

// Reading /proc/self/mem fails at offset 0, because no memory is mapped at address 0.
TEST_F(PortableFileTest, FailsOnAFileThatCannotBeRead) {
  if (!fs::exists("/proc/self/mem")) GTEST_SKIP() << "this system has no '/proc/self/mem'";
  EXPECT_EQ(ResultOf("/proc/self/mem", kNoLimit), -EIO);
}

TEST_F(PortableFileTest, ReadsAFileUpToTheLimit) {
  const fs::path path = folder_.Write("file", "12345");
  EXPECT_EQ(ResultOf(path, 5), 0);
  EXPECT_EQ(ResultOf(path, 4), -EFBIG);
}

TEST_F(PortableFileTest, RefusesAFileThatGrowsBeyondTheLimit) {
  const fs::path path = folder_.Write("file", "12345");
  RegularFile file(path);
  folder_.Write("file", "123456");
  EXPECT_THROW(file.ReadToEnd(5, {}), config::ResultError);
}

TEST_F(PortableFileTest, StopsOnAStopRequest) {
  RegularFile file(folder_.Write("file", "x"));
  std::stop_source stop;
  stop.request_stop();
  EXPECT_THROW(file.ReadToEnd(kNoLimit, stop.get_token()), config::FutureCancelled);
}

}  // namespace
}  // namespace orncore::filesupport
