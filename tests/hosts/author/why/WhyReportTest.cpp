#include "hosts/author/why/WhyReport.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/DataFileReader.h>

#include "hosts/author/InputError.h"
#include "hosts/common/MessageText.h"
#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"
#include "tests/support/RandomSource.h"
#include "tests/support/RandomWorld.h"

namespace hosts::author {
namespace {

using ornwhatsnew::DisplayOptions;
using ornwhatsnew::FeatureListData;
using ornwhatsnew::kFilterHeadlinesOnly;
using ornwhatsnew::kFilterRelevantPlatform;
using ornwhatsnew::kFilterRelevantVersion;
using ornwhatsnew::kRatingView;
using ornwhatsnew::kShowOnlyNew;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class WhyReportTest : public test_support::FakeHostTest {
 protected:
  WhyReportTest() {
    host_.AddFeature({.internalKey = "map", .epicKey = "MAP-7", .name = "Map"});
    host_.AddFeature({.internalKey = "pen", .epicKey = "PEN-2", .name = "Stylus", .visibility = 1});
  }

  /// Loads a data file with the header row and `rows`.
  void Load(std::string_view rows) {
    LoadWithoutHeader(std::string(test_support::DataFile().Text()) += rows);
  }

  /// Loads a data file that consists of `rows`.
  void LoadWithoutHeader(std::string_view rows) {
    text_ = rows;
    list_ = std::make_unique<FeatureListData>(text_, host_.Getter(), host_.Setter());
  }

  /// Displays the list, so that the user has seen its content.
  void Show() {
    test_support::Format(*list_);
    list_->RefreshInternalSeenState();
  }

  WhyReport Report(DisplayOptions options) const {
    return {*list_, "data.csv", text_, options, versions_};
  }
  std::string ExplainLine(std::size_t line, DisplayOptions options = {}) const {
    return Report(options).ExplainLine(line);
  }
  std::string ExplainKey(const std::string& key, DisplayOptions options = {}) const {
    return Report(options).ExplainKey(key);
  }

  std::string text_;
  std::unique_ptr<FeatureListData> list_;
  std::vector<std::string> versions_ = {"25.1.0.42"};
};

TEST_F(WhyReportTest, SaysThatAChangeIsShown) {
  Load(",MAP-7,,,,,,,,Zooms\n");
  EXPECT_EQ(ExplainLine(2), "data.csv:2: a change of the feature 'MAP-7': 'Zooms'\nshown\n");
}

TEST_F(WhyReportTest, GivesEveryReasonOfAChangeInTheOrderOfTheRules) {
  Load("26.0.0.0,MAP-7,,Detail,,25.2.0.0,win,,,Zooms\n");
  Show();
  EXPECT_EQ(ExplainLine(2, kFilterRelevantPlatform | kFilterHeadlinesOnly | kFilterRelevantVersion |
                               kShowOnlyNew),
            "data.csv:2: a change of the feature 'MAP-7': 'Zooms'\n"
            "not shown: only relevant on Win; this host is Mac\n"
            "not shown: --headlines shows only changes with a malformed salience\n"
            "not shown: only relevant to users of versions from '25.2.0.0' up to, but not "
            "including, '26.0.0.0'; "
            "this user ran '25.1.0.42'\n"
            "not shown: seen already\n");
}

TEST_F(WhyReportTest, NamesTheLetterCaseOfPlatformsAndAHostWithoutOne) {
  Load(",MAP-7,,,,,MAC,,,Zooms\n");
  host_.SetPlatform("");
  EXPECT_THAT(
      ExplainLine(2, kFilterRelevantPlatform),
      EndsWith(
          "\nnot shown: only relevant on Mac; the platform in the host description is empty\n"));
}

TEST_F(WhyReportTest, ListsAtMostThreeVersionsOfTheUser) {
  Load("26,MAP-7,,,,25,,,,Zooms\n");
  versions_ = {"1", "2", "3"};
  EXPECT_THAT(ExplainLine(2, kFilterRelevantVersion),
              EndsWith("; this user ran '1', '2' and '3'\n"));
  versions_.emplace_back("4");
  EXPECT_THAT(ExplainLine(2, kFilterRelevantVersion),
              EndsWith("; this user ran '1', '2' and 2 others\n"));
}

TEST_F(WhyReportTest, SaysThatARangeOfVersionsIsInvalid) {
  const auto reason = [this](const std::string& first, const std::string& added) {
    Load(added + ",MAP-7,,,," + first + ",,,,Zooms\n");
    const std::string explained = ExplainLine(2, kFilterRelevantVersion);
    return explained.substr(explained.find('\n') + 1);
  };
  EXPECT_EQ(reason("4.1", ""),
            "not shown: it has no version in column 1, so it is relevant to no version\n");
  EXPECT_EQ(reason("next", "4.3"),
            "not shown: 'next' has a component that is not a number from 0 to 999, so it cannot be "
            "compared\n");
  EXPECT_THAT(reason("4.1", "4.x"), HasSubstr(": '4.x' has a component that is not a number "));
  EXPECT_EQ(
      reason("4.2000", "4.3"),
      "not shown: '4.2000' has a component that is not a number from 0 to 999, so it cannot be "
      "compared\n");
  EXPECT_EQ(
      reason("4.999.0.0", "4.-3.0.0"),
      "not shown: '4.-3.0.0' has a component that is not a number from 0 to 999, so it cannot be "
      "compared\n");
  EXPECT_EQ(reason("4.1.0.0", "4.3"),
            "not shown: '4.1.0.0' and '4.3' have different numbers of components, so they cannot "
            "be compared\n");
  EXPECT_EQ(
      reason("4.3.0.0", "4.3.0.0"),
      "not shown: '4.3.0.0' is not earlier than '4.3.0.0', so it is relevant to no version\n");
  EXPECT_EQ(
      reason("4.3.0.1", "4.3.0.0"),
      "not shown: '4.3.0.1' is not earlier than '4.3.0.0', so it is relevant to no version\n");
}

// The library combines the components of a version into one signed 64-bit number, which can
// overflow.
TEST_F(WhyReportTest, SaysThatAVersionHasTooManyComponents) {
  const auto explain = [this](const std::string& added) {
    Load(added + ",MAP-7,,,,9.0.0.0.0.0.0,,,,Zooms\n");
    return ExplainLine(2, kFilterRelevantVersion);
  };
  EXPECT_THAT(explain("10.0.0.0.0.0.0"),
              EndsWith("\nnot shown: '10.0.0.0.0.0.0' has too many components, so it cannot be "
                       "compared\n"));
  EXPECT_THAT(explain("9.223.372.036.854.775.808"), HasSubstr(" has too many components"));
  EXPECT_THAT(explain("10.0.0.0.0.0.0.x"), HasSubstr(" has too many components"));
  versions_ = {"1.0.0.0.0.0.0"};
  EXPECT_THAT(explain("9.223.372.036.854.775.807"), EndsWith("; this user ran '1.0.0.0.0.0.0'\n"));
}

TEST_F(WhyReportTest, SaysThatVersionsOfTheUserCannotBeCompared) {
  Load("4.3,MAP-7,,,,4.1,,,,Zooms\n");
  versions_ = {"4.2.0.0.118"};
  EXPECT_THAT(ExplainLine(2, kFilterRelevantVersion),
              EndsWith("\nnot shown: '4.1', '4.3' and the user's '4.2.0.0.118' have different "
                       "numbers of components, so they cannot be compared\n"));
  versions_ = {"4.4", "4.2.0", "3"};
  EXPECT_THAT(ExplainLine(2, kFilterRelevantVersion),
              EndsWith("\nnot shown: '4.1', '4.3' and the user's '4.2.0' and '3' have different "
                       "numbers of components, so they cannot be compared\n"));
  for (const std::string version : {"4.x", "dev.2"}) {
    versions_ = {"4.3", version, "4.0"};
    EXPECT_THAT(ExplainLine(2, kFilterRelevantVersion),
                EndsWith("\nnot shown: the user's '" + version +
                         "' has a component that is not a number from 0 to 999, so it cannot be "
                         "compared\n"));
  }
  Load("4.3.0,MAP-7,,,,4.1.0,,,,Zooms\n");
  versions_ = {"4.4.0", "4.2.5000"};
  EXPECT_THAT(
      ExplainLine(2, kFilterRelevantVersion),
      EndsWith(
          "\nnot shown: the user's '4.2.5000' has a component that is not a number from 0 to 999, "
          "so it cannot be compared\n"));
}

TEST_F(WhyReportTest, ExplainsAChangeWithoutText) {
  Load(",MAP-7,,,RequestRating,,,,,\n,MAP-7,,,,,,,,\n");
  EXPECT_EQ(
      ExplainLine(2),
      "data.csv:2: a change of the feature 'MAP-7'\n"
      "not shown: it has no text, and only the rating view shows a rating request without text\n");
  EXPECT_THAT(ExplainLine(3), EndsWith("\nnot shown: it has no text\n"));
}

TEST_F(WhyReportTest, ExplainsTheRatingView) {
  Load(",MAP-7,,,,,,,,Zooms\n,MAP-7,,,How?,,,,,Pans\n,MISC,,,How?,,,,,Icons\n");
  EXPECT_EQ(ExplainLine(2, kRatingView),
            "data.csv:2: a change of the feature 'MAP-7': 'Zooms'\n"
            "not shown: the feature is hidden: not seen yet, so it cannot be rated\n"
            "not shown: it requests no rating\n"
            "not shown: not seen yet, so it cannot be rated\n");
  Show();
  EXPECT_THAT(ExplainLine(3, kRatingView), EndsWith("'Pans'\nshown\n"));
  EXPECT_THAT(ExplainLine(4, kRatingView),
              EndsWith("\nnot shown: the section is hidden: only features can be rated\n"));
  list_->MarkItemHasBeenRated("MAP-7");
  EXPECT_THAT(ExplainLine(3, kRatingView),
              EndsWith("'Pans'\nnot shown: the feature is hidden: rated already\n"));
  host_.SetTerminating(true);
  host_.SetUsageLogging(false);
  EXPECT_THAT(
      ExplainLine(3, kRatingView),
      HasSubstr(
          "hidden: the application is terminating, so nothing can be rated\n"
          "not shown: the feature is hidden: usage logging is off, so nothing can be rated\n"));
}

TEST_F(WhyReportTest, NamesTheRowsThatHideTheFeature) {
  Load(
      ",MAP-7,,,,,,,,Zooms\n,MAP-7,,HideBetaFeature,,,,,,Pans\n"
      ",MAP-7,,HideBetaFeature,,,,,,Tilts\n,MAP-7,,HideBetaFeatureFromExternal,,,,,,Turns\n");
  EXPECT_EQ(ExplainLine(2),
            "data.csv:2: a change of the feature 'MAP-7': 'Zooms'\n"
            "not shown: the feature is hidden: only internal users see it, because line 5 has the "
            "salience HideBetaFeatureFromExternal\n"
            "not shown: the feature is hidden: lines 3 and 4 have the salience HideBetaFeature\n");
}

TEST_F(WhyReportTest, NamesTheOnlyRowOfTheFeatureIfItHidesTheFeature) {
  Load(",MAP-7,,HideBetaFeature,,,,,,Pans\n");
  EXPECT_THAT(ExplainLine(2), EndsWith("line 2 has the salience HideBetaFeature\n"));
}

TEST_F(WhyReportTest, ExplainsFeaturesThatAreOffOrHaveAnInternalVisibility) {
  host_.SetFeatureEnabled("map", false);
  Load(",MAP-7,,,,,,,,Zooms\n,PEN-2,,,,,,,,Draws\n");
  EXPECT_THAT(ExplainLine(2),
              EndsWith("\nnot shown: the feature is hidden: it is off, and the user cannot switch "
                       "it on\n"));
  EXPECT_THAT(ExplainLine(3),
              EndsWith("\nnot shown: the feature is hidden: its visibility is 1, and no change has "
                       "the salience UnhideBetaFeature\n"));
}

TEST_F(WhyReportTest, OmitsReasonsOfAFeatureThatFollowFromThoseOfItsChanges) {
  Load(",MAP-7,,,,,,,,Zooms\n,MISC,,,,,,,,Icons\n");
  Show();
  EXPECT_THAT(ExplainLine(2, kShowOnlyNew), EndsWith("'Zooms'\nnot shown: seen already\n"));
  EXPECT_THAT(ExplainLine(3, kShowOnlyNew), EndsWith("'Icons'\nnot shown: seen already\n"));
}

TEST_F(WhyReportTest, SaysWhyAChangeBelongsToAnInternalSection) {
  Load(",MAP-77,,,,,,,,Lost\n,MAP-7,,Unreviewed,,,,,,Draft\n,INTERNAL,,,,,,,,Note\n");
  EXPECT_EQ(ExplainLine(2),
            "data.csv:2: a change of the section 'INTERNAL', because its IDs match no feature or "
            "section: 'Lost'\nnot shown: the section is hidden: only internal users see it\n");
  EXPECT_THAT(ExplainLine(3),
              HasSubstr(" a change of the section 'UNREVIEWED', because its salience is "
                        "Unreviewed: 'Draft'\n"));
  EXPECT_THAT(ExplainLine(4), HasSubstr(" a change of the section 'INTERNAL': 'Note'\n"));
  const std::string table = Report({}).ExplainAll();
  EXPECT_THAT(table, HasSubstr("  its IDs match no feature or section, so it is hidden with its "
                               "section\n"));
  EXPECT_THAT(table, HasSubstr("  its salience is Unreviewed, so it is hidden with its section\n"));
  EXPECT_THAT(table, HasSubstr("  Note" + std::string(30, ' ') + "hidden with its section\n"));
}

TEST_F(WhyReportTest, SaysWhetherTheStoryIDOfAChangeDeterminesItsItem) {
  Load(",PEN-2,MAP-7,,,,,,,Zooms\n,MAP-7,MAP-7,,,,,,,Pans\n,MAP-7,ORN-9,,,,,,,Tilts\n");
  EXPECT_THAT(ExplainLine(2), HasSubstr(" a change of the feature 'MAP-7', because its story ID is "
                                        "that key: 'Zooms'\n"));
  EXPECT_THAT(ExplainLine(3), HasSubstr(" a change of the feature 'MAP-7': 'Pans'\n"));
  EXPECT_THAT(ExplainLine(4), HasSubstr(" a change of the feature 'MAP-7': 'Tilts'\n"));
}

TEST_F(WhyReportTest, SaysThatTheFirstRowIsLostWithoutAHeader) {
  const std::string change =
      "data.csv:1: used as the header row, so its change is lost; add a header row before it\n";
  for (const char* row :
       {"4.3,X-1,,,,,,,,Zooms\n", ",MISC,,,,,,,,Zooms\n", ",MAP-7,,,,,,,,Zooms\n"}) {
    LoadWithoutHeader(row);
    EXPECT_EQ(ExplainLine(1), change) << row;
    EXPECT_THAT(Report({}).ExplainAll(), EndsWith(" changes\n" + change)) << row;
  }
  LoadWithoutHeader("4.2,changes-since\n" + test_support::DataFile().Text());
  EXPECT_EQ(ExplainLine(1),
            "data.csv:1: used as the header row, so its version is lost; add a header row before "
            "it\n");
  LoadWithoutHeader("a,b,c,d,e,f,g,h,i,j\n,MISC,,,,,,,,Icons\n");
  EXPECT_EQ(ExplainLine(1), "data.csv:1: the header row, which is never a change\n");
  EXPECT_THAT(Report({}).ExplainAll(), EndsWith(" changes\n"));
}

TEST_F(WhyReportTest, SaysWhatARowIsThatContainsNoChange) {
  Load("4.2,Changes-Since\n\n,MISC,,,,,,,,Icons\n\n# soon\n,MISC,,,,,,,,a,b\n,,,,,,,,,Lost\n");
  const std::string effect = ", which sets the version of the heading to '4.2'";
  const std::vector<std::string> rows = {
      "the header row, which is never a change",
      "a Changes-Since row" + effect,
      "an empty row that repeats the Changes-Since row" + effect,
      "a change of the section 'MISC': 'Icons'\nshown",
      "an empty row",
      "a comment, which is skipped, because it has one field instead of ten",
      "skipped, because it has 11 fields instead of ten",
      "skipped, because its grouping ID is empty"};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::string place = "data.csv:" + std::to_string(i + 1) + ": ";
    EXPECT_EQ(ExplainLine(i + 1), place + rows[i] + "\n");
  }
}

/// Returns the reason in the message of the `OptionError` that `explain` throws, or "no error" if
/// it throws none.
template <class Explain>
std::string ErrorOf(const Explain& explain) {
  try {
    explain();
  } catch (const OptionError& error) {
    const std::string message = error.what();
    const std::string start = "cannot explain 'data.csv': ";
    EXPECT_TRUE(message.starts_with(start)) << message;
    return message.substr(std::min(start.size(), message.size()));
  }
  return "no error";
}

TEST_F(WhyReportTest, RejectsALineOutsideOfTheFile) {
  Load(",MISC,,,,,,,,Icons\n");
  const auto errorOf = [this](std::size_t line) { return ErrorOf([&] { ExplainLine(line); }); };
  EXPECT_EQ(errorOf(2), "no error");
  EXPECT_EQ(errorOf(3), "it has no line 3; use a number from 1 to 2");
  Load(",MISC,,,,,,,,Icons");
  EXPECT_EQ(errorOf(2), "no error");
  EXPECT_EQ(errorOf(3), "it has no line 3; use a number from 1 to 2");
  LoadWithoutHeader("a,b\n");
  EXPECT_EQ(errorOf(2), "it has no line 2; it has only one line");
  LoadWithoutHeader("");
  EXPECT_EQ(errorOf(1), "it has no line 1; the file is empty");
}

TEST_F(WhyReportTest, RejectsAnUnknownKeyWithARemedy) {
  host_.AddFeature({.internalKey = "atlas", .epicKey = "MAP-7", .name = "Atlas"});
  host_.AddFeature({.internalKey = "nameless", .epicKey = "", .name = "Nameless"});
  Load("");
  const auto errorOf = [this](const char* key) { return ErrorOf([&] { ExplainKey(key); }); };
  EXPECT_EQ(errorOf("map"),
            "no feature or section has the key 'map'; it is the internal key of a feature, so use "
            "its epic key 'MAP-7'");
  EXPECT_THAT(errorOf("atlas"), EndsWith(", so use its epic key 'MAP-7'"));
  EXPECT_THAT(errorOf("nameless"), EndsWith("; omit --key to list all features and sections"));
  EXPECT_THAT(errorOf("misc"), EndsWith("; the most similar key is 'MISC'"));
  EXPECT_THAT(errorOf("x"), EndsWith("; omit --key to list all features and sections"));
}

TEST_F(WhyReportTest, ExplainsAFeatureWithATableOfItsChanges) {
  Load(",MAP-7,,,,,Win,,,Zooms\n,MISC,,,,,,,,Icons\n,MAP-7,,,,,,,,Pans\n");
  EXPECT_EQ(ExplainKey("MAP-7", kFilterRelevantPlatform),
            "the feature 'MAP-7': 'Map'\n"
            "shown\n"
            "\n"
            "  LINE  STATUS  FEATURE  TEXT                              REASON\n"
            "     2  hidden  MAP-7    Zooms                             only relevant on Win; this "
            "host is Mac\n"
            "     4  shown   MAP-7    Pans\n");
}

TEST_F(WhyReportTest, ExplainsAFeatureWithoutChanges) {
  Load("");
  EXPECT_EQ(ExplainKey("PEN-2"),
            "the feature 'PEN-2': 'Stylus'\n"
            "not shown: its visibility is 1, and no change has the salience UnhideBetaFeature\n"
            "it has no changes\n");
  Show();
  EXPECT_EQ(ExplainKey("MAP-7", kShowOnlyNew),
            "the feature 'MAP-7': 'Map'\nnot shown: seen already\nit has no changes\n");
  EXPECT_THAT(ExplainKey("MAP-7", kRatingView),
              HasSubstr("\nnot shown: none of its changes is shown\n"));
}

TEST_F(WhyReportTest, ListsAllFeaturesAndChangesWithTotals) {
  Load(
      ",PEN-2,,,,,,,,Draws\n,MAP-7,,Detail,,,Win,,,Zooms\n,BUGFIX,,,,,,,,Crash\n"
      "too,few\n\n,MAP-7,,,,,,,,Pans\n");
  EXPECT_EQ(
      Report(kFilterRelevantPlatform).ExplainAll(),
      "  LINE  STATUS  FEATURE  TEXT                              REASON\n"
      "        hidden  PEN-2    Stylus                            its visibility is 1, and no "
      "change has the salience UnhideBetaFeature\n"
      "     2  hidden  PEN-2    Draws                             hidden with its feature\n"
      "        shown   MAP-7    Map\n"
      "     3  hidden  MAP-7    Zooms                             only relevant on Win; this host "
      "is Mac\n"
      "     7  shown   MAP-7    Pans\n"
      "        shown   BUGFIX   Bug fixes\n"
      "     4  shown   BUGFIX   Crash\n"
      "\n"
      "shown: 2 of 3 features and sections, 2 of 4 changes\n"
      "skipped: one row; run 'ornwhatsnew lint' for details\n");
}

TEST_F(WhyReportTest, GivesEachReasonALineOfTheTable) {
  Load(",MAP-7,,HideBetaFeature,,,Win,,,Zooms\n");
  EXPECT_THAT(Report(kFilterRelevantPlatform).ExplainAll(),
              HasSubstr("  hidden with its feature\n" + std::string(59, ' ') +
                        "only relevant on Win; this host is Mac\n"));
  EXPECT_THAT(Report({}).ExplainAll(), Not(HasSubstr("skipped")));
}

TEST_F(WhyReportTest, AlignsWideAndShortensLongTextsAndKeys) {
  host_.AddFeature(
      {.internalKey = "long", .epicKey = std::string(40, 'K'), .name = "\u5730\u56F3"});
  Load("," + std::string(40, 'K') + ",,,,,,,," + std::string(31, 'x') + "\u5730\u56F3\n" + "," +
       std::string(40, 'K') + ",,,,,Win,,," + std::string(32, 'y') + "\n");
  const std::string key = std::string(21, 'K') + "...";
  EXPECT_THAT(Report(kFilterRelevantPlatform).ExplainAll(),
              HasSubstr("        shown   " + key + "  \u5730\u56F3\n     2  shown   " + key + "  " +
                        std::string(29, 'x') + "...\n     3  hidden  " + key + "  " +
                        std::string(32, 'y') + "  only relevant on Win"));
}

TEST_F(WhyReportTest, ShortensTextsWithMoreThanFourBytesForAColumn) {
  std::string text;
  for (int i = 0; i < 32; ++i) text += "e\u0301\u0302";
  Load(",MISC,,,,,,,," + text + "\n");
  EXPECT_THAT(Report({}).ExplainAll(), HasSubstr("e\u0301...\n"));
}

TEST_F(WhyReportTest, KeepsTextsOfFourByteCharactersThatFit) {
  std::string text;
  for (int i = 0; i < 32; ++i) text += "\U0001D41A";
  Load(",MISC,,,,,,,," + text + "\n");
  EXPECT_THAT(Report({}).ExplainAll(), HasSubstr("  shown   MISC     " + text + "\n"));
}

TEST_F(WhyReportTest, ShowsLocalisedTextsOnOneLineWithoutInvisibleCharacters) {
  host_.AddFeature({.internalKey = "map", .epicKey = "MAP-7", .name = "$$$/map=Map\u200B"});
  Load(",MAP-7,,,,,,,,$$$/zoom=Zooms#{endl}in\n");
  EXPECT_THAT(ExplainLine(2), HasSubstr(": 'Zooms\\u000ain'\n"));
  EXPECT_THAT(ExplainKey("MAP-7"), HasSubstr("     2  shown   MAP-7    Zooms\\u000ain\n"));
  EXPECT_THAT(Report({}).ExplainAll(), HasSubstr("  shown   MAP-7    Map\\u200b\n"));
}

// Checks the report's assumption that the n-th change of an item is the n-th row of this item.
TEST(WhyReport, FindsTheLineOfEveryChangeInRandomWorlds) {
  constexpr std::uint64_t kWorlds = 200;
  for (std::uint64_t seed = 1; seed <= kWorlds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    test_support::RandomSource random(seed);
    test_support::RandomWorld world(random);
    const std::string text = world.DataFile();
    const FeatureListData list(text, world.Host().Getter(), world.Host().Setter());
    const auto options = static_cast<unsigned char>(random.Below(32));
    const WhyReport report(list, "data.csv", text, options, {"25.1.0.42"});
    std::size_t changes = 0;
    ornwhatsnew::DataFileReader reader(text);
    while (const ornwhatsnew::DataRow* row = reader.Next()) {
      if (row->kind != ornwhatsnew::DataRowKind::kChange) continue;
      ++changes;
      const std::string_view description = row->Value(ornwhatsnew::DataColumn::kDescription);
      const std::string explained = report.ExplainLine(row->lineNumber);
      EXPECT_THAT(explained, HasSubstr(": a change of the "));
      if (description.empty()) continue;
      EXPECT_THAT(explained, HasSubstr(": " +
                                       common::Quoted(orncore::string::UTF16to8(
                                           list.LocalizeIfNecessary(std::string(description)))) +
                                       "\n"));
    }
    const std::string total = " of " + std::to_string(changes) + " changes\n";
    EXPECT_THAT(report.ExplainAll(), HasSubstr(total));
  }
}

}  // namespace
}  // namespace hosts::author
