// Reading a whole file on the calling thread: what the asynchronous read does, for callers that
// have nothing else to do meanwhile.
#ifndef ORNCORE_FILESUPPORT_REGULARFILE_H_
#define ORNCORE_FILESUPPORT_REGULARFILE_H_

#include <cstddef>
#include <filesystem>
#include <memory>
#include <stop_token>

#include <orncore/Export.h>
#include <orncore/config/TopLevel.h>
#include <orncore/filesupport/RecycledMemory.h>

namespace orncore::filesupport {

/// Says by its type that a read was cancelled; declared where result codes are made of failures.
using config::FutureCancelled;

/// No larger file is read: 2 GiB. What is read whole is meant to be held in memory.
inline constexpr std::size_t kMaxFileBytes = std::size_t{2} << 30;

/// Reads all bytes of the regular file `path`; links are followed.
///
/// Throws config::ResultError, whose text names the file, with the negated error number: -ENOENT
/// for a missing file, -EACCES for an unreadable one, -EISDIR for a directory, -EINVAL for a path
/// with a NUL in it, -EFBIG for more than kMaxFileBytes, -EOPNOTSUPP for a FIFO, a device
/// or a socket, which are not opened: it never waits for another process.
/// A file that shrinks meanwhile gives the bytes that were there, one that grows those up to its
/// end as met.
///
/// Throws FutureCancelled as soon as it sees that `stop` was requested, std::bad_alloc where memory
/// runs out. Safe from any thread.
ORN_EXPORT std::shared_ptr<const RecycledMemory> ReadRegularFile(const std::filesystem::path& path,
                                                                 const std::stop_token& stop = {});

}  // namespace orncore::filesupport

#endif  // ORNCORE_FILESUPPORT_REGULARFILE_H_
