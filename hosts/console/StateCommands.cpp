#include <string>
#include <string_view>

#include <orncore/string/SafeText.h>
#include <ornwhatsnew/utility/PersistedList.h>
#include <nlohmann/json.hpp>

#include "hosts/common/PanelJson.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/common/StateStore.h"
#include "hosts/console/Commands.h"

namespace hosts::console {
namespace {

nlohmann::json ListJson(std::string_view list) {
  nlohmann::json elements = nlohmann::json::array();
  for (const std::string_view element : ornwhatsnew::SplitPersistedList(list)) {
    elements.push_back(common::TextJson(element));
  }
  return elements;
}

std::string DescribeAsJson(const common::StateStore& store) {
  return common::ToJsonText(
      {{"location", common::TextJson(std::string_view(store.Location().native()))},
       {"lastVersionSeen", common::TextJson(store.Get(common::kLastVersionSeenKey))},
       {"versionsSeen", ListJson(store.Get(common::kAllVersionsSeenKey))},
       {"seenItems", ListJson(store.Get(common::kAllSeenItemsKey))}});
}

std::string DescribeAsText(const common::StateStore& store) {
  const std::string location = orncore::string::EscapeInvisible(store.Location().native());
  if (store.Values().empty()) return "Nothing is stored in " + location + ".\n";
  const std::string identities = store.Get(common::kAllSeenItemsKey);
  const std::size_t count = ornwhatsnew::SplitPersistedList(identities).size();
  // If the user rates a feature before the first display, the store contains no version.
  const auto shown = [](std::string_view text) {
    return text.empty() ? "not yet" : orncore::string::EscapeInvisible(text);
  };
  return "State store:     " + location + "\n" +
         "Last opened in:  " + shown(store.Get(common::kLastVersionSeenKey)) + "\n" +
         "Opened in:       " + shown(store.Get(common::kAllVersionsSeenKey)) + "\n" +
         "Seen or rated:   " + std::to_string(count) + (count == 1 ? " identity" : " identities") +
         "\n";
}

}  // namespace

ExitStatus Run(const StateShowArguments& arguments) {
  const common::StateStore store(common::StateLocation(arguments.state));
  common::WriteOutput(arguments.format == OutputFormat::kJson ? DescribeAsJson(store)
                                                              : DescribeAsText(store));
  return ExitStatus::kDone;
}

ExitStatus Run(const StateResetArguments& arguments) {
  common::StateStore store(common::StateLocation(arguments.state));
  store.Reset();
  const std::string location = orncore::string::EscapeInvisible(store.Location().native());
  common::WriteOutput("Deleted the state in " + location + ".\n",
                      "the state in " + location + " was deleted");
  return ExitStatus::kDone;
}

}  // namespace hosts::console
