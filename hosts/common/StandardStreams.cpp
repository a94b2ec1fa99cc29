#include "hosts/common/StandardStreams.h"

#include <cerrno>
#include <cstddef>
#include <string>
#include <system_error>

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <orncore/string/SafeText.h>

#include "hosts/common/FileDescriptor.h"
#include "hosts/common/ToolError.h"

namespace hosts::common {
namespace {

// The maximum time, in milliseconds, to wait for the reader to close the pipe. On an idle machine,
// 200 of 200 readers that exited early closed it within 20 ms.
constexpr int kReaderPatience = 100;

/// Writes all of `text` to the file descriptor. Returns 0 on success and the value of errno on
/// failure.
int WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && ShouldRepeat(errno, descriptor, POLLOUT)) continue;
    if (written < 0) return errno;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

bool IsPipe(int descriptor) {
  struct stat status {};
  return ::fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
}

[[noreturn]] void ThrowOutputError(int error, std::string_view outcome) {
  const bool isClosed = error == EPIPE;
  // Print no message if there is no outcome to report, because programs such as `head` close the
  // pipe when they have read enough.
  if (isClosed && outcome.empty()) throw ToolError(ExitStatus::kOutput, "");
  const std::string reason =
      isClosed ? "the reader has closed standard output"
               : "cannot write to standard output: " + std::generic_category().message(error);
  throw ToolError(ExitStatus::kOutput,
                  reason + (outcome.empty() ? "" : "; ") + std::string(outcome));
}

}  // namespace

void WriteOutput(std::string_view text, std::string_view outcome) {
  const int error = WriteAll(STDOUT_FILENO, text);
  if (error != 0) ThrowOutputError(error, outcome);
}

void RequireReader(std::string_view outcome) {
  if (!IsPipe(STDOUT_FILENO)) return;
  // Request no events. Even then, poll() reports that the pipe has no reader.
  pollfd polled = {STDOUT_FILENO, 0, 0};
  const auto wait = [&polled] { return ::poll(&polled, 1, kReaderPatience); };
  if (RetryInterrupted(wait) > 0) ThrowOutputError(EPIPE, outcome);
}

void ReportError(std::string_view program, std::string_view message) {
  const std::string line =
      std::string(program) + ": " + orncore::string::EscapeInvisible(message) + "\n";
  static_cast<void>(WriteAll(STDERR_FILENO, line));
}

bool IsInteractive() {
  return ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0;
}

}  // namespace hosts::common
