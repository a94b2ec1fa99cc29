// Work on the ASCII part at the front of a text, many characters at a time.
//
// Nearly every text that comes by is all ASCII, so conversion and case mapping first do what they
// can here and leave the rest to ICU. A function handles the longest ASCII prefix and answers its
// length. It neither reads nor writes outside [text, text + length) and [to, to + length); source
// and target of the case functions may be the same.
//
// Each function exists once, over a `Lanes` type that says how to load and test a group of
// characters: `Words` packs them into a 64-bit integer and works on every machine, `Sse2` does
// twice as many at once. The tests run both against the plain form.
#ifndef ORNCORE_SRC_STRING_ASCII_H_
#define ORNCORE_SRC_STRING_ASCII_H_

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#define ORNCORE_HAS_SSE2 1
#else
#define ORNCORE_HAS_SSE2 0
#endif

namespace orncore::string::ascii {

/// Which way letters are mapped.
enum class Case { kLower, kUpper };

/// The plain forms, for a character at a time.
template <class Unit>
constexpr bool IsAsciiUnit(Unit unit) noexcept {
  return unit >= 0 && unit < 0x80;
}

template <Case kCase, class Unit>
constexpr Unit MapUnit(Unit unit) noexcept {
  constexpr Unit kFirst = kCase == Case::kLower ? 'A' : 'a';
  constexpr Unit kLast = kCase == Case::kLower ? 'Z' : 'z';
  return unit >= kFirst && unit <= kLast ? static_cast<Unit>(unit ^ 0x20) : unit;
}

/// Groups in a 64-bit integer: 8 bytes or 4 units of 16 bits. Sums never carry from one character
/// into the next, as all of them are below 0x80.
template <class Unit>
struct Words {
  using Group = std::uint64_t;
  static constexpr std::size_t kCount = sizeof(Group) / sizeof(Unit);
  static constexpr Group kOnes = ~Group{0} / (sizeof(Unit) == 1 ? 0xFF : 0xFFFF);

  static Group Load(const Unit* from) noexcept {
    Group group;
    std::memcpy(&group, from, sizeof group);
    return group;
  }
  static void Store(Unit* to, Group group) noexcept { std::memcpy(to, &group, sizeof group); }

  static bool IsAscii(Group group) noexcept {
    constexpr Group kMask = kOnes * (sizeof(Unit) == 1 ? 0x80 : 0xFF80);
    return (group & kMask) == 0;
  }

  template <Case kCase>
  static Group Map(Group group) noexcept {
    constexpr char32_t kFirst = kCase == Case::kLower ? U'A' : U'a';
    // Bit 7 of each character: at or behind the first letter, behind the last letter.
    const Group atOrBehindFirst = group + kOnes * (0x80 - kFirst);
    const Group behindLast = group + kOnes * (0x80 - (kFirst + 26));
    const Group isLetter = (atOrBehindFirst ^ behindLast) & (kOnes * 0x80);
    return group ^ (isLetter >> 2);
  }
};

#if ORNCORE_HAS_SSE2
/// Groups in an SSE2 register: 16 bytes or 8 units of 16 bits.
template <class Unit>
struct Sse2 {
  using Group = __m128i;
  static constexpr std::size_t kCount = sizeof(Group) / sizeof(Unit);

