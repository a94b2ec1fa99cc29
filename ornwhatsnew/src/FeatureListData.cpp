#include <ornwhatsnew/FeatureListData.h>

#include <cassert>
#include <utility>
#include <vector>

#include <orncore/config/InitializerRegistrar.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/string/Conversion.h>
#include <ornui/utility/ResourceManager.h>
#include <ornwhatsnew/WhatsNewTypes.h>

#include "ornwhatsnew/src/FeatureListDataImpl.h"
#include "ornwhatsnew/src/ScopedCount.h"
#include "ornwhatsnew/src/ValidateCommand.h"
#include "ornwhatsnew/src/panel/Localization.h"

namespace ornwhatsnew {
namespace {

using orncore::debug::DebugDatabase;

// The registration is in this file, because every host calls a function of this file. In a
// separate file, the registration would be missing from hosts that link the library statically,
// because linkers omit unused object files.
const orncore::config::InitializerRegistrar kRegistration(
    "ornwhatsnew.FeatureListData", orncore::config::EInitializerContextFlags::kConsole,
    RegisterValidateCommand, UnregisterValidateCommand);

// Returns the bytes of the resource, and sets `isFound` to the result of the resource manager. A
// missing resource is not an error, and the list then has no changes. Compatibility: returns the
// loaded bytes even if `isFound` is false (docs/compatibility.md).
UTF8String LoadDataText(const UTF16String& path, const ornui::utility::ResourceManager& resources,
                        bool& isFound) {
  std::vector<unsigned char> bytes;
  isFound = resources.LoadResource(path, u"csv", bytes);
  return {bytes.begin(), bytes.end()};
}

}  // namespace

FeatureListData::FeatureListData(StateGetter getter, StateSetter setter)
    : impl_(new Impl{.content = {},
                     .currentVersion = orncore::string::UTF16to8(GetFullClientVersionString()),
                     // cppcheck-suppress accessMoved  // false positive: each is moved once
                     .stateGetter = std::move(getter),
                     // cppcheck-suppress accessMoved
                     .stateSetter = std::move(setter)}) {
  // Compatibility: replace both callbacks if one is empty (docs/compatibility.md). Otherwise the
  // list would read one store and write to another.
  if (impl_->stateGetter && impl_->stateSetter) return;
  impl_->stateGetter = [](const UTF8String& key) {
    return DebugDatabase::Instance().GetEntry(key);
  };
  impl_->stateSetter = [](const UTF8String& key, const UTF8String& value) {
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
  bool isFound = false;
  InitWithData(LoadDataText(path, *resources, isFound));
  impl_->content.summary.isFound = isFound;
}

FeatureListData::~FeatureListData() {
  assert(impl_->activeIterations == 0);
  assert(impl_->activeCallbacks == 0);
}

void FeatureListData::InitWithData(const UTF8String& dataText) {
  assert(impl_->activeIterations == 0);
  ListContent rebuilt;
  rebuilt.state = impl_->ReadState();
  {
    const ScopedCount iteration(impl_->activeIterations);
    rebuilt.AddBetaFeatures();
    rebuilt.summary = rebuilt.AddChanges(dataText);
    rebuilt.MoveUnlockedItemsToFront();
  }
  ListContent& content = impl_->content;
  if (!rebuilt.changesSinceVersion) {
    rebuilt.changesSinceVersion = std::move(content.changesSinceVersion);
  }
  // Destroy the old items only after the exchange. A host can derive an item class whose destructor
  // queries the list, and the list must be complete by then.
  const ListContent old = std::exchange(content, std::move(rebuilt));
}

void FeatureListData::ParseWhatsNewData(const UTF8String& dataText) {
  assert(impl_->activeIterations == 0);
  impl_->content.AddChanges(dataText);
}

void FeatureListData::ParseBetaFeatures() {
  assert(impl_->activeIterations == 0);
  const ScopedCount iteration(impl_->activeIterations);
  impl_->content.AddBetaFeatures();
}

void FeatureListData::BubbleUnlockedItemsToTheTop() {
  assert(impl_->activeIterations == 0);
  const ScopedCount iteration(impl_->activeIterations);
  impl_->content.MoveUnlockedItemsToFront();
}

void FeatureListData::InsertFeatureListItem(std::shared_ptr<FeatureListItem> item) {
  assert(impl_->activeIterations == 0);
  impl_->content.InsertItem(std::move(item));
}

void FeatureListData::EnsureSpecialCaseItemExists(const std::string& key, const UTF16String& name,
                                                  const UTF16String& description) {
  assert(impl_->activeIterations == 0);
  impl_->content.EnsureSectionExists(key, name, description);
}

const FeatureMap& FeatureListData::GetFeatureItems() const {
  return impl_->content.items;
}

const std::list<std::string>& FeatureListData::GetOrderedFeatureKeys() const {
  return impl_->content.orderedKeys;
}

DataFileSummary FeatureListData::GetDataFileSummary() const {
  return impl_->content.summary;
}

UTF16String FeatureListData::LocalizeIfNecessary(const UTF8String& text) const {
  return Localize(text);
}

}  // namespace ornwhatsnew
