// Reads what a program of ours wrote as a terminal would, and takes nothing on trust.
#ifndef FUZZ_TERMINALSCAN_H_
#define FUZZ_TERMINALSCAN_H_

#include <string>
#include <string_view>

namespace fuzz {

/// Requires that nothing in the output acts on a terminal but line feeds and the two kinds of
/// escape sequence that the panel uses, colours and hyperlinks; that every line ends with both
/// switched off; and that no invisible or direction-changing character is left. Answers the output
/// without the escape sequences.
std::string RequireHarmlessPanel(std::string_view output);

/// The same for output without any escape sequence, in which tabs may stand.
void RequireHarmlessText(std::string_view output);

}  // namespace fuzz

#endif  // FUZZ_TERMINALSCAN_H_
