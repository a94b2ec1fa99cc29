#include "ornwhatsnew/src/ValidateCommand.h"

#include <chrono>
#include <exception>
#include <string>

#include <orncore/config/TopLevel.h>
#include <orncore/console/CommandRegistry.h>
#include <orncore/debug/DebugDatabase.h>
#include <orncore/filesupport/AsyncRead.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/FeatureListData.h>

namespace ornwhatsnew {
namespace {

using orncore::console::CommandRegistry;
using orncore::console::UTF16OutputStream;
using orncore::console::Write;
using orncore::filesupport::File;
using orncore::filesupport::ReadOutcome;

constexpr std::u16string_view kCommandName = u"ValidateWhatsNew";
// The usage line consists of the command name and this string, without a separator. Compatibility:
// "commiting" keeps its spelling (docs/compatibility.md).
constexpr std::u16string_view kCommandHelp =
    u" filepath - Parse a What's New file to validate changes before commiting to version control";
constexpr std::chrono::hours kReadDeadline{24};

// Loads a list from `memory`, with the state from the debug database. The setter discards its
// values, so that checking a file never changes the state.
void ParseForTest(const orncore::filesupport::RecycledMemory& memory) {
  const auto bytes = memory.Bytes();
  const UTF8String text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const FeatureListData list(
      text,
      [](const UTF8String& key) { return orncore::debug::DebugDatabase::Instance().GetEntry(key); },
      [](const UTF8String&, const UTF8String&) {});
}

// Runs the command for one file.
class ValidateCommand {
 public:
  ValidateCommand(const UTF16String& path, UTF16OutputStream& output)
      : file_(path), output_(output) {}

  void Run() {
    auto reported = orncore::filesupport::ReadFileToRecycledMemory(
        file_, orncore::filesupport::GetDefaultExecutor(),
        [this](const ReadOutcome& read) { Report(read); });
    orncore::filesupport::WaitForUntypedUntil(
        reported, std::chrono::steady_clock::now() + kReadDeadline, true);
  }

 private:
  void Report(const ReadOutcome& read) {
    const int result = orncore::config::ExtractResultFromException(read.failure);
    if (result < 0) {
      Write(output_, u"Failed to read What's New file at \"" + file_.FullPath() +
                         u"\" with result: " +
                         orncore::string::AsciiToUTF16(std::to_string(result)) + u"\n");
    } else {
      // A cancelled read has the result code 0 but no bytes. Throw its exception, because there is
      // nothing to parse.
      if (read.failure) std::rethrow_exception(read.failure);
      ParseForTest(*read.memory);
      Write(output_, u"Reading What's New file at \"" + file_.FullPath() + u"\" finished\n");
    }
    output_.flush();
  }

  const File file_;
  UTF16OutputStream& output_;
};

// Compatibility: the command always returns 0, even if it cannot read the file
// (docs/compatibility.md).
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
  // End the thread of the background read, because the library may be unloaded afterwards.
  orncore::filesupport::GetDefaultExecutor().Join();
}

}  // namespace ornwhatsnew
