#include "hosts/console/WhatsNewLoading.h"

#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "hosts/author/lint/LintConfig.h"
#include "hosts/common/HostDescription.h"
#include "hosts/common/TextFile.h"
#include "hosts/common/ToolError.h"

namespace hosts::console {

void RequireUsableOutput(const std::filesystem::path& output,
                         std::span<const std::filesystem::path> inputs) {
  constexpr std::string_view kRemedy = "; write the output to another file";
  for (const std::filesystem::path& input : inputs) {
    std::error_code ignored;
    if (!std::filesystem::equivalent(input, output, ignored)) continue;
    throw common::ToolError(
        common::ExitStatus::kUsage,
        "the output would replace the input file '" + input.native() + "'" + std::string(kRemedy));
  }
  if (output.filename() == author::kLintConfigName) {
    throw common::ToolError(common::ExitStatus::kUsage,
                            "the output '" + output.native() +
                                "' has the name of the configuration file of 'ornwhatsnew lint'" +
                                std::string(kRemedy));
  }
}

void InstallHostFile(const std::filesystem::path& file) {
  common::InstallHost(common::ReadHostDescription(file));
}

std::shared_ptr<ornwhatsnew::FeatureListData> LoadWhatsNew(const std::filesystem::path& file,
                                                           ornwhatsnew::StateGetter getter,
                                                           ornwhatsnew::StateSetter setter) {
  return std::make_shared<ornwhatsnew::FeatureListData>(common::ReadInputFile(file),
                                                        std::move(getter), std::move(setter));
}

}  // namespace hosts::console
