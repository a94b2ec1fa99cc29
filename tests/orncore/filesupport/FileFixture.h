// Provides a fixture that creates regular files, FIFOs and sockets for the tests of file reads.
#ifndef TESTS_ORNCORE_FILESUPPORT_FILEFIXTURE_H_
#define TESTS_ORNCORE_FILESUPPORT_FILEFIXTURE_H_

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include <orncore/filesupport/File.h>

#include "tests/support/TemporaryFolder.h"

namespace orncore::filesupport {

class FileFixture : public testing::Test {
 protected:
  static std::string Text(const RecycledMemory& memory) {
    const auto bytes = memory.Bytes();
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }

  // Creates a FIFO without a writer and returns its path. A blocking open of this FIFO would wait
  // forever.
  std::filesystem::path MakeFifo() const {
    std::filesystem::path path = folder_.Path() / "fifo";
    Require(::mkfifo(path.c_str(), 0600) == 0);
    return path;
  }

  std::filesystem::path MakeSocket() const {
    std::filesystem::path path = folder_.Path() / "socket";
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
    const int number = ::socket(AF_UNIX, SOCK_STREAM, 0);
    Require(number >= 0);
    const int bound = ::bind(number, reinterpret_cast<sockaddr*>(&address), sizeof(address));
    ::close(number);
    Require(bound == 0);
    return path;
  }

  test_support::TemporaryFolder folder_;

 private:
  static void Require(bool succeeded) {
    if (!succeeded)
      throw std::system_error(errno, std::generic_category(), "cannot create a test file");
  }
};

// Drops root privileges while the object exists. Root can read every file, so tests of file
// permissions would fail for root. The constructor throws `std::system_error` on failure.
class NotRoot {
 public:
  NotRoot() : user_(::geteuid()) {
    if (user_ == 0 && ::seteuid(kNobody) != 0) {
      throw std::system_error(errno, std::generic_category(), "seteuid");
    }
  }
  ~NotRoot() {
    if (user_ == 0 && ::seteuid(user_) != 0) std::abort();
  }
  NotRoot(const NotRoot&) = delete;
  NotRoot& operator=(const NotRoot&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  uid_t user_;
};

}  // namespace orncore::filesupport

#endif  // TESTS_ORNCORE_FILESUPPORT_FILEFIXTURE_H_
