// Defines descriptions that the help texts of several programs contain, and the width of the column
// to the left of the descriptions.
#ifndef HOSTS_COMMON_COMMANDLINEHELP_H_
#define HOSTS_COMMON_COMMANDLINEHELP_H_

#include <cstddef>

namespace hosts::common {

/// The number of terminal columns for names, such as "--host", in help texts. If the terminal has
/// 80 columns, 56 of them remain for the descriptions.
inline constexpr std::size_t kHelpNameColumns = 24;

inline constexpr const char* kDataHelp = "The What's New data file";
inline constexpr const char* kHostHelp = "The host description, a JSON file";
inline constexpr const char* kStateHelp =
    "The state store; ':memory:' stores nothing.\n"
    "Default: ornwhatsnew/state.json in $XDG_STATE_HOME,\n"
    "or in ~/.local/state if that is not an absolute path";
inline constexpr const char* kRatingHelp = "Show only features that you have seen and can rate";

}  // namespace hosts::common

#endif  // HOSTS_COMMON_COMMANDLINEHELP_H_
