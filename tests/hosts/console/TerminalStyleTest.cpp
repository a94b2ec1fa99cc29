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

struct LinkCase {
  std::string link;
  bool isSafe;
};

class TerminalLink : public testing::TestWithParam<LinkCase> {};

TEST_P(TerminalLink, IsSafeIfItIsAnHttpsUrl) {
  EXPECT_EQ(GetParam().isSafe, IsSafeHyperlink(GetParam().link)) << GetParam().link;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TerminalLink,
    testing::Values(LinkCase{"https://help.tarsa.example/a-b_c.d~e?f=g&h=%20#i;j", true},
                    LinkCase{"https://x", true}, LinkCase{"https://", false}, LinkCase{"", false},
                    LinkCase{"http://x", false}, LinkCase{"HTTPS://x", false},
                    LinkCase{"file:///etc/passwd", false}, LinkCase{" https://x", false},
                    LinkCase{"https://x y", false}, LinkCase{"https://x\x1B\\", false},
                    LinkCase{"https://x\x07", false}, LinkCase{"https://x\n", false},
                    LinkCase{"https://x\x7F", false}, LinkCase{"https://\xC3\xA9", false},
                    LinkCase{"https://x\"", false}, LinkCase{"https://<x>", false},
                    LinkCase{std::string("https://x\0", 10), false},
                    LinkCase{"https://" + std::string(1992, 'x'), true},
                    LinkCase{"https://" + std::string(1993, 'x'), false}));

TEST(TerminalStyle, StartsAHyperlinkWithItsNumber) {
  EXPECT_EQ("\x1B]8;id=7;https://x\x1B\\", HyperlinkStart("https://x", 7));
}

}  // namespace
}  // namespace hosts::console
