// Defines a class for file paths, and a function that reads a whole file on the calling thread.
// `AsyncRead.h` defines a function that reads files in the background.
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

/// Stores the path of a file. The file need not exist, and the class never opens it.
///
/// Threads: several threads may use an object at the same time if none of them changes it.
class ORN_EXPORT File {
 public:
  /// Stores `path` unchanged. Spaces, quotation marks and wildcards in it have no special meaning.
  explicit File(UTF16String path);

  /// Returns the path that was passed to the constructor.
  const UTF16String& Path() const noexcept { return path_; }

  /// Returns the absolute form of the path, without ".", ".." and repeated separators. Does not
  /// resolve symbolic links. Resolves a relative path against the current directory. If that
  /// directory no longer exists, returns a relative path, which can begin with "..".
  ///
  /// Replaces each unpaired surrogate with U+FFFD. Returns an empty string for an empty path.
  UTF16String FullPath() const;

 private:
  UTF16String path_;
};

/// Converts `text` to a path in the encoding of the system, which is UTF-8 on POSIX systems.
///
/// Returns `std::nullopt` if `text` contains an unpaired surrogate, because a path with a
/// replacement character would name another file. Safe to call from any thread.
ORN_EXPORT std::optional<std::filesystem::path> PathFromText(std::u16string_view text);

/// Owns the bytes that were read from a file. The bytes never change.
///
/// Threads: several threads may read the bytes at the same time.
class RecycledMemory {
 public:
  /// Takes ownership of `bytes`.
  explicit RecycledMemory(std::vector<std::byte> bytes) noexcept : bytes_(std::move(bytes)) {}

  /// Returns the bytes. The view is valid until the object is destroyed.
  std::span<const std::byte> Bytes() const noexcept { return bytes_; }

 private:
  const std::vector<std::byte> bytes_;
};

/// The default maximum size of a file that `ReadRegularFile` reads: 2 GiB.
inline constexpr std::size_t kMaxFileBytes = std::size_t{2} << 30;

/// Reads all bytes of the regular file `path` and returns them. Follows symbolic links.
///
/// If the read fails, throws `config::ResultError`. Its message names the file. Its code is a
/// negated error number of the system, such as:
///
///   -ENOENT       the file does not exist
///   -EACCES       the user has no permission to read the file
///   -EISDIR       the path names a directory
///   -EOPNOTSUPP   the path names a FIFO, a device or a socket
///   -EINVAL       the path contains NUL
///   -EFBIG        the file is larger than `maxBytes`, which is 2 GiB by default
///
/// Checks the type of the file before opening it, because opening a FIFO or a device can wait for
/// another process or have side effects. If the file changes during the call, the result may
/// contain old and new bytes. The result ends where the last read found the end of the file.
///
/// Checks `stop` before each read of at most 1 MiB and throws `config::FutureCancelled` after a
/// stop request. Throws `std::bad_alloc` if memory runs out. Safe to call from any thread.
ORN_EXPORT std::shared_ptr<const RecycledMemory> ReadRegularFile(
    const std::filesystem::path& path, const std::stop_token& stop = {},
    std::size_t maxBytes = kMaxFileBytes);

}  // namespace orncore::filesupport

#endif  // ORNCORE_FILESUPPORT_FILE_H_
