#include <orncore/string/CaseMapping.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include <unicode/ucasemap.h>
#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <orncore/src/string/Ascii.h>
#include <orncore/string/Conversion.h>
#include <orncore/utility/NoDestructor.h>

namespace orncore::string {
namespace {

using ascii::Case;

constexpr const char* kRootLocale = "";
constexpr std::size_t kMostUnits = std::numeric_limits<std::int32_t>::max();

// Calls `map(to, capacity, length, error)`, one of ICU's mappings of a text of `length` units,
// until `out` has room for the result.
template <class String, class MapText>
void MapWithICU(std::size_t length, String& out, MapText map) {
  if (length > kMostUnits) throw std::length_error("The text is too long to change its case");
  out.resize(length);
  UErrorCode error = U_ZERO_ERROR;
  const auto size = static_cast<std::int32_t>(length);
  std::int32_t needed = map(out.data(), size, size, &error);
  if (error == U_BUFFER_OVERFLOW_ERROR) {
    error = U_ZERO_ERROR;
    out.resize(static_cast<std::size_t>(needed));
    needed = map(out.data(), needed, size, &error);
  }
  if (error == U_MEMORY_ALLOCATION_ERROR) throw std::bad_alloc();
  if (U_FAILURE(error)) throw std::length_error("The text is too long once its case is changed");
  out.resize(static_cast<std::size_t>(needed));
}

// ICU's mapping of UTF-8, made on first use and there for good: a static destructor may still map.
const UCaseMap* CaseMapOfUTF8() {
  static utility::NoDestructor<icu::LocalUCaseMapPointer> caseMap([] {
    UErrorCode error = U_ZERO_ERROR;
    icu::LocalUCaseMapPointer opened(ucasemap_open(kRootLocale, U_FOLD_CASE_DEFAULT, &error));
    if (U_FAILURE(error)) throw std::bad_alloc();
    return opened;
  }());
  return caseMap->getAlias();
}

// Whether `text` is a part of what `out` holds. (std::less compares any two pointers.)
template <class Unit>
bool LiesIn(std::basic_string_view<Unit> text, const std::basic_string<Unit>& out) {
  const std::less<const Unit*> before;
  return !before(text.data(), out.data()) && before(text.data(), out.data() + out.size());
}

template <Case kCase>
void Map(std::u16string_view text, UTF16String& out) {
  if (LiesIn(text, out)) {
    UTF16String result;
    Map<kCase>(text, result);
    out = std::move(result);
    return;
  }
  out.resize(text.size());
  if (ascii::MapPrefix<kCase>(text.data(), text.size(), out.data()) == text.size()) return;
  // All of it again, the ASCII part too: what stands before a sigma decides its form.
  const auto map = kCase == Case::kLower ? u_strToLower : u_strToUpper;
  MapWithICU(text.size(), out,
             [text, map](auto* to, auto capacity, auto length, UErrorCode* error) {
               return map(to, capacity, text.data(), length, kRootLocale, error);
             });
}

}  // namespace

UTF16String LowerCase(std::u16string_view text) {
  UTF16String out;
  Map<Case::kLower>(text, out);
  return out;
}

UTF16String UpperCase(std::u16string_view text) {
  UTF16String out;
  Map<Case::kUpper>(text, out);
  return out;
}

void LowerCase(std::u16string_view text, UTF16String& out) {
  Map<Case::kLower>(text, out);
}

void UpperCase(std::u16string_view text, UTF16String& out) {
  Map<Case::kUpper>(text, out);
}

UTF8String LowerCaseUTF8(std::string_view text) {
  UTF8String out;
  LowerCaseUTF8(text, out);
  return out;
}

void LowerCaseUTF8(std::string_view text, UTF8String& out) {
  if (LiesIn(text, out)) {
    out = LowerCaseUTF8(text);
    return;
  }
  out.resize(text.size());
  if (ascii::MapPrefix<Case::kLower>(text.data(), text.size(), out.data()) == text.size()) return;
  if (!IsWellFormedUTF8(text)) {
    // ICU would leave the ill-formed bytes as they are.
    UTF16to8(LowerCase(UTF8to16(text)), out);
    return;
  }
  const UCaseMap* const caseMap = CaseMapOfUTF8();
  MapWithICU(text.size(), out,
             [text, caseMap](auto* to, auto capacity, auto length, UErrorCode* error) {
               return ucasemap_utf8ToLower(caseMap, to, capacity, text.data(), length, error);
             });
}

}  // namespace orncore::string
