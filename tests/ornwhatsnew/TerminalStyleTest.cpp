#include <initializer_list>
#include <optional>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "ornwhatsnew/src/render/TerminalStyle.h"

namespace ornwhatsnew {
namespace {

TEST(TerminalStyle, PlainTextHasNoSequence) {
  EXPECT_EQ("", StyleStart(std::nullopt));
  EXPECT_EQ("", StyleStart(kStyleChangeText));
  EXPECT_EQ("", StyleStart(kStyleFeatureDescription));
}

TEST(TerminalStyle, EveryOtherStyleOfALayoutLooksDifferent) {
  std::set<std::string> looks;
  const std::initializer_list<StyleID> styles = {
      kStyleFeatureTitle, kStyleHeader,          kStyleInternalCode,
      kStyleCommitLink,   kStyleHotSpot,         kStyleIssueLink,
      kStyleUnlockLabel,  kStyleInternalWarning, kStyleRatingPlaceholder};
  for (const StyleID style : styles) {
    const std::string start(StyleStart(style));
    EXPECT_TRUE(start.starts_with("\x1B[") && start.ends_with("m")) << static_cast<int>(style);
    looks.insert(start);
  }
  EXPECT_EQ(styles.size(), looks.size());
}

TEST(TerminalStyle, StartsAHyperlinkWithItsNumber) {
  EXPECT_EQ("\x1B]8;id=7;https://x\x1B\\", HyperlinkStart("https://x", 7));
}

}  // namespace
}  // namespace ornwhatsnew
