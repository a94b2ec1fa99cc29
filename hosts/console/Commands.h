// The program's commands. Each does its work on the standard streams and answers how it ended;
// what goes wrong is thrown (`ToolError`, `common::StateStoreError`,
// `common::HostDescriptionError`).
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

/// The list to work on, and where its state is kept; without `state` in the user's own store.
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
  std::optional<std::size_t> width;  ///< columns; 0 never wraps; absent: the terminal's
};

struct StatusArguments {
  SourceArguments sources;
  ornwhatsnew::DisplayOptions options;
  OutputFormat format = OutputFormat::kText;
  bool saysItByExitStatus = false;
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
  std::optional<std::filesystem::path> host;  ///< absent: the library's defaults then stand
  std::string line;                           ///< empty: lines are read from standard input
};

/// Prints the panel, then remembers what it showed. What could not be printed is not remembered.
ExitStatus Run(const ShowArguments& arguments);
/// Says whether anything is new or waits for a rating.
ExitStatus Run(const StatusArguments& arguments);
/// Remembers that a feature was rated.
ExitStatus Run(const RateArguments& arguments);
/// Says what is kept.
ExitStatus Run(const StateShowArguments& arguments);
/// Forgets everything that is kept.
ExitStatus Run(const StateResetArguments& arguments);
/// Runs commands of the console registry.
ExitStatus Run(const ConsoleArguments& arguments);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_COMMANDS_H_
