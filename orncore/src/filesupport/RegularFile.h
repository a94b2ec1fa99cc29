// Opens and reads a regular file. All code of the library that opens or reads a file is in this
// class.
#ifndef ORNCORE_SRC_FILESUPPORT_REGULARFILE_H_
#define ORNCORE_SRC_FILESUPPORT_REGULARFILE_H_

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

// `RegularFile` has one implementation with POSIX functions, and a portable one for other systems.
// A test defines ORN_PORTABLE_FILES to compile the portable implementation on a POSIX system.
#if (defined(__unix__) || defined(__APPLE__)) && !defined(ORN_PORTABLE_FILES)
#define ORN_POSIX_FILES
#endif

namespace orncore::filesupport {

/// Returns `path` as UTF-8. On POSIX systems, returns the bytes of the path unchanged.
std::string UTF8FromPath(const std::filesystem::path& path);

/// Throws `config::ResultError` with the code `-error` and a message that names the file.
[[noreturn]] void ThrowFileError(int error, const std::filesystem::path& path);

/// Owns an open regular file and reads it from the start.
///
/// Threads: use one object from one thread at a time.
class RegularFile {
 public:
  /// Opens `path`. Throws `config::ResultError` if that fails or `path` is not a regular file. If
  /// `path` is a FIFO, the POSIX implementation does not wait for a writer.
  explicit RegularFile(const std::filesystem::path& path);
  ~RegularFile();
  RegularFile(const RegularFile&) = delete;
  RegularFile& operator=(const RegularFile&) = delete;

  /// Reads the rest of the file and returns it. Throws `config::ResultError` if a read fails. If
  /// the file has more than `maxBytes` bytes, the code of the exception is -EFBIG. Throws
  /// `config::FutureCancelled` after a stop request.
  std::vector<std::byte> ReadToEnd(std::size_t maxBytes, const std::stop_token& stop);

 private:
  // Reads up to `buffer.size()` bytes. Returns the number of bytes read, which is 0 at the end of
  // the file.
  std::size_t Read(std::span<std::byte> buffer);

  const std::filesystem::path path_;
  std::uintmax_t size_ = 0;  // the size of the file when it was opened
#ifdef ORN_POSIX_FILES
  int descriptor_;
#else
  std::ifstream stream_;
#endif
};

}  // namespace orncore::filesupport

#endif  // ORNCORE_SRC_FILESUPPORT_REGULARFILE_H_
