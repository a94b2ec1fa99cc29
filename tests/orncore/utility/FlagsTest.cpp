#include <orncore/utility/Flags.h>

#include <cstdint>

#include <gtest/gtest.h>

namespace orncore::utility {
namespace {

using ByteFlags = Flags<std::uint8_t>;

constexpr ByteFlags kLow{0x01};
constexpr ByteFlags kHigh{0x80};

static_assert(ByteFlags() == ByteFlags(0));
static_assert((kLow | kHigh) == ByteFlags(0x81));
static_assert((kLow | kHigh | kHigh) == ByteFlags(0x81));
static_assert(((kLow | kHigh) & kHigh) == kHigh);
static_assert((kLow & kHigh) == ByteFlags());
static_assert(kLow != kHigh);
static_assert(sizeof(ByteFlags) == 1);

TEST(Flags, HasReturnsTrueOnlyIfAllBitsAreSet) {
  const ByteFlags both = kLow | kHigh;
  EXPECT_TRUE(both.Has(kLow));
  EXPECT_TRUE(both.Has(kHigh));
  EXPECT_TRUE(both.Has(both));
  EXPECT_FALSE(kLow.Has(both));
  EXPECT_FALSE(kLow.Has(kHigh));
}

TEST(Flags, EverySetContainsTheEmptySet) {
  EXPECT_TRUE(ByteFlags().Has({}));
  EXPECT_TRUE(kHigh.Has({}));
  EXPECT_FALSE(ByteFlags().Has(kLow));
}

TEST(Flags, ConvertsFromAnInteger) {
  const auto hasHigh = [](ByteFlags flags) { return flags.Has(kHigh); };
  const std::uint8_t number = 0x80;
  EXPECT_TRUE(hasHigh(number));
  EXPECT_NE(ByteFlags(0xFF), ByteFlags(0x7F));
}

TEST(Flags, SupportsWiderIntegers) {
  const Flags<std::uint64_t> top{std::uint64_t{1} << 63};
  EXPECT_TRUE((top | Flags<std::uint64_t>{1}).Has(top));
}

}  // namespace
}  // namespace orncore::utility
