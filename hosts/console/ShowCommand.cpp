#include <memory>
#include <string>
#include <string_view>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/PanelRenderers.h>
#include <nlohmann/json.hpp>

#include "hosts/common/HtmlPage.h"
#include "hosts/common/PanelJson.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/common/StateStore.h"
#include "hosts/console/Commands.h"
#include "hosts/console/ShellCommand.h"
#include "hosts/console/TerminalDetection.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

/// Returns the panel as lines of text. The line after each rating request contains the command that
/// rates the feature.
std::string RenderLines(ornwhatsnew::FeatureListData& list, const ShowArguments& arguments,
                        ornwhatsnew::TerminalOptions options) {
  options.ratingLine = [&arguments](const ornwhatsnew::RatingRequest& request) {
    return orncore::string::UTF8to16(RatingCommand(request.itemKey, arguments.sources));
  };
  return ornwhatsnew::RenderTerminalText(list.GetLayoutForDisplay(arguments.options), options);
}

std::string RenderJson(ornwhatsnew::FeatureListData& list, const ShowArguments& arguments) {
  const auto ratingItems = std::make_shared<ornwhatsnew::RatingMap>();
  ornwhatsnew::StyleRunMap runs;
  const ornwhatsnew::UTF16String text =
      list.GetFormattedTextForDisplay(arguments.options, {}, runs, ratingItems);
  const ornwhatsnew::PanelLayout layout = list.PreviewLayout(arguments.options);
  return common::ToJsonText(common::PanelJson(text, runs, ratingItems, layout));
}

std::string Render(ornwhatsnew::FeatureListData& list, const ShowArguments& arguments) {
  switch (arguments.format) {
    case PanelFormat::kPlain:
      return RenderLines(list, arguments, {.width = arguments.width.value_or(0)});
    case PanelFormat::kHtml:
      return common::PanelPage(list.GetLayoutForDisplay(arguments.options));
    case PanelFormat::kMarkdown:
      return ornwhatsnew::RenderMarkdown(list.GetLayoutForDisplay(arguments.options));
    case PanelFormat::kJson:
      return RenderJson(list, arguments);
    case PanelFormat::kText:
      break;
  }
  return RenderLines(list, arguments, DetectTerminalOptions(arguments.color, arguments.width));
}

}  // namespace

ExitStatus Run(const ShowArguments& arguments) {
  InstallHostFile(arguments.sources.host);
  common::StateStore store(common::StateLocation(arguments.sources.state));
  const std::shared_ptr<ornwhatsnew::FeatureListData> list =
      LoadWhatsNew(arguments.sources.data, store.Getter(), store.Setter());
  const std::string output = Render(*list, arguments);
  if (arguments.storesNothing) {
    common::WriteOutput(output);
    return ExitStatus::kDone;
  }
  // Commit after printing, because only a printed panel counts as seen. A pipe buffers a short
  // panel even if its reader exits without reading it. A successful write therefore does not prove
  // that the panel was read.
  constexpr std::string_view kOutcome = "nothing was stored";
  common::WriteOutput(output, kOutcome);
  common::RequireReader(kOutcome);
  store.Commit();
  return ExitStatus::kDone;
}

}  // namespace hosts::console
