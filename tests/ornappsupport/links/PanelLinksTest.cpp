#include <ornappsupport/links/PanelLinks.h>

#include <gtest/gtest.h>

#include "tests/support/Threads.h"

namespace ornappsupport::links {
namespace {

constexpr const char16_t* kTemplate = u"https://a.example/@0";

class PanelLinksTest : public testing::Test {
 protected:
  ~PanelLinksTest() override { SetPanelLinks({}); }

  // Expects that `links` are valid, that the host can set them, and that `GetPanelLinks` then
  // returns the same three links.
  static void ExpectAccepted(const PanelLinks& links) {
    EXPECT_TRUE(AreValid(links));
    EXPECT_TRUE(SetPanelLinks(links));
    const PanelLinks current = GetPanelLinks();
    EXPECT_EQ(current.issueLink, links.issueLink);
    EXPECT_EQ(current.commitLink, links.commitLink);
    EXPECT_EQ(current.privacyPage, links.privacyPage);
  }

  // Expects that the host cannot set `links`, and that the previous links remain.
  static void ExpectRejected(const PanelLinks& links) {
    PanelLinks previous;
    previous.commitLink = u"https://previous.example/@0";
    ASSERT_TRUE(SetPanelLinks(previous));
    EXPECT_FALSE(AreValid(links));
    EXPECT_FALSE(SetPanelLinks(links));
    const PanelLinks current = GetPanelLinks();
    EXPECT_EQ(current.issueLink, previous.issueLink);
    EXPECT_EQ(current.commitLink, previous.commitLink);
    EXPECT_EQ(current.privacyPage, previous.privacyPage);
    EXPECT_EQ(current.issuePrefix, previous.issuePrefix);
  }
};

TEST_F(PanelLinksTest, AcceptsDefaultsEmptyStringsAndSafeLinks) {
  ExpectAccepted({});
  PanelLinks links;
  links.issueLink = kTemplate;
  links.commitLink = u"https://[::1]:8443/?id=@0#@0";
  links.privacyPage = u"https://a.example";
  ExpectAccepted(links);
  links.issueLink.clear();
  links.commitLink.clear();
  links.privacyPage.clear();
  ExpectAccepted(links);
}

TEST_F(PanelLinksTest, AcceptsTemplatesWithAPlaceholderAfterTheHost) {
  for (const char16_t* link : {kTemplate, u"https://a/?@0", u"https://a/#@0", u"https://a/@0/@0",
                               u"https://a:1/x@0y", u"https://a/@01"}) {
    PanelLinks links;
    links.issueLink = link;
    links.commitLink = link;
    ExpectAccepted(links);
  }
}

TEST_F(PanelLinksTest, RejectsLinksThatAreNotTemplates) {
  for (const char16_t* link :
       {u"@0", u"https://a/", u"https://a/@1", u"https://a/@ 0", u"https://a@0", u"https://@0",
        u"https://@0.example/", u"https://a:@0/", u"http://a/@0", u"https://a/@0\n"}) {
    PanelLinks links;
    links.issueLink = link;
    ExpectRejected(links);
    links = {};
    links.commitLink = link;
    ExpectRejected(links);
  }
}

TEST_F(PanelLinksTest, RejectsAPrivacyPageThatIsNotASafeLink) {
  for (const char16_t* link : {u"http://a.example", u"a.example", u"https://a.example/a b"}) {
    PanelLinks links;
    links.privacyPage = link;
    ExpectRejected(links);
  }
}

TEST_F(PanelLinksTest, RejectsAllMembersIfOneIsNotValid) {
  PanelLinks links;
  links.issueLink = kTemplate;
  links.issuePrefix = u"MAP";
  links.privacyPage = u"http://a.example";
  ExpectRejected(links);
}

TEST_F(PanelLinksTest, ConvertsTheIssuePrefixToUpperCase) {
  PanelLinks links;
  links.issuePrefix = u"map-\u00E9";
  EXPECT_TRUE(SetPanelLinks(links));
  EXPECT_EQ(GetPanelLinks().issuePrefix, u"MAP-\u00C9");
}

// The two sets of links differ in every member, so that the test detects a mixture of both.
TEST_F(PanelLinksTest, SeveralThreadsMayQueryDuringAReplacement) {
  constexpr int kCalls = 2'000;
  const auto linksOf = [](const UTF16String& name) {
    const UTF16String page = u"https://" + name + u".example/of-the-host";
    PanelLinks links;
    links.issueLink = page + u"/issues/@0";
    links.commitLink = page + u"/commits/@0";
    links.privacyPage = page + u"/privacy";
    links.issuePrefix = name;
    return links;
  };
  const auto set = [&linksOf] {
    EXPECT_TRUE(SetPanelLinks(linksOf(u"FIRST")));
    EXPECT_TRUE(SetPanelLinks(linksOf(u"SECOND")));
  };
  set();
  test_support::ThreadCounter consistentResults;
  test_support::RunOnThreads(
      [&] {
        for (int call = 0; call < kCalls; ++call) {
          const PanelLinks links = GetPanelLinks();
          const PanelLinks expected = linksOf(links.issuePrefix);
          const bool isConsistent = links.issueLink == expected.issueLink &&
                                    links.commitLink == expected.commitLink &&
                                    links.privacyPage == expected.privacyPage;
          consistentResults.Add(isConsistent ? 1 : 0);
        }
      },
      set);
  EXPECT_EQ(consistentResults.Value(), test_support::kThreadCount * kCalls);
}

}  // namespace
}  // namespace ornappsupport::links
