#include "tests/faults/FaultWorld.h"

#include <map>
#include <sstream>
#include <string_view>

#include "tests/support/Builders.h"
#include "tests/support/Matchers.h"

namespace faults {
namespace {

using ornwhatsnew::DisplayOptions;
using ornwhatsnew::FeatureListData;
using ornwhatsnew::FeatureListItem;
using test_support::DataFile;

constexpr unsigned kAllOptions = 32;
constexpr std::string_view kOldVersion = "24.0.0.1000000000000001";
// The number of old versions that the state contains in addition to `kOldVersion`. A list allocates
// memory for each version when it reads its state.
constexpr int kOldVersions = 8;

DataFile SeenFile() {
  DataFile file;
  file.ChangesSince(kOldVersion)
      .Row({.version = "25.1.0.1000000000000042",
            .groupingID = "EPIC-7",
            .storyID = "orn-9000000000000000",
            .ratingRequest = "RequestRating",
            .platform = "Mac",
            .url = "https://help.tarsa.example/export",
            .sha = "0123456789abcdef0123456789abcdef",
            .description = "All exports run in the background now"})
      .Row({.version = "25.1",
            .groupingID = "EPIC-7",
            .ratingRequest = "How do you like the new export?",
            .url = "https://help.tarsa.example/again",
            .description = "$$$/ornwhatsnew/Change/Localized=A text that translators can replace"})
      .Row({.version = "25.1",
            .groupingID = "ORN-1000000000000000",
            .salience = "RatingHidesBetaFeatureDescription",
            .ratingRequest = "RequestRating",
            .firstVersion = "24.0",
            .description = "\xC3\x84nderungen, die nicht ASCII sind, \xE2\x80\x94 und lang"})
      .Row({.version = "25.1",
            .groupingID = "BUGFIX",
            .salience = "A Salience That Does Not Exist",
            .platform = "A Platform That Does Not Exist",
            .url = "http://help.tarsa.example/malformed",
            .description = "Crashes on full disks, with an ill-formed byte \xFF in the text"});
  return file;
}

DataFile LoadedFile() {
  DataFile file = SeenFile();
  file.Row({.version = "25.2",
            .groupingID = "EPIC-8-in-development",
            .description = "A new change of a feature in development"})
      .Row({.version = "25.2",
            .groupingID = "EPIC-9-for-internal-users",
            .salience = "HideBetaFeatureFromExternal",
            .description = "A new change for internal users only"})
      .Row({.version = "25.2",
            .groupingID = "EPIC-unknown-\xC3\x89PIC-unknown",
            .description = "A new change without a matching item"})
      .Row({.version = "25.2",
            .groupingID = "MISC",
            .salience = "Unreviewed",
            .description = "A new change that nobody has reviewed"})
      .Line("a,row,of,the,wrong,shape");
  return file;
}

void Describe(std::ostream& out, const FeatureListItem& item) {
  out << item.FeatureJiraIDKey() << '|' << item.BetaFeatureInternalKey() << '|'
      << static_cast<int>(item.GetVisibility()) << '|' << item.IsItemInternalOverride() << '|'
      << item.GetFeatureName() << '|' << item.GetFeatureDescription() << '|'
      << item.GetFeatureViewMoreURL() << '|' << item.GetCustomRatingStr() << '\n';
  for (const auto& change : item.GetAllChanges()) {
    out << "  " << change->GetItemSeenGuid().AsUTF8String() << ' '
        << change->GetItemRatedGuid().AsUTF8String() << ' ' << change->HasDuplicateURL()
        << change->DetailInternalCouldNotMatchBetaFeature() << ' ' << change->GetDescription()
        << '\n';
  }
}

void Describe(std::ostream& out, const test_support::Display& display) {
  out << display.text << '\n';
  const std::map sortedRuns(display.runs.begin(), display.runs.end());
  for (const auto& [style, runs] : sortedRuns) {
    out << static_cast<int>(style) << ':';
    for (const auto& [range, text] : runs) {
      out << ' ' << range.first << '+' << range.second << '=' << orncore::string::UTF16to8(text);
    }
    out << '\n';
  }
  const std::map sortedItems(display.ratingItems.begin(), display.ratingItems.end());
  for (const auto& [key, item] : sortedItems) Describe(out, *item);
}

void Describe(std::ostream& out, const test_support::FakeStateStore& store) {
  for (const auto& [key, text] : store.AllTexts()) out << key << '=' << text << '\n';
}

}  // namespace

std::string SeenData() {
  return SeenFile().Text();
}

std::string LoadedData() {
  return LoadedFile().Text();
}

std::string LaterData() {
  DataFile file = LoadedFile();
  file.ChangesSince("25.1.0.1000000000000042")
      .Row({.version = "25.3",
            .groupingID = "EPIC-7",
            .description = "A change that only the later file has"});
  return file.Text();
}

FaultHost::FaultHost() {
  SetClientVersion("25.3.0");
  SetBuildNumber("1000000000000042");
  SetInternalFeaturesAllowed(true);
  ShowAllUnlockCodes(true);
  AddTranslation("$$$/ornwhatsnew/Feature/Translated",
                 "Eine \xC3\x9C"
                 "bersetzung#{mdash}nicht kurz, auch nicht in UTF-16");
  AddFeature({.internalKey = "feature.export.for.everybody",
              .epicKey = "EPIC-7",
              .name = "Export of everything",
              .description = "Exports all documents of a project"});
  AddFeature({.internalKey = "feature.own.issue.of.the.maker",
              .epicKey = "ORN-1000000000000000",
              .name = "$$$/ornwhatsnew/Feature/Translated=The default is not used",
              .description = "$$$/ornwhatsnew/Feature/Default=The default text is used here"});
  AddFeature({.internalKey = "feature.in.development.yet",
              .epicKey = "EPIC-8-in-development",
              .name = "Dark mode in every window",
              .visibility = 2});
  AddFeature({.internalKey = "feature.for.internal.users",
              .epicKey = "EPIC-9-for-internal-users",
              .name = "Features of the internal users",
              .visibility = 1});
  AddFeature({.internalKey = "feature.switched.off.by.user",
              .epicKey = "EPIC-10-available-to-users",
              .name = "Available, and switched off",
              .visibility = 3,
              .enabled = false,
              .availableForUser = true});

  AddFeature({.internalKey = "feature.whose.key.resembles.a.section",
              .epicKey = "INTERN\xC3\x84L, which is no section",
              .name = "The key resembles the key of a section"});

  std::string versions(kOldVersion);
  for (int i = 0; i < kOldVersions; ++i) versions += " 23.0." + std::to_string(i);
  State().Put("WhatsNew.AllVersionSeenWhatsNew", versions);
  FeatureListData list(SeenData(), Getter(), Setter());
  test_support::Format(list);
  seenState_ = State().AllTexts();
}

World::World(const FaultHost& host) {
  store.Replace(host.SeenState());
  list = std::make_unique<FeatureListData>(LoadedData(), store.Getter(), store.Setter());
}

std::string World::Snapshot() const {
  std::ostringstream out;
  for (const std::string& key : list->GetOrderedFeatureKeys()) {
    const auto found = list->GetFeatureItems().find(key);
    const bool isItem = found != list->GetFeatureItems().end() && found->second != nullptr;
    if (isItem) Describe(out, *found->second);
    if (!isItem) out << key << " without an item\n";
  }
  for (unsigned bits = 0; bits < kAllOptions; ++bits) {
    out << list->IsAnythingNew(DisplayOptions(static_cast<unsigned char>(bits)));
  }
  out << list->IsAnythingNeedingRating() << '\n' << list->GetNewSeenState() << '\n';
  Describe(out, store);
  return out.str();
}

std::string World::SnapshotsWhileUsed() {
  std::ostringstream out;
  out << Snapshot();
  Describe(out, test_support::Format(*list, ornwhatsnew::kShowOnlyNew));
  out << Snapshot();
  Describe(out, test_support::Format(*list, ornwhatsnew::kRatingView, "\tRate it"));
  list->MarkItemHasBeenRated("EPIC-7");
  out << Snapshot();
  list->InitWithData(SeenData());
  out << Snapshot();
  Describe(out, test_support::Format(*list));
  out << Snapshot();
  return out.str();
}

}  // namespace faults
