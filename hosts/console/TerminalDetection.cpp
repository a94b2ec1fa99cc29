#include "hosts/console/TerminalDetection.h"

#include <cstdlib>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

namespace hosts::console {
namespace {

constexpr std::size_t kUnknownTerminalWidth = 80;

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

ornwhatsnew::TerminalOptions DetectTerminalOptions(ColorMode color,
                                                   std::optional<std::size_t> width) {
  const bool hasHyperlinks = UsesEscapeSequences(color);
  // NO_COLOR switches off colours, but not hyperlinks.
  const bool isColorless = color == ColorMode::kAuto && !EnvironmentValue("NO_COLOR").empty();
  return {width ? *width : OutputWidth(), hasHyperlinks && !isColorless, hasHyperlinks};
}

}  // namespace hosts::console
