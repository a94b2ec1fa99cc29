#include <filesystem>
#include <string>

#include "hosts/author/MessageTemplate.h"
#include "hosts/common/HostDescription.h"
#include "hosts/console/Commands.h"
#include "hosts/console/StandardStreams.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {

ExitStatus Run(const MessagesArguments& arguments) {
  author::MessageTemplate messages;
  for (const std::filesystem::path& file : arguments.data) {
    messages.AddDataFile(file.native(), ReadInputFile(file, kMaximumAuthorFile));
  }
  if (arguments.host) {
    const std::string json = ReadInputFile(*arguments.host);
    messages.AddFeatureTable(arguments.host->native(), json,
                             common::ParseHostDescription(json, arguments.host->native()));
  }
  messages.AddPanelTexts();
  for (const std::string& warning : messages.Warnings()) ReportError(warning);
  WriteOutput(messages.Format());
  return ExitStatus::kDone;
}

}  // namespace hosts::console
