// Owns a file descriptor, reads from it, and repeats system calls that a signal interrupts.
#ifndef HOSTS_COMMON_FILEDESCRIPTOR_H_
#define HOSTS_COMMON_FILEDESCRIPTOR_H_

#include <cerrno>
#include <cstddef>
#include <span>
#include <string>
#include <utility>

#include <unistd.h>

namespace hosts::common {

/// Owns a file descriptor and closes it in the destructor. It can be moved but not copied.
class FileDescriptor {
 public:
  /// Takes ownership of `number`, which is an open file descriptor or -1.
  explicit FileDescriptor(int number) noexcept : number_(number) {}
  ~FileDescriptor() {
    if (number_ >= 0) ::close(number_);
  }
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  /// Exchanges the file descriptors of the two objects.
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }

  /// Returns the file descriptor, or -1 if there is none.
  int Number() const noexcept { return number_; }

 private:
  int number_;
};

/// Calls `call`, and repeats it while a signal interrupts it. Returns the result of the last call,
/// which is negative on failure. `errno` then contains the reason.
template <class Call>
auto RetryInterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

/// Returns whether to repeat a read or a write that failed with the error number `error`. Returns
/// true if a signal interrupted the call. If the file descriptor is non-blocking and was not ready,
/// waits for the `events` of poll(2), and then returns true. Returns false for every other error,
/// or if poll(2) fails. Another program can make the standard streams of this program non-blocking,
/// for example if both use one terminal.
bool ShouldRepeat(int error, int descriptor, short events);

/// Reads up to `buffer.size()` bytes. If the file descriptor is non-blocking, waits for bytes.
/// Returns the number of bytes, which is 0 at the end of the input and negative on failure. `errno`
/// then contains the reason.
ssize_t ReadSome(int descriptor, std::span<char> buffer);

/// Reads up to the end of the input, and returns the bytes. Stops early if it has read more than
/// `maxBytes` bytes. If the file descriptor is non-blocking, waits for bytes. On failure, throws
/// `std::system_error` with the message "cannot read NAME: REASON".
std::string ReadToEnd(int descriptor, std::size_t maxBytes, const std::string& name);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_FILEDESCRIPTOR_H_
