#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include <orncore/console/CommandRegistry.h>
#include <orncore/string/Conversion.h>
#include <orncore/string/SafeText.h>

#include "hosts/common/MessageText.h"
#include "hosts/common/StandardStreams.h"
#include "hosts/console/Commands.h"
#include "hosts/console/ErrorReport.h"
#include "hosts/console/InputLines.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

using orncore::console::CommandRegistry;
using orncore::console::UTF16OutputStream;

constexpr std::string_view kSpacesAndTabs = " \t";
constexpr std::string_view kPrompt = "ornwhatsnew> ";

int ListCommands(const std::u16string&, UTF16OutputStream& stream) {
  for (const CommandRegistry::Command& command : CommandRegistry::Instance().ListCommands()) {
    // Do not print the name of a command twice. Some help texts already start with it.
    if (!command.help.starts_with(command.name)) orncore::console::Write(stream, command.name);
    orncore::console::Write(stream, command.help);
    orncore::console::Write(stream, u"\n");
  }
  return 0;
}

bool RunLine(std::string_view line) {
  const std::size_t begin = line.find_first_not_of(kSpacesAndTabs);
  if (begin == std::string_view::npos) return true;
  // Do not remove trailing spaces, because they may be part of an argument.
  line.remove_prefix(begin);
  if (!orncore::string::IsWellFormedUTF8(line)) {
    // Commands receive UTF-16. The conversion to UTF-16 would replace the ill-formed bytes in a
    // file name, and the command could then open a file with a different name.
    ReportError("cannot run the console command '" + common::WithoutMiddle(line) +
                "': not valid UTF-8");
    return false;
  }
  std::basic_ostringstream<char16_t> output;
  const std::optional<int> result =
      CommandRegistry::Instance().RunLine(orncore::string::UTF8to16(line), output);
  common::WriteOutput(orncore::string::UTF16to8(orncore::string::SafeForTerminal(output.str())));
  if (!result) {
    const std::string name = common::WithoutMiddle(line.substr(0, line.find(' ')));
    ReportError("unknown console command '" + name + "'; 'help' lists the commands");
  }
  return result == 0;
}

bool RunLinesOfInput() {
  const bool isInteractive = common::IsInteractive();
  bool isDone = true;
  InputLines lines;
  for (;;) {
    if (isInteractive) common::WriteOutput(kPrompt);
    std::optional<std::string> line = lines.Next();
    if (!line) break;
    if (line->ends_with('\r')) line->pop_back();
    isDone &= RunLine(*line);
  }
  if (isInteractive) common::WriteOutput("\n");
  return isDone;
}

}  // namespace

ExitStatus Run(const ConsoleArguments& arguments) {
  if (arguments.host) InstallHostFile(*arguments.host);
  CommandRegistry::Instance().RegisterCommandFunction(u"help", u" - List the commands",
                                                      ListCommands);
  const bool isDone = arguments.line.empty() ? RunLinesOfInput() : RunLine(arguments.line);
  return isDone ? ExitStatus::kDone : ExitStatus::kCommand;
}

}  // namespace hosts::console
