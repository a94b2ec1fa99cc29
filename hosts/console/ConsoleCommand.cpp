#include <optional>
#include <string>
#include <string_view>

#include <orncore/console/CommandRegistry.h>
#include <orncore/string/Conversion.h>

#include "hosts/console/Commands.h"
#include "hosts/console/ConsoleStream.h"
#include "hosts/console/InputLines.h"
#include "hosts/console/StandardStreams.h"
#include "hosts/console/WhatsNewLoading.h"

namespace hosts::console {
namespace {

using orncore::console::CommandRegistry;
using orncore::console::UTF16OutputStream;

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kPrompt = "ornwhatsnew> ";

int ListCommands(UTF16OutputStream& stream) {
  for (const CommandRegistry::Command& command : CommandRegistry::Instance().ListCommands()) {
    // Some commands give the part behind their name, some the whole usage line.
    if (!command.help.starts_with(command.name)) orncore::console::Write(stream, command.name);
    orncore::console::Write(stream, command.help);
    orncore::console::Write(stream, u"\n");
  }
  return 0;
}

/// The command `help`, in the registry for as long as the object lives: there it is found, listed
/// and given arguments like any other. A command of that name that is there already stays.
class HelpCommand {
 public:
  HelpCommand()
      : isOurs_(CommandRegistry::Instance().RegisterCommandFunction(
            std::u16string(kName), u" - List the commands",
            [](const std::u16string&, UTF16OutputStream& stream) {
              return ListCommands(stream);
            })) {}
  ~HelpCommand() {
    if (isOurs_) CommandRegistry::Instance().UnregisterCommand(kName);
  }
  HelpCommand(const HelpCommand&) = delete;
  HelpCommand& operator=(const HelpCommand&) = delete;

 private:
  static constexpr std::u16string_view kName = u"help";
  bool isOurs_;
};

/// Runs lines and remembers whether all went well.
class Console {
 public:
  void RunLine(std::string_view line) {
    const std::size_t begin = line.find_first_not_of(kBlanks);
    if (begin == std::string_view::npos) return;
    // Blanks at the end may belong to the arguments.
    line.remove_prefix(begin);
    const std::optional<int> result =
        CommandRegistry::Instance().RunLine(orncore::string::UTF8to16(line), stream_);
    stream_.flush();
    // Writing nothing shows why nothing can be written.
    if (!stream_) throw ToolError(ExitStatus::kOutput, "Standard output cannot be written.");
    if (!result) {
      ReportError("There is no console command '" + std::string(line.substr(0, line.find(' '))) +
                  "'. 'help' lists those that there are.");
    }
    if (result.value_or(1) != 0) status_ = ExitStatus::kCommand;
  }

  ExitStatus Status() const { return status_; }

 private:
  HelpCommand help_;
  ConsoleStreamBuffer buffer_;
  UTF16OutputStream stream_{&buffer_};
  ExitStatus status_ = ExitStatus::kDone;
};

void RunLinesOfInput(Console& console) {
  const bool isInteractive = IsInteractive();
  InputLines lines;
  for (;;) {
    if (isInteractive) WriteOutput(kPrompt);
    std::optional<std::string> line = lines.Next();
    if (!line) break;
    if (line->ends_with('\r')) line->pop_back();
    console.RunLine(*line);
  }
  if (isInteractive) WriteOutput("\n");
}

}  // namespace

ExitStatus Run(const ConsoleArguments& arguments) {
  if (arguments.host) InstallHostFile(*arguments.host);
  Console console;
  if (arguments.line.empty()) {
    RunLinesOfInput(console);
  } else {
    console.RunLine(arguments.line);
  }
  return console.Status();
}

}  // namespace hosts::console
