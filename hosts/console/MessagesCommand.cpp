#include <filesystem>
#include <string>

#include "hosts/author/MessageTemplate.h"
#include "hosts/common/HostDescription.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/common/TextFile.h"
#include "hosts/console/Commands.h"
#include "hosts/console/ErrorReport.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {

ExitStatus Run(const MessagesArguments& arguments) {
  author::MessageTemplate messages;
  for (const std::filesystem::path& file : arguments.data) {
    messages.AddDataFile(file.native(), common::ReadInputFile(file, kMaximumAuthorFile));
  }
  if (arguments.host) {
    const std::string json = common::ReadInputFile(*arguments.host);
    messages.AddFeatureTable(arguments.host->native(), json,
                             common::ParseHostDescription(json, arguments.host->native()));
  }
  messages.AddPanelTexts();
  for (const std::string& warning : messages.Warnings()) ReportError(warning);
  common::WriteOutput(messages.Format());
  return ExitStatus::kDone;
}

}  // namespace hosts::console
