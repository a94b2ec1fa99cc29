#include "hosts/console/InputLines.h"

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "hosts/console/ToolError.h"

namespace hosts::console {

std::optional<std::string> InputLines::Next() {
  std::size_t searched = 0;
  for (;;) {
    const std::size_t end = ahead_.find('\n', searched);
    if (end != std::string::npos) {
      std::string line = ahead_.substr(0, end);
      ahead_.erase(0, end + 1);
      return line;
    }
    searched = ahead_.size();
    if (ReadMore()) continue;
    if (ahead_.empty()) return std::nullopt;
    return std::exchange(ahead_, {});
  }
}

bool InputLines::ReadMore() {
  std::array<char, 4096> buffer;
  ssize_t count = -1;
  do {
    count = ::read(STDIN_FILENO, buffer.data(), buffer.size());
  } while (count < 0 && errno == EINTR);
  if (count < 0) {
    throw ToolError(ExitStatus::kInput,
                    "Standard input cannot be read: " + std::generic_category().message(errno) +
                        ". Name a command, or give the commands on standard input, one a line.");
  }
  ahead_.append(buffer.data(), static_cast<std::size_t>(count));
  return count > 0;
}

}  // namespace hosts::console
