// Provides the string functions of the plain implementation. They use ICU, Boost's tokenizer and
// the reference implementation of the hash. They share only the `Guid` class with the library.
#ifndef TESTS_SUPPORT_PLAINTEXT_H_
#define TESTS_SUPPORT_PLAINTEXT_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <orncore/utility/Guid.h>

namespace test_support {

/// Convert between UTF-8 and UTF-16. Replace ill-formed input with U+FFFD.
std::u16string PlainUTF8to16(std::string_view text);
std::string PlainUTF16to8(std::u16string_view text);
/// Return `text` in lower case and in upper case. The results do not depend on the locale.
std::u16string PlainLower(std::u16string_view text);
std::u16string PlainUpper(std::u16string_view text);

/// Returns `text` with every occurrence of `pattern` replaced, from left to right. Does not search
/// inserted text. REQUIRES: `pattern` is not empty.
std::u16string PlainReplace(std::u16string_view text, std::u16string_view pattern,
                            std::u16string_view replacement);

/// Splits `text` at each `separator` and returns the elements. Adjacent separators have an empty
/// element between them. An empty string has one empty element.
std::vector<std::string> PlainSplit(std::string_view text, char separator);

/// Returns the elements that Boost's tokenizer finds in `text`. Each character of `separator` ends
/// an element, except between characters of `quote`. There are no escape characters.
std::vector<std::string> PlainCut(const std::string& text, const std::string& separator,
                                  const std::string& quote);
/// Returns the fields of a row. Replaces ill-formed UTF-8 with U+FFFD, and removes carriage returns
/// and newlines. A row that is empty or consists only of carriage returns has no fields.
std::vector<std::string> PlainFields(const std::string& row);

/// Returns the UTF-8 string `text` in lower case.
std::string PlainLower8(std::string_view text);
/// Returns whether two UTF-8 strings have the same lower-case form.
bool PlainEqualIgnoringCase(std::string_view a, std::string_view b);
/// Returns whether `key` is the key of a section. The letter case of `key` does not matter.
bool PlainIsSection(std::string_view key);
/// Returns whether `key` is INTERNAL or UNREVIEWED. The letter case of `key` does not matter.
bool PlainIsInternalSection(std::string_view key);
/// Returns whether `text` is a key text.
bool PlainIsZString(std::string_view text);
/// Returns the part of `text` on which identities depend. For a key text with a default text, this
/// is the key. If the key begins with `$$$/private/`, replaces this prefix with `$$$/`. Returns
/// other strings unchanged.
std::string PlainHashablePortion(std::string_view text);
/// Returns a version as a number in which each component has 1000 times the weight of the next. A
/// component that is not a 64-bit integer counts as 0. The number wraps around at 64 bits.
std::int64_t PlainVersionNumber(std::string_view version);

/// Returns the hash of `bytes`, computed with the hash function of identities.
orncore::utility::Guid PlainHash(std::string_view bytes);

}  // namespace test_support

#endif  // TESTS_SUPPORT_PLAINTEXT_H_
