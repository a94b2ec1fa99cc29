#include "hosts/console/StandardStreams.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <orncore/string/SafeText.h>

#include "hosts/common/FileDescriptor.h"

namespace hosts::console {
namespace {

constexpr std::size_t kUnknownTerminalWidth = 80;
// The time, in milliseconds, that a reader has to close the pipe. On an idle machine, 200 of 200
// readers that exited early closed it within 20 ms.
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

/// Waits until one of the `events` of poll(2), an error or the end of the stream occurs. If
/// `timeout` is negative, waits without a limit. Returns false if none occurs within `timeout`
/// milliseconds or if poll(2) fails.
bool WaitForEvent(int descriptor, short events, int timeout) {
  pollfd polled = {descriptor, events, 0};
  return common::RetryInterrupted([&] { return ::poll(&polled, 1, timeout); }) > 0;
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

/// Returns the value of the environment variable, or an empty string if it is not set.
std::string_view EnvironmentValue(const char* variable) {
  const char* const value = std::getenv(variable);
  return value == nullptr ? std::string_view() : value;
}

bool UsesEscapeSequences(ColorMode color) {
  if (color != ColorMode::kAuto) return color == ColorMode::kAlways;
  const std::string_view terminal = EnvironmentValue("TERM");
  return ::isatty(STDOUT_FILENO) != 0 && !terminal.empty() && terminal != "dumb";
}

std::size_t OutputWidth() {
  if (::isatty(STDOUT_FILENO) == 0) return 0;
  winsize size{};
  const bool isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : kUnknownTerminalWidth;
}

}  // namespace

void WriteOutput(std::string_view text, std::string_view outcome) {
  const int error = WriteAll(STDOUT_FILENO, text);
  if (error != 0) ThrowOutputError(error, outcome);
}

void RequireReader(std::string_view outcome) {
  // Request no events. Even then, poll() reports that the pipe has no reader.
  const bool isClosed = IsPipe(STDOUT_FILENO) && WaitForEvent(STDOUT_FILENO, 0, kReaderPatience);
  if (isClosed) ThrowOutputError(EPIPE, outcome);
}

bool ShouldRepeat(int error, int descriptor, short events) {
  if (error == EINTR) return true;
  constexpr int kNoLimit = -1;
  return error == EAGAIN && WaitForEvent(descriptor, events, kNoLimit);
}

void ReportError(std::string_view message) {
  const std::string line = "ornwhatsnew: " + orncore::string::EscapeInvisible(message) + "\n";
  static_cast<void>(WriteAll(STDERR_FILENO, line));
}

bool IsInteractive() {
  return ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0;
}

ornwhatsnew::TerminalOptions DetectTerminalOptions(ColorMode color,
                                                   std::optional<std::size_t> width) {
  const bool hasHyperlinks = UsesEscapeSequences(color);
  // NO_COLOR switches off colours, but not hyperlinks.
  const bool isColorless = color == ColorMode::kAuto && !EnvironmentValue("NO_COLOR").empty();
  return {width ? *width : OutputWidth(), hasHyperlinks && !isColorless, hasHyperlinks};
}

}  // namespace hosts::console
