// Parses pages of `ornwhatsnew preview` and compares them with the panels that the library shows to
// the same users. Further tests check the findings and the links of a page.
#include "hosts/author/preview/PreviewPage.h"

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <ornwhatsnew/FeatureListData.h>

#include "hosts/author/lint/LintContext.h"
#include "hosts/common/JsonDocument.h"
#include "tests/support/RandomSource.h"
#include "tests/support/RandomWorld.h"
#include "tests/support/RenderedPanel.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::author {
namespace {

using ornwhatsnew::DisplayOptions;
using ornwhatsnew::kFilterRelevantPlatform;
using ornwhatsnew::kFilterRelevantVersion;
using ornwhatsnew::kRatingView;
using ornwhatsnew::kShowOnlyNew;
using ornwhatsnew::PanelLayout;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::string_view kDataHeader =
    "App Version,Grouping ID,Jira ID,Salience,Rating,First Version,Platform,URL,Commit,Message\n"
    "4.2,Changes-Since\n";

// These rows are lines 3 to 10 of the data file. Line 5 is relevant only to users who ran a version
// from 4.1 up to, but not including, 4.3.
constexpr std::string_view kRows =
    "4.3,MAP-7,,,RequestRating,,,,,Zooms with the wheel\n"
    "4.3,MAP-7,,,RequestRating,,Win,,,Opens on Windows only\n"
    "4.3.0.0,MAP-7,,,RequestRating,4.1.0.0,,,,No longer stops\n"
    "4.3,INTERNAL,,,,,,,,Logs more\n"
    "4.3,MISC,,Headlines,,,,,,Starts faster\n"
    "4.3,MAP-7,,,How is it?,,,,,\n"
    "4.3,MISC,not a change\n"
    "4.2,MISC,,,,,,,,Was there before\n";

PreviewInput MakeInput(std::string_view rows = kRows) {
  PreviewInput input;
  input.data = {"folder/news.csv", std::string(kDataHeader) + std::string(rows)};
  input.hostName = "host.json";
  input.host = common::ParseHostDescription(
      R"({"clientVersion": "4.3", "buildNumber": "118", "betaFeatures": [
        {"internalKey": "map", "epicKey": "MAP-7", "name": "Map", "description": "Shows sheets.",
         "enabled": true},
        {"internalKey": "desk", "epicKey": "DESK-1", "name": "Desk", "visibility": 1,
         "enabled": true}]})",
      "host.json");
  return input;
}

/// Returns the HTML of each panel in `page`, by the `id` of the element that contains the panel.
std::map<std::string, std::string> PanelsOf(const std::string& page) {
  constexpr std::string_view kSection = "<section class=\"preview-view\" id=\"";
  constexpr std::string_view kEnd = "</section>\n";
  std::map<std::string, std::string> panels;
  for (std::size_t at = page.find(kSection); at != page.npos; at = page.find(kSection, at)) {
    at += kSection.size();
    const std::size_t begin = page.find("<section class=\"ornwhatsnew\"", at);
    const std::size_t end = page.find(kEnd, begin) + kEnd.size();
    panels[page.substr(at, page.find('"', at) - at)] = page.substr(begin, end - begin);
  }
  return panels;
}

/// Returns the content of each element with an `id`, by `id`.
std::map<std::string, std::string> ElementsByID(const std::string& html) {
  constexpr std::string_view kID = " id=\"";
  std::map<std::string, std::string> elements;
  for (std::size_t at = html.find(kID); at != html.npos; at = html.find(kID, at)) {
    at += kID.size();
    const std::size_t idEnd = html.find('"', at);
    const std::size_t name = html.rfind('<', at) + 1;
    const std::string end = "</" + html.substr(name, html.find(' ', name) - name) + ">";
    elements[html.substr(at, idEnd - at)] = html.substr(idEnd + 2, html.find(end, at) - idEnd - 2);
  }
  return elements;
}

/// Returns the HTML of each finding in `page`, in order.
std::vector<std::string> FindingsOf(const std::string& page) {
  std::vector<std::string> findings;
  const std::size_t list = page.find("<ul>\n", page.find("id=\"findings\""));
  for (std::size_t at = page.find("<li", list); at != page.npos; at = page.find("<li", at + 1)) {
    findings.push_back(page.substr(at, page.find("</li>", at) - at));
  }
  return findings;
}

