#include <map>
#include <string>
#include <string_view>

#include "hosts/author/lint/Rules.h"

namespace hosts::author {
namespace {

using common::BetaFeatureDescription;

void CheckEpicKeys(LintContext& context) {
  if (context.Host() == nullptr) return;
  std::map<std::string_view, std::string_view> internalKeys;
  for (const BetaFeatureDescription& feature : context.Host()->description.betaFeatures) {
    if (feature.epicKey.empty()) {
      context.ReportHost(LintCode::kHostEpicKeyEmpty,
                         "the feature " + Quoted(feature.internalKey) +
                             " has no epic key, so every change without a story ID belongs to it; "
                             "give it an epic key");
      continue;
    }
    const auto [found, isNew] = internalKeys.emplace(feature.epicKey, feature.internalKey);
    // Features with the same internal key do not conflict, because the later one replaces the
    // earlier one in the feature table.
    if (isNew || found->second == feature.internalKey) continue;
    context.ReportHost(LintCode::kHostEpicKeyTwice,
                       "the features " + Quoted(found->second) + " and " +
                           Quoted(feature.internalKey) + " have the same epic key " +
                           Quoted(feature.epicKey) +
                           ", so only one of them is shown; give each feature its own key");
  }
}

constexpr FileRule kHostTableRules[] = {CheckEpicKeys};

}  // namespace

std::span<const FileRule> HostTableRules() {
  return kHostTableRules;
}

}  // namespace hosts::author
