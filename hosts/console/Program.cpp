#include "hosts/console/Program.h"

#include <exception>
#include <string>
#include <string_view>
#include <variant>

#include <orncore/config/InitializerRegistrar.h>
#include <orncore/debug/Log.h>

#include "hosts/common/JsonDocument.h"
#include "hosts/common/StateStore.h"
#include "hosts/common/WriteSignals.h"
#include "hosts/console/Arguments.h"
#include "hosts/console/StandardStreams.h"

namespace hosts::console {
namespace {

using orncore::config::EInitializerContextFlags;

/// Initializes all contexts of the process. The destructor shuts them down.
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
  WriteOutput(answer.text);
  return ExitStatus::kDone;
}

ExitStatus RunRequest(int argc, const char* const* argv) {
  const Request request = ParseArguments(argc, argv);
  orncore::debug::SetLogSink([](std::string_view line) { ReportError(line); });
  const LiveContexts contexts;
  return std::visit([](const auto& arguments) { return Run(arguments); }, request);
}

ExitStatus Report(ExitStatus status, std::string_view message) {
  if (!message.empty()) ReportError(message);
  return status;
}

ExitStatus RunReportingErrors(int argc, const char* const* argv) {
  try {
    return RunRequest(argc, argv);
  } catch (const ToolError& error) {
    return Report(error.Status(), error.what());
  } catch (const common::StateStoreError& error) {
    return Report(ExitStatus::kState, error.what());
  } catch (const common::JsonError& error) {
    return Report(ExitStatus::kInput, error.what());
  } catch (const std::exception& error) {
    return Report(ExitStatus::kUnexpected, std::string("unexpected error: ") + error.what());
  }
}

}  // namespace

int RunProgram(int argc, const char* const* argv) noexcept {
  // The program reports whether it stored anything, even if the reader of its output exits.
  common::IgnoreWriteSignals();
  try {
    return static_cast<int>(RunReportingErrors(argc, argv));
  } catch (...) {
    return static_cast<int>(ExitStatus::kUnexpected);
  }
}

}  // namespace hosts::console
