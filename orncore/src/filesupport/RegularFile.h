// An open regular file. The only unit that calls the operating system's file functions.
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

namespace orncore::filesupport {

/// Returns `path` as UTF-8. The bytes of a POSIX path are returned unchanged.
std::string UTF8FromPath(const std::filesystem::path& path);

/// Throws `config::ResultError` with `-error` and a text that names the file.
[[noreturn]] void ThrowFileError(int error, const std::filesystem::path& path);

/// Owns an open regular file and reads it from the start. One thread at a time.
class RegularFile {
 public:
  /// Opens `path`. Throws `config::ResultError`; -EOPNOTSUPP if `path` is not a regular file. Never
  /// waits, not even if `path` is a FIFO.
  explicit RegularFile(const std::filesystem::path& path);
  ~RegularFile();
  RegularFile(const RegularFile&) = delete;
  RegularFile& operator=(const RegularFile&) = delete;

  /// Reads the rest of the file. Throws `config::ResultError`, with -EFBIG if there are more than
  /// `maxBytes` bytes, and `config::FutureCancelled` if a stop is requested.
  std::vector<std::byte> ReadToEnd(std::size_t maxBytes, const std::stop_token& stop);

 private:
  // Returns the number of bytes read into `buffer`; 0 at the end of the file.
  std::size_t Read(std::span<std::byte> buffer);

  const std::filesystem::path path_;
  std::uintmax_t size_ = 0;  // when the file was opened
#if defined(__unix__) || defined(__APPLE__)
  int descriptor_;
#else
  std::ifstream stream_;
#endif
};

}  // namespace orncore::filesupport

#endif  // ORNCORE_SRC_FILESUPPORT_REGULARFILE_H_