std::string FindingWithCode(const std::string& page, const std::string& code) {
  for (const std::string& finding : FindingsOf(page)) {
    if (finding.find("<code>" + code + "</code>") != finding.npos) return finding;
  }
  return "";
}

/// Returns the targets of the links in `html`.
std::vector<std::string> LinksIn(const std::string& html) {
  constexpr std::string_view kLink = "href=\"";
  std::vector<std::string> links;
  for (std::size_t at = html.find(kLink); at != html.npos; at = html.find(kLink, at)) {
    at += kLink.size();
    links.push_back(html.substr(at, html.find('"', at) - at));
  }
  return links;
}

/// A user whose state persists between displays. Calls the library directly, so the layouts do not
/// depend on the code under test.
class LibraryUser {
 public:
  explicit LibraryUser(common::HostDescription host) : host_(std::move(host)) {}

  /// Returns the layout of a display, and stores the state that the display writes.
  PanelLayout Show(const std::string& data, const DisplayOptions& options,
                   const std::string& version = "4.3") {
    host_.clientVersion = version;
    common::InstallHost(host_);
    ornwhatsnew::FeatureListData list(
        data, [this](const std::string& key) { return state_[key]; },
        [this](const std::string& key, const std::string& value) { state_[key] = value; });
    return list.GetLayoutForDisplay(options);
  }

 private:
  common::HostDescription host_;
  std::map<std::string, std::string> state_;
};

void ExpectPanel(const std::string& html, const PanelLayout& layout) {
  constexpr int kHeadingLevel = 3;
  EXPECT_EQ(test_support::FirstDifference(test_support::ParseHTML(html), layout, kHeadingLevel),
            "");
}

TEST(PreviewPage, PanelsAreThoseOfTheLibrary) {
  PreviewInput input = MakeInput();
  const std::string old = std::string(kDataHeader) + "4.2,MISC,,,,,,,,Was there before\n";
  input.seen = PreviewFile{"old.csv", old};
  auto panels = PanelsOf(PreviewPage(input));
  EXPECT_EQ(panels.size(), 5U);
  const std::string& data = input.data.text;
  const DisplayOptions relevant = kFilterRelevantPlatform | kFilterRelevantVersion;

  LibraryUser outside(input.host);
  ExpectPanel(panels["outside"], outside.Show(data, kFilterRelevantPlatform));
  ExpectPanel(panels["rating"], outside.Show(data, relevant | kRatingView));
  LibraryUser newUser(input.host);
  ExpectPanel(panels["first-start"], newUser.Show(data, relevant | kShowOnlyNew));
  LibraryUser updated(input.host);
  updated.Show(old, {}, "4.2");
  ExpectPanel(panels["seen"], updated.Show(data, relevant | kShowOnlyNew));
  common::HostDescription internalHost = input.host;
  internalHost.internalFeaturesAllowed = true;
  ExpectPanel(panels["internal"], LibraryUser(internalHost).Show(data, kFilterRelevantPlatform));
}

TEST(PreviewPage, UsersSeeDifferentChanges) {
  PreviewInput input = MakeInput();
  input.seen =
      PreviewFile{"old.csv", std::string(kDataHeader) + "4.2,MISC,,,,,,,,Was there before\n"};
  auto panels = PanelsOf(PreviewPage(input));
  for (const auto& [id, panel] : panels) EXPECT_THAT(panel, Not(HasSubstr("Windows only"))) << id;
  EXPECT_THAT(panels["outside"], AllOf(HasSubstr("Zooms with the wheel"),
                                       HasSubstr("No longer stops"), Not(HasSubstr("Logs more"))));
  EXPECT_THAT(panels["internal"], HasSubstr("Logs more"));
  EXPECT_THAT(panels["first-start"],
              AllOf(HasSubstr("Was there before"), Not(HasSubstr("No longer stops"))));
  EXPECT_THAT(panels["seen"],
              AllOf(HasSubstr("No longer stops"), Not(HasSubstr("Was there before"))));
  EXPECT_THAT(panels["rating"], AllOf(HasSubstr("Zooms"), Not(HasSubstr("Starts faster"))));
}

TEST(PreviewPage, SaysHowMuchAPanelShows) {
  const std::string page = PreviewPage(MakeInput("4.3,MISC,,,,,,,,a\n4.3,MISC,,,,,,,,b\n"));
  EXPECT_THAT(page, HasSubstr("<p class=\"preview-muted\">2 items, 2 changes</p>"));
}