  static Group Load(const Unit* from) noexcept {
    return _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(from)));
  }
  static void Store(Unit* to, Group group) noexcept {
    _mm_storeu_si128(static_cast<__m128i*>(static_cast<void*>(to)), group);
  }

  static bool IsAscii(Group group) noexcept {
    if constexpr (sizeof(Unit) == 1) {
      return _mm_movemask_epi8(group) == 0;
    } else {
      const Group high = _mm_and_si128(group, _mm_set1_epi16(static_cast<short>(0xFF80)));
      return _mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) == 0xFFFF;
    }
  }

  template <Case kCase>
  static Group Map(Group group) noexcept {
    constexpr char kFirst = kCase == Case::kLower ? 'A' : 'a';
    Group isLetter;
    if constexpr (sizeof(Unit) == 1) {
      isLetter = _mm_and_si128(_mm_cmpgt_epi8(group, _mm_set1_epi8(kFirst - 1)),
                               _mm_cmplt_epi8(group, _mm_set1_epi8(kFirst + 26)));
      return _mm_xor_si128(group, _mm_and_si128(isLetter, _mm_set1_epi8(0x20)));
    } else {
      isLetter = _mm_and_si128(_mm_cmpgt_epi16(group, _mm_set1_epi16(kFirst - 1)),
                               _mm_cmplt_epi16(group, _mm_set1_epi16(kFirst + 26)));
      return _mm_xor_si128(group, _mm_and_si128(isLetter, _mm_set1_epi16(0x20)));
    }
  }
};

template <class Unit>
using Widest = Sse2<Unit>;
#else
template <class Unit>
using Widest = Words<Unit>;
#endif

/// Whole groups only: calls `use(group, position)` for each from `position` on that is all ASCII
/// and answers the position behind the last.
template <class Lanes, class Unit, class Use>
std::size_t ForEachGroup(const Unit* text, std::size_t length, std::size_t position, Use use) {
  while (length - position >= Lanes::kCount) {
    const typename Lanes::Group group = Lanes::Load(text + position);
    if (!Lanes::IsAscii(group)) break;
    use(group, position);
    position += Lanes::kCount;
  }
  return position;
}

/// The length of the longest ASCII prefix of `text`.
template <template <class> class Lanes = Widest, class Unit>
std::size_t PrefixLength(const Unit* text, std::size_t length) noexcept {
  const auto ignore = [](const auto&, std::size_t) {};
  std::size_t position = ForEachGroup<Lanes<Unit>>(text, length, 0, ignore);
  position = ForEachGroup<Words<Unit>>(text, length, position, ignore);
  while (position < length && IsAsciiUnit(text[position])) ++position;
  return position;
}

/// Copies the longest ASCII prefix of `text` in the other letter case.
template <Case kCase, template <class> class Lanes = Widest, class Unit>
std::size_t MapPrefix(const Unit* text, std::size_t length, Unit* to) noexcept {
  std::size_t position = ForEachGroup<Lanes<Unit>>(
      text, length, 0, [to](const typename Lanes<Unit>::Group& group, std::size_t at) {
        Lanes<Unit>::Store(to + at, Lanes<Unit>::template Map<kCase>(group));
      });
  position =
      ForEachGroup<Words<Unit>>(text, length, position, [to](std::uint64_t group, std::size_t at) {
        Words<Unit>::Store(to + at, Words<Unit>::template Map<kCase>(group));
      });
  for (; position < length && IsAsciiUnit(text[position]); ++position) {
    to[position] = MapUnit<kCase>(text[position]);
  }
  return position;
}

/// Copies one group at `at` into units of another width. The test before it is what costs; a loop
/// over a group of fixed size the compilers turn into one or two instructions themselves.
template <class Group, class From, class To>
void CopyGroup(const From* text, To* to, std::size_t at) noexcept {
  for (std::size_t i = at; i < at + Group::kCount; ++i) to[i] = static_cast<To>(text[i]);
}

/// Copies the longest ASCII prefix of `text` into units of another width.
template <template <class> class Lanes = Widest, class From, class To>
std::size_t CopyPrefix(const From* text, std::size_t length, To* to) noexcept {
  std::size_t position = ForEachGroup<Lanes<From>>(
      text, length, 0,
      [text, to](const auto&, std::size_t at) { CopyGroup<Lanes<From>>(text, to, at); });
  position = ForEachGroup<Words<From>>(
      text, length, position,
      [text, to](const auto&, std::size_t at) { CopyGroup<Words<From>>(text, to, at); });
  for (; position < length && IsAsciiUnit(text[position]); ++position) {
    to[position] = static_cast<To>(text[position]);
  }
  return position;
}

}  // namespace orncore::string::ascii

#endif  // ORNCORE_SRC_STRING_ASCII_H_
