#include "orncore/src/filesupport/RegularFile.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <orncore/config/TopLevel.h>

#ifdef ORN_POSIX_FILES
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace orncore::filesupport {
namespace {

// The size of a read is limited, because `ReadToEnd` checks for a stop request only between reads.
constexpr std::size_t kLargestRead = std::size_t{1} << 20;
constexpr std::size_t kSmallestRead = 4096;

}  // namespace

std::string UTF8FromPath(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

void ThrowFileError(int error, const std::filesystem::path& path) {
  throw config::ResultError(-error,
                            UTF8FromPath(path) + ": " + std::generic_category().message(error));
}

#ifdef ORN_POSIX_FILES

namespace {

int Open(const std::filesystem::path& path) {
  int descriptor = -1;
  do {
    // Use O_NONBLOCK, because another process may have replaced the file with a FIFO since
    // `ReadRegularFile` checked its type. Opening a FIFO would otherwise wait for a writer.
    descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
  } while (descriptor < 0 && errno == EINTR);
  if (descriptor < 0) ThrowFileError(errno, path);
  return descriptor;
}

}  // namespace

RegularFile::RegularFile(const std::filesystem::path& path)
    : path_(path), descriptor_(Open(path_)) {
  struct stat status {};
  int error = ::fstat(descriptor_, &status) == 0 ? 0 : errno;
  if (error == 0 && !S_ISREG(status.st_mode)) error = EOPNOTSUPP;
  if (error != 0) {
    ::close(descriptor_);
    ThrowFileError(error, path_);
  }
  size_ = static_cast<std::uintmax_t>(status.st_size);
}

RegularFile::~RegularFile() {
  ::close(descriptor_);
}

std::size_t RegularFile::Read(std::span<std::byte> buffer) {
  for (;;) {
    const ssize_t count = ::read(descriptor_, buffer.data(), buffer.size());
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR) ThrowFileError(errno, path_);
  }
}

#else

RegularFile::RegularFile(const std::filesystem::path& path)
    : path_(path), stream_(path_, std::ios::binary) {
  if (!stream_) ThrowFileError(EACCES, path_);
  std::error_code error;
  if (!std::filesystem::is_regular_file(path_, error)) ThrowFileError(EOPNOTSUPP, path_);
  size_ = std::filesystem::file_size(path_, error);
  if (error) ThrowFileError(EIO, path_);
}

RegularFile::~RegularFile() = default;

std::size_t RegularFile::Read(std::span<std::byte> buffer) {
  stream_.read(reinterpret_cast<char*>(buffer.data()), static_cast<std::streamsize>(buffer.size()));
  if (stream_.bad()) ThrowFileError(EIO, path_);
  return static_cast<std::size_t>(stream_.gcount());
}

#endif

std::vector<std::byte> RegularFile::ReadToEnd(std::size_t maxBytes, const std::stop_token& stop) {
  if (size_ > maxBytes) ThrowFileError(EFBIG, path_);
  std::vector<std::byte> bytes;
  // Reserve space for one more read, so that the read that finds the end of the file does not
  // reallocate.
  bytes.reserve(static_cast<std::size_t>(size_) + kSmallestRead);
  for (;;) {
    if (stop.stop_requested()) throw config::FutureCancelled();
    const std::size_t used = bytes.size();
    bytes.resize(used + std::clamp(bytes.capacity() - used, kSmallestRead, kLargestRead));
    const std::size_t count = Read(std::span(bytes).subspan(used));
    bytes.resize(used + count);
    if (count == 0) return bytes;
    if (bytes.size() > maxBytes) ThrowFileError(EFBIG, path_);
  }
}

}  // namespace orncore::filesupport
