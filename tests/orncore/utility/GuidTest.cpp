#include <orncore/utility/Guid.h>

#include <array>
#include <compare>
#include <random>
#include <string>
#include <type_traits>
#include <unordered_set>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/Allocations.h"

namespace orncore::utility {
namespace {

using Bytes = std::array<std::uint8_t, Guid::kByteLength>;

constexpr Bytes kBytes = {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF,
                          0xFE, 0xDC, 0xBA, 0x98, 0x76, 0x54, 0x32, 0x10};
constexpr std::string_view kText = "01234567-89ab-cdef-fedc-ba9876543210";

static_assert(Guid() == Guid(Bytes{}));
static_assert(Guid() != Guid(kBytes));
static_assert(Guid(kBytes).GuidToBytes() == kBytes);
static_assert(kText.size() == Guid::kTextLength);
static_assert(std::is_trivially_copyable_v<Guid> && sizeof(Guid) == 16);
static_assert(!std::is_convertible_v<std::string_view, Guid>);
static_assert(!std::is_convertible_v<Bytes, Guid>);

TEST(Guid, IsNilByDefault) {
  EXPECT_EQ(Guid().GuidToBytes(), Bytes{});
  EXPECT_EQ(Guid().AsUTF8String(), "00000000-0000-0000-0000-000000000000");
}

TEST(Guid, FormatsItsBytesInOrder) {
  EXPECT_EQ(Guid(kBytes).AsUTF8String(), kText);
}

TEST(Guid, AppendsItsTextToAString) {
  std::string text = "before ";
  Guid(kBytes).AppendTo(text);
  EXPECT_EQ(text, "before " + std::string(kText));
}

TEST(Guid, ReadsBothLetterCases) {
  EXPECT_EQ(Guid(kText), Guid(kBytes));
  EXPECT_EQ(Guid("01234567-89AB-CDEF-FEDC-BA9876543210"), Guid(kBytes));
  EXPECT_EQ(Guid("01234567-89aB-CdEf-fEdC-Ba9876543210"), Guid(kBytes));
}

TEST(Guid, ReadsEveryByteAtEveryIndex) {
  for (std::size_t index = 0; index < Guid::kByteLength; ++index) {
    for (unsigned byte = 0; byte < 256; ++byte) {
      Bytes bytes = kBytes;
      bytes[index] = static_cast<std::uint8_t>(byte);
      const Guid guid(bytes);
      EXPECT_EQ(Guid(guid.AsUTF8String()), guid) << guid.AsUTF8String();
    }
  }
}

TEST(Guid, IsNilForMalformedText) {
  const std::string cases[] = {
      "",
      "-",
      "0",
      "0123456789abcdeffedcba9876543210",
      "01234567-89ab-cdef-fedc-ba987654321",
      "01234567-89ab-cdef-fedc-ba98765432100",
      " 01234567-89ab-cdef-fedc-ba987654321",
      "01234567-89ab-cdef-fedc-ba9876543210 ",
      "{01234567-89ab-cdef-fedc-ba9876543210}",
      "{1234567-89ab-cdef-fedc-ba987654321}",
      "0x234567-89ab-cdef-fedc-ba9876543210",
      "0123456-789ab-cdef-fedc-ba9876543210",
      "01234567-89abc-def-fedc-ba9876543210",
      "01234567 89ab cdef fedc ba9876543210",
      "01234567_89ab-cdef-fedc-ba9876543210",
      "------------------------------------",
  };
  for (const std::string& text : cases) EXPECT_EQ(Guid(text), Guid()) << text;
  EXPECT_EQ(Guid(std::string_view()), Guid());
}

TEST(Guid, IsNilWhenOneCharacterIsWrong) {
  for (std::size_t index = 0; index < kText.size(); ++index) {
    for (int value = -128; value < 128; ++value) {
      const char wrong = static_cast<char>(value);
      const bool isDigit = std::string_view("0123456789abcdefABCDEF").find(wrong) != kText.npos;
      const bool isAllowed = kText[index] == '-' ? wrong == '-' : isDigit;
      if (isAllowed) continue;
      std::string text(kText);
      text[index] = wrong;
      EXPECT_EQ(Guid(text), Guid()) << text;
    }
  }
}

TEST(Guid, IsOrderedLikeItsBytesAndItsText) {
  std::vector<std::string> texts;
  for (const char* text :
       {"00000000-0000-0000-0000-000000000000", "00000000-0000-0000-0000-000000000001",
        "00000000-0000-0000-0000-0000000000ff", "00000000-0000-0000-ff00-000000000000",
        "7fffffff-0000-0000-0000-000000000000", "80000000-0000-0000-0000-000000000000",
        "ffffffff-ffff-ffff-ffff-ffffffffffff"}) {
    texts.emplace_back(text);
  }
  for (std::size_t index = 0; index < Guid::kByteLength; ++index) {
    Bytes bytes = kBytes;
    bytes[index] ^= 1;
    texts.push_back(Guid(bytes).AsUTF8String());
  }
  for (const std::string& left : texts) {
    for (const std::string& right : texts) {
      EXPECT_EQ(Guid(left) <=> Guid(right), left <=> right) << left << ' ' << right;
      EXPECT_EQ(Guid(left) == Guid(right), left == right) << left << ' ' << right;
    }
  }
}

TEST(Guid, LeadingBitsAreTheFirstBytesFromMostToLeastSignificant) {
  EXPECT_EQ(Guid(kBytes).LeadingBits(), 0x0123456789ABCDEFU);
}

TEST(Guid, StandardHashDependsOnTheFirstBytes) {
  const std::hash<Guid> hash;
  Bytes other = kBytes;
  other[15] ^= 1;
  EXPECT_EQ(hash(Guid(kBytes)), hash(Guid(other)));
  for (std::size_t index = 0; index < sizeof(std::size_t); ++index) {
    other = kBytes;
    other[index] ^= 1;
    EXPECT_NE(hash(Guid(kBytes)), hash(Guid(other))) << index;
  }
}

TEST(Guid, CanBeAKeyOfUnorderedContainers) {
  const std::unordered_set<Guid> guids = {Guid(kBytes), Guid(), Guid(kText)};
  EXPECT_EQ(guids.size(), 2U);
  EXPECT_TRUE(guids.contains(Guid(kBytes)));
}

TEST(Guid, AllocatesOnlyForItsText) {
  std::string text;
  text.reserve(2 * Guid::kTextLength);
  EXPECT_EQ(test_support::CountAllocations([&text] {
              const Guid guid(kText);
              guid.AppendTo(text);
              guid.AppendTo(text);
            }),
            0U);
  EXPECT_LE(test_support::CountAllocations([&text] { text = Guid(kBytes).AsUTF8String(); }), 1U);
}

}  // namespace
}  // namespace orncore::utility
