// Parses the command line of the program `ornwhatsnew-panel`.
#ifndef HOSTS_PANEL_ARGUMENTS_H_
#define HOSTS_PANEL_ARGUMENTS_H_

#include <filesystem>
#include <optional>

namespace hosts::panel {

struct Arguments {
  std::filesystem::path data;
  std::filesystem::path host;
  std::optional<std::filesystem::path> state;  ///< absent: the user's default store
  bool showsRatings = false;                   ///< true: open the rating page
};

/// Parses the command line `argv`, which begins with the program's name. If the user requests help
/// or the version, prints it to standard output and returns `std::nullopt`. Throws
/// `common::ToolError` if the command line is not valid or the output cannot be written.
std::optional<Arguments> ParseArguments(int argc, const char* const* argv);

}  // namespace hosts::panel

#endif  // HOSTS_PANEL_ARGUMENTS_H_
