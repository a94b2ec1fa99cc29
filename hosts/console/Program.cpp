#include "hosts/console/Program.h"

#include <string_view>
#include <variant>

#include <orncore/config/InitializerRegistrar.h>
#include <orncore/debug/Log.h>

#include "hosts/author/InputError.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/common/ToolError.h"
#include "hosts/common/WriteSignals.h"
#include "hosts/console/Arguments.h"
#include "hosts/console/ErrorReport.h"

namespace hosts::console {
namespace {

using orncore::config::EInitializerContextFlags;

/// Initialises all contexts of the process. The destructor shuts them down.
class LiveContexts {
 public:
  LiveContexts() { orncore::config::InitializeContexts(kAll); }
  ~LiveContexts() { orncore::config::ShutdownContexts(kAll); }
  LiveContexts(const LiveContexts&) = delete;
  LiveContexts& operator=(const LiveContexts&) = delete;

 private:
  static constexpr EInitializerContextFlags kAll = EInitializerContextFlags::kCore |
                                                   EInitializerContextFlags::kApplication |
                                                   EInitializerContextFlags::kConsole;
};

ExitStatus Run(const Answer& answer) {
  if (answer.isError) throw ToolError(ExitStatus::kUsage, answer.text);
  common::WriteOutput(answer.text);
  return ExitStatus::kDone;
}

ExitStatus RunRequest(int argc, const char* const* argv) {
  const Request request = ParseArguments(argc, argv);
  orncore::debug::SetLogSink([](std::string_view line) { ReportError(line); });
  const LiveContexts contexts;
  try {
    return std::visit([](const auto& arguments) { return Run(arguments); }, request);
  } catch (const author::OptionError& error) {
    throw ToolError(ExitStatus::kUsage, error.what());
  }
}

}  // namespace

int RunProgram(int argc, const char* const* argv) noexcept {
  // Without this call, a write to a pipe whose reader has exited would end the program. The program
  // could then not report whether it stored anything.
  common::IgnoreWriteSignals();
  // RunReportingErrors catches all exceptions, but cppcheck does not detect this.
  // cppcheck-suppress throwInNoexceptFunction
  return common::RunReportingErrors(argc, argv, &RunRequest, &ReportError);
}

}  // namespace hosts::console
