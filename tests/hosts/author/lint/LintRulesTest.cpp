// Tests some rules of `lint` with several data files for each rule. LintCodesTest uses only one
// data file for each code.
#include <string>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/author/lint/LintTestFiles.h"

namespace hosts::author {
namespace {

using testing::Contains;
using testing::Not;

TEST(LintRules, FirstChangeWithOnlyASalienceIsNoHeader) {
  EXPECT_THAT(CodesOf(LintText(",MAP-7,,Headline,,,,,,Text\n")), Contains("header-missing"));
}

TEST(LintRules, FirstChangeOfAFeatureOfTheHostIsNoHeader) {
  const LintHost host = InstallLintHost(TestFile("host.json").native());
  const std::string text = ",MAP-7,,,,,,,,Text\n";
  EXPECT_THAT(CodesOf(LintDataFile("data.csv", text, &host)), Contains("header-missing"));
}

TEST(LintRules, TranslatedHeaderIsAHeader) {
  const std::string header = "Version,Gruppe,Vorgang,Rang,Frage,Ab,System,Verweis,Commit,Text\n";
  EXPECT_THAT(CodesOf(LintText(header + "4.3,MISC,,,,,,,,Text\n")),
              Not(Contains("header-missing")));
}

TEST(LintRules, NamesTheSeparatorOfAFileWithoutCommas) {
  for (const auto& [separator, name] :
       {std::pair(';', "semicolons"), std::pair('\t', "tabs"), std::pair('|', "vertical bars")}) {
    std::string text = kHeaderRows + "4.3,MISC,,,,,,,,Text\n";
    std::ranges::replace(text, ',', separator);
    const LintReport report = LintText(text);
    ASSERT_THAT(CodesOf(report), testing::ElementsAre("file-separator")) << name;
    EXPECT_THAT(report.findings.front().message, testing::HasSubstr(name));
  }
}

TEST(LintRules, TextWithAnOpenQuoteDoesNotContinueInAnotherChange) {
  EXPECT_THAT(CodesOf(LintText(kHeaderRows + "4.3,MISC,ORN-1,,,,,,,Fits a 27\" display\n"
                                             "4.3,MISC,ORN-2,,,,,,,Fits a 32\" display\n")),
              testing::ElementsAre("quotes-vanish", "quotes-vanish"));
}

TEST(LintRules, FindsQuotesThatVanishAfterAFieldInQuotes) {
  EXPECT_THAT(CodesOf(LintText(kHeaderRows + "4.3,MISC,\"ORN-1\",,,,,,,The \"start\" window\n")),
              testing::ElementsAre("quotes-vanish"));
}

TEST(LintRules, AWordThatIsNoQuestionIsNoRatingRequest) {
  for (const std::string word :
       {"yes", "y",  "true",  "x",  "1",    "on",     "ok",      "ja",    "oui",  "si",
        "no",  "n",  "false", "0",  "off",  "nein",   "non",     "none",  "null", "nil",
        "n/a", "na", "-",     "--", "rate", "rating", "request", "\u2714"}) {
    EXPECT_THAT(CodesOf(LintText(kHeaderRows + "4.3,MAP-7,ORN-1,," + word + ",,,,,Text\n")),
                Contains("rating-request-word"))
        << word;
  }
}

}  // namespace
}  // namespace hosts::author
