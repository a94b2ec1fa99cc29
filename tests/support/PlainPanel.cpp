#include "tests/support/PlainPanel.h"

#include <algorithm>
#include <ostream>
#include <set>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/config/ClientInfo.h>

#include "tests/support/PlainText.h"

namespace test_support {

using ornwhatsnew::FeatureListData;
using ornwhatsnew::RatingMap;

namespace feature = ornappsupport::feature;

namespace {

constexpr char kSeenKey[] = "WhatsNew.AllSeenItems";
constexpr char kLastVersionKey[] = "WhatsNew.LastVersionSeenWhatsNew";
constexpr char kVersionsKey[] = "WhatsNew.AllVersionSeenWhatsNew";

std::string FullClientVersion() {
  std::string version = PlainUTF16to8(orncore::config::GetClientVersion());
  if (std::ranges::count(version, '.') == 1) version += ".0";
  return version + "." + PlainUTF16to8(orncore::config::GetClientBuildNumber());
}

bool IsUnlockedForOrdering(const PlainItem& item) {
  const auto& table = feature::GetConstBetaFeatureMap();
  const auto entry = table.find(item.internalKey);
  if (entry == table.end() || !feature::IsFeatureEnabled(item.internalKey.c_str())) return false;
  const auto visibility = static_cast<std::int32_t>(entry->second.GetVisibility());
  return visibility == 0 ||
         (visibility == 1 && !feature::IsEntitlementSetToInternalFeaturesAllowed());
}

template <class Elements>
std::string Join(const Elements& elements) {
  std::string text;
  for (const std::string& element : elements) {
    if (!text.empty()) text += " ";
    text += element;
  }
  return text;
}

std::string DifferenceOf(const ornwhatsnew::FeatureListItem& item, const PlainItem& expected) {
  if (item.GetItemSeenGuid() != expected.Seen()) return "the seen identity";
  if (item.GetItemRatedGuid() != expected.Rated()) return "the rated identity";
  if (item.IsItemInternalOverride() != expected.internalOverride) return "the internal override";
  if (static_cast<std::int32_t>(item.GetVisibility()) != expected.visibility) {
    return "the visibility";
  }
  if (item.GetBetaFeatureInternalKey() != expected.internalKey) return "the internal key";
  if (item.GetFeatureName() != expected.name) return "the name";
  if (item.GetFeatureDescription() != expected.description) return "the description";
  if (item.GetFeatureViewMoreURL() != expected.viewMoreURL) return "the link";
  if (item.GetAllChanges().size() != expected.changes.size()) return "the number of changes";
  for (std::size_t i = 0; i < expected.changes.size(); ++i) {
    if (PlainCopy(*item.GetAllChanges()[i]) != expected.changes[i]) return "a change";
  }
  return {};
}

PlainRatingRecord RecordOf(const ornwhatsnew::FeatureListItem& item) {
  return {.internalKey = item.GetBetaFeatureInternalKey(),
          .name = item.GetFeatureName(),
          .description = item.GetFeatureDescription(),
          .customRating = item.GetCustomRatingStr(),
          .visibility = static_cast<std::int32_t>(item.GetVisibility())};
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const PanelOutcome& outcome) {
  stream << "text:\n" << PlainUTF16to8(outcome.text) << "\nruns:\n";
  std::map<int, std::vector<ornwhatsnew::StyleRun>> runs;
  for (const auto& [style, ofStyle] : outcome.runs) runs[static_cast<int>(style)] = ofStyle;
  for (const auto& [style, ofStyle] : runs) {
    for (const auto& [range, text] : ofStyle) {
      stream << "  " << style << ": " << range.first << '+' << range.second << " \""
             << PlainUTF16to8(text) << "\"\n";
    }
  }
  for (const auto& [key, record] : outcome.ratingItems) {
    stream << "rating " << key << ": " << record.internalKey << " | " << record.name << " | "
           << record.description << " | " << record.customRating << " | " << record.visibility
           << '\n';
  }
  for (const auto& [key, value] : outcome.writes)
    stream << "write " << key << ": " << value << '\n';
  return stream;
}

PanelOutcome FormatWithLibrary(FeatureListData& list, FakeStateStore& state, unsigned options,
                               const std::u16string& ratingPlaceholder) {
  state.TakeWrites();
  PanelOutcome outcome;
  const auto ratingItems = std::make_shared<RatingMap>();
  outcome.text = list.GetFormattedTextForDisplay(static_cast<unsigned char>(options),
                                                 ratingPlaceholder, outcome.runs, ratingItems);
  for (const auto& [key, item] : *ratingItems) outcome.ratingItems[key] = RecordOf(*item);
  outcome.writes = state.TakeWrites();
  return outcome;
}

std::map<std::string, PlainVisibility> ExplainedVisibilities(const FeatureListData& list,
                                                             unsigned options) {
  std::map<std::string, PlainVisibility> visibilities;
  for (const auto& explained : list.ExplainVisibility(static_cast<unsigned char>(options))) {
    PlainVisibility& visibility = visibilities[explained.item->FeatureJiraIDKey()];
    visibility.isItemShown = explained.hidingRules.empty();
    for (const auto& change : explained.changes) {
      visibility.areChangesShown.push_back(change.hidingRules.empty());
    }
  }
  return visibilities;
}

std::string FirstDifference(const FeatureListData& list, const PlainPanel& plain) {
  const auto& order = list.GetOrderedFeatureKeys();
  if (order != plain.Order()) return "the order of the keys";
  const auto& items = list.GetFeatureItems();
  if (items.size() != plain.AllItems().size()) return "the number of items";
  for (const auto& [key, expected] : plain.AllItems()) {
    const auto found = items.find(key);
    if (found == items.end()) return "the item " + key + " is missing";
    if ((found->second != nullptr) != expected.has_value()) return "the empty entry " + key;
    if (!expected) continue;
    const std::string difference = DifferenceOf(*found->second, *expected);
    if (!difference.empty()) return difference + " of the item " + key;
  }
  return {};
}

PlainPanel::PlainPanel(Texts& store) : store_(store), currentVersion_(FullClientVersion()) {}

void PlainPanel::Load(const std::string& dataText) {
  ReadState();
  BubbleUnlocked();
  items_.clear();
  order_.clear();
  MergeFeatures();
  ParseRows(dataText);
  BubbleUnlocked();
}

bool PlainPanel::IsAnythingNew(unsigned options) const {
  return std::ranges::any_of(order_, [&](const std::string& key) {
    const auto found = items_.find(key);
    return found != items_.end() && found->second &&
           found->second->IsShown(options, seen_, versions_);
  });
}

std::map<std::string, PlainVisibility> PlainPanel::Visibilities(unsigned options) const {
  std::map<std::string, PlainVisibility> visibilities;
  for (const auto& [key, item] : items_) {
    if (!item) continue;
    PlainVisibility& visibility = visibilities[key];
    visibility.isItemShown = item->IsShown(options, seen_, versions_);
    for (const PlainChange& change : item->changes) {
      visibility.areChangesShown.push_back(change.IsShown(options, seen_, versions_));
    }
  }
  return visibilities;
}

void PlainPanel::MarkItemHasBeenRated(const std::string& key) {
  const PlainItem* const item = Find(key);
  if (PlainIsSection(key) || item == nullptr) return;
  seen_.insert(item->Rated());
  store_[kSeenKey] = SeenState();
}

std::string PlainPanel::Stored(const std::string& key) const {
  const auto found = store_.find(key);
  return found == store_.end() ? std::string() : found->second;
}

void PlainPanel::ReadState() {
  lastVersion_ = Stored(kLastVersionKey);
  versions_.clear();
  if (const std::string text = Stored(kVersionsKey); !text.empty()) {
    for (const std::string& version : PlainSplit(text, ' ')) versions_.insert(version);
  }
  versions_.insert(currentVersion_);
  seen_.clear();
  newlySeen_.clear();
  if (const std::string text = Stored(kSeenKey); !text.empty()) {
    for (const std::string& element : PlainSplit(text, ' ')) seen_.emplace(element);
  }
}

void PlainPanel::MergeFeatures() {
  std::set<std::pair<std::string, std::string>> names;
  for (const auto& [internalKey, beta] : feature::GetConstBetaFeatureMap()) {
    const PlainItem item{.groupingKey = beta.GetJiraEpicKey(),
                         .internalKey = internalKey,
                         .visibility = static_cast<std::int32_t>(beta.GetVisibility()),
                         .name = PlainUTF16to8(beta.GetDisplayName()),
                         .description = PlainUTF16to8(beta.GetDisplayDescription())};
    items_.try_emplace(item.groupingKey, item);
    order_.push_back(item.groupingKey);
    names.emplace(item.name, item.groupingKey);
  }
  for (auto pair = names.rbegin(); pair != names.rend(); ++pair) {
    order_.remove(pair->second);
    order_.push_front(pair->second);
  }
  EnsureSection("MISC", "$$$/ornwhatsnew/SectionKey/Miscellaneous=Miscellaneous");
  EnsureSection("BUGFIX", "$$$/ornwhatsnew/SectionKey/BugFixes=Bug fixes");
  EnsureSection("INTERNAL", "$$$/ornwhatsnew/SectionKey/Internal=Internal notes");
  EnsureSection("UNREVIEWED", "$$$/ornwhatsnew/SectionKey/Unreviewed=Unreviewed");
}

void PlainPanel::EnsureSection(const std::string& key, const std::string& name) {
  if (items_.contains(key)) return;
  items_[key] = PlainItem{.groupingKey = key, .name = name};
  order_.push_back(key);
}

void PlainPanel::ParseRows(const std::string& dataText) {
  std::vector<std::string> values(10);
  std::vector<std::string> touched;
  int counted = 0;
  for (const std::string& row : PlainCut(dataText, "\n", "")) {
    const std::vector<std::string> fields = PlainFields(row);
    for (std::size_t i = 0; i < fields.size() && i < 10; ++i) values[i] = fields[i];
    const bool special = PlainEqualIgnoringCase(values[1], "Changes-Since");
    const bool counts = special || (fields.size() == 10 && !values[1].empty());
    if (!counts) continue;
    if (counted++ < 1) {
      if (values[0].starts_with("\xEF\xBB\xBF")) values[0].erase(0, 3);
    } else if (special) {
      changesSince_ = values[0];
    } else {
      AddChange(values, touched);
    }
  }
  touched.emplace_back("UNREVIEWED");
  for (const std::string& key : touched) {
    order_.remove(key);
    order_.push_back(key);
  }
}

void PlainPanel::AddChange(const std::vector<std::string>& values,
                           std::vector<std::string>& touched) {
  PlainChange change{.description = values[9],
                     .versionAdded = values[0],
                     .epic = PlainLower8(values[1]),
                     .story = PlainLower8(values[2]),
                     .salience = PlainLower8(values[3]),
                     .firstVersion = PlainLower8(values[5]),
                     .platform = PlainLower8(values[6]),
                     .ratingRequest = values[4],
                     .url = values[7],
                     .sha = values[8]};
  PlainItem* item = Find("INTERNAL");
  if (!PlainEqualIgnoringCase(values[1], "INTERNAL")) {
    item = Find(values[2]);
    if (item == nullptr) item = Find(values[1]);
  }
  const bool unreviewed = PlainEqualIgnoringCase(change.salience, "Unreviewed");
  if (unreviewed || item == nullptr) {
    if (item == nullptr) change.unmatched = true;
    item = Find(unreviewed ? "UNREVIEWED" : "INTERNAL");
  }
  if (item == nullptr) return;
  item->Add(std::move(change));
  if (PlainIsSection(item->groupingKey)) return;
  if (std::ranges::find(touched, item->groupingKey) == touched.end()) {
    touched.push_back(item->groupingKey);
  }
}

void PlainPanel::BubbleUnlocked() {
  std::vector<std::string> unlocked;
  for (const std::string& key : order_) {
    const auto& item = items_[key];
    if (item && IsUnlockedForOrdering(*item)) unlocked.push_back(key);
  }
  for (auto key = unlocked.rbegin(); key != unlocked.rend(); ++key) {
    order_.remove(*key);
    order_.push_front(*key);
  }
  order_.remove("UNREVIEWED");
  order_.emplace_front("UNREVIEWED");
}

PlainItem* PlainPanel::Find(const std::string& key) {
  const auto found = items_.find(key);
  return found == items_.end() || !found->second ? nullptr : &*found->second;
}

std::string PlainPanel::SeenState() const {
  std::set<std::string> texts;
  for (const auto& guid : seen_) texts.insert(guid.AsUTF8String());
  for (const auto& guid : newlySeen_) texts.insert(guid.AsUTF8String());
  return Join(texts);
}

void PlainPanel::Persist(const std::string& key, const std::string& value, PanelOutcome& outcome) {
  store_[key] = value;
  outcome.writes.emplace_back(key, value);
}

}  // namespace test_support
