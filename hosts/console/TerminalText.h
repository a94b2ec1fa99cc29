// Makes text from files safe for a terminal, so that it cannot send escape sequences, hide text, or
// change the look of other text.
#ifndef HOSTS_CONSOLE_TERMINALTEXT_H_
#define HOSTS_CONSOLE_TERMINALTEXT_H_

#include <string>
#include <string_view>

namespace hosts::console {

/// Selects how `SafeForTerminal` treats newlines and tabs.
enum class Whitespace {
  kKeep,  ///< unchanged
  kShow,  ///< replaced by control pictures, like other control characters
};

/// Returns a copy of `text` without characters that a terminal would interpret or hide:
/// - Control characters are replaced by their Unicode control pictures, for example the escape
///   character by U+241B. Control characters from U+0080 to U+009F are replaced by U+FFFD.
/// - Direction marks, overrides and isolates are removed. Tags, soft hyphens and invisible
///   characters such as U+FEFF and U+200B are removed. Joiners and variation selectors are removed
///   unless a script or an emoji needs them.
/// - Line and paragraph separators are replaced by spaces. Unpaired surrogates and noncharacters
///   are replaced by U+FFFD.
///
/// All other characters are unchanged. Takes linear time.
std::u16string SafeForTerminal(std::u16string_view text, Whitespace whitespace);

/// Does the same for a UTF-8 string. Replaces ill-formed bytes with U+FFFD.
std::string SafeForTerminal(std::string_view text, Whitespace whitespace);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALTEXT_H_
