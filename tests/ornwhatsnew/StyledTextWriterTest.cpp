#include <limits>
#include <string>

#include <gtest/gtest.h>

#include <ornwhatsnew/FeatureListData.h>

#include "ornwhatsnew/src/panel/StyledTextWriter.h"
#include "tests/support/FakeHost.h"
#include "tests/support/PlainText.h"
#include "tests/support/RandomSource.h"

namespace ornwhatsnew {
namespace {

using test_support::kSeed;
using test_support::PlainUTF8to16;
using test_support::RandomSource;

constexpr int kMax = std::numeric_limits<int>::max();
constexpr int kMin = std::numeric_limits<int>::min();

StyleRun RunAt(int start, int length, std::u16string text = {}) {
  return {{start, length}, std::move(text)};
}

class StyledText : public test_support::FakeHostTest {
 protected:
  // Calls `CaptureStyle` once and returns the run that it records. `before` is the text before
  // `string`.
  StyleRun Capture(const UTF16String& before, const UTF16String& string, int startAdjust = 0,
                   int lengthAdjust = 0, const UTF16String& runString = {}) const {
    StyleRunMap runs;
    list_.CaptureStyle(kStyleHeader, before, string, startAdjust, lengthAdjust, runString, runs);
    return runs.at(kStyleHeader).at(0);
  }

