// Text from files, on its way to a terminal: nothing in it may act on the terminal, hide, or make
// other text look like something else.
#ifndef HOSTS_CONSOLE_TERMINALTEXT_H_
#define HOSTS_CONSOLE_TERMINALTEXT_H_

#include <string>
#include <string_view>

namespace hosts::console {

/// What becomes of line feeds and tabs.
enum class Whitespace {
  kKeep,  ///< they stay, to be laid out
  kShow,  ///< they are shown like any other control character
};

/// The text without anything that a terminal would obey or not show:
/// - control characters become the picture that Unicode has for them (the escape character is shown
///   as U+241B), those from U+0080 to U+009F become U+FFFD;
/// - direction marks, overrides and isolates, invisible marks such as U+FEFF and U+200B, tags and
///   soft hyphens are dropped, and so are joiners and variation selectors but where a script or an
///   emoji needs them;
/// - line and paragraph separators become blanks; unpaired surrogates and noncharacters U+FFFD.
/// What is left shows every character that the text has, in the order in which it has them.
/// Takes time linear in the text.
std::u16string SafeForTerminal(std::u16string_view text, Whitespace whitespace);

/// The same for UTF-8; ill-formed bytes become U+FFFD.
std::string SafeForTerminal(std::string_view text, Whitespace whitespace);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_TERMINALTEXT_H_
