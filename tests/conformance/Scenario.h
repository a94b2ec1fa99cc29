// Defines scenarios. A scenario consists of a host and a sequence of steps. Most steps call the
// library.
#ifndef TESTS_CONFORMANCE_SCENARIO_H_
#define TESTS_CONFORMANCE_SCENARIO_H_

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "hosts/common/HostDescription.h"

namespace conformance {

struct CallFunction;

// Each kind of step has a struct, which is named after the value of the member `do`. For example,
// "load" is a `LoadStep`. Strings are UTF-8, except that `data` may contain any bytes.

struct ConstructStep {};
struct LoadStep {
  std::string data;
};
struct LoadResourceStep {
  std::string path;
  /// The content of the resource, or nullopt if the resource manager has no resource.
  std::optional<std::string> data;
};
struct InitStep {
  std::string data;
};
struct ParseStep {
  std::string data;
};
struct ParseBetaFeaturesStep {};
struct BubbleStep {};
struct RefreshStep {};
struct InsertStep {
  std::string key;
  std::string internalKey;
  std::string name;
  std::string description;
  std::int32_t visibility = 0;
};
struct EnsureSectionStep {
  std::string key;
  std::string name;
  std::string description;
};
/// The state callbacks that a list receives.
enum class Callbacks { kBoth, kGetter, kSetter, kNone };

/// The host of a scenario: a host description, the content of the state store, and the callbacks
/// that a list receives.
struct ScenarioHost : hosts::common::HostDescription {
  Texts state;
  Callbacks callbacks = Callbacks::kBoth;
};

struct HostStep {
  /// The host from this step on. Its `debug` applies only if `replacesDebug` is true, and its
  /// `state` only if `replacesState` is true.
  ScenarioHost host;
  /// True if the step has the member `debug`. If false, the debug database keeps its entries,
  /// because the library may have written some of them.
  bool replacesDebug = false;
  /// True if the step has the member `state`. If false, the state store keeps its content.
  bool replacesState = false;
};
struct IsAnythingNewStep {
  std::uint8_t options = 0;
};
struct IsAnythingNeedingRatingStep {};
struct RateStep {
  std::string key;
};
struct FormatStep {
  std::uint8_t options = 0;
  std::string placeholder;
  bool ratingMap = true;
};
struct ItemsStep {};
struct NewSeenStateStep {};
struct DebugStep {};
struct CallStep {
  const CallFunction* function = nullptr;
  std::vector<std::string> arguments;
};
struct CaptureStyleStep {
  std::int32_t style = 0;
  std::string textSoFar;
  std::string piece;
  std::int32_t startAdjust = 0;
  std::int32_t lengthAdjust = 0;
  std::string string;
};

using Step =
    std::variant<ConstructStep, LoadStep, LoadResourceStep, InitStep, ParseStep,
                 ParseBetaFeaturesStep, BubbleStep, RefreshStep, InsertStep, EnsureSectionStep,
                 HostStep, IsAnythingNewStep, IsAnythingNeedingRatingStep, RateStep, FormatStep,
                 ItemsStep, NewSeenStateStep, DebugStep, CallStep, CaptureStyleStep>;

struct Scenario {
  std::string name;
  /// The rule that the scenario shows. Empty if the scenario shows no rule.
  std::string intent;
  /// True if results contain persisted lists as strings instead of sorted arrays.
  bool exactTexts = false;
  ScenarioHost host;
  std::vector<Step> steps;
};

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_SCENARIO_H_
