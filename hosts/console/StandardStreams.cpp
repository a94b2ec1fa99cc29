#include "hosts/console/StandardStreams.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

#include <sys/ioctl.h>
#include <unistd.h>

#include "hosts/console/TerminalText.h"

namespace hosts::console {
namespace {

constexpr std::size_t kUnknownTerminalWidth = 80;

/// Writes everything; answers the error number of the failure, 0 when there was none.
int WriteAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

bool IsSet(const char* variable) {
  const char* const value = std::getenv(variable);
  return value != nullptr && *value != '\0';
}

bool IsDumbTerminal() {
  const char* const terminal = std::getenv("TERM");
  return terminal == nullptr || *terminal == '\0' || std::string_view(terminal) == "dumb";
}

/// Whether escape sequences are wanted at all.
bool WantsSequences(ColorMode color) {
  if (color != ColorMode::kAuto) return color == ColorMode::kAlways;
  return ::isatty(STDOUT_FILENO) != 0 && !IsDumbTerminal();
}

std::size_t WidthOfOutput() {
  if (::isatty(STDOUT_FILENO) == 0) return 0;
  winsize size{};
  const bool isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isKnown ? size.ws_col : kUnknownTerminalWidth;
}

}  // namespace

void WriteOutput(std::string_view text, std::string_view outcome) {
  const int error = WriteAll(STDOUT_FILENO, text);
  if (error == EPIPE) throw ReaderGone();
  if (error != 0) {
    throw ToolError(ExitStatus::kOutput,
                    "Standard output cannot be written: " + std::generic_category().message(error) +
                        ". See where it leads." + (outcome.empty() ? "" : " ") +
                        std::string(outcome));
  }
}

void ReportError(std::string_view message) {
  const std::string line = "ornwhatsnew: " + SafeForTerminal(message, Whitespace::kShow) + "\n";
  static_cast<void>(WriteAll(STDERR_FILENO, line));
}

bool IsInteractive() {
  return ::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0;
}

TerminalLook LookOfOutput(ColorMode color, std::optional<std::size_t> width) {
  const bool hasHyperlinks = WantsSequences(color);
  // Who wants no colours may want links all the same.
  const bool isColorless = color == ColorMode::kAuto && IsSet("NO_COLOR");
  return {width ? *width : WidthOfOutput(), hasHyperlinks && !isColorless, hasHyperlinks};
}

}  // namespace hosts::console
