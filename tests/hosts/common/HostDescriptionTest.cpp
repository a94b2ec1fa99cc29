#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include <ornappsupport/analytics/SDMUsageLogger.h>
#include <ornappsupport/feature/FeatureService.h>
#include <ornappsupport/links/PanelLinks.h>
#include <orncore/appstatemanager/AppStateManager.h>
#include <orncore/config/ClientInfo.h>
#include <orncore/config/Localizer.h>
#include <orncore/debug/DebugDatabase.h>

#include "hosts/common/HostDescription.h"
#include "hosts/common/JsonReader.h"
#include "tests/hosts/common/CatalogBytes.h"
#include "tests/support/FakeHost.h"
#include "tests/support/Matchers.h"
#include "tests/support/TemporaryFolder.h"

namespace hosts::common {
namespace {

using test_support::IsText;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::StartsWith;

std::string HostErrorOf(std::string_view json) {
  try {
    ParseHostDescription(json, "host.json");
  } catch (const JsonError& error) {
    return error.what();
  }
  return "";
}

TEST(HostDescription, HasADefaultForEveryMember) {
  const HostDescription host = ParseHostDescription("{}", "host.json");
  EXPECT_EQ(host.clientVersion, "25.1");
  EXPECT_EQ(host.buildNumber, "42");
  EXPECT_EQ(host.platform, "Mac");
  EXPECT_FALSE(host.terminating);
  EXPECT_TRUE(host.usageLogging);
  EXPECT_FALSE(host.internalFeaturesAllowed);
  EXPECT_THAT(host.betaFeatures, IsEmpty());
  EXPECT_THAT(host.debug, IsEmpty());
  EXPECT_THAT(host.dictionary, IsEmpty());
  EXPECT_THAT(host.dictionaryFiles, IsEmpty());
}

TEST(HostDescription, ReadsEveryMember) {
  const HostDescription host = ParseHostDescription(
      R"({"clientVersion":"26","buildNumber":"","platform":"Win","terminating":true,
          "usageLogging":false,"internalFeaturesAllowed":true,
          "betaFeatures":[{"internalKey":"f","epicKey":"E","name":"N","description":"D",
                           "visibility":-2147483648,"enabled":true,"availableForUser":true}],
          "debug":{"d":"1"},"dictionary":{"$$$/a":"A"},"dictionaryFiles":["a.mo","b.mo"]})",
      "host.json");
  EXPECT_EQ(host.clientVersion, "26");
  EXPECT_EQ(host.buildNumber, "");
  EXPECT_EQ(host.platform, "Win");
  EXPECT_TRUE(host.terminating);
  EXPECT_FALSE(host.usageLogging);
  EXPECT_TRUE(host.internalFeaturesAllowed);
  ASSERT_EQ(host.betaFeatures.size(), 1U);
  const BetaFeatureDescription& feature = host.betaFeatures[0];
  EXPECT_EQ(feature.internalKey, "f");
  EXPECT_EQ(feature.epicKey, "E");
  EXPECT_EQ(feature.name, "N");
  EXPECT_EQ(feature.description, "D");
  EXPECT_EQ(feature.visibility, -2147483648);
  EXPECT_TRUE(feature.enabled);
  EXPECT_TRUE(feature.availableForUser);
  EXPECT_THAT(host.debug, ElementsAre(Pair("d", "1")));
  EXPECT_THAT(host.dictionary, ElementsAre(Pair("$$$/a", "A")));
  EXPECT_THAT(host.dictionaryFiles, ElementsAre("a.mo", "b.mo"));
}

TEST(HostDescription, HasADefaultForEveryFeatureMember) {
  const HostDescription host = ParseHostDescription(R"({"betaFeatures":[{}]})", "host.json");
  ASSERT_EQ(host.betaFeatures.size(), 1U);
  const BetaFeatureDescription& feature = host.betaFeatures[0];
  EXPECT_EQ(feature.internalKey + feature.epicKey + feature.name + feature.description, "");
  EXPECT_EQ(feature.visibility, 0);
  EXPECT_FALSE(feature.enabled);
  EXPECT_FALSE(feature.availableForUser);
}

