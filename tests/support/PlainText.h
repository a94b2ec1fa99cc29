// The text rules of a list, written the slow and plain way over the Unicode library and the
// reference hash, for tests that compare the library with them.
#ifndef TESTS_SUPPORT_PLAINTEXT_H_
#define TESTS_SUPPORT_PLAINTEXT_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <orncore/utility/Guid.h>

namespace test_support {

std::u16string PlainUTF8to16(std::string_view text);
std::string PlainUTF16to8(std::u16string_view text);
std::u16string PlainLower(std::u16string_view text);
std::u16string PlainUpper(std::u16string_view text);

/// Every occurrence, from left to right; what was inserted is not looked at again.
std::u16string PlainReplace(std::u16string_view text, std::u16string_view pattern,
                            std::u16string_view replacement);

/// The pieces between the separators; adjacent ones have an empty piece between them, and an empty
/// text is one empty piece.
std::vector<std::string> PlainSplit(std::string_view text, char separator);

/// What Boost's own tokenizer gives over plain strings, without an escape character.
std::vector<std::string> PlainCut(const std::string& text, const std::string& separator,
                                  const std::string& quote);
/// The fields of a data file's row, each through UTF-16 and back without line ends; a row of
/// nothing but carriage returns has none.
std::vector<std::string> PlainFields(const std::string& row);

std::string PlainLower8(std::string_view text);
bool PlainEqualIgnoringCase(std::string_view a, std::string_view b);
bool PlainIsSection(std::string_view key);
bool PlainIsInternalSection(std::string_view key);
bool PlainIsZString(std::string_view text);
std::string PlainHashablePortion(std::string_view text);
std::int64_t PlainVersionNumber(std::string_view version);

/// The identity of these bytes, laid side by side.
orncore::utility::Guid PlainHash(std::string_view bytes);

}  // namespace test_support

#endif  // TESTS_SUPPORT_PLAINTEXT_H_