TEST(PreviewPage, SaysWhatLintDoesNotList) {
  std::string rows;
  for (std::size_t i = 0; i <= kMaximumFindings; ++i) rows += "4.3,MISC,,Headlines,,,,,,a\n";
  EXPECT_THAT(PreviewPage(MakeInput(rows)),
              HasSubstr("one more finding with the code salience-unknown is not listed</p>"));
}

TEST(PreviewPage, NamesThePlatformOfTheHost) {
  PreviewInput input = MakeInput();
  input.host.platform = "Win";
  EXPECT_THAT(
      PreviewPage(input),
      HasSubstr("without the internal-features permission can see on the platform Win.</p>"));
}

TEST(PreviewPage, ExplainsTheRatings) {
  EXPECT_THAT(PreviewPage(MakeInput()),
              HasSubstr(">What an external user who has seen all changes can rate.</p>"));
}

/// Expects that each element of `page` has an end tag, except `meta` and `br`, and that elements do
/// not overlap.
void ExpectMatchingTags(const std::string& page) {
  static const std::regex kTag("<(/?)([a-z][a-z0-9]*)[^>]*>");
  std::vector<std::string> open;
  for (std::sregex_iterator tag(page.begin(), page.end(), kTag), end; tag != end; ++tag) {
    const std::string name = (*tag)[2];
    if ((*tag)[1].length() == 0) {
      if (name != "meta" && name != "br") open.push_back(name);
    } else {
      ASSERT_FALSE(open.empty()) << name;
      ASSERT_EQ(open.back(), name);
      open.pop_back();
    }
  }
  EXPECT_THAT(open, IsEmpty());
}

TEST(PreviewPage, ElementsHaveMatchingTags) {
  PreviewInput input = MakeInput();
  input.seen = PreviewFile{"old.csv", std::string(kDataHeader)};
  ExpectMatchingTags(PreviewPage(input));
}

TEST(PreviewPage, OmitsEmptyMembersOfTheHostDescription) {
  PreviewInput input = MakeInput();
  input.seen = PreviewFile{"old.csv", std::string(kDataHeader)};
  input.host.clientVersion = "";
  input.host.buildNumber = "";
  input.host.platform = "";
  const std::string page = PreviewPage(input);
  EXPECT_THAT(
      page,
      AllOf(HasSubstr(">Host description: host.json</p>"),
            HasSubstr("without the internal-features permission can see.</p>"),
            HasSubstr("with the internal-features permission can see.</p>"),
            HasSubstr("starts the application for the first time. If the"),
            HasSubstr("who has seen the changes in old.csv and now starts the application.</p>")));
}

TEST(PreviewPage, FindingsAreATabStop) {
  EXPECT_THAT(PreviewPage(MakeInput()),
              HasSubstr("id=\"findings\" aria-labelledby=\"findings-title\" tabindex=\"0\">"));
}

TEST(PreviewPage, PermissionAndTerminationOfTheHostDescriptionHaveNoEffect) {
  PreviewInput input = MakeInput();
  const auto panels = PanelsOf(PreviewPage(input));
  input.host.internalFeaturesAllowed = true;
  input.host.terminating = true;
  EXPECT_EQ(PanelsOf(PreviewPage(input)), panels);
}

TEST(PreviewPage, UserOfTheEarlierFileOpenedItInItsNewestVersion) {
  PreviewInput input = MakeInput();
  const auto headingAfter = [&](const std::string& rows) {
    input.seen = PreviewFile{"old.csv", std::string(kDataHeader) + rows};
    const std::string panel = PanelsOf(PreviewPage(input))["seen"];
    const std::size_t begin = panel.find("opened in v") + std::string_view("opened in v").size();
    return panel.substr(begin, panel.find('<', begin) - begin);
  };
  EXPECT_EQ(headingAfter("4.1,MISC,,,,,,,,a\n4.2.0.0,MISC,,,,,,,,b\n3.9,MISC,,,,,,,,c\n"),
            "4.2.0.118");
  EXPECT_EQ(headingAfter("4.2,MISC,,,,,,,,a\n4.10,MISC,,,,,,,,b\n"), "4.2.0.118");
  EXPECT_EQ(headingAfter("4,MISC,,,,,,,,a\n"), "4.0.0.118");
  EXPECT_EQ(headingAfter("next,MISC,,,,,,,,a\n"), "4.3.0.118");
  EXPECT_EQ(headingAfter(""), "4.3.0.118");
  input.host.clientVersion = "next";
  EXPECT_EQ(headingAfter("4.2,MISC,,,,,,,,a\n"), "next.118");
}

