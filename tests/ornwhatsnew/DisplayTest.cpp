// Tests the exact text and style runs of the panel.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornappsupport/links/PanelLinks.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"

namespace ornwhatsnew {
namespace {

using test_support::ChangeRow;
using test_support::DataFile;
using test_support::Display;
using test_support::Format;
using test_support::kURL;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr char kHeading[] = "\n\tChanges since v\n\n";
constexpr char kIssues[] = ORNWHATSNEW_ISSUE_TRACKER "/browse/";
constexpr char kCommits[] = ORNWHATSNEW_COMMIT_BROWSER "/ORN/orn/commit/";
constexpr char kPrivacy[] = ORNWHATSNEW_PRIVACY_PAGE;

class DisplayText : public test_support::FakeHostTest {
 protected:
  // Displays a new list with these changes and returns the results. `placeholder` is the rating
  // placeholder.
  Display Show(const std::vector<ChangeRow>& rows, DisplayOptions options = {},
               std::string_view placeholder = "") {
    DataFile file;
    for (const ChangeRow& row : rows) file.Row(row);
    return ShowFile(file, options, placeholder);
  }
  Display ShowFile(const DataFile& file, DisplayOptions options = {},
                   std::string_view placeholder = "") {
    FeatureListData list(file.Text(), host_.Getter(), host_.Setter());
    return Format(list, options, placeholder);
  }
  // Displays a new list with these changes and returns the text after the panel's header.
  std::string Body(const std::vector<ChangeRow>& rows, DisplayOptions options = {}) {
    const std::string text = Show(rows, options).text;
    EXPECT_THAT(text, testing::StartsWith(kHeading));
    return text.substr(std::string(kHeading).size());
  }

