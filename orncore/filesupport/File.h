// A file: its name, and reading it whole on the calling thread. `AsyncRead.h` reads in the
// background.
#ifndef ORNCORE_FILESUPPORT_FILE_H_
#define ORNCORE_FILESUPPORT_FILE_H_

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string_view>
#include <utility>
#include <vector>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace orncore::filesupport {

using string::UTF16String;

/// Names a file, which need not exist. The class never opens the file.
///
/// Threads: one thread at a time, as for a string.
class ORN_EXPORT File {
 public:
  /// Uses the whole of `path` as one path, without trimming, quoting rules or wildcards.
  explicit File(UTF16String path);

  /// Returns the path that the constructor received.
  const UTF16String& Path() const noexcept { return path_; }

  /// Returns the path made absolute (relative to the current directory at the time of the call) and
  /// lexically normal: without ".", ".." and repeated separators. Links are not followed. The
  /// result is empty for an empty path. An unpaired surrogate becomes U+FFFD.
  UTF16String FullPath() const;

 private:
  UTF16String path_;
};

/// Returns `text` as a path, encoded as the system requires (UTF-8 on POSIX systems). Returns
/// nothing if `text` contains an unpaired surrogate: no file has such a name, and a replacement
/// character would name another file.
ORN_EXPORT std::optional<std::filesystem::path> PathFromText(std::u16string_view text);

/// The bytes of a file that was read. They never change.
///
/// Threads: any number of threads may read the bytes at the same time.
class RecycledMemory {
 public:
  /// Takes ownership of `bytes`.
  explicit RecycledMemory(std::vector<std::byte> bytes) noexcept : bytes_(std::move(bytes)) {}

  /// Returns the bytes. The view is valid as long as the object.
  std::span<const std::byte> Bytes() const noexcept { return bytes_; }

 private:
  const std::vector<std::byte> bytes_;
};

/// Reads all bytes of the regular file `path`. Follows links.
///
/// Throws `config::ResultError` with a negated error number and a text that names the file:
/// -ENOENT if the file is missing, -EACCES if it is not readable, -EISDIR for a directory, -EINVAL
/// for a path that contains NUL, -EFBIG for more than 2 GiB, -EOPNOTSUPP for a FIFO, a device or a
/// socket. The function does not open those, so it never waits for another process.
///
/// If the file shrinks or grows during the call, the result is what was read up to the end of the
/// file at that time.
///
/// Throws `config::FutureCancelled` soon after a stop is requested through `stop`, and
/// `std::bad_alloc` if memory runs out. Safe to call from any thread.
ORN_EXPORT std::shared_ptr<const RecycledMemory> ReadRegularFile(const std::filesystem::path& path,
                                                                 const std::stop_token& stop = {});

}  // namespace orncore::filesupport

#endif  // ORNCORE_FILESUPPORT_FILE_H_