TEST(PreviewPage, WithoutAnEarlierFileThereIsNoSuchUser) {
  EXPECT_FALSE(PanelsOf(PreviewPage(MakeInput())).contains("seen"));
}

TEST(PreviewPage, NavigationLinksToAllSections) {
  const std::string page = PreviewPage(MakeInput());
  const std::size_t begin = page.find("<nav ");
  const std::string navigation = page.substr(begin, page.find("</nav>") - begin);
  EXPECT_THAT(LinksIn(navigation),
              ElementsAre("#outside", "#internal", "#first-start", "#rating", "#findings"));
  EXPECT_THAT(navigation, HasSubstr("<li><a href=\"#outside\">External user</a></li>\n"
                                    "<li><a href=\"#internal\">Internal user</a></li>\n"
                                    "<li><a href=\"#first-start\">First start</a></li>\n"));
  EXPECT_THAT(navigation, HasSubstr("\n<li><a href=\"#findings\">Findings (3)</a></li>\n</ul>"));
}

TEST(PreviewPage, EveryLinkWithinThePageHasATarget) {
  const std::string page = PreviewPage(MakeInput());
  const auto elements = ElementsByID(page);
  for (const std::string& link : LinksIn(page)) {
    EXPECT_TRUE(!link.starts_with('#') || elements.contains(link.substr(1))) << link;
  }
}

TEST(PreviewPage, FindingLinksToEachPanelThatShowsItsChange) {
  const std::string page = PreviewPage(MakeInput());
  const std::string finding = FindingWithCode(page, "salience-unknown");
  EXPECT_THAT(finding, HasSubstr("<strong>error</strong> line 7, column 11 <code>"));
  EXPECT_THAT(finding, HasSubstr("&#39;Headlines&#39; in &quot;Salience&quot; is not a keyword"));
  EXPECT_THAT(LinksIn(finding),
              ElementsAre("#outside-line-7", "#internal-line-7", "#first-start-line-7"));
  auto elements = ElementsByID(page);
  EXPECT_THAT(elements["outside-line-7"], HasSubstr("Starts faster"));
}

TEST(PreviewPage, FindingOnAHiddenChangeSaysSo) {
  const std::string page = PreviewPage(MakeInput("4.3,MISC,,Headlines,,,Win,,,Text\n"));
  const std::string finding = FindingWithCode(page, "salience-unknown");
  EXPECT_THAT(finding, HasSubstr("No panel on this page shows the change."));
  EXPECT_THAT(LinksIn(finding), ElementsAre());
}

TEST(PreviewPage, FindingOnARowThatIsNoChangeSaysSo) {
  const std::string finding = FindingWithCode(PreviewPage(MakeInput()), "missing-comma");
  EXPECT_THAT(finding, AllOf(HasSubstr("line 9, "), HasSubstr("This row is not a change.")));
}

TEST(PreviewPage, FindingOnAFileNamesTheFile) {
  PreviewInput input = MakeInput("");
  EXPECT_THAT(FindingWithCode(PreviewPage(input), "no-change"),
              AllOf(HasSubstr("</strong> news.csv"), Not(HasSubstr("This row"))));
  input.host.betaFeatures.at(0).epicKey = "";
  EXPECT_THAT(FindingWithCode(PreviewPage(input), "host-epic-key-empty"),
              HasSubstr("</strong> host.json"));
}

TEST(PreviewPage, ChangeWithoutTextIsAtItsRatingRequest) {
  const std::string page =
      PreviewPage(MakeInput("4.3,MAP-7,,,,,,,,a\n,MAP-7,,Headlines,How is it?,,,,,\n"));
  EXPECT_THAT(LinksIn(FindingWithCode(page, "salience-unknown")), ElementsAre("#rating-line-4"));
  EXPECT_THAT(ElementsByID(page)["rating-line-4"], HasSubstr("How is it?"));
}

TEST(PreviewPage, ConfigurationOfLintApplies) {
  const test_support::TemporaryFolder folder;
  PreviewInput input = MakeInput();
  input.data.name = folder.Path() / "news.csv";
  folder.Write(".ornwhatsnew-lint.json", R"({"severity": {"salience-unknown": "off"}})");
  EXPECT_EQ(FindingWithCode(PreviewPage(input), "salience-unknown"), "");
  folder.Write(".ornwhatsnew-lint.json", "{");
  EXPECT_THROW(PreviewPage(input), common::JsonError);
}

