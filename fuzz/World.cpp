#include "fuzz/World.h"

#include "fuzz/Input.h"
#include "tests/support/TemplateKeys.h"

namespace fuzz {

using test_support::FakeFeature;

namespace {

// Together, the features have every visibility from 0 to 3 and an unknown visibility. Two of them
// share an epic key, one has an empty epic key, and one has the key of the section MISC in lower
// case. One has an epic key and a name with non-ASCII letters.
const FakeFeature kFeatures[] = {
    {.internalKey = "export", .epicKey = "EPIC-1", .name = "Export", .description = "Hands on"},
    {.internalKey = "keys",
     .epicKey = "EPIC-2",
     .name = "$$$/keys/name=Keys",
     .description = "$$$/private/keys/text=Asks ^[one^]#{endl}by one",
     .visibility = 1},
    {.internalKey = "late", .epicKey = "EPIC-2", .name = "A second switch"},
    {.internalKey = "map", .epicKey = "ORN-7", .name = "$$$/map/name=", .visibility = 2},
    {.internalKey = "loans", .epicKey = "STORY-9", .name = "Loans", .visibility = 3},
    {.internalKey = "bare", .epicKey = "", .name = "Without an epic", .description = "Still"},
    {.internalKey = "light",
     .epicKey = "\xC3\x89-1",
     .name = "\xC3\x89"
             "clair",
     .description = "\xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80",
     .visibility = 4},
    {.internalKey = "odd", .epicKey = "misc", .name = "Named like a section"},
};

}  // namespace

World::World(std::string_view switches) : options_(Switch(switches, 0) & 0x1F) {
  const unsigned host = Switch(switches, 1);
  host_.SetInternalFeaturesAllowed((host & 0x01) != 0);
  host_.SetUsageLogging((host & 0x02) == 0);
  host_.SetTerminating((host & 0x04) != 0);
  host_.ShowAllOffFeatures((host & 0x08) != 0);
  host_.ShowAllUnlockCodes((host & 0x10) != 0);
  if ((host & 0x20) != 0) host_.SetPlatform("Win");
  AddFeatures(Switch(switches, 2), Switch(switches, 3));
  const unsigned texts = Switch(switches, 4);
  if ((texts & 0x01) != 0) placeholder_ = u"[rate \xD83D\xDE00]";
  if ((texts & 0x02) != 0) Translate();
}

void World::TranslateTemplate(unsigned number, std::string_view translation) {
  const auto& keys = test_support::kTemplateKeys;
  host_.AddTranslation(keys[number % keys.size()], translation);
}

void World::AddFeatures(unsigned off, unsigned available) {
  unsigned bit = 1;
  for (FakeFeature feature : kFeatures) {
    feature.enabled = (off & bit) == 0;
    feature.availableForUser = (available & bit) != 0;
    host_.AddFeature(feature);
    bit <<= 1;
  }
}

void World::Translate() {
  host_.AddTranslation("$$$/keys/name", "Schl\xC3\xBCssel");
  host_.AddTranslation("$$$/private/keys/text", "");
  host_.AddTranslation("$$$/text/one", "@0 ^{eins^} @1");
  host_.AddTranslation("$$$/ornwhatsnew/Feature/Detail/OS/displaytemplate", "(nur @0, @0) ");
  host_.AddTranslation("$$$/ornwhatsnew/Feature/Detail/VersionRange/displaytemplate", " @1<@0");
  host_.AddTranslation("$$$/private/ornwhatsnew/Feature/Newline", "#{endl}\xF0\x9F\x98\x80");
}

}  // namespace fuzz
