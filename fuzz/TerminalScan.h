// Checks output for characters and escape sequences that could control a terminal or hide text. If
// a check fails, the process prints a message and aborts.
#ifndef FUZZ_TERMINALSCAN_H_
#define FUZZ_TERMINALSCAN_H_

#include <string>
#include <string_view>

namespace fuzz {

/// Returns whether a terminal shows nothing for the code point. Returns true for joiners and
/// presentation selectors, too.
bool IsInvisible(char32_t codePoint);

/// Checks that a panel consists of harmless characters, newlines, and escape sequences for styles
/// and hyperlinks. Checks that styles and hyperlinks are off at the end of each line. Returns the
/// panel without escape sequences.
///
/// All characters of well-formed UTF-8 are harmless, except control characters, line and paragraph
/// separators, noncharacters and invisible characters. Joiners and presentation selectors are also
/// harmless.
std::string RequireHarmlessPanel(std::string_view output);

/// Checks that the output consists of newlines, tabs and harmless characters, as defined for
/// `RequireHarmlessPanel`. Escape sequences are not allowed.
void RequireHarmlessText(std::string_view output);

}  // namespace fuzz

#endif  // FUZZ_TERMINALSCAN_H_
