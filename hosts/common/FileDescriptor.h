// Owns a file descriptor, and repeats system calls that a signal interrupts.
#ifndef HOSTS_COMMON_FILEDESCRIPTOR_H_
#define HOSTS_COMMON_FILEDESCRIPTOR_H_

#include <cerrno>
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

}  // namespace hosts::common

#endif  // HOSTS_COMMON_FILEDESCRIPTOR_H_