  void AddFeature(std::int32_t visibility = 0, const std::string& epic = "EPIC-7") {
    host_.AddFeature({.internalKey = "export",
                      .epicKey = epic,
                      .name = "Export",
                      .description = "Exports files",
                      .visibility = visibility});
  }
};

TEST_F(DisplayText, EmptyListShowsTheHeaderAndTheCaughtUpNotice) {
  const Display display = Show({});
  EXPECT_EQ(display.text, "\n\tChanges since v\n\n\tYou\u2019re all caught up.\n\n");
  EXPECT_THAT(display.runs,
              UnorderedElementsAre(Pair(
                  kStyleHeader, ElementsAre(StyleRun{{0, 19}, u""}, StyleRun{{19, 26}, u""}))));
}

TEST_F(DisplayText, EmptyRatingViewShowsTheNothingToRateNotice) {
  const Display display = Show({}, kRatingView);
  EXPECT_EQ(display.text, "\n\n\tNo features need rating right now.");
  EXPECT_THAT(display.runs,
              UnorderedElementsAre(
                  Pair(kStyleHeader, ElementsAre(StyleRun{{0, 2}, u""}, StyleRun{{2, 35}, u""}))));
}

TEST_F(DisplayText, EmptyRatingViewLinksToThePrivacyPageForAnOptedOutUser) {
  host_.SetUsageLogging(false);
  const Display display = Show({}, kRatingView);
  const std::string part1 =
      "\tYou (or your organization) have opted out of sharing information with Tarsa.\n\n"
      "\tIf you are using a personal account, you can rate features by enabling "
      "\u201CDesktop and app usage\u201D at ";
  EXPECT_EQ(display.text, "\n\n" + part1 + kPrivacy + " and then quitting and relaunching.");
  EXPECT_THAT(display.Pieces(kStyleHeader),
              ElementsAre("\n\n", part1, " and then quitting and relaunching."));
  EXPECT_THAT(display.Pieces(kStyleHotSpot), ElementsAre(kPrivacy));
  EXPECT_THAT(display.Strings(kStyleHotSpot), ElementsAre(kPrivacy));
  EXPECT_EQ(display.runs.size(), 2U);
}

TEST_F(DisplayText, OptOutNoticeLinksToThePrivacyPageOfTheHost) {
  host_.SetUsageLogging(false);
  ornappsupport::links::PanelLinks links;
  links.privacyPage = u"https://a.example/privacy";
  ASSERT_TRUE(SetPanelLinks(links));
  const Display display = Show({}, kRatingView);
  EXPECT_THAT(display.text, HasSubstr(" at https://a.example/privacy and then"));
  EXPECT_THAT(display.Strings(kStyleHotSpot), ElementsAre("https://a.example/privacy"));
}

TEST_F(DisplayText, OptOutNoticeIsShownOnlyInTheRatingView) {
  host_.SetUsageLogging(false);
  EXPECT_THAT(Show({}).text, HasSubstr("all caught up"));
}

TEST_F(DisplayText, HeaderShowsTheChangesSinceVersion) {
  EXPECT_THAT(ShowFile(DataFile().ChangesSince("24.0")).Pieces(kStyleHeader).at(0),
              "\n\tChanges since v24.0\n\n");
}

// If the library copied the version for each blank row, this test would take minutes.
TEST_F(DisplayText, HeaderShowsALongVersionThatManyBlankRowsInherit) {
  const std::string version(1'000'000, '1');
  const std::string text =
      "v,g,,,,,,,,\n" + version + ",Changes-Since\n" + std::string(1'000'000, '\n');
  FeatureListData list(text, host_.Getter(), host_.Setter());
  EXPECT_EQ(Format(list).Pieces(kStyleHeader).at(0), "\n\tChanges since v" + version + "\n\n");
}

TEST_F(DisplayText, HeaderOfOnlyNewShowsTheVersionLastOpened) {
  host_.State().Put("WhatsNew.LastVersionSeenWhatsNew", "24.3.0.1");
  const DataFile file = DataFile().ChangesSince("24.0");
  EXPECT_EQ(ShowFile(file, kShowOnlyNew).Pieces(kStyleHeader).at(0),
            "\n\tChanges since last opened in v24.3.0.1\n\n");
  host_.State().Put("WhatsNew.LastVersionSeenWhatsNew", "24.3.0.1");
  EXPECT_EQ(ShowFile(file).Pieces(kStyleHeader).at(0), "\n\tChanges since v24.0\n\n");
}

TEST_F(DisplayText, HeaderOfOnlyNewShowsTheChangesSinceVersionOnTheFirstRun) {
  EXPECT_EQ(ShowFile(DataFile().ChangesSince("24.0"), kShowOnlyNew).Pieces(kStyleHeader).at(0),
            "\n\tChanges since v24.0\n\n");
}

TEST_F(DisplayText, HeaderVersionsAreNotLocalised) {
  EXPECT_EQ(ShowFile(DataFile().ChangesSince("$$$/a=b")).Pieces(kStyleHeader).at(0),
            "\n\tChanges since v$$$/a=b\n\n");
}

TEST_F(DisplayText, ShowsAFeatureWithAChange) {
  AddFeature();
  const Display display = Show({{.version = "25.1",
                                 .groupingID = "EPIC-7",
                                 .storyID = "STORY-9",
                                 .salience = "Headline",
                                 .platform = "Mac",
                                 .sha = "abc123",
                                 .description = "Faster export"}});
  EXPECT_EQ(display.text,
            "\n\tChanges since v\n\n"
            "Export\tUNLOCKED\n"
            "\uFEFF\uFEFF\tExports files\n"
            "\t\u2022 \t(macOS only) Faster export (v25.1)\n");
  EXPECT_THAT(
      display.runs,
      UnorderedElementsAre(
          Pair(kStyleHeader, ElementsAre(StyleRun{{0, 19}, u""})),
          Pair(kStyleFeatureTitle, ElementsAre(StyleRun{{19, 6}, u""})),
          Pair(kStyleUnlockLabel, ElementsAre(StyleRun{{26, 8}, u""})),
          Pair(kStyleUnlockLabelBox, ElementsAre(StyleRun{{26, 8}, u""})),
          Pair(kStyleFeatureDescription, ElementsAre(StyleRun{{42, 13}, u""})),
          Pair(kStyleChangeText, ElementsAre(StyleRun{{56, 6}, u""}, StyleRun{{62, 13}, u""},
                                             StyleRun{{75, 13}, u""})),
          Pair(kStyleInternalCode, ElementsAre(StyleRun{{88, 8}, u""}))));
}

TEST_F(DisplayText, RunsCountUtf8Bytes) {
  host_.AddFeature({.internalKey = "a", .epicKey = "EPIC-7", .name = "\u65E5\u672C"});
  const Display display = Show({{.groupingID = "EPIC-7", .description = "\U0001F600"}});
  EXPECT_EQ(display.runs.at(kStyleFeatureTitle).at(0).first, (std::pair{19, 6}));
  EXPECT_THAT(display.Pieces(kStyleChangeText), ElementsAre("\t\u2022 \t", "\U0001F600"));
}

TEST_F(DisplayText, FeatureIsShownEvenIfTheFiltersHideItsChanges) {
  AddFeature();
  EXPECT_EQ(Body({{.groupingID = "EPIC-7", .platform = "Win", .description = "Text"}},
                 kFilterRelevantPlatform),
            "Export\tUNLOCKED\n\uFEFF\uFEFF\tExports files\n");
}

TEST_F(DisplayText, FeatureWithoutANameShowsItsKey) {
  host_.AddFeature({.internalKey = "a", .epicKey = "EPIC-7"});
  EXPECT_EQ(Show({}).Pieces(kStyleFeatureTitle).at(0), "EPIC-7");
  host_.AddFeature({.internalKey = "a", .epicKey = "EPIC-7", .name = "$$$/a="});
  EXPECT_EQ(Show({}).Pieces(kStyleFeatureTitle).at(0), "EPIC-7");
}

TEST_F(DisplayText, NamesAndDescriptionsAreLocalised) {
  host_.AddFeature({.internalKey = "a",
                    .epicKey = "EPIC-7",
                    .name = "$$$/name=Name",
                    .description = "$$$/text=Te^}xt"});
  host_.AddTranslation("$$$/name", "Nom");
  EXPECT_EQ(Body({{.groupingID = "EPIC-7", .description = "$$$/change=Cha#{mdash}nge"}}),
            "Nom\tUNLOCKED\n\uFEFF\uFEFF\tTe\u2019xt\n\t\u2022 \tCha\u2014nge\n");
}

TEST_F(DisplayText, SectionsShowTheirNames) {
  const Display display = Show({{.groupingID = "MISC", .description = "One"},
                                {.groupingID = "BUGFIX", .description = "Two"}});
  EXPECT_EQ(display.text, std::string(kHeading) +
                              "Miscellaneous\n\t\u2022 \tOne\n"
                              "Bug fixes\n\t\u2022 \tTwo\n");
}

TEST_F(DisplayText, BothInternalSectionsHaveTheInternalLabel) {
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_EQ(Body({{.groupingID = "INTERNAL", .description = "One"},
                  {.groupingID = "MISC", .salience = "Unreviewed", .description = "Two"}}),
            "Unreviewed\tTARSA ONLY\n\t\u2022 \tTwo\n"
            "Internal notes\tTARSA ONLY\n\t\u2022 \tOne\n");
}

TEST_F(DisplayText, LabelsShowTheUnlockState) {
  host_.SetInternalFeaturesAllowed(true);
  host_.ShowAllOffFeatures(true);
  const auto label = [this](std::int32_t visibility, bool enabled = true) {
    host_.AddFeature({.internalKey = "a",
                      .epicKey = "EPIC-7",
                      .name = "Name",
                      .visibility = visibility,
                      .enabled = enabled});
    return Show({{.groupingID = "EPIC-7", .salience = "UnhideBetaFeature"}})
        .Pieces(kStyleUnlockLabel);
  };
  EXPECT_THAT(label(0), ElementsAre("UNLOCKED"));
  EXPECT_THAT(label(0, false), ElementsAre("OFF"));
  EXPECT_THAT(label(1), ElementsAre("TARSA ONLY"));
  EXPECT_THAT(label(2), ElementsAre("IN DEVELOPMENT"));
  EXPECT_THAT(label(3), IsEmpty());
  EXPECT_THAT(label(7), IsEmpty());
}

TEST_F(DisplayText, UnlockCodesAreShownToInternalUsersIfTheDebugSwitchIsOn) {
  AddFeature();
  host_.ShowAllUnlockCodes(true);
  EXPECT_THAT(Show({}).text, HasSubstr("Export\tUNLOCKED\n"));
  host_.SetInternalFeaturesAllowed(true);
  const Display display = Show({{.groupingID = "MISC", .description = "Text"}});
  EXPECT_THAT(display.text, HasSubstr("Export \u2014 (export)\tUNLOCKED\n"));
  EXPECT_THAT(display.text, HasSubstr("Miscellaneous\n"));
  EXPECT_THAT(display.Pieces(kStyleInternalCode), ElementsAre(" \u2014 ", "(export)"));
}

TEST_F(DisplayText, FeatureURLIsALinkInTitleAndDescription) {
  AddFeature();
  const Display display = Show({{.groupingID = "EPIC-7", .url = kURL}});
  EXPECT_THAT(display.text, HasSubstr("\uFEFF\uFEFF\tExports files\tView more\n"));
  EXPECT_THAT(display.Strings(kStyleFeatureTitle), ElementsAre(kURL));
  EXPECT_THAT(display.Pieces(kStyleHotSpot), ElementsAre("View more"));
  EXPECT_THAT(display.Strings(kStyleHotSpot), ElementsAre(kURL));
}

TEST_F(DisplayText, FeatureWithoutDescriptionHasNoDescriptionLineAndNoViewMore) {
  host_.AddFeature({.internalKey = "a", .epicKey = "EPIC-7", .name = "Name"});
  EXPECT_EQ(Body({{.groupingID = "EPIC-7", .url = kURL}}), "Name\tUNLOCKED\n");
  host_.AddFeature({.internalKey = "a", .epicKey = "EPIC-7", .name = "N", .description = "$$$/d="});
  EXPECT_EQ(Body({{.groupingID = "EPIC-7", .url = kURL}}), "N\tUNLOCKED\n");
}

TEST_F(DisplayText, IssueKeyOfAFeatureIsALinkForInternalUsers) {
  for (const char* epic : {"ORN-7", "orn-7", "Orn-7"}) {
    AddFeature(0, epic);
    host_.SetInternalFeaturesAllowed(true);
    const Display display = Show({});
    EXPECT_THAT(display.text, HasSubstr("\tExports files ORN-7\n")) << epic;
    EXPECT_THAT(display.Pieces(kStyleIssueLink), ElementsAre("ORN-7")) << epic;
    EXPECT_THAT(display.Strings(kStyleIssueLink), ElementsAre(std::string(kIssues) + "ORN-7"));
    host_.SetInternalFeaturesAllowed(false);
    EXPECT_THAT(Show({}).Pieces(kStyleIssueLink), IsEmpty()) << epic;
  }
}

TEST_F(DisplayText, OtherKeysAreNotIssueLinks) {
  host_.SetInternalFeaturesAllowed(true);
  for (const char* epic : {"EPIC-7", "XORN-7", "OR", ""}) {
    AddFeature(0, epic);
    EXPECT_THAT(Show({}).Pieces(kStyleIssueLink), IsEmpty()) << epic;
  }
}

TEST_F(DisplayText, IssueLinkSkipsTheFirstByteOfItsText) {
  host_.SetInternalFeaturesAllowed(true);
  host_.AddTranslation("$$$/ornwhatsnew/Feature/Detail/JiraID/displaytemplate", " [@0]");
  const Display display =
      Show({{.groupingID = "MISC", .storyID = "orn-12", .description = "Text"}});
  EXPECT_THAT(display.text, HasSubstr("Text [ORN-12]\n"));
  EXPECT_THAT(display.Pieces(kStyleIssueLink), ElementsAre("[ORN-12]"));
}

TEST_F(DisplayText, LinksLeadToThePagesOfTheHost) {
  host_.SetInternalFeaturesAllowed(true);
  ornappsupport::links::PanelLinks links;
  links.issueLink = u"https://a.example/@0?again=@0";
  links.commitLink = u"https://b.example/@0";
  ASSERT_TRUE(SetPanelLinks(links));
  const Display display =
      Show({{.groupingID = "MISC", .storyID = "orn-12", .sha = "abc", .description = "Text"}});
  EXPECT_THAT(display.text, HasSubstr("Text ORN-12 abc\n"));
  EXPECT_THAT(display.Strings(kStyleIssueLink),
              ElementsAre("https://a.example/ORN-12?again=ORN-12"));
  EXPECT_THAT(display.Strings(kStyleCommitLink), ElementsAre("https://b.example/abc"));
}

TEST_F(DisplayText, IssuesAndCommitsWithoutALinkTemplateAreText) {
  host_.SetInternalFeaturesAllowed(true);
  ornappsupport::links::PanelLinks links;
  links.issueLink.clear();
  links.commitLink.clear();
  ASSERT_TRUE(SetPanelLinks(links));
  const Display display =
      Show({{.groupingID = "MISC", .storyID = "ORN-12", .sha = "abc", .description = "Text"}});
  EXPECT_THAT(display.text, HasSubstr("Text ORN-12 abc\n"));
  EXPECT_THAT(display.Strings(kStyleIssueLink), ElementsAre(""));
  EXPECT_THAT(display.Strings(kStyleCommitLink), ElementsAre(""));
}

TEST_F(DisplayText, IssuesBeginWithThePrefixOfTheHostInAnyLetterCase) {
  host_.SetInternalFeaturesAllowed(true);
  AddFeature(0, "Map-7");
  ornappsupport::links::PanelLinks links;
  links.issuePrefix = u"maP-";
  ASSERT_TRUE(SetPanelLinks(links));
  const Display display = Show({{.groupingID = "Map-7", .storyID = "MAP-8", .description = "A"},
                                {.groupingID = "Map-7", .storyID = "map-9", .description = "B"},
                                {.groupingID = "Map-7", .storyID = "ORN-1", .description = "C"},
                                {.groupingID = "Map-7", .storyID = "MAP", .description = "D"}});
  EXPECT_THAT(display.Strings(kStyleIssueLink),
              ElementsAre(std::string(kIssues) + "MAP-7", std::string(kIssues) + "MAP-8",
                          std::string(kIssues) + "MAP-9"));
}

TEST_F(DisplayText, AnEmptyIssuePrefixMatchesNothing) {
  host_.SetInternalFeaturesAllowed(true);
  AddFeature(0, "ORN-7");
  ornappsupport::links::PanelLinks links;
  links.issuePrefix.clear();
  ASSERT_TRUE(SetPanelLinks(links));
  const Display display = Show({{.groupingID = "ORN-7", .storyID = "ORN-8", .description = "A"},
                                {.groupingID = "ORN-7", .description = "B"},
                                {.groupingID = "ORN-9", .description = "C"}});
  EXPECT_THAT(display.Strings(kStyleIssueLink), IsEmpty());
  EXPECT_THAT(display.text, Not(HasSubstr("ORN-")));
  EXPECT_THAT(display.text, HasSubstr("(Unknown Jira Issue orn-9) C\n"));
}

TEST_F(DisplayText, CommitLinkExtendsOneBytePastItsText) {
  host_.SetInternalFeaturesAllowed(true);
  const Display display = Show({{.groupingID = "MISC", .sha = "abc@0123", .description = "Text"}});
  EXPECT_THAT(display.text, HasSubstr("Text abc@0123\n"));
  EXPECT_THAT(display.Pieces(kStyleCommitLink), ElementsAre("abc@0123\n"));
  EXPECT_THAT(display.Strings(kStyleCommitLink), ElementsAre(std::string(kCommits) + "abc@0123"));
}

TEST_F(DisplayText, IssueIsShownBeforeCommit) {
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_EQ(Body({{.version = "25.1",
                   .groupingID = "MISC",
                   .storyID = "ORN-1",
                   .sha = "abc",
                   .description = "Text"}}),
            "Miscellaneous\n\t\u2022 \tText (v25.1) ORN-1 abc\n");
}

TEST_F(DisplayText, ExternalUsersSeeNoIssueKeyCommitOrNote) {
  AddFeature(0, "ORN-7");
  const Display display = Show({{.groupingID = "ORN-7",
                                 .storyID = "ORN-1",
                                 .salience = "Loud",
                                 .platform = "Linux",
                                 .url = "http://a.example",
                                 .sha = "abc",
                                 .description = "Text"}});
  EXPECT_EQ(display.text, std::string(kHeading) +
                              "Export\tUNLOCKED\n\uFEFF\uFEFF\tExports files\n\t\u2022 \tText\n");
  for (const StyleID style : {kStyleIssueLink, kStyleCommitLink, kStyleInternalWarning}) {
    EXPECT_FALSE(display.runs.contains(style)) << static_cast<int>(style);
  }
}

TEST_F(DisplayText, NotesAreShownBeforePlatformAndDescription) {
  host_.SetInternalFeaturesAllowed(true);
  const Display display = Show({{.groupingID = "None-1",
                                 .salience = "Loud",
                                 .platform = "Linux",
                                 .url = "http://a.example",
                                 .description = "Text"}});
  EXPECT_EQ(display.text,
            std::string(kHeading) +
                "Internal notes\tTARSA ONLY\n\t\u2022 \t(Unknown Jira Issue none-1) "
                "(View More URL ignored: malformed and in INTERNAL section) "
                "(Malformed platform ignored: linux) (Malformed salience ignored: loud) Text\n");
  EXPECT_THAT(
      display.Pieces(kStyleInternalWarning),
      ElementsAre("(Unknown Jira Issue none-1) ",
                  "(View More URL ignored: malformed and in INTERNAL section) ",
                  "(Malformed platform ignored: linux) ", "(Malformed salience ignored: loud) "));
}

TEST_F(DisplayText, NoteOnAnIgnoredURLListsTheReasons) {
  AddFeature();
  host_.SetInternalFeaturesAllowed(true);
  const auto notes = [this](const char* key, std::vector<std::string> urls) {
    std::vector<ChangeRow> rows;
    for (const std::string& url : urls) {
      rows.push_back({.groupingID = key, .url = url, .description = "Text"});
    }
    return Show(rows).Pieces(kStyleInternalWarning);
  };
  EXPECT_THAT(notes("EPIC-7", {kURL}), IsEmpty());
  EXPECT_THAT(notes("EPIC-7", {""}), IsEmpty());
  EXPECT_THAT(notes("EPIC-7", {kURL, kURL}), ElementsAre("(View More URL ignored: duplicate) "));
  EXPECT_THAT(notes("EPIC-7", {"x"}), ElementsAre("(View More URL ignored: malformed) "));
  EXPECT_THAT(notes("EPIC-7", {kURL, "x"}),
              ElementsAre("(View More URL ignored: duplicate and malformed) "));
  EXPECT_THAT(notes("MISC", {kURL}), ElementsAre("(View More URL ignored: in MISC section) "));
  EXPECT_THAT(notes("MISC", {kURL, "x"}),
              ElementsAre("(View More URL ignored: in MISC section) ",
                          "(View More URL ignored: duplicate and malformed and in MISC section) "));
}

TEST_F(DisplayText, NoteReportsTheUnhideSalienceAsMalformed) {
  AddFeature();
  host_.SetInternalFeaturesAllowed(true);
  EXPECT_THAT(Show({{.groupingID = "EPIC-7", .salience = "UnhideBetaFeature", .description = "T"}})
                  .Pieces(kStyleInternalWarning),
              ElementsAre("(Malformed salience ignored: unhidebetafeature) "));
}

TEST_F(DisplayText, PlatformsAreShownByDisplayName) {
  const auto change = [this](const char* platform) {
    return Body({{.groupingID = "MISC", .platform = platform, .description = "Text"}});
  };
  EXPECT_EQ(change("MAC"), "Miscellaneous\n\t\u2022 \t(macOS only) Text\n");
  EXPECT_EQ(change("Win"), "Miscellaneous\n\t\u2022 \t(win only) Text\n");
  EXPECT_EQ(change("Linux"), "Miscellaneous\n\t\u2022 \tText\n");
  EXPECT_EQ(change(""), "Miscellaneous\n\t\u2022 \tText\n");
}

TEST_F(DisplayText, VersionsAreShownAsOneOrAsARange) {
  const auto change = [this](const char* first, const char* added) {
    return Body(
        {{.version = added, .groupingID = "MISC", .firstVersion = first, .description = "T"}});
  };
  EXPECT_EQ(change("", ""), "Miscellaneous\n\t\u2022 \tT\n");
  EXPECT_EQ(change("", "25.0"), "Miscellaneous\n\t\u2022 \tT (v25.0)\n");
  EXPECT_EQ(change("24.0", "25.0"), "Miscellaneous\n\t\u2022 \tT (v24.0-v25.0)\n");
  EXPECT_EQ(change("24.0", ""), "Miscellaneous\n\t\u2022 \tT\n");
}

TEST_F(DisplayText, VersionWithAnEmptyLocalisedTextIsNotShown) {
  const auto change = [this](const char* first, const char* added) {
    return Body(
        {{.version = added, .groupingID = "MISC", .firstVersion = first, .description = "T"}});
  };
  EXPECT_EQ(change("24.0", "$$$/v="), "Miscellaneous\n\t\u2022 \tT\n");
  EXPECT_EQ(change("$$$/v=", "25.0"), "Miscellaneous\n\t\u2022 \tT (v25.0)\n");
  EXPECT_EQ(change("", "$$$/v=next"), "Miscellaneous\n\t\u2022 \tT (vnext)\n");
}

TEST_F(DisplayText, CommitsAndIDsAreNotLocalised) {
  host_.SetInternalFeaturesAllowed(true);
  const Display display =
      Show({{.groupingID = "$$$/id=No", .sha = "$$$/sha=No", .description = "Text"}});
  EXPECT_THAT(display.Pieces(kStyleInternalWarning),
              ElementsAre("(Unknown Jira Issue $$$/id=no) "));
  EXPECT_THAT(display.Strings(kStyleCommitLink), ElementsAre(std::string(kCommits) + "$$$/sha=No"));
}

TEST_F(DisplayText, NonAsciiKeysAreShownUnchanged) {
  host_.SetInternalFeaturesAllowed(true);
  host_.ShowAllUnlockCodes(true);
  host_.AddFeature({.internalKey = "\u00FC\u65E5", .epicKey = "\u00C9-7", .visibility = 3});
  EXPECT_EQ(Body({}), "\u00C9-7 \u2014 (\u00FC\u65E5)\n");
}

TEST_F(DisplayText, PlaceholdersInArgumentsAreNotReplaced) {
  EXPECT_EQ(
      Body({{.version = "@0", .groupingID = "MISC", .firstVersion = "@1", .description = "@0"}}),
      "Miscellaneous\n\t\u2022 \t@0 (v@1-v@0)\n");
}

TEST_F(DisplayText, EveryPlaceholderOfATemplateIsReplaced) {
  host_.AddTranslation("$$$/ornwhatsnew/Feature/Detail/VersionRange/displaytemplate",
                       "<@1@0@1@0@2>");
  EXPECT_EQ(Body({{.version = "B", .groupingID = "MISC", .firstVersion = "a", .description = "T"}}),
            "Miscellaneous\n\t\u2022 \tT<BaBa@2>\n");
}

TEST_F(DisplayText, EveryLineEndsWithTheLocalisedNewline) {
  AddFeature();
  host_.AddTranslation("$$$/private/ornwhatsnew/Feature/Newline", "|");
  EXPECT_EQ(
      Show({{.groupingID = "EPIC-7", .description = "Text"}}, {}, "?").text,
      std::string(kHeading) + "Export\tUNLOCKED|\uFEFF\uFEFF\tExports files|\t\u2022 \tText||?|");
  const Display rating = Show({}, kRatingView);
  EXPECT_THAT(rating.Pieces(kStyleHeader).at(0), "||");
}

TEST_F(DisplayText, TextWithAnEmptyTranslationStillHasARun) {
  AddFeature();
  host_.AddTranslation("$$$/ornwhatsnew/Feature/Item/Unlock/Unlocked", "");
  host_.AddTranslation("$$$/ornwhatsnew/Feature/Detail/OS/displaytemplate", "");
  host_.AddTranslation("$$$/change", "");
  const Display display =
      Show({{.groupingID = "EPIC-7", .platform = "Mac", .description = "$$$/change=Text"}});
  EXPECT_EQ(display.text,
            std::string(kHeading) + "Export\t\n\uFEFF\uFEFF\tExports files\n\t\u2022 \t\n");
  EXPECT_THAT(display.Pieces(kStyleUnlockLabel), ElementsAre(""));
  EXPECT_THAT(display.Pieces(kStyleUnlockLabelBox), ElementsAre(""));
  EXPECT_THAT(display.Pieces(kStyleChangeText), ElementsAre("\t\u2022 \t", "", ""));
}

TEST_F(DisplayText, RatingPlaceholderFollowsEachItem) {
  AddFeature();
  const std::vector<ChangeRow> rows = {{.groupingID = "MISC", .description = "Text"}};
  const Display display = Show(rows, {}, "RATE");
  EXPECT_EQ(display.text, std::string(kHeading) +
                              "Export\tUNLOCKED\n\uFEFF\uFEFF\tExports files\n\nRATE\n"
                              "Miscellaneous\n\t\u2022 \tText\n\nRATE\n");
  EXPECT_THAT(display.Pieces(kStyleRatingPlaceholder), ElementsAre("\nRATE\n", "\nRATE\n"));
}

TEST_F(DisplayText, RatingViewShowsOnlyTitleChangesAndPlaceholder) {
  AddFeature();
  const std::vector<ChangeRow> rows = {{.groupingID = "EPIC-7",
                                        .ratingRequest = "RequestRating",
                                        .url = kURL,
                                        .description = "Faster"}};
  Show(rows);  // stores the feature and its change as seen
  const Display display = Show(rows, kRatingView, "RATE");
  EXPECT_EQ(display.text, "\n\nExport\tUNLOCKED\n\t\u2022 \tFaster\n\nRATE\n");
  EXPECT_THAT(display.Strings(kStyleFeatureTitle), ElementsAre(kURL));
  EXPECT_FALSE(display.runs.contains(kStyleHotSpot));
  EXPECT_FALSE(display.runs.contains(kStyleFeatureDescription));
}

TEST_F(DisplayText, CaughtUpNoticeIsNotShownIfAFeatureIsShown) {
  AddFeature();
  EXPECT_THAT(Show({}).text, Not(HasSubstr("caught up")));
}

TEST_F(DisplayText, EachCallClearsTheRuns) {
  FeatureListData list("", host_.Getter(), host_.Setter());
  StyleRunMap runs = {{kStyleHotSpot, {StyleRun{{1, 2}, u"left over"}}}};
  list.GetFormattedTextForDisplay({}, u"", runs, nullptr);
  EXPECT_EQ(runs.size(), 1U);
  EXPECT_TRUE(runs.contains(kStyleHeader));
}

TEST_F(DisplayText, ItemWithARepeatedKeyIsShownTwice) {
  AddFeature();
  FeatureListData list("", host_.Getter(), host_.Setter());
  list.InsertFeatureListItem(list.GetFeatureItems().at("EPIC-7"));
  EXPECT_THAT(Format(list).Pieces(kStyleFeatureTitle), ElementsAre("Export", "Export"));
}

TEST_F(DisplayText, LoneSurrogatesOfThePlaceholderCountAsReplacementCharacters) {
  AddFeature();
  host_.AddTranslation("$$$/private/ornwhatsnew/Feature/Newline", "");
  FeatureListData list("", host_.Getter(), host_.Setter());
  list.InsertFeatureListItem(list.GetFeatureItems().at("EPIC-7"));
  StyleRunMap runs;
  const UTF16String text = list.GetFormattedTextForDisplay({}, u"\xDC00x\xD83D", runs, nullptr);
  const auto& placeholders = runs.at(kStyleRatingPlaceholder);
  ASSERT_EQ(placeholders.size(), 2U);
  EXPECT_EQ(placeholders[0].first.second, 7);
  EXPECT_EQ(static_cast<std::size_t>(placeholders[1].first.first) + 7,
            orncore::string::UTF16to8(text).size());
}

}  // namespace
}  // namespace ornwhatsnew
