#include <orncore/string/Conversion.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Allocations.h"
#include "tests/support/RandomSource.h"
#include "tests/support/TextAtPageEnd.h"

namespace orncore::string {
namespace {

using namespace std::string_literals;
using test_support::kSeed;

// One row of the Unicode standard's table "Well-Formed UTF-8 Byte Sequences". Contains a range of
// lead bytes, the range of second bytes that they allow, and the number of bytes that follow a lead
// byte.
struct Lead {
  unsigned first;
  unsigned last;
  unsigned lowestSecond;
  unsigned highestSecond;
  unsigned following;
};
constexpr Lead kLeads[] = {
    {0xC2, 0xDF, 0x80, 0xBF, 1}, {0xE0, 0xE0, 0xA0, 0xBF, 2}, {0xE1, 0xEC, 0x80, 0xBF, 2},
    {0xED, 0xED, 0x80, 0x9F, 2}, {0xEE, 0xEF, 0x80, 0xBF, 2}, {0xF0, 0xF0, 0x90, 0xBF, 3},
    {0xF1, 0xF3, 0x80, 0xBF, 3}, {0xF4, 0xF4, 0x80, 0x8F, 3},
};

void AppendCodePoint(std::u16string& out, std::uint32_t codePoint) {
  if (codePoint > 0xFFFF) {
    out += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
    codePoint = 0xDC00 + (codePoint & 0x3FF);
  }
  out += static_cast<char16_t>(codePoint);
}

// Converts `text` from UTF-8 to UTF-16 according to the table `kLeads`. Replaces each maximal
// subpart of an ill-formed sequence with one U+FFFD. This implementation is simple but slow.
std::u16string PlainUTF8to16(std::string_view text) {
  std::u16string out;
  std::size_t position = 0;
  const auto byteAt = [text](std::size_t at) { return static_cast<std::uint8_t>(text[at]); };
  while (position < text.size()) {
    const unsigned first = byteAt(position++);
    if (first < 0x80) {
      out += static_cast<char16_t>(first);
      continue;
    }
    const auto* const lead = std::ranges::find_if(
        kLeads, [first](const Lead& row) { return row.first <= first && first <= row.last; });
    if (lead == std::end(kLeads)) {
      out += u'\uFFFD';
      continue;
    }
    std::uint32_t codePoint = first & (0x3FU >> lead->following);
    unsigned lowest = lead->lowestSecond;
    unsigned highest = lead->highestSecond;
    unsigned missing = lead->following;
    while (missing > 0 && position < text.size() && byteAt(position) >= lowest &&
           byteAt(position) <= highest) {
      codePoint = codePoint << 6 | (byteAt(position++) & 0x3FU);
      lowest = 0x80;
      highest = 0xBF;
      --missing;
    }
    AppendCodePoint(out, missing == 0 ? codePoint : 0xFFFD);
  }
  return out;
}

std::string PlainUTF16to8(std::u16string_view text) {
  std::string out;
  const auto append = [&out](std::uint32_t byte) { out += static_cast<char>(byte); };
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::uint32_t codePoint = text[i];
    const bool isLead = codePoint >= 0xD800 && codePoint < 0xDC00;
    const bool isTrail = codePoint >= 0xDC00 && codePoint < 0xE000;
    if (isLead && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000) {
      codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (text[++i] - 0xDC00U);
    } else if (isLead || isTrail) {
      codePoint = 0xFFFD;
    }
    if (codePoint < 0x80) {
      append(codePoint);
      continue;
    }
    if (codePoint < 0x800) {
      append(0xC0 | codePoint >> 6);
    } else if (codePoint < 0x10000) {
      append(0xE0 | codePoint >> 12);
      append(0x80 | (codePoint >> 6 & 0x3F));
    } else {
      append(0xF0 | codePoint >> 18);
      append(0x80 | (codePoint >> 12 & 0x3F));
      append(0x80 | (codePoint >> 6 & 0x3F));
    }
    append(0x80 | (codePoint & 0x3F));
  }
  return out;
}

// A copy of a string in a buffer of exactly the same size. A sanitizer therefore detects every
// access past the end of the string.
template <class Unit>
class Exact {
 public:
  explicit Exact(std::basic_string_view<Unit> text)
      : units_(std::make_unique<Unit[]>(text.size())), length_(text.size()) {
    text.copy(units_.get(), length_);
  }
  std::basic_string_view<Unit> View() const { return {units_.get(), length_}; }

