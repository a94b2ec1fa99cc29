#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include "hosts/common/PanelJson.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/common/StateStore.h"
#include "hosts/console/Commands.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

struct Status {
  bool isAnythingNew;
  bool canAnythingBeRated;
};

std::string Describe(const Status& status, OutputFormat format) {
  if (format == OutputFormat::kJson) {
    return common::ToJsonText({{"anythingNew", status.isAnythingNew},
                               {"anythingNeedingRating", status.canAnythingBeRated}});
  }
  return std::string(status.isAnythingNew ? "There is something new." : "Nothing is new.") + "\n" +
         (status.canAnythingBeRated ? "There is something to rate." : "Nothing needs rating.") +
         "\n";
}

ExitStatus ToExitStatus(const Status& status) {
  if (status.isAnythingNew && status.canAnythingBeRated) return ExitStatus::kNewAndToRate;
  if (status.isAnythingNew) return ExitStatus::kSomethingNew;
  return status.canAnythingBeRated ? ExitStatus::kSomethingToRate : ExitStatus::kDone;
}

}  // namespace

ExitStatus Run(const StatusArguments& arguments) {
  InstallHostFile(arguments.sources.host);
  common::StateStore store(common::StateLocation(arguments.sources.state));
  const std::shared_ptr<ornwhatsnew::FeatureListData> list =
      LoadWhatsNew(arguments.sources.data, store.Getter(), store.Setter());
  // Do not call `IsAnythingNeedingRating`, because this function always filters by platform and
  // version. `show --rating` filters only if the options request it.
  const Status status = {list->IsAnythingNew(arguments.options | ornwhatsnew::kShowOnlyNew),
                         list->IsAnythingNew(arguments.options | ornwhatsnew::kRatingView)};
  common::WriteOutput(Describe(status, arguments.format));
  return arguments.setsExitStatus ? ToExitStatus(status) : ExitStatus::kDone;
}

}  // namespace hosts::console
