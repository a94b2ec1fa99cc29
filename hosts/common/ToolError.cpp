#include "hosts/common/ToolError.h"

#include <exception>

#include "hosts/common/JsonDocument.h"
#include "hosts/common/StateStore.h"

namespace hosts::common {
namespace {

using RunFunction = ExitStatus (*)(int argc, const char* const* argv);
using ReportFunction = void (*)(std::string_view message);

ExitStatus Report(ReportFunction report, ExitStatus status, std::string_view message) {
  if (!message.empty()) report(message);
  return status;
}

ExitStatus RunAndReport(int argc, const char* const* argv, RunFunction run, ReportFunction report) {
  try {
    return run(argc, argv);
  } catch (const ToolError& error) {
    return Report(report, error.Status(), error.what());
  } catch (const StateStoreError& error) {
    return Report(report, ExitStatus::kState, error.what());
  } catch (const JsonError& error) {
    return Report(report, ExitStatus::kInput, error.what());
  } catch (const std::exception& error) {
    return Report(report, ExitStatus::kUnexpected,
                  std::string("unexpected error: ") + error.what());
  }
}

}  // namespace

int RunReportingErrors(int argc, const char* const* argv, RunFunction run,
                       ReportFunction report) noexcept {
  try {
    return static_cast<int>(RunAndReport(argc, argv, run, report));
  } catch (...) {
    // The error could not be reported, for example because there is no memory for the message.
    return static_cast<int>(ExitStatus::kUnexpected);
  }
}

}  // namespace hosts::common
