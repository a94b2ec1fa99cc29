// Checks the output of a program as a terminal interprets it.
#ifndef FUZZ_TERMINALSCAN_H_
#define FUZZ_TERMINALSCAN_H_

#include <string>
#include <string_view>

namespace fuzz {

/// Requires that the output controls a terminal only with line feeds and the two kinds of escape
/// sequences of the panel, colours and hyperlinks; that every line ends with both switched off; and
/// that it has no invisible or direction-changing character. Returns the output without the escape
/// sequences.
std::string RequireHarmlessPanel(std::string_view output);

/// Requires the same for output without escape sequences, which may contain tabs.
void RequireHarmlessText(std::string_view output);

}  // namespace fuzz

#endif  // FUZZ_TERMINALSCAN_H_
