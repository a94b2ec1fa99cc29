#include <ornwhatsnew/WhatsNewTypes.h>

#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ornwhatsnew {
namespace {

TEST(WhatsNewTypes, SectionKeysMatchTheDataFile) {
  EXPECT_EQ(kMiscKey, "MISC");
  EXPECT_EQ(kBugfixKey, "BUGFIX");
  EXPECT_EQ(kInternalKey, "INTERNAL");
  EXPECT_EQ(kUnreviewedKey, "UNREVIEWED");
}

TEST(WhatsNewTypes, LayoutConstantsNeverChange) {
  EXPECT_EQ(kFontSize_Title, 28.0F);
  EXPECT_EQ(kFontSize_Header, 18.0F);
  EXPECT_EQ(kFontSize_Buttons, 20.0F);
  EXPECT_EQ(kFontSize_Normal, 18.0F);
  EXPECT_EQ(kFontSize_NormalSmall, 16.0F);
  EXPECT_EQ(kFontSize_HotSpot, 16.0F);
  EXPECT_EQ(kFontSize_HotSpotCopy, 16.0F);
  EXPECT_EQ(kTabWidth, 6);
  EXPECT_EQ(kRightMargin, 26);
  static_assert(std::is_same_v<decltype(kFontSize_Title), const float>);
  static_assert(std::is_same_v<decltype(kTabWidth), const int>);
}

TEST(WhatsNewTypes, TypographicMarksNeverChange) {
  EXPECT_THAT(kTypographicMarks,
              testing::ElementsAre("\u00B0", "\u00AB", "\u00BB", "\u25BE", "-", "\uFE58", "\u2013",
                                   "\u2212", "\uFE63", "\uFF0D", "\u2014", "\u2015"));
}

}  // namespace
}  // namespace ornwhatsnew
