// Checks that the program's output cannot control a terminal in unintended ways.
#ifndef FUZZ_TERMINALSCAN_H_
#define FUZZ_TERMINALSCAN_H_

#include <string>
#include <string_view>

namespace fuzz {

/// Returns whether a terminal shows nothing for the code point. Joiners and presentation selectors
/// are invisible, too.
bool IsInvisible(char32_t codePoint);

/// Requires that the only control characters of a panel are newlines and the escape sequences for
/// styles and hyperlinks. Requires that styles and hyperlinks are off at the end of each line.
/// Joiners and presentation selectors are allowed; direction controls and other invisible
/// characters are not. Returns the panel without escape sequences.
std::string RequireHarmlessPanel(std::string_view output);

/// Requires that the only control characters of the output are newlines and tabs. Joiners and
/// presentation selectors are allowed; direction controls and other invisible characters are not.
void RequireHarmlessText(std::string_view output);

}  // namespace fuzz

#endif  // FUZZ_TERMINALSCAN_H_
