#include "hosts/common/FileDescriptor.h"

#include <system_error>

#include <poll.h>

namespace hosts::common {

bool ShouldRepeat(int error, int descriptor, short events) {
  if (error == EINTR) return true;
  if (error != EAGAIN) return false;
  pollfd polled = {descriptor, events, 0};
  constexpr int kNoLimit = -1;
  return RetryInterrupted([&polled] { return ::poll(&polled, 1, kNoLimit); }) > 0;
}

ssize_t ReadSome(int descriptor, std::span<char> buffer) {
  for (;;) {
    const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
    if (count >= 0 || !ShouldRepeat(errno, descriptor, POLLIN)) return count;
  }
}

std::string ReadToEnd(int descriptor, std::size_t maxBytes, const std::string& name) {
  std::string text;
  std::string block(std::size_t{1} << 16, '\0');
  while (text.size() <= maxBytes) {
    const ssize_t count = ReadSome(descriptor, block);
    if (count < 0) throw std::system_error(errno, std::generic_category(), "cannot read " + name);
    if (count == 0) break;
    text.append(block, 0, static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace hosts::common
