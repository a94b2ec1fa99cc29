#include <ornwhatsnew/FeatureListData.h>

#include <cassert>
#include <utility>
#include <vector>

#include <orncore/config/InitializerRegistrar.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/string/Conversion.h>
#include <ornui/utility/ResourceManager.h>
#include <ornwhatsnew/WhatsNewTypes.h>

#include "ornwhatsnew/src/ValidateCommand.h"
#include "ornwhatsnew/src/panel/Localization.h"

namespace ornwhatsnew {
namespace {

using orncore::debug::DebugDatabase;

// Here and not beside the command, because a static library only brings along what is asked for,
// and every host asks for the list.
const orncore::config::InitializerRegistrar kRegistration(
    "ornwhatsnew.FeatureListData", orncore::config::EInitializerContextFlags::kConsole,
    RegisterValidateCommand, UnregisterValidateCommand);

UTF8String LoadDataText(const UTF16String& path, const ornui::utility::ResourceManager& resources) {
  std::vector<unsigned char> bytes;
  // Whether the resource was found does not matter: without it the list has no changes.
  resources.LoadResource(path, u"csv", bytes);
  return {bytes.begin(), bytes.end()};
}

}  // namespace

FeatureListData::FeatureListData(StateGetter getter, StateSetter setter, UTF8String currentVersion)
    : currentVersion_(std::move(currentVersion)),
      stateGetter_(std::move(getter)),
      stateSetter_(std::move(setter)) {}

FeatureListData::FeatureListData(StateGetter getter, StateSetter setter)
    : FeatureListData(std::move(getter), std::move(setter),
                      orncore::string::UTF16to8(GetFullClientVersionString())) {
  // Half a store would read what was never written, so one callback is as good as none.
  if (stateGetter_ && stateSetter_) return;
  stateGetter_ = [](const UTF8String& key) { return DebugDatabase::Instance().GetEntry(key); };
  stateSetter_ = [](const UTF8String& key, const UTF8String& value) {
    DebugDatabase::Instance().SetEntry(key, value);
  };
}

FeatureListData::FeatureListData(const UTF8String& dataText, StateGetter getter, StateSetter setter)
    : FeatureListData(std::move(getter), std::move(setter)) {
  InitWithData(dataText);
}

FeatureListData::FeatureListData(const UTF16String& path,
                                 const ornui::utility::ResourceManager* resources,
                                 StateGetter getter, StateSetter setter)
    : FeatureListData(std::move(getter), std::move(setter)) {
  InitWithData(LoadDataText(path, *resources));
}

FeatureListData::~FeatureListData() {
  assert(walks_ == 0);
  assert(callbacks_ == 0);
}

void FeatureListData::InitWithData(const UTF8String& dataText) {
  assert(walks_ == 0);
  // Built beside this list and put in its place when nothing can fail any more: a host whose reload
  // fails keeps the list that it has.
  FeatureListData rebuilt([this](const UTF8String& key) { return AskHost(key); },
                          [](const UTF8String&, const UTF8String&) {}, currentVersion_);
  rebuilt.changesSinceVersion_ = changesSinceVersion_;
  rebuilt.RefreshInternalSeenState();
  rebuilt.ParseBetaFeatures();
  rebuilt.ParseWhatsNewData(dataText);
  rebuilt.BubbleUnlockedItemsToTheTop();
  SwapContent(rebuilt);
}

void FeatureListData::SwapContent(FeatureListData& other) noexcept {
  featureItems_.swap(other.featureItems_);
  orderedKeys_.swap(other.orderedKeys_);
  seenGuids_.swap(other.seenGuids_);
  newlySeenGuids_.swap(other.newlySeenGuids_);
  seenVersions_.swap(other.seenVersions_);
  lastVersionSeen_.swap(other.lastVersionSeen_);
  changesSinceVersion_.swap(other.changesSinceVersion_);
}

void FeatureListData::InsertFeatureListItem(std::shared_ptr<FeatureListItem> item) {
  assert(walks_ == 0);
  // Nothing can fail once the item is in: an item whose key is not in the order would never be
  // shown, and could not be inserted again.
  std::list<std::string> key;
  key.push_back(item->GetFeatureJiraIDKey());
  featureItems_.try_emplace(key.front(), std::move(item));
  orderedKeys_.splice(orderedKeys_.end(), key);
}

void FeatureListData::EnsureSpecialCaseItemExists(const std::string& key, const UTF16String& name,
                                                  const UTF16String& description) {
  if (featureItems_.contains(key)) return;
  InsertFeatureListItem(std::make_shared<FeatureListItem>(
      key, std::string(), orncore::string::UTF16to8(name), orncore::string::UTF16to8(description),
      FeatureListItem::Visibility::kPublic));
}

UTF16String FeatureListData::LocalizeIfNecessary(const UTF8String& text) const {
  return Localize(text);
}

const FeatureListItem* FeatureListData::FindItem(const std::string& key) const {
  const auto found = featureItems_.find(key);
  return found == featureItems_.end() ? nullptr : found->second.get();
}

}  // namespace ornwhatsnew
