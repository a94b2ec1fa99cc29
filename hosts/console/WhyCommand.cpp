#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <orncore/string/Conversion.h>
#include <ornwhatsnew/WhatsNewTypes.h>
#include <ornwhatsnew/utility/PersistedList.h>

#include "hosts/author/why/WhyReport.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/common/StateStore.h"
#include "hosts/common/TextFile.h"
#include "hosts/console/Commands.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

/// Returns the host's full version, followed by the other full versions in which the user opened
/// the panel. The filter for relevant versions checks all of them.
std::vector<std::string> UserVersions(const common::StateStore& store) {
  const std::string running = orncore::string::UTF16to8(ornwhatsnew::GetFullClientVersionString());
  const std::string stored = store.Get(common::kAllVersionsSeenKey);
  std::vector<std::string> versions = {running};
  for (const std::string_view version : ornwhatsnew::SplitPersistedList(stored)) {
    if (!version.empty() && version != running) versions.emplace_back(version);
  }
  return versions;
}

std::string Explain(const author::WhyReport& report, const WhyArguments& arguments) {
  if (arguments.line) return report.ExplainLine(*arguments.line);
  return arguments.key ? report.ExplainKey(*arguments.key) : report.ExplainAll();
}

}  // namespace

ExitStatus Run(const WhyArguments& arguments) {
  InstallHostFile(arguments.sources.host);
  common::StateStore store(common::StateLocation(arguments.sources.state));
  const std::filesystem::path& file = arguments.sources.data;
  const std::string text = common::ReadInputFile(file, kMaximumAuthorFile);
  const ornwhatsnew::FeatureListData list(text, store.Getter(), store.Setter());
  const author::WhyReport report(list, file.native(), text, arguments.options, UserVersions(store));
  common::WriteOutput(Explain(report, arguments));
  return ExitStatus::kDone;
}

}  // namespace hosts::console
