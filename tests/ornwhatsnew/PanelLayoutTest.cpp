#include <ornwhatsnew/PanelLayout.h>

#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ornappsupport/links/PanelLinks.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>

#include "tests/support/Builders.h"
#include "tests/support/FakeHost.h"
#include "tests/support/LayoutCheck.h"
#include "tests/support/PlainPanel.h"
#include "tests/support/RandomSource.h"
#include "tests/support/RandomWorld.h"

namespace ornwhatsnew {
namespace {

using test_support::ChangeRow;
using test_support::DataFile;
using test_support::kURL;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

constexpr char kNewlineKey[] = "$$$/private/ornwhatsnew/Feature/Newline";
constexpr char kTabKey[] = "$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate/Tab";
constexpr char kBulletKey[] = "$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate";

// A span with a copy of its text instead of its range.
struct Piece {
  std::u16string text;
  std::optional<StyleID> style;
  std::u16string link = {};

  friend bool operator==(const Piece&, const Piece&) = default;
  friend std::ostream& operator<<(std::ostream& stream, const Piece& piece) {
    stream << '"' << orncore::string::UTF16to8(piece.text) << '"';
    if (piece.style) stream << " style " << static_cast<int>(*piece.style);
    return stream << " link \"" << orncore::string::UTF16to8(piece.link) << '"';
  }
};

class Layout : public test_support::FakeHostTest {
 protected:
  // Displays a new list with these changes and returns its layout.
  PanelLayout LayOut(const std::vector<ChangeRow>& rows, DisplayOptions options = {}) {
    FeatureListData list(FileOf(rows), host_.Getter(), host_.Setter());
    return list.GetLayoutForDisplay(options);
  }

  // Displays a new list with this change and returns its layout.
  PanelLayout LayOutChange(const ChangeRow& row) { return LayOut({row}); }

  // Displays a list with these changes. Then returns the layout of the rating view of a new list
  // with the same changes.
  PanelLayout LayOutRatingView(const std::vector<ChangeRow>& rows) {
    LayOut(rows);
    return LayOut(rows, kRatingView);
  }

  static std::string FileOf(const std::vector<ChangeRow>& rows) {
    DataFile file;
    for (const ChangeRow& row : rows) file.Row(row);
    return file.Text();
  }

  // Returns the spans of the first paragraph of this kind, with copies of their texts.
  static std::vector<Piece> PiecesOf(const PanelLayout& layout, ParagraphKind kind) {
    std::vector<Piece> pieces;
    for (const LayoutParagraph& paragraph : layout.paragraphs) {
      if (paragraph.kind != kind) continue;
      for (const auto& [range, style, link] : paragraph.spans) {
        pieces.push_back({layout.text.substr(range.begin, range.length), style, link});
      }
      break;
    }
    return pieces;
  }

  static const LayoutParagraph& FirstOf(const PanelLayout& layout, ParagraphKind kind) {
    for (const LayoutParagraph& paragraph : layout.paragraphs) {
      if (paragraph.kind == kind) return paragraph;
    }
    throw std::logic_error("the layout has no paragraph of this kind");
  }

  static std::vector<ParagraphKind> KindsOf(const PanelLayout& layout) {
    std::vector<ParagraphKind> kinds;
    for (const LayoutParagraph& paragraph : layout.paragraphs) kinds.push_back(paragraph.kind);
    return kinds;
  }

