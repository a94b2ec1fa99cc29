#include <orncore/filesupport/RegularFile.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <string>
#include <system_error>

namespace orncore::filesupport {
namespace {

// Between two looks at whether the read is still wanted.
constexpr std::size_t kLargestPiece = std::size_t{1} << 20;
// Room that is made for a file that grew.
constexpr std::size_t kGrowth = 4096;

class Descriptor {
 public:
  explicit Descriptor(int number) noexcept : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Number() const noexcept { return number_; }

 private:
  int number_;
};

[[noreturn]] void Fail(int error, const std::filesystem::path& path) {
  throw config::ResultError(-error, path.native() + ": " + std::generic_category().message(error));
}

void RequireReadable(const struct stat& status, const std::filesystem::path& path) {
  if (S_ISDIR(status.st_mode)) Fail(EISDIR, path);
  if (!S_ISREG(status.st_mode)) Fail(EOPNOTSUPP, path);
  if (static_cast<std::uintmax_t>(status.st_size) > kMaxFileBytes) Fail(EFBIG, path);
}

int Open(const char* path) {
  int number = -1;
  do {
    // Should the file be exchanged for a FIFO behind our back, O_NONBLOCK opens it all the same.
    number = ::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  } while (number < 0 && errno == EINTR);
  return number;
}

// The number of bytes read into `buffer`; 0 at the end of the file.
std::size_t ReadPiece(const Descriptor& file, std::span<std::byte> buffer,
                      const std::filesystem::path& path) {
  for (;;) {
    const ssize_t count =
        ::read(file.Number(), buffer.data(), std::min(buffer.size(), kLargestPiece));
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) Fail(errno, path);
  }
}

std::shared_ptr<const RecycledMemory> ReadAll(const Descriptor& file, std::size_t expected,
                                              const std::filesystem::path& path,
                                              const std::stop_token& stop) {
  // One byte more than expected, so that the end is met without growing.
  auto memory = std::make_shared<RecycledMemory>(expected + 1);
  for (;;) {
    if (stop.stop_requested()) throw FutureCancelled();
    if (memory->Spare().empty()) memory->Reserve(kGrowth);
    const std::size_t count = ReadPiece(file, memory->Spare(), path);
    if (count == 0) return memory;
    memory->Commit(count);
    if (memory->Bytes().size() > kMaxFileBytes) Fail(EFBIG, path);
  }
}

}  // namespace

std::shared_ptr<const RecycledMemory> ReadRegularFile(const std::filesystem::path& path,
                                                      const std::stop_token& stop) {
  if (stop.stop_requested()) throw FutureCancelled();
  const std::string& name = path.native();
  if (name.find('\0') != std::string::npos) Fail(EINVAL, path);
  struct stat status {};
  // Opening a device or a FIFO can have effects of its own, so that it is looked at before.
  if (::stat(name.c_str(), &status) != 0) Fail(errno, path);
  RequireReadable(status, path);
  const Descriptor file(Open(name.c_str()));
  if (file.Number() < 0) Fail(errno, path);
  if (::fstat(file.Number(), &status) != 0) Fail(errno, path);
  RequireReadable(status, path);
  return ReadAll(file, static_cast<std::size_t>(status.st_size), path, stop);
}

}  // namespace orncore::filesupport
