// Checks the effects of program output on a terminal.
#ifndef FUZZ_TERMINALSCAN_H_
#define FUZZ_TERMINALSCAN_H_

#include <string>
#include <string_view>

namespace fuzz {

/// Requires that a panel affects the terminal only with line feeds and with the escape sequences
/// for styles and hyperlinks, and that every line ends with both switched off. Direction controls
/// and invisible characters are not allowed, except joiners and presentation selectors. Returns the
/// panel without escape sequences.
std::string RequireHarmlessPanel(std::string_view output);

/// Requires that the output contains no control characters except line feeds and tabs. Direction
/// controls and invisible characters are not allowed, except joiners and presentation selectors.
void RequireHarmlessText(std::string_view output);

}  // namespace fuzz

#endif  // FUZZ_TERMINALSCAN_H_
