// Makes strings from files safe for a terminal, a document or a message. The results contain no
// terminal escape sequences and no characters that embed, override or isolate a text direction.
//
// Functions that return a string throw `std::bad_alloc` if memory runs out. All functions are safe
// to call from any thread.
#ifndef ORNCORE_STRING_SAFETEXT_H_
#define ORNCORE_STRING_SAFETEXT_H_

#include <string_view>

#include <orncore/Export.h>
#include <orncore/string/Conversion.h>

namespace orncore::string {

/// Returns whether `unit` can end a line or control a terminal. This is true for control characters
/// (U+0000 to U+001F and U+007F to U+009F) and for line and paragraph separators (U+2028 and
/// U+2029).
constexpr bool IsControlCharacter(char16_t unit) noexcept {
  return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029;
}

/// Returns a copy of `text`, for example the output of a console command, without characters that a
/// terminal would interpret or hide:
/// - Control characters up to U+007F, except newlines and tabs, are replaced by their Unicode
///   control pictures, for example the escape character by U+241B. Control characters from U+0080
///   to U+009F are replaced by U+FFFD.
/// - Direction marks, embeddings, overrides and isolates are removed. Tags, soft hyphens and
///   invisible characters such as U+FEFF and U+200B are removed.
/// - Joiners are removed unless a script or an emoji needs them. Variation selectors are removed,
///   except U+FE0E and U+FE0F after an emoji and U+FE0F in a keycap sequence.
/// - Line and paragraph separators are replaced by spaces. Unpaired surrogates and noncharacters
///   are replaced by U+FFFD.
///
/// All other characters are unchanged. Takes linear time.
[[nodiscard]] ORN_EXPORT UTF16String SafeForTerminal(std::u16string_view text);

/// Returns a copy of `text` for a document that can contain text in both directions, such as an
/// HTML page. Each line feed becomes U+2028, and each tab becomes a space. Other control
/// characters, U+2029, noncharacters and unpaired surrogates become U+FFFD. Characters that embed,
/// override or isolate a text direction are removed, because they could reorder the rest of the
/// document. U+FEFF is removed, because a parser may remove it at the start of a document. All
/// other characters are unchanged, direction marks included. Takes linear time.
[[nodiscard]] ORN_EXPORT UTF16String SafeForDocument(std::u16string_view text);

/// Returns a copy of `text` for a message that quotes names and values. `text` is UTF-8 or the
/// bytes of a file name. Each character that `SafeForTerminal` replaces or removes becomes an
/// escape such as `\u200b` or `\U000e0041`, and so do newlines and tabs. The same applies to
/// characters that look like a space, such as U+00A0 and U+2800. Each byte of ill-formed UTF-8
/// becomes an escape such as `\xff`. All other characters are unchanged, backslashes included, so
/// escaping a string a second time has no effect. The result is one line of well-formed UTF-8.
/// Takes linear time.
[[nodiscard]] ORN_EXPORT UTF8String EscapeInvisible(std::string_view text);

}  // namespace orncore::string

#endif  // ORNCORE_STRING_SAFETEXT_H_
