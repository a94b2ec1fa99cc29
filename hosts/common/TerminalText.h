// Makes text from files safe for a terminal, so that it cannot send escape sequences, hide text, or
// change the look of other text.
#ifndef HOSTS_COMMON_TERMINALTEXT_H_
#define HOSTS_COMMON_TERMINALTEXT_H_

#include <cstddef>
#include <string>
#include <string_view>

namespace hosts::common {

/// Returns a copy of `text`, for example the text of a panel, without characters that a terminal
/// would interpret or hide:
/// - Control characters are replaced by their Unicode control pictures, for example the escape
///   character by U+241B. Control characters from U+0080 to U+009F are replaced by U+FFFD. Newlines
///   and tabs are unchanged.
/// - Direction marks, overrides and isolates are removed. Tags, soft hyphens and invisible
///   characters such as U+FEFF and U+200B are removed. Joiners and variation selectors are removed
///   unless a script or an emoji needs them.
/// - Line and paragraph separators are replaced by spaces. Unpaired surrogates and noncharacters
///   are replaced by U+FFFD.
///
/// All other characters are unchanged. Takes linear time.
std::u16string SafeForTerminal(std::u16string_view text);

/// Returns a copy of `text` for a message that quotes names and values. `text` is UTF-8 or the
/// bytes of a file name. Each character that `SafeForTerminal` replaces or removes becomes an
/// escape such as `\u200b` or `\U000e0041`, and so do newlines and tabs. The same applies to
/// characters that look like a space, such as U+00A0 and U+2800. Each byte of ill-formed UTF-8
/// becomes an escape such as `\xff`. All other characters are unchanged, backslashes included, so
/// escaping a string a second time has no effect. The result is one line of well-formed UTF-8.
/// Takes linear time.
std::string EscapeInvisible(std::string_view text);

/// Returns whether `byte` is not a UTF-8 continuation byte.
bool IsCharacterStart(char byte);

/// Returns the first `length` bytes of `text` (UTF-8), or up to three bytes fewer so that no
/// character is split. Returns all of `text` if it is shorter.
std::string_view Prefix(std::string_view text, std::size_t length);

/// Returns `text` (UTF-8) for a message. If it has more than 200 bytes, replaces its middle with
/// " ... ". Does not split a character.
std::string WithoutMiddle(std::string_view text);

}  // namespace hosts::common

#endif  // HOSTS_COMMON_TERMINALTEXT_H_
