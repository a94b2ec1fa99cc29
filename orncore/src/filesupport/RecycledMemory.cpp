#include <orncore/filesupport/RecycledMemory.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <limits>
#include <mutex>
#include <stdexcept>
#include <utility>

#include <orncore/utility/NoDestructor.h>

namespace orncore::filesupport {
namespace {

constexpr std::size_t kSmallestBuffer = 4096;
constexpr std::size_t kLargestPooledBuffer = std::size_t{1} << 20;
constexpr std::size_t kPooledBuffers = 4;

struct Buffer {
  std::unique_ptr<std::byte[]> bytes;
  std::size_t capacity = 0;
};

Buffer MakeBuffer(std::size_t capacity) {
  return {std::make_unique_for_overwrite<std::byte[]>(capacity), capacity};
}

class BufferPool {
 public:
  static BufferPool& Instance() {
    static utility::NoDestructor<BufferPool> pool;
    return *pool;
  }

  Buffer Take(std::size_t capacity) {
    if (capacity <= kLargestPooledBuffer) {
      const std::lock_guard lock(mutex_);
      for (Buffer& buffer : buffers_) {
        if (buffer.bytes && buffer.capacity >= capacity) return std::exchange(buffer, {});
      }
    }
    return MakeBuffer(std::max(capacity, kSmallestBuffer));
  }

  void Give(Buffer returned) {
    if (returned.capacity > kLargestPooledBuffer) return;
    const std::lock_guard lock(mutex_);
    for (Buffer& buffer : buffers_) {
      if (!buffer.bytes) {
        buffer = std::move(returned);
        return;
      }
    }
  }

 private:
  std::mutex mutex_;
  std::array<Buffer, kPooledBuffers> buffers_;
};

}  // namespace

RecycledMemory::RecycledMemory(std::size_t capacity) {
  Buffer buffer = BufferPool::Instance().Take(capacity);
  buffer_ = std::move(buffer.bytes);
  capacity_ = buffer.capacity;
}

RecycledMemory::~RecycledMemory() {
  BufferPool::Instance().Give({std::move(buffer_), capacity_});
}

void RecycledMemory::Commit(std::size_t count) noexcept {
  assert(count <= capacity_ - size_);
  size_ += count;
}

void RecycledMemory::Reserve(std::size_t spare) {
  if (spare <= capacity_ - size_) return;
  constexpr std::size_t kMost = std::numeric_limits<std::ptrdiff_t>::max();
  if (spare > kMost - size_) throw std::length_error("RecycledMemory::Reserve");
  // Twice as much each time, so that a file of unknown size is copied a few times only.
  const std::size_t doubled = std::min(capacity_, kMost / 2) * 2;
  Buffer larger = BufferPool::Instance().Take(std::max(size_ + spare, doubled));
  std::copy_n(buffer_.get(), size_, larger.bytes.get());
  std::swap(buffer_, larger.bytes);
  std::swap(capacity_, larger.capacity);
  BufferPool::Instance().Give(std::move(larger));
}

}  // namespace orncore::filesupport
