#include "hosts/console/InputLines.h"

#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "hosts/common/FileDescriptor.h"
#include "hosts/common/ToolError.h"

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
  const ssize_t count = common::ReadSome(STDIN_FILENO, block);
  if (count < 0) {
    throw common::ToolError(common::ExitStatus::kInput, "cannot read standard input: " +
                                                            std::generic_category().message(errno));
  }
  buffer_.append(block.data(), static_cast<std::size_t>(count));
  return count > 0;
}

}  // namespace hosts::console