/// Returns the names of all tags and attributes in `page`.
std::set<std::string> TagsOf(const std::string& page) {
  std::set<std::string> tags;
  for (std::size_t at = page.find('<'); at != page.npos; at = page.find('<', at + 1)) {
    const std::string tag = page.substr(at + 1, page.find_first_of(">", at) - at - 1);
    tags.insert(tag.substr(0, tag.find_first_of(" ")));
    for (std::size_t equals = tag.find("=\""); equals != tag.npos;
         equals = tag.find("=\"", tag.find('"', equals + 2))) {
      tags.insert(tag.substr(tag.rfind(' ', equals) + 1, equals - tag.rfind(' ', equals)));
    }
  }
  return tags;
}

TEST(PreviewPage, HostileTextsAddNoElementAndNoAttribute) {
  const std::string hostile =
      "</style></title><script>alert(1)</script><img src=x onerror=\"a\">' \"";
  PreviewInput input = MakeInput();
  input.seen = PreviewFile{"old.csv", std::string(kDataHeader) + "4.2,MISC,,,,,,,,An old change\n"};
  const std::set<std::string> known = TagsOf(PreviewPage(input));
  input.data.name = "<b>" + hostile + "\xFF\u202E.csv";
  input.hostName = hostile;
  input.seen->name = hostile;
  input.host.clientVersion = hostile;
  input.host.buildNumber = hostile;
  input.host.platform = hostile;
  for (common::BetaFeatureDescription& feature : input.host.betaFeatures) {
    feature.name = hostile;
    feature.description = hostile;
  }
  std::string row = hostile;
  std::erase(row, '"');
  for (std::size_t column = 0; column < 10; ++column) {
    std::string fields;
    for (std::size_t i = 0; i < 10; ++i) {
      fields += (i == 0 ? "" : ",") + (i == column ? row : i == 1 ? "MAP-7" : "x");
    }
    input.data.text += fields + "\n";
  }
  input.data.text +=
      "4.3,MAP-7,,,,,,javascript:alert(1),,Text\n4.3,MAP-7,,,,,,https://a\"b,,Text\n";
  const std::string page = PreviewPage(input);
  EXPECT_THAT(known, testing::IsSupersetOf(TagsOf(page)));
  EXPECT_EQ(page.find('\xFF'), page.npos);
  EXPECT_EQ(page.find("\u202E"), page.npos);
}

std::u16string WithoutSpaces(std::u16string text) {
  std::erase_if(text, [](char16_t unit) {
    return unit <= u' ' || unit == 0x2028 || unit == 0x2029 || unit == 0xFEFF;
  });
  return text;
}

TEST(PreviewViews, IDsOfRandomFilesNameTheChangesOfTheirLines) {
  std::size_t found = 0;
  for (std::uint64_t seed = 1; seed <= 250; ++seed) {
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    test_support::RandomSource random(seed);
    test_support::RandomWorld world(random);
    PreviewInput input = MakeInput();
    for (common::BetaFeatureDescription& feature : input.host.betaFeatures) {
      feature.epicKey = world.Key();
    }
    input.data.text = world.DataFile();
    if (random.Flip()) input.seen = PreviewFile{"old.csv", world.DataFile()};
    common::InstallHost(input.host);
    const LintedFile file(input.data.name, input.data.text);
    std::map<std::size_t, std::u16string> texts;
    const ornwhatsnew::FeatureListData list(nullptr, nullptr);
    for (const LintRow& row : file.Rows()) {
      if (row.change == nullptr) continue;
      texts[row.data.lineNumber] =
          WithoutSpaces(list.LocalizeIfNecessary(row.change->GetDescription()));
    }
    for (const PreviewView& view : MakePreviewViews(input, file)) {
      EXPECT_EQ(view.idsByLine.size(), view.count.changes) << view.id;
      for (const auto& [line, id] : view.idsByLine) {
        const auto index = std::ranges::find(view.paragraphIDs, id) - view.paragraphIDs.begin();
        const auto& paragraph = view.layout.paragraphs.at(static_cast<std::size_t>(index));
        const std::u16string text =
            WithoutSpaces(view.layout.text.substr(paragraph.range.begin, paragraph.range.length));
        EXPECT_NE(text.find(texts.at(line)), text.npos) << view.id << " line " << line;
        ++found;
      }
    }
  }
  EXPECT_GT(found, 1000U);
}

}  // namespace
}  // namespace hosts::author
