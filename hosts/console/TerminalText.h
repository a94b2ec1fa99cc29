// Makes text from files safe for a terminal, so that it cannot send escape sequences, hide text, or
// change the look of other text.
#ifndef HOSTS_CONSOLE_TERMINALTEXT_H_
#define HOSTS_CONSOLE_TERMINALTEXT_H_

#include <string>
#include <string_view>

namespace hosts::console {

/// The treatment of newlines and tabs.
enum class Whitespace {
  kKeep,  ///< unchanged
  kShow,  ///< replaced by their pictures, like other control characters
};

/// Returns a copy of `text` without characters that a terminal would interpret or hide:
/// - Control characters are replaced by their Unicode control pictures, for example the escape
///   character by U+241B. Those from U+0080 to U+009F are replaced by U+FFFD.
/// - Direction marks, overrides and isolates, invisible marks such as U+FEFF and U+200B, tags and
///   soft hyphens are removed. Joiners and variation selectors are removed unless a script or an
///   emoji needs them.
/// - Line and paragraph separators are replaced by spaces. Unpaired surrogates and noncharacters
///   are replaced by U+FFFD.
///
/// All other characters stay unchanged. Takes linear time.
std::u16string SafeForTerminal(std::u16string_view text, Whitespace whitespace);

/// Does the same for UTF-8. Replaces ill-formed bytes with U+FFFD.
std::string SafeForTerminal(std::string_view text, Whitespace whitespace);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALTEXT_H_
