// Bytes read from a file, in a buffer that goes back to a pool when the last reader lets go.
#ifndef ORNCORE_FILESUPPORT_RECYCLEDMEMORY_H_
#define ORNCORE_FILESUPPORT_RECYCLEDMEMORY_H_

#include <cstddef>
#include <memory>
#include <span>

#include <orncore/Export.h>

namespace orncore::filesupport {

/// Owns the bytes of one read. Its buffer is recycled: a few small buffers are kept for the next
/// reads, larger ones are freed at once.
///
/// Threads: the bytes never change once a read has handed them out, so that any number of threads
/// may read them; it may be destroyed on any thread.
class ORN_EXPORT RecycledMemory {
 public:
  /// Takes a buffer of at least `capacity` bytes, from the pool where it holds one; the size is 0.
  explicit RecycledMemory(std::size_t capacity);
  ~RecycledMemory();

  /// Not copyable: share it (std::shared_ptr<const RecycledMemory>) instead.
  RecycledMemory(const RecycledMemory&) = delete;
  RecycledMemory& operator=(const RecycledMemory&) = delete;

  /// The bytes in use.
  std::span<const std::byte> Bytes() const noexcept { return {buffer_.get(), size_}; }

  /// The bytes behind those in use, to be written by who fills the memory. Their values are
  /// indeterminate.
  std::span<std::byte> Spare() noexcept { return {buffer_.get() + size_, capacity_ - size_}; }

  /// Takes the first `count` bytes of Spare() into use. REQUIRES: count <= Spare().size().
  void Commit(std::size_t count) noexcept;

  /// Makes room for at least `spare` bytes behind those in use, which keep their values. Throws
  /// std::bad_alloc or std::length_error, and changes nothing then.
  void Reserve(std::size_t spare);

 private:
  std::unique_ptr<std::byte[]> buffer_;
  std::size_t capacity_ = 0;
  std::size_t size_ = 0;
};

}  // namespace orncore::filesupport

#endif  // ORNCORE_FILESUPPORT_RECYCLEDMEMORY_H_
