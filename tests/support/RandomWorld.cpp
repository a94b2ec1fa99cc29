#include "tests/support/RandomWorld.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include <ornappsupport/links/PanelLinks.h>

#include "tests/support/TemplateKeys.h"

namespace test_support {
namespace {

constexpr const char* kIDs[] = {"EPIC-1",     "EPIC-1",   "epic-1", "EPIC-2",     "ORN-7",
                                "orn-12",     "STORY-9",  "MISC",   "BUGFIX",     "bugfix",
                                "INTERNAL",   "Internal", "",       "Unreviewed", "UNREVIEWED",
                                "\xC3\x89-1", "none"};
constexpr const char* kSaliences[] = {"",
                                      "",
                                      "",
                                      "Headline",
                                      "DETAIL",
                                      "HideBetaFeature",
                                      "HideBetaFeatureFromExternal",
                                      "UnhideBetaFeature",
                                      "Unreviewed",
                                      "RatingHidesBetaFeatureDescription",
                                      "Loud"};
constexpr const char* kRatings[] = {"", "", "RequestRating", "REQUESTRATING", "How was it?"};
constexpr const char* kVersions[] = {"", "", "24.0.0.1", "25.1.0.42", "25.2", "26.0.0.0", "x.y"};
constexpr const char* kPlatforms[] = {"", "", "Mac", "MAC", "win", "Linux"};
constexpr const char* kURLs[] = {"", "", "https://a.example/1", "https://a.example/2",
                                 "http://b.example"};
constexpr const char16_t* kLinkTemplates[] = {u"", u"https://a.example/@0/@0",
                                              u"https://a.example/?key=@0#@"};
constexpr const char16_t* kIssuePrefixes[] = {u"", u"EPIC-1", u"story-", u"\u00E9"};
constexpr const char* kTexts[] = {"",
                                  "",
                                  "Faster export",
                                  "Commas, too",
                                  "$$$/text/one=One^}s",
                                  "$$$/private/text/two=Two",
                                  "$$$/text/three",
                                  "\xE6\x97\xA5\xE6\x9C\xAC",
                                  "\xF0\x9F\x98\x80"};
constexpr const char* kTranslatedTexts[] = {"$$$/text/one", "$$$/private/text/two"};

}  // namespace

RandomWorld::RandomWorld(RandomSource& random) : random_(random) {
  AddFeatures();
  ChangeHost();
  if (random_.OneIn(3)) Translate();
  if (random_.Flip()) {
    host_.State().Put("WhatsNew.LastVersionSeenWhatsNew", random_.Pick(kVersions));
    host_.State().Put("WhatsNew.AllVersionSeenWhatsNew", "24.0.0.2  " + random_.HostileText(3));
    host_.State().Put("WhatsNew.AllSeenItems", random_.HostileText(4));
  }
  if (random_.OneIn(3)) SetLinks();
}

void RandomWorld::ChangeHost() {
  host_.SetInternalFeaturesAllowed(random_.Flip());
  host_.SetUsageLogging(!random_.OneIn(4));
  host_.SetTerminating(random_.OneIn(8));
  host_.SetPlatform(random_.OneIn(4) ? "Win" : "Mac");
  host_.ShowAllOffFeatures(random_.OneIn(3));
  host_.ShowAllUnlockCodes(random_.OneIn(3));
  for (const std::string& key : internalKeys_) {
    host_.SetFeatureEnabled(key, random_.Flip());
    host_.SetFeatureAvailableForUser(key, random_.OneIn(4));
  }
}

std::string RandomWorld::DataFile() {
  std::string text = random_.OneIn(4) ? "\xEF\xBB\xBF" : "";
  text += "version,grouping,story,salience,rating,first,platform,url,sha,description";
  for (std::size_t rows = random_.Below(20); rows > 0; --rows) {
    text += random_.OneIn(4) ? "\r\n" : "\n";
    text += Row();
  }
  return text;
}

std::u16string RandomWorld::Placeholder() {
  return random_.Flip() ? std::u16string() : random_.HostileUTF16(5);
}

std::string RandomWorld::Key() {
  return random_.Pick(kIDs);
}

void RandomWorld::AddFeatures() {
  for (std::size_t count = random_.Below(7); count > 0; --count) {
    std::string key = "feature" + std::to_string(random_.Below(100));
    host_.AddFeature({.internalKey = key,
                      .epicKey = random_.Pick(kIDs),
                      .name = Text(),
                      .description = Text(),
                      .visibility = static_cast<std::int32_t>(random_.Below(6)) - 1});
    internalKeys_.push_back(std::move(key));
  }
}

void RandomWorld::Translate() {
  const auto translate = [this](const char* key) {
    if (random_.OneIn(3)) host_.AddTranslation(key, random_.HostileText(4));
  };
  std::ranges::for_each(kTranslatedTexts, translate);
  std::ranges::for_each(kTemplateKeys, translate);
}

void RandomWorld::SetLinks() {
  ornappsupport::links::PanelLinks links;
  links.issueLink = random_.Pick(kLinkTemplates);
  links.commitLink = random_.Pick(kLinkTemplates);
  links.privacyPage = random_.Flip() ? u"" : u"https://a.example/privacy";
  links.issuePrefix = random_.OneIn(4) ? random_.HostileUTF16(2) : random_.Pick(kIssuePrefixes);
  if (!ornappsupport::links::SetPanelLinks(links)) throw std::logic_error("links are not valid");
}

std::string RandomWorld::Text() {
  return random_.OneIn(5) ? random_.HostileText(6) : random_.Pick(kTexts);
}

std::string RandomWorld::Field(const char* usual) {
  std::string field = random_.OneIn(20) ? random_.HostileText(4) : usual;
  if (random_.OneIn(8) || field.find(',') != std::string::npos) field = '"' + field + '"';
  return field;
}

std::string RandomWorld::Row() {
  if (random_.OneIn(12)) return random_.HostileText(12);
  if (random_.OneIn(12)) return std::string(random_.Pick(kVersions)) + ",Changes-Since";
  const char* const usual[] = {
      random_.Pick(kVersions),  random_.Pick(kIDs),     random_.Pick(kIDs),
      random_.Pick(kSaliences), random_.Pick(kRatings), random_.Pick(kVersions),
      random_.Pick(kPlatforms), random_.Pick(kURLs),    random_.Flip() ? "" : "abc123"};
  std::string row;
  for (const char* value : usual) row += Field(value) + ',';
  // Call `Field` and `Text` in separate statements. C++ does not specify the order in which the
  // operands of "+" are evaluated. In one statement, the random row would depend on the compiler.
  row += Field("");
  row += Text();
  if (random_.OneIn(15)) row += ",";
  return row;
}

}  // namespace test_support
