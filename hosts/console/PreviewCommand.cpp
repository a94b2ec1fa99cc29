#include <csignal>
#include <cstdint>
#include <ctime>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "hosts/author/FileRewrite.h"
#include "hosts/author/lint/LintConfig.h"
#include "hosts/author/preview/PreviewPage.h"
#include "hosts/common/HostDescription.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/common/TextFile.h"
#include "hosts/console/Commands.h"
#include "hosts/console/ErrorReport.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

namespace fs = std::filesystem;

/// The time between two checks of the files, in nanoseconds.
constexpr long kInterval = 300'000'000;

/// Returns the dictionary files that a host description names. Returns an empty vector if the
/// description cannot be used.
std::vector<fs::path> DictionaryFiles(const fs::path& hostFile) {
  std::vector<fs::path> files;
  try {
    // Do not call `ReadHostDescription`, which fails if a dictionary file is invalid. `--watch`
    // must notice when the author corrects this file.
    const common::HostDescription host =
        common::ParseHostDescription(common::ReadTextFile(hostFile), hostFile.native());
    files = common::DictionaryPaths(host, hostFile);
  } catch (const std::exception&) {
    // Ignore the error. `WritePage` also reads the host description, and throws an exception.
  }
  return files;
}

/// Returns the files that the page depends on. The set of these files changes when the author edits
/// the host description, or adds or removes a configuration file of `lint`.
std::vector<fs::path> InputFiles(const PreviewArguments& arguments) {
  std::vector<fs::path> files = DictionaryFiles(arguments.host);
  files.push_back(arguments.data);
  files.push_back(arguments.host);
  if (arguments.seen) files.push_back(*arguments.seen);
  if (const auto config = author::FindLintConfig(arguments.data)) files.push_back(*config);
  return files;
}

/// The modification time and the size of a file. If the file is missing, both are the values that
/// `std::filesystem` returns on errors.
using FileStamp = std::pair<fs::file_time_type, std::uintmax_t>;

std::vector<FileStamp> InputStamps(const PreviewArguments& arguments) {
  std::vector<FileStamp> stamps;
  for (const fs::path& file : InputFiles(arguments)) {
    std::error_code ignored;
    const fs::file_time_type time = fs::last_write_time(file, ignored);
    stamps.emplace_back(time, fs::file_size(file, ignored));
  }
  return stamps;
}

author::PreviewFile ReadFile(const fs::path& file) {
  return {file.native(), common::ReadInputFile(file, kMaximumAuthorFile)};
}

void WritePage(const PreviewArguments& arguments) {
  author::PreviewInput input;
  input.data = ReadFile(arguments.data);
  input.hostName = arguments.host.native();
  input.host = common::ReadHostDescription(arguments.host);
  if (arguments.seen) input.seen = ReadFile(*arguments.seen);
  const std::string page = author::PreviewPage(input);
  if (arguments.output == kStandardOutput) return common::WriteOutput(page);
  try {
    author::WriteWholeFile(arguments.output, page);
  } catch (const std::system_error& error) {
    throw ToolError(ExitStatus::kOutput, error.what());
  }
}

/// Returns whether the program ignores the signal, for example because nohup(1) has started it.
bool IsIgnored(int signal) {
  struct sigaction action {};
  ::sigaction(signal, nullptr, &action);
  return action.sa_handler == SIG_IGN;
}

/// Blocks SIGHUP, SIGINT and SIGTERM while the object exists. An unblocked signal during a write
/// would end the program and leave a temporary file in the output folder. Does not block ignored
/// signals, because `sigtimedwait` would also return these.
class BlockedInterrupts {
 public:
  BlockedInterrupts() {
    ::sigemptyset(&signals_);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
      if (!IsIgnored(signal)) ::sigaddset(&signals_, signal);
    }
    ::pthread_sigmask(SIG_BLOCK, &signals_, &previous_);
  }
  ~BlockedInterrupts() { ::pthread_sigmask(SIG_SETMASK, &previous_, nullptr); }
  BlockedInterrupts(const BlockedInterrupts&) = delete;
  BlockedInterrupts& operator=(const BlockedInterrupts&) = delete;

  /// Waits for `kInterval`. If the user interrupts the program, returns true immediately; otherwise
  /// returns false.
  bool Wait() const {
    const std::timespec interval = {0, kInterval};
    return ::sigtimedwait(&signals_, nullptr, &interval) > 0;
  }

 private:
  sigset_t signals_{};
  sigset_t previous_{};
};

/// Rewrites the page whenever an input file changes, until the user interrupts the program. A file
/// can be incomplete while an editor writes it, so errors do not end the program.
void Watch(const PreviewArguments& arguments, const BlockedInterrupts& interrupts,
           std::vector<FileStamp> written) {
  const std::string message = "wrote '" + arguments.output.native() + "'";
  ReportError(message + "; waiting for changes; press Ctrl+C to stop");
  while (!interrupts.Wait()) {
    std::vector<FileStamp> stamps = InputStamps(arguments);
    if (stamps == written) continue;
    written = std::move(stamps);
    try {
      WritePage(arguments);
      ReportError(message);
    } catch (const std::exception& error) {
      ReportError(error.what());
    }
  }
}

}  // namespace

ExitStatus Run(const PreviewArguments& arguments) {
  if (arguments.watches && arguments.output == kStandardOutput) {
    throw ToolError(ExitStatus::kUsage, "--watch cannot write to standard output; name a file");
  }
  RequireUsableOutput(arguments.output, InputFiles(arguments));
  if (!arguments.watches) {
    WritePage(arguments);
    return ExitStatus::kDone;
  }
  const BlockedInterrupts interrupts;
  // Read the modification times and the sizes before the first write of the page. A change during
  // this write then leads to another write.
  std::vector<FileStamp> stamps = InputStamps(arguments);
  WritePage(arguments);
  Watch(arguments, interrupts, std::move(stamps));
  return ExitStatus::kDone;
}

}  // namespace hosts::console
