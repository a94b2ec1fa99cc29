#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ornwhatsnew/src/render/LinkTarget.h"

namespace ornwhatsnew {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::Ge;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

TEST(LinkTarget, ReturnsASafeLinkUnchanged) {
  const std::string link = "https://x/" + std::string(1990, 'y');
  EXPECT_EQ(link, PrintedLinkTarget(link));
}

TEST(LinkTarget, EncodesCharactersThatCouldLookLikeTheEndOfALink) {
  EXPECT_EQ("https://x/%3E%20%3Chttps://good.example%22",
            PrintedLinkTarget("https://x/> <https://good.example\""));
  EXPECT_EQ("https://x/%1B[31m%0A%7F", PrintedLinkTarget("https://x/\x1B[31m\n\x7F"));
  EXPECT_EQ("https://x/caf%C3%A9%FF", PrintedLinkTarget("https://x/caf\u00E9\xFF"));
  EXPECT_EQ("https://x/%E2%80%AE", PrintedLinkTarget("https://x/\u202E"));
  EXPECT_EQ("https://x/%20!~", PrintedLinkTarget("https://x/ !~"));
}

TEST(LinkTarget, ShortensALongLink) {
  const std::string cut = PrintedLinkTarget("https://x/ " + std::string(3000, 'y'));
  EXPECT_THAT(cut, AllOf(SizeIs(200), StartsWith("https://x/%20yyy"), EndsWith("yyy...")));
}

TEST(LinkTarget, ShowsTheHostAfterLongUserInformation) {
  const std::string user = "good.example" + std::string(300, 'x');
  EXPECT_EQ("https://...@evil.example/path",
            PrintedLinkTarget("https://" + user + "@evil.example/path"));
  EXPECT_EQ("https://...@evil.example\\@good.example",
            PrintedLinkTarget("https://" + user + "@evil.example\\@good.example"));
  EXPECT_THAT(PrintedLinkTarget("https://a@b@evil.example/ " + user),
              AllOf(SizeIs(200), StartsWith("https://...@evil.example/%20good")));
}

TEST(LinkTarget, ShowsTheHostAfterManySlashes) {
  const std::string slashes(300, '/');
  EXPECT_EQ("https://evil.example/", PrintedLinkTarget("https:" + slashes + "evil.example/"));
  EXPECT_EQ("https://...@evil.example/",
            PrintedLinkTarget("https://\\" + slashes + "good.example@evil.example/"));
  EXPECT_EQ("https:\\\\evil.example/",
            PrintedLinkTarget("https:" + std::string(300, '\\') + "evil.example/"));
}

TEST(LinkTarget, ShowsTheHostBeforeALongPort) {
  const std::string zeros(300, '0');
  EXPECT_THAT(PrintedLinkTarget("https://evil.example:" + zeros + "443/ x"),
              AllOf(SizeIs(200), StartsWith("https://evil.example:000"), EndsWith("000...")));
  EXPECT_THAT(PrintedLinkTarget("https://a:b@[2001:db8::1]:" + zeros + "443/ x"),
              AllOf(SizeIs(200), StartsWith("https://...@[2001:db8::1]:000"), EndsWith("000...")));
  EXPECT_THAT(PrintedLinkTarget("https://:" + zeros + "443/ x"),
              AllOf(SizeIs(200), StartsWith("https://:000"), EndsWith("000...")));
}

TEST(LinkTarget, ShowsTheHostOfALinkWithAnotherScheme) {
  const std::string user(300, 'x');
  EXPECT_EQ("http://...@evil.example/", PrintedLinkTarget("http://" + user + "@evil.example/"));
  EXPECT_EQ("HTTPS:...@evil.example", PrintedLinkTarget("HTTPS:" + user + "@evil.example"));
  EXPECT_EQ("...@evil.example/", PrintedLinkTarget(user + "@evil.example/"));
  EXPECT_THAT(PrintedLinkTarget(user), AllOf(SizeIs(197), StartsWith("...xxx"), EndsWith("xxx")));
}

TEST(LinkTarget, IsCutBetweenEscapes) {
  const std::string spaces(100, ' ');
  // Each space becomes the escape "%20", which has three bytes. The words move the escapes by 0, 1
  // and 2 bytes. For two of the words, truncation at a fixed length would split an escape.
  for (const std::string word : {"", "a", "ab"}) {
    EXPECT_THAT(
        PrintedLinkTarget("https://x/" + word + spaces),
        AllOf(SizeIs(Ge(198U)), StartsWith("https://x/" + word + "%20"), EndsWith("%20...")));
    EXPECT_THAT(PrintedLinkTarget("https://" + spaces + word),
                AllOf(SizeIs(Ge(195U)), StartsWith("https://...%20%20"), EndsWith("%20" + word)));
  }
}

TEST(LinkTarget, ShowsTheEndOfALongHost) {
  const std::string cut =
      PrintedLinkTarget("https://good.example." + std::string(300, 'x') + ".evil.example/a path");
  EXPECT_THAT(cut, AllOf(SizeIs(200), StartsWith("https://...xxx"), EndsWith("x.evil.example..."),
                         Not(HasSubstr("good"))));
  EXPECT_EQ("https://..." + std::string(186, 'x') + "...",
            PrintedLinkTarget("https://good example" + std::string(300, 'x') + "/a path"));
}

TEST(LinkTarget, ShowsTheEndOfALongAddress) {
  std::string address = "2001:db8";
  for (int i = 0; i < 100; ++i) address += ":0";
  EXPECT_THAT(PrintedLinkTarget("https://[" + address + ":17]:443/ x"),
              AllOf(SizeIs(200), StartsWith("https://...:0:0:"), EndsWith(":0:17]...")));
}

TEST(LinkTarget, ShowsAllOfTheLongestHostThatFits) {
  const std::string host(200 - std::string("https://...").size(), 'x');
  EXPECT_EQ("https://" + host + "...", PrintedLinkTarget("https://" + host + "/ path"));
  EXPECT_EQ("https://..." + host.substr(3) + "...",
            PrintedLinkTarget("https://x" + host + "/ path"));
}

TEST(LinkTarget, ShortensOnlyTargetsOfMoreThan200Bytes) {
  const std::string path(183, 'x');
  const std::string longest = "http://user@host/" + path;
  ASSERT_THAT(longest, SizeIs(200));
  EXPECT_EQ(longest, PrintedLinkTarget(longest));
  EXPECT_EQ("http://...@host/" + path + "x", PrintedLinkTarget(longest + "x"));
}

TEST(LinkTarget, ReadsASchemeOfAtMost20Characters) {
  const std::string user(300, 'x');
  const std::string scheme(20, 's');
  EXPECT_EQ(scheme + "://...@host/", PrintedLinkTarget(scheme + "://" + user + "@host/"));
  EXPECT_THAT(PrintedLinkTarget("s" + scheme + "://" + user + "@host/"),
              AllOf(StartsWith("s" + scheme + "://xxx"), EndsWith("xxx...")));
}

}  // namespace
}  // namespace ornwhatsnew
