#include <ornwhatsnew/utility/KeyedTexts.h>

#include <array>
#include <stdexcept>
#include <string_view>

#include <gtest/gtest.h>

namespace ornwhatsnew {
namespace {

constexpr std::array<std::string_view, 2> kKeys = {"kName", "kPlace"};
using Texts = KeyedTexts<kKeys>;

TEST(KeyedTexts, HoldsAnEmptyTextUnderEachKeyAtFirst) {
  const Texts texts;
  EXPECT_EQ(Texts::kCount, 2U);
  EXPECT_EQ(texts.At("kName"), "");
  EXPECT_EQ(texts.At("kPlace"), "");
}

TEST(KeyedTexts, FindsATextByItsKeyAndByItsPlace) {
  Texts texts({"name", "place"});
  EXPECT_EQ(&texts.At("kName"), &texts[0]);
  EXPECT_EQ(&texts.At("kPlace"), &texts[1]);
  texts[1] = "elsewhere";
  EXPECT_EQ(texts.At("kPlace"), "elsewhere");
}

TEST(KeyedTexts, ThrowsOutOfRangeForAKeyThatTheTableLacks) {
  const Texts texts;
  for (const std::string_view key : {"", "kname", "kName ", "kNam"}) {
    try {
      texts.At(key);
      ADD_FAILURE() << "found " << key;
    } catch (const std::out_of_range& error) {
      EXPECT_STREQ(error.what(), "unordered_map::at: key not found");
    }
  }
}

}  // namespace
}  // namespace ornwhatsnew