  void AddFeature(const std::string& epic = "EPIC-7") {
    host_.AddFeature({.internalKey = "export",
                      .epicKey = epic,
                      .name = "Export",
                      .description = "Exports files"});
  }
};

using enum ParagraphKind;

TEST_F(Layout, HasAParagraphForHeaderTitleDescriptionAndChange) {
  AddFeature();
  const PanelLayout layout = LayOut({{.version = "25.1",
                                      .groupingID = "EPIC-7",
                                      .platform = "Mac",
                                      .url = kURL,
                                      .description = "Faster export"}});
  EXPECT_EQ(layout.text,
            u"Changes since v\nExport UNLOCKED\nExports files View more\n"
            u"(macOS only) Faster export (v25.1)");
  EXPECT_THAT(KindsOf(layout), ElementsAre(kHeader, kTitle, kDescription, kChange));
  EXPECT_TRUE(layout.hasItems);
  EXPECT_THAT(PiecesOf(layout, kHeader), ElementsAre(Piece{u"Changes since v", kStyleHeader}));
  EXPECT_THAT(
      PiecesOf(layout, kDescription),
      ElementsAre(Piece{u"Exports files", kStyleFeatureDescription}, Piece{u" ", std::nullopt},
                  Piece{u"View more", kStyleHotSpot, u"https://a.example/1"}));
  EXPECT_THAT(PiecesOf(layout, kChange), ElementsAre(Piece{u"(macOS only) ", kStyleChangeText},
                                                     Piece{u"Faster export", kStyleChangeText},
                                                     Piece{u" (v25.1)", kStyleInternalCode}));
}

TEST_F(Layout, UnlockLabelIsOneSpanOfItsTitle) {
  AddFeature();
  host_.SetInternalFeaturesAllowed(true);
  host_.ShowAllUnlockCodes(true);
  const PanelLayout layout = LayOut({{.groupingID = "EPIC-7", .url = kURL}});
  EXPECT_THAT(
      PiecesOf(layout, kTitle),
      ElementsAre(Piece{u"Export", kStyleFeatureTitle, u"https://a.example/1"},
                  Piece{u" \u2014 ", kStyleInternalCode}, Piece{u"(export)", kStyleInternalCode},
                  Piece{u" ", std::nullopt}, Piece{u"UNLOCKED", kStyleUnlockLabel}));
}

TEST_F(Layout, TitlesHaveIndentLevelZeroAndAllOthersOne) {
  AddFeature();
  const PanelLayout layout = LayOut({{.groupingID = "EPIC-7", .description = "Text"}});
  std::vector<int> levels;
  for (const LayoutParagraph& paragraph : layout.paragraphs) {
    levels.push_back(paragraph.indentLevel);
  }
  EXPECT_THAT(levels, ElementsAre(1, 0, 1, 1));
}

TEST_F(Layout, ParagraphsHaveTheKeyOfTheirItem) {
  AddFeature();
  const PanelLayout layout = LayOut({{.groupingID = "MISC", .description = "Text"}});
  EXPECT_THAT(layout.paragraphs, ElementsAre(Field(&LayoutParagraph::itemKey, ""),
                                             Field(&LayoutParagraph::itemKey, "EPIC-7"),
                                             Field(&LayoutParagraph::itemKey, "EPIC-7"),
                                             Field(&LayoutParagraph::itemKey, "MISC"),
                                             Field(&LayoutParagraph::itemKey, "MISC")));
  EXPECT_FALSE(layout.paragraphs[2].isSection);
  EXPECT_TRUE(layout.paragraphs[3].isSection);
  EXPECT_TRUE(layout.paragraphs[4].isSection);
}

TEST_F(Layout, ItemWithARepeatedKeyOccursTwice) {
  AddFeature();
  FeatureListData list("", host_.Getter(), host_.Setter());
  list.InsertFeatureListItem(list.GetFeatureItems().at("EPIC-7"));
  EXPECT_THAT(KindsOf(list.GetLayoutForDisplay({})),
              ElementsAre(kHeader, kTitle, kDescription, kTitle, kDescription));
}

TEST_F(Layout, LinksOfInternalUsersOmitTheSpaceBeforeThem) {
  AddFeature("ORN-7");
  host_.SetInternalFeaturesAllowed(true);
  const PanelLayout layout =
      LayOut({{.groupingID = "ORN-7", .storyID = "orn-9", .sha = "abc", .description = "Text"}});
  EXPECT_THAT(
      PiecesOf(layout, kDescription),
      ElementsAre(
          Piece{u"Exports files", kStyleFeatureDescription}, Piece{u" ", std::nullopt},
          Piece{u"ORN-7", kStyleIssueLink, u"" ORNWHATSNEW_ISSUE_TRACKER u"/browse/ORN-7"}));
  EXPECT_THAT(
      PiecesOf(layout, kChange),
      ElementsAre(
          Piece{u"Text", kStyleChangeText}, Piece{u" ", std::nullopt},
          Piece{u"ORN-9", kStyleIssueLink, u"" ORNWHATSNEW_ISSUE_TRACKER u"/browse/ORN-9"},
          Piece{u" ", std::nullopt},
          Piece{u"abc", kStyleCommitLink, u"" ORNWHATSNEW_COMMIT_BROWSER u"/ORN/orn/commit/abc"}));
}

TEST_F(Layout, CommitWithoutALinkTemplateIsASpanWithoutALink) {
  host_.SetInternalFeaturesAllowed(true);
  ornappsupport::links::PanelLinks links;
  links.commitLink.clear();
  ASSERT_TRUE(SetPanelLinks(links));
  const PanelLayout layout =
      LayOutChange({.groupingID = "MISC", .sha = "abc", .description = "Text"});
  EXPECT_THAT(PiecesOf(layout, kChange),
              ElementsAre(Piece{u"Text", kStyleChangeText}, Piece{u" ", std::nullopt},
                          Piece{u"abc", kStyleCommitLink}));
}

TEST_F(Layout, NoticeWithoutAPrivacyPageHasNoLink) {
  host_.SetUsageLogging(false);
  ornappsupport::links::PanelLinks links;
  links.privacyPage.clear();
  ASSERT_TRUE(SetPanelLinks(links));
  FeatureListData list("", host_.Getter(), host_.Setter());
  for (const LayoutParagraph& paragraph : list.GetLayoutForDisplay(kRatingView).paragraphs) {
    for (const LayoutSpan& span : paragraph.spans) EXPECT_EQ(span.link, u"");
  }
}

TEST_F(Layout, LinkDoesNotSplitTheFirstCharacterOfItsTemplate) {
  host_.SetInternalFeaturesAllowed(true);
  host_.AddTranslation("$$$/ornwhatsnew/Feature/Detail/JiraID/displaytemplate",
                       "\U0001F517\u65E5@0");
  const PanelLayout layout =
      LayOutChange({.groupingID = "MISC", .storyID = "ORN-9", .description = "Text"});
  EXPECT_THAT(PiecesOf(layout, kChange),
              ElementsAre(Piece{u"Text", kStyleChangeText}, Piece{u"\U0001F517", std::nullopt},
                          Piece{u"\u65E5ORN-9", kStyleIssueLink,
                                u"" ORNWHATSNEW_ISSUE_TRACKER u"/browse/ORN-9"}));
}

TEST_F(Layout, NotesAreSpansBeforeTheText) {
  host_.SetInternalFeaturesAllowed(true);
  const PanelLayout layout =
      LayOutChange({.groupingID = "MISC", .salience = "Loud", .description = "Text"});
  EXPECT_THAT(PiecesOf(layout, kChange),
              ElementsAre(Piece{u"(Malformed salience ignored: loud) ", kStyleInternalWarning},
                          Piece{u"Text", kStyleChangeText}));
}

TEST_F(Layout, BulletIsLocalisedAndHasNoWhiteSpace) {
  const ChangeRow row = {.groupingID = "MISC", .description = "Text"};
  EXPECT_EQ(FirstOf(LayOutChange(row), kChange).bullet, u"\u2022");
  host_.AddTranslation(kBulletKey, "\t - \r\n");
  EXPECT_EQ(FirstOf(LayOutChange(row), kChange).bullet, u"-");
  host_.AddTranslation(kBulletKey, " ");
  EXPECT_EQ(FirstOf(LayOutChange(row), kChange).bullet, u"");
}

TEST_F(Layout, TranslatedTabsAreNeitherIndentationNorPartOfTheText) {
  AddFeature();
  host_.AddTranslation(kTabKey, "    ");
  const PanelLayout layout = LayOut({{.groupingID = "EPIC-7", .description = "Text"}});
  EXPECT_EQ(layout.text, u"Changes since v\nExport    UNLOCKED\nExports files\nText");
  EXPECT_EQ(FirstOf(layout, kChange).bullet, u"\u2022");
}

TEST_F(Layout, VisibleCharactersOfTranslatedTabsAndNewlinesAreKept) {
  AddFeature();
  host_.AddTranslation(kTabKey, ">");
  host_.AddTranslation(kNewlineKey, "|#{endl}");
  const PanelLayout layout = LayOut({{.groupingID = "EPIC-7", .description = "Text"}});
  EXPECT_EQ(layout.text, u"Changes since v\nExport>UNLOCKED|\n>Exports files|\nText|");
  EXPECT_EQ(FirstOf(layout, kChange).bullet, u">\u2022>");
  EXPECT_THAT(PiecesOf(layout, kChange),
              ElementsAre(Piece{u"Text", kStyleChangeText}, Piece{u"|", std::nullopt}));
}

TEST_F(Layout, LineEndsAndTabsInsideAParagraphAreReplaced) {
  host_.AddFeature({.internalKey = "a",
                    .epicKey = "EPIC-7",
                    .name = "a\r\nb\nc\rd\n\ne",
                    .description = "f\tg\u2028h\u2029i"});
  const PanelLayout layout = LayOut({});
  EXPECT_EQ(layout.text,
            u"Changes since v\na\u2028b\u2028c\u2028d\u2028\u2028e UNLOCKED\nf g\u2028h\u2028i");
}

TEST_F(Layout, CarriageReturnAndLineFeedOfTwoStringsAreOneLineEnd) {
  host_.AddTranslation("$$$/ornwhatsnew/Feature/Detail/OS/displaytemplate", "@0\r");
  const PanelLayout layout =
      LayOutChange({.groupingID = "MISC", .platform = "Mac", .description = "$$$/a=#{endl}Text"});
  EXPECT_EQ(layout.text, u"Changes since v\nMiscellaneous\nmacOS\u2028Text");
}

TEST_F(Layout, CarriageReturnAndLineFeedAroundAStringAreTwoLineEnds) {
  host_.SetInternalFeaturesAllowed(true);
  host_.ShowAllUnlockCodes(true);
  host_.AddFeature({.internalKey = "a", .epicKey = "EPIC-7", .name = "Title\r"});
  host_.AddTranslation(kTabKey, "#{endl}");
  EXPECT_EQ(LayOut({}).text, u"Changes since v\nTitle\u2028 \u2014 (a)\u2028UNLOCKED");
}

TEST_F(Layout, HasNoByteOrderMark) {
  host_.AddFeature({.internalKey = "a", .epicKey = "EPIC-7", .name = "\uFEFFa\uFEFFb\uFEFF"});
  EXPECT_EQ(LayOut({}).text, u"Changes since v\nab UNLOCKED");
}

TEST_F(Layout, OuterWhiteSpaceOfAParagraphIsRemoved) {
  const PanelLayout layout = LayOutChange({.groupingID = "MISC", .description = "  Text \t "});
  EXPECT_EQ(layout.text, u"Changes since v\nMiscellaneous\nText");
  EXPECT_THAT(PiecesOf(layout, kChange), ElementsAre(Piece{u"Text", kStyleChangeText}));
}

TEST_F(Layout, EmptyStringsHaveNoSpan) {
  AddFeature();
  host_.AddTranslation("$$$/ornwhatsnew/Feature/Item/Unlock/Unlocked", "");
  EXPECT_THAT(PiecesOf(LayOut({}), kTitle), ElementsAre(Piece{u"Export", kStyleFeatureTitle}));
}

TEST_F(Layout, ParagraphWithoutVisibleTextIsOmitted) {
  host_.AddFeature({.internalKey = "a", .epicKey = "EPIC-7", .name = "A", .description = " \t"});
  host_.AddTranslation("$$$/ornwhatsnew/Feature/ChangesSince/LastRelease/DisplayTemplate",
                       "#{endl}");
  EXPECT_THAT(KindsOf(LayOut({})), ElementsAre(kTitle));
  EXPECT_EQ(LayOut({}).text, u"A UNLOCKED");
}

TEST_F(Layout, ChangeWithAnEmptyTranslationHasNoTextButKeepsItsVersion) {
  host_.AddTranslation("$$$/a", "");
  const PanelLayout empty = LayOutChange({.groupingID = "MISC", .description = "$$$/a=Text"});
  EXPECT_EQ(empty.text, u"Changes since v\nMiscellaneous\n");
  EXPECT_FALSE(FirstOf(empty, kChange).hasText);
  EXPECT_EQ(FirstOf(empty, kChange).range, (TextRange{empty.text.size(), 0}));
  EXPECT_EQ(FirstOf(empty, kChange).bullet, u"\u2022");

  const PanelLayout version =
      LayOutChange({.version = "25.1", .groupingID = "MISC", .description = "$$$/a=Text"});
  EXPECT_EQ(version.text, u"Changes since v\nMiscellaneous\n(v25.1)");
  EXPECT_FALSE(FirstOf(version, kChange).hasText);
}

TEST_F(Layout, ChangeWithTextHasText) {
  const PanelLayout layout = LayOutChange({.groupingID = "MISC", .description = "Text"});
  EXPECT_TRUE(FirstOf(layout, kChange).hasText);
  EXPECT_TRUE(
      FirstOf(LayOutChange({.groupingID = "MISC", .description = "$$$/a=x"}), kChange).hasText);
}

TEST_F(Layout, EmptyListHasHeaderAndNotice) {
  const PanelLayout layout = LayOut({});
  EXPECT_EQ(layout.text, u"Changes since v\nYou\u2019re all caught up.");
  EXPECT_THAT(KindsOf(layout), ElementsAre(kHeader, kNotice));
  EXPECT_THAT(PiecesOf(layout, kNotice),
              ElementsAre(Piece{u"You\u2019re all caught up.", kStyleHeader}));
  EXPECT_FALSE(layout.hasItems);
}

TEST_F(Layout, EmptyRatingViewHasOnlyTheNotice) {
  const PanelLayout layout = LayOut({}, kRatingView);
  EXPECT_EQ(layout.text, u"No features need rating right now.");
  EXPECT_THAT(KindsOf(layout), ElementsAre(kNotice));
  EXPECT_FALSE(layout.hasItems);
}

TEST_F(Layout, RatingViewHasAHeaderIfTheNewlineIsVisible) {
  host_.AddTranslation(kNewlineKey, "|#{endl}");
  const PanelLayout layout = LayOut({}, kRatingView);
  EXPECT_EQ(layout.text, u"|\u2028|\nNo features need rating right now.");
  EXPECT_THAT(KindsOf(layout), ElementsAre(kHeader, kNotice));
}

TEST_F(Layout, OptedOutNoticeHasTwoParagraphsAndALinkInTheSecond) {
  host_.SetUsageLogging(false);
  const PanelLayout layout = LayOut({}, kRatingView);
  EXPECT_THAT(KindsOf(layout), ElementsAre(kNotice, kNotice));
  const std::u16string page = u"" ORNWHATSNEW_PRIVACY_PAGE;
  EXPECT_EQ(layout.text,
            u"You (or your organization) have opted out of sharing information with Tarsa.\n"
            u"If you are using a personal account, you can rate features by enabling "
            u"\u201CDesktop and app usage\u201D at " +
                page + u" and then quitting and relaunching.");
  ASSERT_EQ(layout.paragraphs[0].spans.size(), 1U);
  ASSERT_EQ(layout.paragraphs[1].spans.size(), 3U);
  EXPECT_EQ(layout.paragraphs[1].spans[1].style, kStyleHotSpot);
  EXPECT_EQ(layout.paragraphs[1].spans[1].link, page);
}

TEST_F(Layout, BlankLineOfANoticeStartsAParagraphAndASingleLineEndDoesNot) {
  const char key[] = "$$$/ornwhatsnew/feature/nonewchanges/displaytemplate";
  host_.AddTranslation(key,
                       "#{endl}#{endl}One#{endl}2#{endl}3 \r\n\t\r\nfour#{endl}#{endl}#{endl}five");
  const PanelLayout layout = LayOut({});
  EXPECT_EQ(layout.text, u"Changes since v\nOne\u20282\u20283\nfour\nfive");
  EXPECT_THAT(KindsOf(layout), ElementsAre(kHeader, kNotice, kNotice, kNotice));
}

TEST_F(Layout, RatingRequestFollowsTheLastChangeOfEachFeature) {
  AddFeature();
  host_.AddFeature({.internalKey = "map", .epicKey = "EPIC-8", .name = "Map"});
  const PanelLayout layout = LayOutRatingView(
      {{.groupingID = "EPIC-7", .ratingRequest = "How?", .description = "One"},
       {.groupingID = "EPIC-7", .ratingRequest = "RequestRating", .description = "Two"},
       {.groupingID = "EPIC-8", .ratingRequest = "$$$/question=Why?", .description = "Three"}});
  EXPECT_EQ(layout.text, u"Export UNLOCKED\nOne\nTwo\n\nMap UNLOCKED\nThree\n");
  EXPECT_THAT(KindsOf(layout), ElementsAre(kTitle, kChange, kChange, kRatingRequest, kTitle,
                                           kChange, kRatingRequest));
  EXPECT_THAT(layout.ratingRequests,
              ElementsAre(RatingRequest{"EPIC-7", u"Export", u"", u"Exports files"},
                          RatingRequest{"EPIC-8", u"Map", u"Why?", u""}));
  EXPECT_EQ(layout.paragraphs[3].rating, 0U);
  EXPECT_EQ(layout.paragraphs[3].itemKey, "EPIC-7");
  EXPECT_EQ(layout.paragraphs[3].range, (TextRange{24, 0}));
  EXPECT_EQ(layout.paragraphs[6].rating, 1U);
  EXPECT_EQ(layout.paragraphs[6].range, (TextRange{layout.text.size(), 0}));
}

TEST_F(Layout, StringsOfARatingRequestAreLocalised) {
  host_.AddFeature({.internalKey = "a",
                    .epicKey = "EPIC-7",
                    .name = "$$$/name=Name",
                    .description = "$$$/description=Description"});
  host_.AddTranslation("$$$/name", "Nom");
  host_.AddTranslation("$$$/question", "Comment ?");
  const PanelLayout layout = LayOutRatingView(
      {{.groupingID = "EPIC-7", .ratingRequest = "$$$/question=How?", .description = "Text"}});
  EXPECT_THAT(layout.ratingRequests,
              ElementsAre(RatingRequest{"EPIC-7", u"Nom", u"Comment ?", u"Description"}));
}

TEST_F(Layout, StringsOfARatingRequestHaveTheLineEndsAndSpacesOfTheText) {
  host_.AddFeature({.internalKey = "a",
                    .epicKey = "EPIC-7",
                    .name = "\uFEFF Na\uFEFFme\r",
                    .description = "\nOne\r\ntwo\u2029three\n"});
  const PanelLayout layout = LayOutRatingView(
      {{.groupingID = "EPIC-7", .ratingRequest = "\tHow\twas it? ", .description = "Text"}});
  EXPECT_EQ(layout.text, u"Name\u2028 UNLOCKED\nText\n");
  EXPECT_THAT(layout.ratingRequests, ElementsAre(RatingRequest{"EPIC-7", u"Name", u"How was it?",
                                                               u"One\u2028two\u2028three"}));
}

TEST_F(Layout, RatingRequestHasNoDescriptionIfTheAuthorHidesIt) {
  AddFeature();
  const PanelLayout layout = LayOutRatingView({{.groupingID = "EPIC-7",
                                                .salience = "RatingHidesBetaFeatureDescription",
                                                .ratingRequest = "RequestRating",
                                                .description = "Text"}});
  EXPECT_THAT(layout.ratingRequests, ElementsAre(RatingRequest{"EPIC-7", u"Export", u"", u""}));
}

TEST_F(Layout, ChangeThatOnlyRequestsARatingHasNoText) {
  AddFeature();
  const PanelLayout layout =
      LayOutRatingView({{.groupingID = "EPIC-7", .ratingRequest = "RequestRating"}});
  EXPECT_THAT(KindsOf(layout), ElementsAre(kTitle, kChange, kRatingRequest));
  EXPECT_FALSE(FirstOf(layout, kChange).hasText);
  EXPECT_EQ(FirstOf(layout, kChange).range.length, 0U);
}

TEST_F(Layout, OnlyTheRatingViewHasRatingRequests) {
  AddFeature();
  const PanelLayout layout =
      LayOut({{.groupingID = "EPIC-7", .ratingRequest = "RequestRating", .description = "Text"}});
  EXPECT_THAT(layout.ratingRequests, IsEmpty());
  EXPECT_THAT(KindsOf(layout), testing::Not(testing::Contains(kRatingRequest)));
}

TEST_F(Layout, HasNoMemoryForHiddenChanges) {
  std::vector<ChangeRow> rows(1000, {.groupingID = "MISC", .platform = "Win", .description = "No"});
  rows.push_back({.groupingID = "MISC", .platform = "Mac", .description = "Text"});
  const PanelLayout layout = LayOut(rows, kFilterRelevantPlatform);
  EXPECT_THAT(KindsOf(layout), ElementsAre(kHeader, kTitle, kChange));
  EXPECT_LE(layout.paragraphs.capacity(), 2 * layout.paragraphs.size());
  EXPECT_LE(layout.text.capacity(), 2 * layout.text.size());
}

TEST_F(Layout, ConvertedLayoutHasRangesInBytes) {
  host_.AddFeature({.internalKey = "a",
                    .epicKey = "EPIC-7",
                    .name = "\u65E5\U0001F600",
                    .description = "\u00E9"});
  const std::vector<ChangeRow> rows = {
      {.groupingID = "EPIC-7", .ratingRequest = "\u00FC?", .url = kURL, .description = "a\u2022"}};
  const PanelLayoutUTF8 layout = ConvertToUTF8(LayOut(rows));
  EXPECT_EQ(layout.text, "Changes since v\n\u65E5\U0001F600 UNLOCKED\n\u00E9 View more\na\u2022");
  ASSERT_EQ(layout.paragraphs.size(), 4U);
  EXPECT_EQ(layout.paragraphs[1].range, (TextRange{16, 16}));
  EXPECT_EQ(layout.paragraphs[1].spans[0].range, (TextRange{16, 7}));
  EXPECT_EQ(layout.paragraphs[1].spans[0].link, kURL);
  EXPECT_EQ(layout.paragraphs[1].spans[2].range, (TextRange{24, 8}));
  EXPECT_EQ(layout.paragraphs[1].spans[2].style, kStyleUnlockLabel);
  EXPECT_EQ(layout.paragraphs[3].range, (TextRange{46, 4}));
  EXPECT_EQ(layout.paragraphs[3].bullet, "\u2022");
  EXPECT_EQ(layout.paragraphs[3].itemKey, "EPIC-7");
  EXPECT_TRUE(layout.hasItems);

  const PanelLayoutUTF8 rating = ConvertToUTF8(LayOut(rows, kRatingView));
  ASSERT_EQ(rating.ratingRequests.size(), 1U);
  EXPECT_EQ(rating.ratingRequests[0].itemKey, "EPIC-7");
  EXPECT_EQ(rating.ratingRequests[0].title, "\u65E5\U0001F600");
  EXPECT_EQ(rating.ratingRequests[0].question, "\u00FC?");
  EXPECT_EQ(rating.ratingRequests[0].description, "\u00E9");
  EXPECT_EQ(rating.paragraphs.back().rating, 0U);
}

TEST(PanelLayout, EmptyLayoutIsEmptyInUtf8) {
  EXPECT_EQ(ConvertToUTF8({}), PanelLayoutUTF8());
}

TEST(PanelLayout, MatchesTheTextAndTheStyleRunsInRandomWorlds) {
  constexpr std::uint64_t kFirstSeed = 20261122;
  constexpr std::uint64_t kWorlds = 250;
  constexpr int kPanelsPerWorld = 12;
  for (std::uint64_t seed = kFirstSeed; seed < kFirstSeed + kWorlds; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    test_support::RandomSource random(seed);
    test_support::RandomWorld world(random);
    FeatureListData list(world.Host().Getter(), world.Host().Setter());
    const std::string dataText = world.DataFile();
    list.InitWithData(dataText);
    for (int i = 0; i < kPanelsPerWorld; ++i) {
      const auto options = static_cast<unsigned>(random.Below(32));
      SCOPED_TRACE("panel " + std::to_string(i) + " with options " + std::to_string(options));
      const auto panel = test_support::FormatWithLibrary(list, world.Host().State(), options, u"");
      ASSERT_EQ(test_support::FirstLayoutError(list, world.Host().State(), options, panel), "")
          << panel;
      if (random.Flip()) world.ChangeHost();
      if (random.Flip()) list.RefreshInternalSeenState();
    }
  }
}

}  // namespace
}  // namespace ornwhatsnew