  const FeatureListData list_{host_.Getter(), host_.Setter()};
};

TEST_F(StyledText, CaptureRecordsAnEmptyStringWithLengthZero) {
  EXPECT_EQ(Capture(u"abc", u""), RunAt(3, 0));
}

TEST_F(StyledText, CaptureCountsUtf8Bytes) {
  EXPECT_EQ(Capture(u"\u00C4", u"\u00E9"), RunAt(2, 2));
  EXPECT_EQ(Capture(u"\u65E5", u"\U0001F600"), RunAt(3, 4));
}

TEST_F(StyledText, CaptureOfOneUnitWithIssueLinkAdjustmentsHasLengthZero) {
  EXPECT_EQ(Capture(u"", u"x", 1, -1), RunAt(1, 0));
}

TEST_F(StyledText, CaptureRecordsANegativeLength) {
  EXPECT_EQ(Capture(u"", u"", 1, -1), RunAt(1, -1));
}

TEST_F(StyledText, CaptureCopiesTheRunString) {
  EXPECT_EQ(Capture(u"", u"x", 0, 0, u"https://a.example"), RunAt(0, 1, u"https://a.example"));
}

TEST_F(StyledText, CaptureAppendsToTheRunsOfItsStyle) {
  StyleRunMap runs;
  list_.CaptureStyle(kStyleHotSpot, u"", u"a", 0, 0, {}, runs);
  list_.CaptureStyle(kStyleHeader, u"a", u"b", 0, 0, {}, runs);
  list_.CaptureStyle(kStyleHotSpot, u"ab", u"c", 0, 0, {}, runs);
  EXPECT_EQ(runs, (StyleRunMap{{kStyleHotSpot, {RunAt(0, 1), RunAt(2, 1)}},
                               {kStyleHeader, {RunAt(1, 1)}}}));
}

TEST_F(StyledText, CaptureAcceptsAStyleOfTheHost) {
  StyleRunMap runs;
  list_.CaptureStyle(static_cast<StyleID>(8), u"", u"a", 0, 0, {}, runs);
  EXPECT_EQ(runs.size(), 1U);
}

TEST_F(StyledText, CaptureWrapsAroundOnIntegerOverflow) {
  EXPECT_EQ(Capture(u"a", u"ab", kMax, kMax), RunAt(kMin, kMin + 1));
  EXPECT_EQ(Capture(u"", u"", kMin, kMin), RunAt(kMin, kMin));
  EXPECT_EQ(Capture(u"a", u"a", -2, -2), RunAt(-1, -1));
}

TEST_F(StyledText, CaptureCountsALoneSurrogateAsTheReplacementCharacter) {
  EXPECT_EQ(Capture(u"\xD800", u"\xDC00"), RunAt(3, 3));
  EXPECT_EQ(Capture(u"\xD800\xDC00", u""), RunAt(4, 0));
}

TEST_F(StyledText, RecordedRunsWrapAroundAt32Bits) {
  StyleRunMap runs;
  RecordStyleRun(kStyleHeader, 0x1'0000'0005U, 0x8000'0000U, {-5, -1}, {}, runs);
  EXPECT_EQ(runs.at(kStyleHeader).at(0), RunAt(0, kMax));
}

TEST(StyledTextWriter, AppendsStringsInOrder) {
  StyleRunMap runs;
  StyledTextWriter writer(runs);
  writer.AppendTemplate(u"a\u00E9");
  writer.AppendStyled(kStyleHeader, u"b");
  writer.AppendChangeTextUTF8("\xE6\x97\xA5");
  EXPECT_EQ(writer.TakeText(), u"a\u00E9b\u65E5");
  EXPECT_EQ(runs, (StyleRunMap{{kStyleHeader, {RunAt(3, 1)}}, {kStyleChangeText, {RunAt(4, 3)}}}));
}

TEST(StyledTextWriter, AdjustsRunsInBytes) {
  StyleRunMap runs;
  StyledTextWriter writer(runs);
  writer.AppendTemplate(u"a");
  writer.AppendRun(kStyleInternalCode, u"(\u00E9-@0)", u"link", {1, -1});
  EXPECT_EQ(writer.TakeText(), u"a(\u00E9-@0)");
  EXPECT_EQ(runs, (StyleRunMap{{kStyleInternalCode, {RunAt(2, 6, u"link")}}}));
}

TEST(StyledTextWriter, AdjacentSurrogatesCountAsOneCharacter) {
  StyleRunMap runs;
  StyledTextWriter writer(runs);
  writer.AppendStyled(kStyleHeader, u"\xD83D");
  writer.AppendStyled(kStyleHeader, u"\xDE00");
  writer.AppendStyled(kStyleHeader, u"x");
  EXPECT_EQ(runs.at(kStyleHeader), (std::vector{RunAt(0, 3), RunAt(3, 3), RunAt(4, 1)}));
}

TEST(StyledTextWriter, EmptyStringDoesNotSeparateSurrogates) {
  StyleRunMap runs;
  StyledTextWriter writer(runs);
  writer.AppendTemplate(u"\xD83D");
  writer.AppendStyled(kStyleHeader, u"");
  writer.AppendTemplate(u"\xDE00");
  writer.AppendStyled(kStyleHeader, u"");
  EXPECT_EQ(runs.at(kStyleHeader), (std::vector{RunAt(3, 0), RunAt(4, 0)}));
}

TEST(StyledTextWriter, IllFormedUtf8IsMeasuredAfterReplacement) {
  StyleRunMap runs;
  StyledTextWriter writer(runs);
  writer.AppendChangeTextUTF8("\xFF\xE2\x82");
  writer.AppendChangeText(u"x");
  EXPECT_EQ(runs.at(kStyleChangeText), (std::vector{RunAt(0, 6), RunAt(6, 1)}));
  EXPECT_EQ(writer.TakeText(), u"\uFFFD\uFFFDx");
}

// Compares `StyledTextWriter` with `CaptureStyle`, which measures the whole text in each call.
class WriterComparison : public StyledText {
 protected:
  void AppendRandomString(RandomSource& random) {
    const auto style = static_cast<StyleID>(random.Below(14));
    const std::u16string string = random.HostileUTF16(4);
    const std::u16string runString = random.HostileUTF16(2);
    const RunAdjustment adjustment = random.Flip() ? RunAdjustment{1, -1} : RunAdjustment{kMax, 7};
    switch (random.Below(4)) {
      case 0:
        writer_.AppendTemplate(string);
        break;
      case 1:
        Capture(style, string, runString, adjustment);
        writer_.AppendRun(style, string, runString, adjustment);
        break;
      case 2:
        Capture(kStyleUnlockLabel, string, {}, {});
        Capture(kStyleUnlockLabelBox, string, {}, {});
        writer_.AppendUnlockLabel(string);
        break;
      default: {
        const std::string bytes = random.HostileText(3);
        Capture(kStyleChangeText, PlainUTF8to16(bytes), {}, {});
        writer_.AppendChangeTextUTF8(bytes);
        expectedText_ += PlainUTF8to16(bytes);
        return;
      }
    }
    expectedText_ += string;
  }

  void Capture(StyleID style, const UTF16String& string, const UTF16String& runString,
               RunAdjustment adjustment) {
    list_.CaptureStyle(style, expectedText_, string, adjustment.start, adjustment.length, runString,
                       expectedRuns_);
  }

  StyleRunMap runs_;
  StyledTextWriter writer_{runs_};
  std::u16string expectedText_;
  StyleRunMap expectedRuns_;
};

TEST_F(WriterComparison, WriterRecordsTheSameRunsForRandomStrings) {
  RandomSource random(kSeed);
  SCOPED_TRACE("seed " + std::to_string(kSeed));
  for (int i = 0; i < 1500; ++i) {
    AppendRandomString(random);
    ASSERT_EQ(runs_, expectedRuns_) << "after string " << i;
  }
  EXPECT_EQ(writer_.TakeText(), expectedText_);
}

TEST_F(WriterComparison, CaptureMeasuresLikeAConversionToUtf8) {
  RandomSource random(kSeed);
  for (int i = 0; i < 2000; ++i) {
    const std::u16string before = random.HostileUTF16(40);
    const std::u16string string = random.HostileUTF16(8);
    const auto start = static_cast<int>(test_support::PlainUTF16to8(before).size());
    const auto length = static_cast<int>(test_support::PlainUTF16to8(string).size());
    ASSERT_EQ(StyledText::Capture(before, string), RunAt(start, length)) << "round " << i;
  }
}

}  // namespace
}  // namespace ornwhatsnew
