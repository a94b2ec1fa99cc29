#include <initializer_list>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include "hosts/console/TerminalStyle.h"

namespace hosts::console {
namespace {

using ornwhatsnew::StyleID;

std::string StartOf(std::initializer_list<StyleID> members) {
  common::StyleSet styles;
  for (const StyleID style : members) styles.Set(style, true);
  return StyleStart(styles);
}

TEST(TerminalStyle, PlainTextHasNoSequence) {
  EXPECT_EQ("", StartOf({}));
  EXPECT_EQ("", StartOf({StyleID::kStyleChangeText}));
  EXPECT_EQ("", StartOf({StyleID::kStyleFeatureDescription}));
}

TEST(TerminalStyle, EveryOtherStyleOfThePanelLooksDifferent) {
  std::set<std::string> looks;
  const std::initializer_list<StyleID> styles = {
      StyleID::kStyleFeatureTitle,   StyleID::kStyleHeader,
      StyleID::kStyleInternalCode,   StyleID::kStyleCommitLink,
      StyleID::kStyleHotSpot,        StyleID::kStyleIssueLink,
      StyleID::kStyleUnlockLabel,    StyleID::kStyleInternalWarning,
      StyleID::kStyleUnlockLabelBox, StyleID::kStyleRatingPlaceholder};
  for (const StyleID style : styles) {
    const std::string start = StartOf({style});
    EXPECT_TRUE(start.starts_with("\x1B[") && start.ends_with("m")) << static_cast<int>(style);
    looks.insert(start);
  }
  EXPECT_EQ(styles.size(), looks.size());
}

TEST(TerminalStyle, StylesOfTheSameTextAreCombined) {
  const std::string label = StartOf({StyleID::kStyleUnlockLabel});
  const std::string box = StartOf({StyleID::kStyleUnlockLabelBox});
  const std::string both = StartOf({StyleID::kStyleUnlockLabel, StyleID::kStyleUnlockLabelBox});
  EXPECT_EQ(label.substr(0, label.size() - 1) + ";" + box.substr(2), both);
}

TEST(TerminalStyle, StartsAHyperlinkWithItsNumber) {
  EXPECT_EQ("\x1B]8;id=7;https://x\x1B\\", HyperlinkStart("https://x", 7));
}

}  // namespace
}  // namespace hosts::console
