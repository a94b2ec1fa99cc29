// Fuzzes the lines that the console reads from standard input.
//
// The input consists of these lines. The fuzzer replaces each `@data` with the path of a data file.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include <orncore/config/InitializerRegistrar.h>
#include <orncore/console/CommandRegistry.h>
#include <orncore/debug/Log.h>
#include <orncore/string/Conversion.h>

#include "fuzz/OutputCapture.h"
#include "fuzz/Property.h"
#include "fuzz/TerminalScan.h"
#include "hosts/console/Commands.h"
#include "hosts/console/ErrorReport.h"
#include "tests/support/PlainText.h"
#include "tests/support/TemporaryFolder.h"

namespace fuzz {
namespace {

using hosts::console::ExitStatus;
using orncore::console::UTF16OutputStream;
using test_support::PlainSplit;
using test_support::PlainUTF8to16;

constexpr std::string_view kDataPlaceholder = "@data";
constexpr std::string_view kValidate = "ValidateWhatsNew";
constexpr std::string_view kProbe = "probe";
constexpr std::string_view kHelp = "help";

// The results of running one input: the argument of each call to the probe command, and the number
// of lines in the log.
struct Observed {
  std::vector<std::u16string> probeArguments;
  std::size_t logged = 0;
};

Observed& Observations() {
  static Observed observed;
  return observed;
}

// Implements the probe command, which stores and prints its argument. The command fails if the
// argument starts with 'f'. The prefix "probe: " distinguishes its output from the output of other
// commands.
int Probe(const std::u16string& arguments, UTF16OutputStream& stream) {
  Observations().probeArguments.push_back(arguments);
  orncore::console::Write(stream, u"probe: " + arguments);
  orncore::console::Write(stream, u"\n");
  return arguments.starts_with(u'f') ? 1 : 0;
}

void Log(std::string_view line) {
  ++Observations().logged;
  hosts::console::ReportError(line);
}

std::string MakeDataFile() {
  static const test_support::TemporaryFolder folder;
  return folder.Write("whatsnew.csv", "a,b,c,d,e,f,g,h,i,j\n25.1,MISC,,,,,,,,Text\n").native();
}

// Returns the path of the data file. The first call writes the file, initialises the console
// context, and registers the probe command and the log sink.
const std::string& DataFile() {
  static const std::string path = [] {
    orncore::config::InitializeContexts(orncore::config::EInitializerContextFlags::kConsole);
    orncore::console::CommandRegistry::Instance().RegisterCommandFunction(u"probe", u" text",
                                                                          Probe);
    orncore::debug::SetLogSink(Log);
    return MakeDataFile();
  }();
  return path;
}

std::string WithDataFile(std::string_view lines) {
  std::string result;
  for (std::size_t placeholder = lines.find(kDataPlaceholder);
       placeholder != std::string_view::npos; placeholder = lines.find(kDataPlaceholder)) {
    result += std::string(lines.substr(0, placeholder)) + DataFile();
    lines.remove_prefix(placeholder + kDataPlaceholder.size());
  }
  return result + std::string(lines);
}

// The effects that the given lines must have: the arguments that the probe command receives, the
// numbers of refused lines, usage messages and validations, and whether all commands succeed.
struct Expected {
  explicit Expected(const std::string& lines) {
    std::vector<std::string> all = PlainSplit(lines, '\n');
    if (all.back().empty()) all.pop_back();
    for (std::string& line : all) {
      if (line.ends_with('\r')) line.pop_back();
      Add(line);
    }
  }

  std::vector<std::u16string> probeArguments;
  std::size_t refused = 0;
  std::size_t usages = 0;
  std::size_t validations = 0;
  bool isDone = true;

 private:
  void Add(std::string_view line) {
    if (line.find_first_not_of(" \t") == std::string_view::npos) return;
    line.remove_prefix(line.find_first_not_of(" \t"));
    if (!orncore::string::IsWellFormedUTF8(line)) {
      ++refused;
      isDone = false;
      return;
    }
    const std::string_view name = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(name.size() + 1, line.size()));
    if (name == kHelp) {
      ++usages;
    } else if (name == kProbe) {
      probeArguments.push_back(PlainUTF8to16(line));
      if (line.starts_with('f')) isDone = false;
    } else if (name == kValidate) {
      ++(line.empty() ? usages : validations);
    } else {
      ++refused;
      isDone = false;
    }
  }
};

// Replaces standard input with a string while the object exists.
class RedirectedInput {
 public:
  explicit RedirectedInput(const std::string& text) : original_(dup(STDIN_FILENO)) {
    const int file = memfd_create("input", 0);
    Require(write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size()),
            "the input is written completely");
    lseek(file, 0, SEEK_SET);
    dup2(file, STDIN_FILENO);
    close(file);
  }
  ~RedirectedInput() {
    dup2(original_, STDIN_FILENO);
    close(original_);
  }
  RedirectedInput(const RedirectedInput&) = delete;
  RedirectedInput& operator=(const RedirectedInput&) = delete;

 private:
  int original_;
};

std::size_t CountLines(std::string_view text, std::string_view beginning) {
  std::size_t count = 0;
  for (const std::string& line : PlainSplit(text, '\n')) {
    if (line.starts_with(beginning)) ++count;
  }
  return count;
}

void RequireReports(const Expected& expected, const OutputCapture& capture) {
  RequireHarmlessText(capture.Output());
  RequireHarmlessText(capture.Errors());
  RequireEqual(CountLines(capture.Errors(), "ornwhatsnew: "),
               expected.refused + Observations().logged,
               "every unknown command and every ill-formed line is reported once");
  RequireEqual(CountLines(capture.Output(), kValidate), expected.usages,
               "each help command and each validation without a file prints the usage once");
  RequireEqual(CountLines(capture.Output(), "probe: "), expected.probeArguments.size(),
               "each probe prints its line once");
  const std::size_t validated = CountLines(capture.Output(), "Reading What's New file at \"") +
                                CountLines(capture.Output(), "Failed to read What's New file");
  RequireEqual(validated + Observations().logged, expected.validations,
               "each validation reports its result once");
}

void Run(std::string_view input) {
  const std::string lines = WithDataFile(input);
  const Expected expected(lines);
  DataFile();
  Observations() = {};

  const RedirectedInput redirected(lines);
  OutputCapture capture;
  const ExitStatus status = hosts::console::Run(hosts::console::ConsoleArguments{});
  capture.Stop();

  RequireReports(expected, capture);
  Require(Observations().probeArguments == expected.probeArguments,
          "a command receives the text after its name");
  Require(status == (expected.isDone ? ExitStatus::kDone : ExitStatus::kCommand),
          "the exit status shows whether all commands succeeded");
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
