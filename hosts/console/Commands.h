// The program's commands. Each one works on the standard streams and returns the exit status. It
// throws `ToolError`, `common::StateStoreError` or `common::JsonError` on failure.
#ifndef HOSTS_CONSOLE_COMMANDS_H_
#define HOSTS_CONSOLE_COMMANDS_H_

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

#include <ornwhatsnew/utility/SharedTypes.h>

#include "hosts/console/ToolError.h"

namespace hosts::console {

enum class ColorMode { kAuto, kAlways, kNever };
enum class OutputFormat { kText, kJson };

/// The files that a command works on. Without `state`, the user's default store is used.
struct SourceArguments {
  std::filesystem::path data;
  std::filesystem::path host;
  std::optional<std::filesystem::path> state;
};

struct ShowArguments {
  SourceArguments sources;
  ornwhatsnew::DisplayOptions options;
  OutputFormat format = OutputFormat::kText;
  ColorMode color = ColorMode::kAuto;
  std::optional<std::size_t> width;  ///< columns; 0 never wraps; absent: the terminal's width
};

struct StatusArguments {
  SourceArguments sources;
  ornwhatsnew::DisplayOptions options;
  OutputFormat format = OutputFormat::kText;
  bool setsExitStatus = false;
};

struct RateArguments {
  SourceArguments sources;
  std::string key;
};

struct StateShowArguments {
  std::optional<std::filesystem::path> state;
  OutputFormat format = OutputFormat::kText;
};

struct StateResetArguments {
  std::optional<std::filesystem::path> state;
};

struct ConsoleArguments {
  std::optional<std::filesystem::path> host;  ///< absent: the library's default services
  std::string line;                           ///< empty: read lines from standard input
};

/// Prints the panel, then stores what was shown. If printing fails, nothing is stored.
ExitStatus Run(const ShowArguments& arguments);
/// Reports whether anything is new or can be rated.
ExitStatus Run(const StatusArguments& arguments);
/// Stores that a feature was rated.
ExitStatus Run(const RateArguments& arguments);
/// Prints the stored state.
ExitStatus Run(const StateShowArguments& arguments);
/// Deletes the stored state.
ExitStatus Run(const StateResetArguments& arguments);
/// Runs commands of the console registry.
ExitStatus Run(const ConsoleArguments& arguments);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_COMMANDS_H_