TEST(HostDescription, HasTheDefaultsOfTheLibraryForEveryLink) {
  for (const char* json : {"{}", R"({"links":{}})"}) {
    const auto links = ParseHostDescription(json, "host.json").links;
    const ornappsupport::links::PanelLinks defaults;
    EXPECT_EQ(links.issueLink, defaults.issueLink);
    EXPECT_EQ(links.commitLink, defaults.commitLink);
    EXPECT_EQ(links.privacyPage, defaults.privacyPage);
    EXPECT_EQ(links.issuePrefix, defaults.issuePrefix);
  }
}

TEST(HostDescription, ReadsEveryLink) {
  const auto links = ParseHostDescription(
                         R"({"links":{"issueLink":"https://a.example/@0","commitLink":"",
                             "privacyPage":"https://c.example","issuePrefix":"\u00e9"}})",
                         "host.json")
                         .links;
  EXPECT_EQ(links.issueLink, u"https://a.example/@0");
  EXPECT_EQ(links.commitLink, u"");
  EXPECT_EQ(links.privacyPage, u"https://c.example");
  EXPECT_EQ(links.issuePrefix, u"\u00E9");
}

TEST(HostDescription, LimitsTheNumberOfFeatures) {
  const auto description = [](int features) {
    std::string text = R"({"betaFeatures":[{})";
    for (int i = 1; i < features; ++i) text += ",{}";
    return text + "]}";
  };
  EXPECT_EQ(HostErrorOf(description(20'000)), "");
  EXPECT_EQ(HostErrorOf(description(20'001)),
            "host.json: /betaFeatures: all arrays together have more than 20000 elements");
}

TEST(HostDescription, ErrorsNameTheFileThePathAndTheProblem) {
  const struct {
    std::string_view json;
    std::string_view location;
    std::string_view message;
  } cases[] = {
      {"", "host.json: line 1, column 1: ", "not valid JSON"},
      {"{\n\"platform\": Mac}", "host.json: line 2, column 13: ", "not valid JSON"},
      {"[]", "host.json: ", "expected an object, found an array"},
      {R"({"clientVersion":25.1})", "host.json: /clientVersion: ", "expected a string"},
      {R"({"buildNumber":42})", "host.json: /buildNumber: ", "found the number 42"},
      {R"({"terminating":"no"})", "host.json: /terminating: ", "expected true or false"},
      {R"({"usageLogging":null})", "host.json: /usageLogging: ", "found null"},
      {R"({"internalFeaturesAllowed":1})", "host.json: /internalFeaturesAllowed: ", "true"},
      {R"({"betaFeatures":{}})", "host.json: /betaFeatures: ", "expected an array"},
      {R"({"betaFeatures":[{},[]]})", "host.json: /betaFeatures/1: ", "expected an object"},
      {R"({"betaFeatures":[{},{"visibility":2147483648}]})",
       "host.json: /betaFeatures/1/visibility: ", "from -2147483648 to 2147483647"},
      {R"({"betaFeatures":[{"visibility":1.5}]})",
       "host.json: /betaFeatures/0/visibility: ", "found the number 1.5"},
      {R"({"betaFeatures":[{"visibilty":1}]})", "host.json: /betaFeatures/0: ",
       R"(unknown member "visibilty"; known members: "internalKey", "epicKey", "name")"},
      {R"({"betaFeatures":[{"name":"a","name":"b"}]})",
       "host.json: /betaFeatures/0: ", R"(duplicate member "name"; keep only one)"},
      {R"({"links":[]})", "host.json: /links: ", "expected an object, found an array"},
      {R"({"links":{"issue":""}})", "host.json: /links: ",
       R"(unknown member "issue"; known members: "issueLink", "commitLink")"},
      {R"({"links":{"issuePrefix":1}})", "host.json: /links/issuePrefix: ", "expected a string"},
      {R"({"links":{"issueLink":"http://a/@0"}})", "host.json: /links/issueLink: ",
       "expected an https URL with @0 after the host name, or an empty string, "
       "found the string \"http://a/@0\""},
      {R"({"links":{"commitLink":"https://a/"}})",
       "host.json: /links/commitLink: ", "with @0 after the host name"},
      {R"({"links":{"privacyPage":"a b"}})", "host.json: /links/privacyPage: ",
       R"(expected an https URL, or an empty string, found the string "a b")"},
      {R"({"debug":{"a":true}})", "host.json: /debug/a: ", "expected a string, found true"},
      {R"({"debug":[]})", "host.json: /debug: ", "expected an object whose values are strings"},
      {R"({"dictionary":{"$$$/a":1}})", "host.json: /dictionary/$$$~1a: ", "expected a string"},
      {R"({"dictionary":{"a":"","a":""}})", "host.json: /dictionary: ", "duplicate member"},
      {R"({"$schema":1})", "host.json: /$schema: ", "expected a string, found the number 1"},
      {R"({"betaFeatures":[{"$schema":""}]})", "host.json: /betaFeatures/0: ", "unknown member"},
      {R"({"clientVersion":"25\n1"})", "host.json: /clientVersion: ",
       R"(expected a string without control characters, found the string "25\n1")"},
      {R"({"buildNumber":"\u0085"})", "host.json: /buildNumber: ", "without control characters"},
      {R"({"platform":"Mac\u2028"})", "host.json: /platform: ", "without control characters"},
      {R"({"version":"25"})",
       "host.json: ", R"(unknown member "version"; known members: "clientVersion", "buildNumber")"},
      {R"({"platform":"a","platform":"b"})", "host.json: ", R"(duplicate member "platform")"},
      {R"({"state":{}})", "host.json: ", R"(unknown member "state")"},
      {R"({"callbacks":"both"})", "host.json: ", R"(unknown member "callbacks")"},
  };
  for (const auto& [json, location, message] : cases) {
    EXPECT_THAT(HostErrorOf(json),
                AllOf(StartsWith(std::string(location)), HasSubstr(std::string(message))))
        << json;
  }
}

TEST(HostDescription, OtherMembersMayHaveControlCharacters) {
  EXPECT_EQ(HostErrorOf(R"({"betaFeatures":[{"name":"\n"}],"debug":{"\t":"\t"},
                        "dictionary":{"$$$/a":"\n"}})"),
            "");
}

// The JSON schema in schema/ lists the same members. If you change the members here, change the
// schema too.
TEST(HostDescription, TheErrorForAnUnknownMemberListsAllMembers) {
  EXPECT_EQ(HostErrorOf(R"({"x":1})"),
            R"(host.json: unknown member "x"; known members: "clientVersion", "buildNumber", )"
            R"("platform", "terminating", "usageLogging", "internalFeaturesAllowed", )"
            R"("betaFeatures", "links", "debug", "dictionary", "dictionaryFiles", "$schema")");
}

TEST(HostDescription, AcceptsASchemaPathWithoutReadingTheFile) {
  EXPECT_EQ(ParseHostDescription(R"({"$schema":"/nowhere/x.json","platform":"Win"})", "host.json")
                .platform,
            "Win");
}

TEST(HostDescription, ReadsAFile) {
  const test_support::TemporaryFolder folder;
  EXPECT_EQ(ReadHostDescription(folder.Write("host 1.json", R"({"platform":"Win"})")).platform,
            "Win");
  const std::filesystem::path bad = folder.Write("bad.json", R"({"platform":1})");
  try {
    ReadHostDescription(bad);
    FAIL() << "accepted a number as the platform";
  } catch (const JsonError& error) {
    EXPECT_THAT(error.what(), StartsWith(bad.string() + ": /platform: expected a string"));
  }
}

TEST(HostDescription, AddsTheTranslationsOfItsDictionaryFiles) {
  const test_support::TemporaryFolder folder;
  folder.Write("texts/1.mo", CatalogBytes({Properties(),
                                           {InContext("$$$/a", "x"), "first file"},
                                           {InContext("$$$/b", "x"), "first file"}}));
  folder.Write("2.mo", CatalogBytes({Properties(),
                                     {InContext("$$$/b", "x"), "second file"},
                                     {InContext("$$$/c", "x"), "second file"}}));
  const std::filesystem::path file = folder.Write(
      "host.json", R"({"dictionary":{"$$$/a":"description"},"dictionaryFiles":["texts/1.mo",")" +
                       (folder.Path() / "2.mo").string() + R"("]})");
  EXPECT_THAT(ReadHostDescription(file).dictionary,
              ElementsAre(Pair("$$$/a", "description"), Pair("$$$/b", "first file"),
                          Pair("$$$/c", "second file")));
}

TEST(HostDescription, ReportsADictionaryFileThatCannotBeUsed) {
  const test_support::TemporaryFolder folder;
  const std::filesystem::path file = folder.Write("host.json", R"({"dictionaryFiles":["de.mo"]})");
  const std::string catalog = (folder.Path() / "de.mo").string();
  const auto errorOf = [&file]() -> std::string {
    try {
      ReadHostDescription(file);
    } catch (const JsonError& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_THAT(errorOf(), StartsWith("cannot open '" + catalog + "': No such file"));
  folder.Write("de.mo", "msgid");
  EXPECT_THAT(errorOf(),
              StartsWith("the file '" + catalog + "' is not a compiled gettext catalog"));
}

TEST(HostDescription, ReportsAFileThatCannotBeRead) {
  const test_support::TemporaryFolder folder;
  const std::filesystem::path files[] = {folder.Path() / "none.json", folder.Path()};
  for (const std::filesystem::path& file : files) {
    try {
      ReadHostDescription(file);
      FAIL() << "read " << file;
    } catch (const JsonError& error) {
      EXPECT_THAT(error.what(), StartsWith("cannot open '" + file.string() + "': "));
    }
  }
}

TEST(ReadHostMembers, ReplacesTheMembersThatTheObjectContains) {
  HostDescription host;
  ReadHostMembers(JsonReader(JsonDocument::Parse(
                      R"({"platform":"Win","debug":{"a":"1","b":"2"},"other":1,
                          "betaFeatures":[{"internalKey":"x"}]})",
                      "host.json")),
                  host);
  ReadHostMembers(
      JsonReader(JsonDocument::Parse(R"({"debug":{"b":"4"},"betaFeatures":[]})", "host.json")),
      host);
  EXPECT_EQ(host.platform, "Win");
  EXPECT_THAT(host.debug, ElementsAre(Pair("b", "4")));
  EXPECT_THAT(host.betaFeatures, IsEmpty());
}

/// The fake host of the base class resets the services after each test.
class InstallHostTest : public test_support::FakeHostTest {};

TEST_F(InstallHostTest, ConfiguresEveryService) {
  HostDescription host;
  host.clientVersion = "26.\xC3\xA9";
  host.buildNumber = "7";
  host.platform = "Win";
  host.terminating = true;
  host.usageLogging = false;
  host.internalFeaturesAllowed = true;
  host.links.issuePrefix = u"MAP";
  host.debug = {{"d", "1"}};
  host.dictionary = {{"$$$/a", "A^B"}};
  host_.SetDebugEntry("old", "entry");
  InstallHost(host);

  EXPECT_THAT(orncore::config::GetClientVersion(), IsText("26.\xC3\xA9"));
  EXPECT_THAT(orncore::config::GetClientBuildNumber(), IsText("7"));
  EXPECT_EQ(orncore::config::GetClientPlatform(), "Win");
  EXPECT_TRUE(orncore::appstatemanager::IsTerminating());
  EXPECT_FALSE(ornappsupport::analytics::SDMUsageLogger::IsLogging());
  EXPECT_TRUE(ornappsupport::feature::IsEntitlementSetToInternalFeaturesAllowed());
  EXPECT_EQ(ornappsupport::links::GetPanelLinks().issuePrefix, u"MAP");
  EXPECT_THAT(orncore::config::Localizer::Get().ZString("$$$/a=x"), IsText("A\xE2\x80\xA2"));
  EXPECT_EQ(host_.DebugEntry("d"), "1");
  EXPECT_EQ(host_.DebugEntry("old"), "");
}

TEST_F(InstallHostTest, BuildsTheFeatureTable) {
  HostDescription host;
  host.betaFeatures = {
      {.internalKey = "a", .epicKey = "E1", .name = "first", .description = "", .enabled = true},
      {.internalKey = "b", .epicKey = "E2", .name = "", .description = "", .visibility = 3},
      {.internalKey = "a",
       .epicKey = "E3",
       .name = "last",
       .description = "d",
       .availableForUser = true}};
  InstallHost(host);

  using namespace ornappsupport::feature;
  const BetaFeatureMap& table = GetConstBetaFeatureMap();
  ASSERT_EQ(table.size(), 2U);
  EXPECT_EQ(table.at("a").GetJiraEpicKey(), "E3");
  EXPECT_THAT(table.at("a").GetDisplayName(), IsText("last"));
  EXPECT_THAT(table.at("a").GetDisplayDescription(), IsText("d"));
  EXPECT_EQ(table.at("b").GetVisibility(), VisibilityInAllClientApps::kUnlabelled);
  EXPECT_FALSE(IsFeatureEnabled("a"));
  EXPECT_TRUE(IsAvailableForUserEnablement("a"));
  EXPECT_FALSE(IsAvailableForUserEnablement("b"));
}

}  // namespace
}  // namespace hosts::common