 private:
  std::unique_ptr<Unit[]> units_;
  std::size_t length_;
};

std::u16string Convert(std::string_view text) {
  return UTF8to16(Exact<char>(text).View());
}
std::string Convert(std::u16string_view text) {
  return UTF16to8(Exact<char16_t>(text).View());
}

void ExpectLikePlain(std::string_view text) {
  const std::u16string expected = PlainUTF8to16(text);
  ASSERT_EQ(Convert(text), expected) << testing::PrintToString(text);
  ASSERT_EQ(IsWellFormedUTF8(text), PlainUTF16to8(expected) == text)
      << testing::PrintToString(text);
}

void ExpectLikePlain(std::u16string_view text) {
  const std::string expected = PlainUTF16to8(text);
  ASSERT_EQ(Convert(text), expected) << testing::PrintToString(text);
  ASSERT_EQ(UTF8Length(text), expected.size()) << testing::PrintToString(text);
}

TEST(Conversion, ConvertsWellFormedTextInBothDirections) {
  const struct {
    std::string utf8;
    std::u16string utf16;
  } cases[] = {
      {"", u""},
      {"ascii", u"ascii"},
      {"\x7F", u"\x7F"},
      {"\xC2\x80", u"\x80"},
      {"\xC3\xA9", u"\u00E9"},
      {"\xDF\xBF", u"\u07FF"},
      {"\xE0\xA0\x80", u"\u0800"},
      {"\xED\x9F\xBF", u"\uD7FF"},
      {"\xEE\x80\x80", u"\uE000"},
      {"\xEF\xBF\xBD", u"\uFFFD"},
      {"\xEF\xBF\xBF", u"\uFFFF"},
      {"\xF0\x90\x80\x80", u"\U00010000"},
      {"\xF0\x9F\x8E\x89", u"\U0001F389"},
      {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
      {"\0"s, u"\0"s},
      {"a\0b\0"s, u"a\0b\0"s},
      {"\xEF\xBB\xBFx", u"\uFEFFx"},
      {"sixteen ascii by\xC3\xA9 and sixteen more", u"sixteen ascii by\u00E9 and sixteen more"},
  };
  for (const auto& [utf8, utf16] : cases) {
    EXPECT_EQ(Convert(utf8), utf16) << testing::PrintToString(utf8);
    EXPECT_EQ(Convert(utf16), utf8) << testing::PrintToString(utf8);
    EXPECT_EQ(UTF8Length(utf16), utf8.size()) << testing::PrintToString(utf8);
    EXPECT_TRUE(IsWellFormedUTF8(utf8)) << testing::PrintToString(utf8);
  }
}

TEST(Conversion, ReplacesEachMaximalSubpartOnce) {
  const struct {
    std::string_view utf8;
    std::u16string_view utf16;
  } cases[] = {
      // Continuation bytes without a lead byte.
      {"\x80", u"\uFFFD"},
      {"\xBF", u"\uFFFD"},
      {"\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD"},
      {"a\x80z", u"a\uFFFDz"},
      // Truncated sequences: each sequence becomes one U+FFFD.
      {"\xC3", u"\uFFFD"},
      {"\xE2\x82", u"\uFFFD"},
      {"\xF0\x9F", u"\uFFFD"},
      {"\xF0\x9F\x8E", u"\uFFFD"},
      {"\xC3z", u"\uFFFDz"},
      {"\xE2\x82z", u"\uFFFDz"},
      {"\xF0\x9F\x8Ez", u"\uFFFDz"},
      {"\xE2\xE2\x82\xAC", u"\uFFFD\u20AC"},
      {"\xF0\x9F\xC3\xA9", u"\uFFFD\u00E9"},
      // Overlong sequences: each byte becomes one U+FFFD, because no well-formed sequence begins
      // with the first two bytes.
      {"\xC0\xAF", u"\uFFFD\uFFFD"},
      {"\xC1\xBF", u"\uFFFD\uFFFD"},
      {"\xE0\x80\xAF", u"\uFFFD\uFFFD\uFFFD"},
      {"\xE0\x9F\xBF", u"\uFFFD\uFFFD\uFFFD"},
      {"\xF0\x80\x80\xAF", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xF0\x8F\xBF\xBF", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      // Encoded surrogates.
      {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
      {"\xED\xBF\xBF", u"\uFFFD\uFFFD\uFFFD"},
      {"\xED\xA0\xBD\xED\xB8\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xED\xA0", u"\uFFFD\uFFFD"},
      // Code points beyond U+10FFFF, and bytes that cannot start a sequence.
      {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xF5\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xF8\x88\x80\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
      {"\xFE\xFF", u"\uFFFD\uFFFD"},
      // Examples from the Unicode standard.
      {"\x61\xF1\x80\x80\xE1\x80\xC2\x62\x80\x63\x80\xBF\x64",
       u"a\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd"},
      {"\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41",
       u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA"},
      {"\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42", u"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDA\uFFFD\uFFFDB"},
      {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41", u"\uFFFD\uFFFD\uFFFD\uFFFDA"},
  };
  for (const auto& [utf8, utf16] : cases) {
    EXPECT_EQ(Convert(utf8), utf16) << testing::PrintToString(utf8);
    EXPECT_EQ(PlainUTF8to16(utf8), utf16) << "the decoder of this test is wrong";
    EXPECT_FALSE(IsWellFormedUTF8(utf8)) << testing::PrintToString(utf8);
  }
}

TEST(FindIllFormedUTF8, ReturnsTheOffsetOfTheFirstIllFormedSequence) {
  EXPECT_EQ(FindIllFormedUTF8("abc\xE4nderung \xFF"), 3U);
  EXPECT_EQ(FindIllFormedUTF8("\xC3\xA4\xE2\x82"), 2U);
}

TEST(FindIllFormedUTF8, FindsOneByteThatIsNotASCIIAtAnyOffset) {
  for (std::size_t offset = 0; offset < 17; ++offset) {
    std::string text(17, '\0');
    text[offset] = '\x80';
    EXPECT_EQ(FindIllFormedUTF8(text), offset);
  }
}

TEST(FindIllFormedUTF8, WellFormedTextHasNoOffset) {
  EXPECT_EQ(FindIllFormedUTF8(""), std::string_view::npos);
  EXPECT_EQ(FindIllFormedUTF8("a\xC3\xA4"), std::string_view::npos);
}

TEST(Conversion, ReplacesAnUnpairedSurrogate) {
  const struct {
    std::u16string utf16;
    std::string utf8;
  } cases[] = {
      {{0xD800}, "\uFFFD"},
      {{0xDC00}, "\uFFFD"},
      {{0xDBFF}, "\uFFFD"},
      {{0xDFFF}, "\uFFFD"},
      {{'a', 0xD800, 'z'}, "a\uFFFDz"},
      {{0xDC00, 0xD800}, "\uFFFD\uFFFD"},
      {{0xD800, 0xD800, 0xDC00}, "\uFFFD\U00010000"},
      {{0xD800, 0xDC00, 0xDC00}, "\U00010000\uFFFD"},
      {{0xDBFF, 0xDFFF}, "\U0010FFFF"},
      {{0xD800, 0xE000}, "\uFFFD\uE000"},
      {{0xD800, 0}, "\uFFFD\0"s},
  };
  for (const auto& [utf16, utf8] : cases) {
    EXPECT_EQ(Convert(utf16), utf8) << testing::PrintToString(utf16);
    EXPECT_EQ(UTF8Length(utf16), utf8.size()) << testing::PrintToString(utf16);
  }
}

TEST(Conversion, MatchesThePlainDecoderForAllShortSequences) {
  // The first and last byte of each range in the standard's table, an ASCII letter, and bytes that
  // occur in no well-formed sequence.
  constexpr std::array<unsigned, 26> kBytes = {0x00, 0x41, 0x7F, 0x80, 0x8F, 0x90, 0x9F, 0xA0, 0xBF,
                                               0xC0, 0xC1, 0xC2, 0xDF, 0xE0, 0xE1, 0xEC, 0xED, 0xEE,
                                               0xEF, 0xF0, 0xF1, 0xF3, 0xF4, 0xF5, 0xF8, 0xFF};
  for (std::size_t length = 0, count = 1; length <= 4; ++length, count *= kBytes.size()) {
    for (std::size_t number = 0; number < count; ++number) {
      std::string text;
      for (std::size_t rest = number; text.size() < length; rest /= kBytes.size()) {
        text += static_cast<char>(kBytes[rest % kBytes.size()]);
      }
      ASSERT_NO_FATAL_FAILURE(ExpectLikePlain(std::string_view(text)));
    }
  }
}

TEST(Conversion, MatchesThePlainEncoderForAllShortSequences) {
  constexpr std::array<char16_t, 14> kUnits = {0,      0x41,   0x7F,   0x80,   0x7FF,
                                               0x800,  0xD7FF, 0xD800, 0xDBFF, 0xDC00,
                                               0xDFFF, 0xE000, 0xFFFD, 0xFFFF};
  for (std::size_t length = 0, count = 1; length <= 4; ++length, count *= kUnits.size()) {
    for (std::size_t number = 0; number < count; ++number) {
      std::u16string text;
      for (std::size_t rest = number; text.size() < length; rest /= kUnits.size()) {
        text += kUnits[rest % kUnits.size()];
      }
      ASSERT_NO_FATAL_FAILURE(ExpectLikePlain(std::u16string_view(text)));
    }
  }
}

TEST(Conversion, MatchesThePlainConverterForRandomText) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  for (int round = 0; round < 5000; ++round) {
    // The proportion of ASCII varies, so that ASCII sequences of many lengths occur between other
    // characters.
    const std::uint32_t share = random() % 32;
    std::string bytes(random() % 100, '\0');
    for (char& byte : bytes) {
      byte = static_cast<char>(random() % 32 < share ? random() % 0x80 : random() % 0x100);
    }
    ASSERT_NO_FATAL_FAILURE(ExpectLikePlain(std::string_view(bytes)));
    std::u16string units(random() % 100, u'\0');
    for (char16_t& unit : units) {
      const std::uint32_t wide = random() % 2 ? random() % 0x10000 : 0xD800 + random() % 0x800;
      unit = static_cast<char16_t>(random() % 32 < share ? random() % 0x80 : wide);
    }
    ASSERT_NO_FATAL_FAILURE(ExpectLikePlain(std::u16string_view(units)));
  }
}

TEST(Conversion, KeepsEveryCodePointInARoundTrip) {
  for (std::uint32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint >= 0xD800 && codePoint < 0xE000) continue;
    std::u16string text;
    AppendCodePoint(text, codePoint);
    ASSERT_EQ(UTF8to16(UTF16to8(text)), text) << codePoint;
  }
}

TEST(Conversion, OverwritesTheOldContent) {
  std::string utf8 = "an old text that is much longer";
  UTF16to8(u"\u00E9", utf8);
  EXPECT_EQ(utf8, "\xC3\xA9");
  UTF16to8(u"", utf8);
  EXPECT_EQ(utf8, "");
}

TEST(Conversion, AppendsToTheOldContent) {
  std::u16string utf16 = u"\u00E9 ";
  AppendUTF8to16("\xE2\x82\xAC\x80", utf16);
  AppendUTF8to16("", utf16);
  AppendUTF8to16(" end", utf16);
  EXPECT_EQ(utf16, u"\u00E9 \u20AC\uFFFD end");
  std::string utf8 = "\xC3\xA9 ";
  AppendUTF16to8(u"\u20AC", utf8);
  AppendUTF16to8(u"", utf8);
  AppendUTF16to8(u" end", utf8);
  EXPECT_EQ(utf8, "\u00E9 \u20AC end");
}

TEST(Conversion, DoesNotJoinSequencesAcrossCalls) {
  std::u16string utf16;
  AppendUTF8to16("\xC3", utf16);
  AppendUTF8to16("\xA9", utf16);
  EXPECT_EQ(utf16, u"\uFFFD\uFFFD");
  std::string utf8;
  AppendUTF16to8(std::u16string(1, 0xD83C), utf8);
  AppendUTF16to8(std::u16string(1, 0xDF89), utf8);
  EXPECT_EQ(utf8, "\uFFFD\uFFFD");
}

TEST(Conversion, AllocatesNothingWhenTheOutputIsReused) {
  const std::string utf8 = "forty bytes of ascii text, then a few more: \xC3\xA9\xE2\x82\xAC\x80";
  std::u16string utf16;
  std::string back;
  AppendUTF8to16(utf8, utf16);
  UTF16to8(utf16, back);
  EXPECT_EQ(test_support::CountAllocations([&] {
              utf16.clear();
              AppendUTF8to16(utf8, utf16);
              UTF16to8(utf16, back);
            }),
            0U);
}

TEST(Conversion, AllocatesOnceForANewString) {
  const std::u16string text(1000, u'\u20AC');
  std::string result;
  EXPECT_LE(test_support::CountAllocations([&] { result = UTF16to8(text); }), 1U);
  EXPECT_EQ(result.capacity(), 3000U);
}

TEST(Conversion, AcceptsDefaultViews) {
  EXPECT_EQ(UTF8to16(std::string_view()), u"");
  EXPECT_EQ(UTF16to8(std::u16string_view()), "");
  EXPECT_EQ(AsciiToUTF16(std::string_view()), u"");
  EXPECT_EQ(UTF8Length(std::u16string_view()), 0U);
  EXPECT_TRUE(IsWellFormedUTF8(std::string_view()));
}

TEST(Conversion, ReadsNothingPastTheEndOfAText) {
  test_support::TextAtPageEnd memory;
  for (const std::string& end : {"x"s, "\xC3\xA9"s, "\xF0\x9F\x98\x80"s, "\xC3"s, "\xF0\x9F"s}) {
    const std::string text = "some text and " + end;
    const std::string_view there = memory.Put(text);
    EXPECT_EQ(UTF8to16(there), PlainUTF8to16(text));
    EXPECT_EQ(IsWellFormedUTF8(there), PlainUTF16to8(PlainUTF8to16(text)) == text);
    EXPECT_EQ(AsciiToUTF16(there), AsciiToUTF16(text));
  }
  for (const std::u16string& end : {u"x"s, u"\u00E9"s, u"\U0001F600"s, u"\xD83D"s}) {
    const std::u16string text = u"some text and " + end;
    const std::u16string_view there = memory.Put(text);
    EXPECT_EQ(UTF16to8(there), PlainUTF16to8(text));
  }
}

TEST(Conversion, WidensAscii) {
  EXPECT_EQ(AsciiToUTF16("ascii\0\x7F"s), u"ascii\0\x7F"s);
  EXPECT_EQ(AsciiToUTF16("a\x80\xC3\xA9z"), u"a\uFFFD\uFFFD\uFFFDz");
  EXPECT_EQ(AsciiToUTF16("\xFF"), u"\uFFFD");
}

TEST(Conversion, RemovesOneByteOrderMark) {
  const struct {
    std::string text;
    bool removed;
    std::string rest;
  } cases[] = {
      {"\xEF\xBB\xBFtext", true, "text"},
      {"\xEF\xBB\xBF", true, ""},
      {"\xEF\xBB\xBF\xEF\xBB\xBFtext", true, "\xEF\xBB\xBFtext"},
      {"text\xEF\xBB\xBF", false, "text\xEF\xBB\xBF"},
      {"\xEF\xBB", false, "\xEF\xBB"},
      {"\xFE\xFFtext", false, "\xFE\xFFtext"},
      {"", false, ""},
  };
  for (const auto& [text, removed, rest] : cases) {
    std::string changed = text;
    EXPECT_EQ(RemoveUTF8BOM_IfPresent(changed), removed) << testing::PrintToString(text);
    EXPECT_EQ(changed, rest) << testing::PrintToString(text);
  }
}

}  // namespace
}  // namespace orncore::string
