#include <algorithm>
#include <cstdint>
#include <memory>
#include <random>
#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orncore/src/string/Ascii.h"

namespace orncore::string::ascii {
namespace {

constexpr std::uint32_t kSeed = 20251120;

// The plain form of everything: a character at a time, written without looking at the fast one.
template <class Unit>
std::size_t PlainPrefix(std::span<const Unit> text) {
  std::size_t length = 0;
  while (length < text.size() && text[length] >= 0 && text[length] <= 0x7F) ++length;
  return length;
}

template <class Unit>
Unit PlainLower(Unit unit) {
  return unit >= 'A' && unit <= 'Z' ? static_cast<Unit>(unit - 'A' + 'a') : unit;
}

template <class Unit>
Unit PlainUpper(Unit unit) {
  return unit >= 'a' && unit <= 'z' ? static_cast<Unit>(unit - 'a' + 'A') : unit;
}

// Exactly as much memory as the text has, so that a sanitizer sees every step outside.
template <class Unit>
class Exact {
 public:
  explicit Exact(std::span<const Unit> text)
      : units_(std::make_unique<Unit[]>(text.size())), length_(text.size()) {
    std::ranges::copy(text, units_.get());
  }
  explicit Exact(std::size_t length) : units_(std::make_unique<Unit[]>(length)), length_(length) {}
  Unit* Data() { return units_.get(); }
  std::span<const Unit> Text() const { return {units_.get(), length_}; }
  std::vector<Unit> Prefix(std::size_t length) const {
    return {units_.get(), units_.get() + length};
  }

 private:
  std::unique_ptr<Unit[]> units_;
  std::size_t length_;
};

template <template <class> class Lanes, class Unit, class Other>
void ExpectLikePlain(std::span<const Unit> text) {
  const std::size_t expected = PlainPrefix(text);
  Exact<Unit> from(text);
  EXPECT_EQ(PrefixLength<Lanes>(from.Data(), text.size()), expected);

  std::vector<Unit> mapped(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(expected));
  std::ranges::transform(mapped, mapped.begin(), PlainLower<Unit>);
  Exact<Unit> lower(text.size());
  EXPECT_EQ((MapPrefix<Case::kLower, Lanes>(from.Data(), text.size(), lower.Data())), expected);
  EXPECT_EQ(lower.Prefix(expected), mapped);

  std::ranges::transform(mapped, mapped.begin(), PlainUpper<Unit>);
  Exact<Unit> upper(text);
  EXPECT_EQ((MapPrefix<Case::kUpper, Lanes>(upper.Data(), text.size(), upper.Data())), expected);
  EXPECT_EQ(upper.Prefix(expected), mapped) << "in place";

  Exact<Other> other(text.size());
  EXPECT_EQ(CopyPrefix<Lanes>(from.Data(), text.size(), other.Data()), expected);
  EXPECT_TRUE(
      std::equal(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(expected), other.Data()));
}

template <class Unit, class Other>
void ExpectAllLikePlain(std::span<const Unit> text) {
  ExpectLikePlain<Words, Unit, Other>(text);
  ExpectLikePlain<Widest, Unit, Other>(text);
}

// Texts of every length up to a few groups, with one unit that is not ASCII at every place or none.
template <class Unit, class Other>
void TryEveryPlace(std::span<const Unit> strangers) {
  for (std::size_t length = 0; length <= 50; ++length) {
    std::vector<Unit> text(length);
    for (std::size_t i = 0; i < length; ++i) text[i] = static_cast<Unit>('@' + i);
    ExpectAllLikePlain<Unit, Other>(text);
    for (std::size_t place = 0; place < length; ++place) {
      for (const Unit stranger : strangers) {
        std::vector<Unit> broken = text;
        broken[place] = stranger;
        ExpectAllLikePlain<Unit, Other>(broken);
      }
    }
  }
}

template <class Unit, class Other>
void TryRandomTexts(unsigned most) {
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  std::mt19937 random(kSeed);
  for (int round = 0; round < 3000; ++round) {
    std::vector<Unit> text(random() % 70);
    for (Unit& unit : text) {
      unit = static_cast<Unit>(random() % 40 == 0 ? random() % (most + 1) : random() % 0x80);
    }
    ExpectAllLikePlain<Unit, Other>(text);
  }
}

// Every ASCII character in every lane, so that no lane disturbs its neighbours.
template <class Unit, class Other>
void TryEveryCharacter() {
  for (unsigned character = 0; character < 0x80; ++character) {
    std::vector<Unit> text(40, static_cast<Unit>(character));
    ExpectAllLikePlain<Unit, Other>(text);
    for (std::size_t i = 0; i < text.size(); i += 2) text[i] = 'Z';
    ExpectAllLikePlain<Unit, Other>(text);
  }
}

TEST(Ascii, StopsAtAByteThatIsNotAsciiAnywhere) {
  const std::vector<char> strangers = {'\x80', '\xC3', '\xFF'};
  TryEveryPlace<char, char16_t>(strangers);
}

TEST(Ascii, StopsAtAUnitThatIsNotAsciiAnywhere) {
  // U+4141 and U+0100 have ASCII bytes only.
  const std::vector<char16_t> strangers = {0x80, 0xFF, 0x100, 0x4141, 0x8000, 0xD800, 0xFFFF};
  TryEveryPlace<char16_t, char>(strangers);
}

// A mask that lacks a bit takes one of these for ASCII only when nothing else is beside it.
TEST(Ascii, TakesNoUnitForAsciiAmongItsLike) {
  for (unsigned bit = 7; bit < 16; ++bit) {
    for (const unsigned unit : {1U << bit, (0xFFFFU << bit) & 0xFFFFU}) {
      const std::vector<char16_t> text(64, static_cast<char16_t>(unit));
      ExpectAllLikePlain<char16_t, char>(text);
    }
  }
  ExpectAllLikePlain<char, char16_t>(std::vector<char>(64, '\x80'));
}

TEST(Ascii, TreatsRandomBytesLikeThePlainForm) {
  TryRandomTexts<char, char16_t>(0xFF);
}

TEST(Ascii, TreatsRandomUnitsLikeThePlainForm) {
  TryRandomTexts<char16_t, char>(0xFFFF);
}

TEST(Ascii, MapsEveryCharacterLikeThePlainForm) {
  TryEveryCharacter<char, char16_t>();
  TryEveryCharacter<char16_t, char>();
}

}  // namespace
}  // namespace orncore::string::ascii
