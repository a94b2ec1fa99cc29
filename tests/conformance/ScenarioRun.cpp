#include "tests/conformance/ScenarioRun.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include <ornappsupport/Services.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/WhatsNew.h>
#include <nlohmann/json.hpp>

#include "tests/conformance/CallFunctions.h"
#include "tests/conformance/ResultJson.h"
#include "tests/support/FakeStateStore.h"
#include "tests/support/MemoryResourceManager.h"

namespace conformance {

using namespace ornwhatsnew;
using nlohmann::json;
using orncore::string::UTF8to16;

namespace {

/// Stores the debug entries of a scenario. The step `debug` returns them.
class ScenarioDebugStore final : public orncore::debug::DebugStore {
 public:
  using EntryMap = orncore::debug::MemoryDebugStore::EntryMap;

  explicit ScenarioDebugStore(EntryMap entries) : entries_(std::move(entries)) {}

  std::optional<std::string> Find(std::string_view key) const override {
    const auto found = entries_.find(key);
    if (found == entries_.end()) return std::nullopt;
    return found->second;
  }
  void Store(std::string_view key, std::string_view value) override {
    entries_.insert_or_assign(std::string(key), value);
  }

  const EntryMap& Entries() const { return entries_; }

 private:
  EntryMap entries_;
};

/// Executes the steps of one scenario with its host. Each kind of step has an overload of `Do`,
/// which executes the step and returns its result.
class ScenarioWorld {
 public:
  ScenarioWorld(const ScenarioHost& host, ListForm listForm)
      : callbacks_(host.callbacks), listForm_(listForm) {
    ornappsupport::ResetServices();
    hosts::common::InstallHost(host);
    UseDebugEntries(host.debug);
    store_.Replace(host.state);
  }

  json Execute(const Step& step) {
    store_.TakeWrites();
    return std::visit([this](const auto& kind) { return Do(kind); }, step);
  }

 private:
  json Do(const ConstructStep&) {
    list_ = std::make_shared<FeatureListData>(Getter(), Setter());
    return nullptr;
  }

  json Do(const LoadStep& step) {
    list_ = std::make_shared<FeatureListData>(step.data, Getter(), Setter());
    return nullptr;
  }

  json Do(const LoadResourceStep& step) {
    const UTF16String path = UTF8to16(step.path);
    test_support::MemoryResourceManager resources;
    if (step.data) resources.Add(path, u"csv", {step.data->begin(), step.data->end()});
    list_ = GetWhatsNew(path, &resources, Getter(), Setter());
    return nullptr;
  }

  json Do(const InitStep& step) {
    list_->InitWithData(step.data);
    return nullptr;
  }

  json Do(const ParseStep& step) {
    list_->ParseWhatsNewData(step.data);
    return nullptr;
  }

  json Do(const ParseBetaFeaturesStep&) {
    list_->ParseBetaFeatures();
    return nullptr;
  }

  json Do(const BubbleStep&) {
    list_->BubbleUnlockedItemsToTheTop();
    return nullptr;
  }

  json Do(const RefreshStep&) {
    list_->RefreshInternalSeenState();
    return nullptr;
  }

  json Do(const InsertStep& step) {
    list_->InsertFeatureListItem(std::make_shared<FeatureListItem>(
        step.key, step.internalKey, step.name, step.description,
        static_cast<FeatureListItem::Visibility>(step.visibility)));
    return nullptr;
  }

  json Do(const EnsureSectionStep& step) {
    list_->EnsureSpecialCaseItemExists(step.key, UTF8to16(step.name), UTF8to16(step.description));
    return nullptr;
  }

  json Do(const HostStep& step) {
    hosts::common::InstallHost(step.host);
    // `InstallHost` replaces the debug store, so install a new `ScenarioDebugStore`.
    UseDebugEntries(step.replacesDebug ? step.host.debug : debugStore_->Entries());
    if (step.replacesState) store_.Replace(step.host.state);
    return nullptr;
  }

  json Do(const IsAnythingNewStep& step) { return list_->IsAnythingNew(step.options); }

  json Do(const IsAnythingNeedingRatingStep&) { return list_->IsAnythingNeedingRating(); }

  json Do(const RateStep& step) {
    list_->MarkItemHasBeenRated(step.key);
    return {{"writes", WritesJson(store_.Writes(), listForm_)}};
  }

  json Do(const FormatStep& step) {
    const auto ratingItems = step.ratingMap ? std::make_shared<RatingMap>() : nullptr;
    StyleRunMap runs;
    const UTF16String text = list_->GetFormattedTextForDisplay(
        step.options, UTF8to16(step.placeholder), runs, ratingItems);
    return {{"text", TextJson(text)},
            {"runs", RunsJson(runs)},
            {"ratingItems", RatingItemsJson(ratingItems)},
            {"writes", WritesJson(store_.Writes(), listForm_)}};
  }

  json Do(const ItemsStep&) { return ItemsJson(*list_); }

  json Do(const NewSeenStateStep&) {
    return PersistedListJson(list_->GetNewSeenState(), listForm_);
  }

  json Do(const DebugStep&) {
    json entries = json::object();
    for (const auto& [key, value] : debugStore_->Entries()) {
      entries[TextJson(key).get<std::string>()] = PersistedValueJson(key, value, listForm_);
    }
    return entries;
  }

  json Do(const CallStep& step) { return step.function->call(step.arguments, list_.get()); }

  json Do(const CaptureStyleStep& step) {
    const auto style = static_cast<StyleID>(step.style);
    list_->CaptureStyle(style, UTF8to16(step.textSoFar), UTF8to16(step.piece), step.startAdjust,
                        step.lengthAdjust, UTF8to16(step.string), capturedRuns_);
    return RunsJson(capturedRuns_[style]);
  }

  StateGetter Getter() {
    const bool given = callbacks_ == Callbacks::kBoth || callbacks_ == Callbacks::kGetter;
    return given ? store_.Getter() : StateGetter();
  }

  StateSetter Setter() {
    const bool given = callbacks_ == Callbacks::kBoth || callbacks_ == Callbacks::kSetter;
    return given ? store_.Setter() : StateSetter();
  }

  void UseDebugEntries(const hosts::common::HostDescription::Texts& entries) {
    debugStore_ = std::make_shared<ScenarioDebugStore>(entries);
    orncore::debug::DebugDatabase::Instance().SetStore(debugStore_);
  }

  Callbacks callbacks_;
  ListForm listForm_;
  test_support::FakeStateStore store_;
  std::shared_ptr<ScenarioDebugStore> debugStore_;
  std::shared_ptr<FeatureListData> list_;
  StyleRunMap capturedRuns_;
};

}  // namespace

json RunScenario(const Scenario& scenario) {
  ScenarioWorld world(scenario.host, scenario.exactTexts ? ListForm::kText : ListForm::kSorted);
  json results = json::array();
  for (const Step& step : scenario.steps) results.push_back(world.Execute(step));
  return results;
}

}  // namespace conformance
