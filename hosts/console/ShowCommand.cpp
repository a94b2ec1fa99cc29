#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "hosts/common/PanelJson.h"
#include "hosts/common/StateStore.h"
#include "hosts/common/StyledSegments.h"
#include "hosts/console/Commands.h"
#include "hosts/console/RatingControls.h"
#include "hosts/console/StandardStreams.h"
#include "hosts/console/TerminalPanel.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

std::string RenderText(ornwhatsnew::FeatureListData& list, const ShowArguments& arguments) {
  const bool isRating = arguments.options.Has(ornwhatsnew::kRatingView);
  const auto ratingItems = std::make_shared<ornwhatsnew::RatingMap>();
  ornwhatsnew::StyleRunMap runs;
  const ornwhatsnew::UTF16String text = list.GetFormattedTextForDisplay(
      arguments.options, isRating ? RatingPlaceholder() : ornwhatsnew::UTF16String(), runs,
      ratingItems);
  std::vector<common::StyledSegment> segments = common::SplitIntoStyledSegments(text, runs);
  if (isRating) {
    PlaceRatingControls(RatingControls(list, *ratingItems, arguments.sources), segments);
  }
  return RenderTerminalPanel(segments, DetectTerminalLook(arguments.color, arguments.width));
}

std::string RenderJson(ornwhatsnew::FeatureListData& list, const ShowArguments& arguments) {
  const auto ratingItems = std::make_shared<ornwhatsnew::RatingMap>();
  ornwhatsnew::StyleRunMap runs;
  const ornwhatsnew::UTF16String text =
      list.GetFormattedTextForDisplay(arguments.options, {}, runs, ratingItems);
  return common::ToJsonText(common::PanelJson(text, runs, ratingItems));
}

}  // namespace

ExitStatus Run(const ShowArguments& arguments) {
  InstallHostFile(arguments.sources.host);
  common::StateStore store(StateLocation(arguments.sources.state));
  const std::shared_ptr<ornwhatsnew::FeatureListData> list =
      LoadWhatsNew(arguments.sources.data, store.Getter(), store.Setter());
  const std::string output = arguments.format == OutputFormat::kJson ? RenderJson(*list, arguments)
                                                                     : RenderText(*list, arguments);
  if (arguments.storesNothing) {
    WriteOutput(output);
    return ExitStatus::kDone;
  }
  // Commit after printing, because only a printed panel counts as seen. A pipe buffers a short
  // panel even if its reader exits without reading it. A successful write therefore does not prove
  // that the panel was read.
  constexpr std::string_view kOutcome = "nothing was stored";
  WriteOutput(output, kOutcome);
  RequireReader(kOutcome);
  store.Commit();
  return ExitStatus::kDone;
}

}  // namespace hosts::console
