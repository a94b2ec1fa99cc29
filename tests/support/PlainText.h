// A second, slow and plain implementation of the library's text rules, over ICU, Boost's tokenizer
// and the reference implementation of the hash. It shares only the `Guid` class with the library.
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

/// Replaces every occurrence from left to right. Does not search the inserted text.
std::u16string PlainReplace(std::u16string_view text, std::u16string_view pattern,
                            std::u16string_view replacement);

/// Returns the elements between the separators. Adjacent separators have an empty element between
/// them; an empty text is one empty element.
std::vector<std::string> PlainSplit(std::string_view text, char separator);

/// Returns the result of Boost's tokenizer without an escape character.
std::vector<std::string> PlainCut(const std::string& text, const std::string& separator,
                                  const std::string& quote);
/// Returns the fields of a row, each converted to UTF-16 and back, without line ends. A row that
/// has only carriage returns has no fields.
std::vector<std::string> PlainFields(const std::string& row);

std::string PlainLower8(std::string_view text);
bool PlainEqualIgnoringCase(std::string_view a, std::string_view b);
bool PlainIsSection(std::string_view key);
bool PlainIsInternalSection(std::string_view key);
bool PlainIsZString(std::string_view text);
std::string PlainHashablePortion(std::string_view text);
std::int64_t PlainVersionNumber(std::string_view version);

/// Returns the identity of these bytes.
orncore::utility::Guid PlainHash(std::string_view bytes);

}  // namespace test_support

#endif  // TESTS_SUPPORT_PLAINTEXT_H_
