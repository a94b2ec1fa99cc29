#include "hosts/console/InputLines.h"

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include <poll.h>
#include <unistd.h>

#include "hosts/console/StandardStreams.h"

namespace hosts::console {

std::optional<std::string> InputLines::Next() {
  std::size_t searched = 0;
  for (;;) {
    const std::size_t end = buffer_.find('\n', searched);
    if (end != std::string::npos) {
      std::string line = buffer_.substr(0, end);
      buffer_.erase(0, end + 1);
      return line;
    }
    searched = buffer_.size();
    if (ReadMore()) continue;
    if (buffer_.empty()) return std::nullopt;
    return std::exchange(buffer_, {});
  }
}

bool InputLines::ReadMore() {
  std::array<char, 4096> block;
  ssize_t count = -1;
  do {
    count = ::read(STDIN_FILENO, block.data(), block.size());
  } while (count < 0 && ShouldRepeat(errno, STDIN_FILENO, POLLIN));
  if (count < 0) {
    throw ToolError(ExitStatus::kInput,
                    "cannot read standard input: " + std::generic_category().message(errno));
  }
  buffer_.append(block.data(), static_cast<std::size_t>(count));
  return count > 0;
}

}  // namespace hosts::console
