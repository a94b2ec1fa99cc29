#include "ornwhatsnew/src/ValidateCommand.h"

#include <chrono>
#include <exception>
#include <memory>
#include <string>

#include <orncore/config/TopLevel.h>
#include <orncore/console/CommandRegistry.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/filesupport/AsyncRead.h>
#include <orncore/filesupport/File.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>

namespace ornwhatsnew {
namespace {

using orncore::console::CommandRegistry;
using orncore::console::UTF16OutputStream;
using orncore::console::Write;
using orncore::filesupport::File;
using orncore::filesupport::ReadFuture;

constexpr std::u16string_view kCommandName = u"ValidateWhatsNew";
// The usage line is the command name immediately followed by this text.
constexpr std::u16string_view kCommandHelp =
    u" filepath - Parse a What's New file to validate changes before commiting to version control";
constexpr std::chrono::hours kReadDeadline{24};

// Loads a list like the application, with the state of the developer's settings. The setter
// discards its values, so that checking a file never changes what was seen.
void ParseForTest(const ReadFuture& read) {
  const auto memory = read.Get();
  const auto bytes = memory->Bytes();
  const UTF8String text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const FeatureListData list(
      text,
      [](const UTF8String& key) { return orncore::debug::DebugDatabase::Instance().GetEntry(key); },
      [](const UTF8String&, const UTF8String&) {});
}

// One execution of the command.
class ValidateCommand {
 public:
  ValidateCommand(const UTF16String& path, UTF16OutputStream& output)
      : file_(path), output_(output) {}

  void Run() {
    ReadFuture read = orncore::filesupport::ReadFileToRecycledMemory(file_);
    const auto reported = read.Then(orncore::filesupport::GetDefaultExecutor(),
                                    [this](const ReadFuture& completed) { Report(completed); });
    const bool isInTime = orncore::filesupport::WaitForUntypedUntil(
        reported, std::chrono::steady_clock::now() + kReadDeadline, true);
    if (isInTime) return;
    // A cancelled read has no value, and its failure must reach the log.
    if (const std::exception_ptr failure = reported.Failure()) std::rethrow_exception(failure);
  }

 private:
  void Report(const ReadFuture& read) {
    const int result = orncore::config::ExtractResultFromException(read.Failure());
    if (result < 0) {
      Write(output_, u"Failed to read What's New file at \"" + file_.FullPath() +
                         u"\" with result: " +
                         orncore::string::AsciiToUTF16(std::to_string(result)) + u"\n");
    } else {
      ParseForTest(read);
      Write(output_, u"Reading What's New file at \"" + file_.FullPath() + u"\" finished\n");
    }
    output_.flush();
  }

  const File file_;
  UTF16OutputStream& output_;
};

int Execute(const UTF16String& arguments, UTF16OutputStream& output) {
  if (arguments.empty()) {
    Write(output, kCommandName);
    Write(output, kCommandHelp);
    Write(output, u"\n");
    output.flush();
    return 0;
  }
  orncore::config::ExecuteTopLevelFunction([&] { ValidateCommand(arguments, output).Run(); });
  return 0;
}

}  // namespace

bool RegisterValidateCommand() {
  CommandRegistry::Instance().RegisterCommandFunction(UTF16String(kCommandName),
                                                      UTF16String(kCommandHelp), Execute);
  return true;
}

void UnregisterValidateCommand() {
  CommandRegistry::Instance().UnregisterCommand(kCommandName);
}

}  // namespace ornwhatsnew
