// Makes text from files safe to write to a terminal: it cannot send escape sequences, hide text, or
// make other text look different.
#ifndef HOSTS_CONSOLE_TERMINALTEXT_H_
#define HOSTS_CONSOLE_TERMINALTEXT_H_

#include <string>
#include <string_view>

namespace hosts::console {

/// How newlines and tabs are treated.
enum class Whitespace {
  kKeep,  ///< unchanged
  kShow,  ///< replaced by their pictures, like other control characters
};

/// Returns the text without characters that a terminal would interpret or not show:
/// - Control characters are replaced by their Unicode control pictures (the escape character by
///   U+241B), those from U+0080 to U+009F by U+FFFD.
/// - Direction marks, overrides and isolates, invisible marks such as U+FEFF and U+200B, tags and
///   soft hyphens are removed. Joiners and variation selectors are removed unless a script or an
///   emoji needs them.
/// - Line and paragraph separators are replaced by spaces, unpaired surrogates and noncharacters by
///   U+FFFD.
/// All other characters keep their order. Takes linear time.
std::u16string SafeForTerminal(std::u16string_view text, Whitespace whitespace);

/// The same for UTF-8. Ill-formed bytes are replaced by U+FFFD.
std::string SafeForTerminal(std::string_view text, Whitespace whitespace);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALTEXT_H_
