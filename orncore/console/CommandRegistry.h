// The commands of the host's console: registered by name, run line by line.
//
// A host with a console of its own hands the lines that its own commands do not know to RunLine,
// with a stream on its output; one without has nothing to do.
#ifndef ORNCORE_CONSOLE_COMMANDREGISTRY_H_
#define ORNCORE_CONSOLE_COMMANDREGISTRY_H_

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <ostream>
#include <string_view>
#include <vector>

#include <orncore/Export.h>
#include <orncore/string/Types.h>

namespace orncore::console {

using string::UTF16String;

/// What commands write to. Write texts with Write (below) and single units with put(): the C++
/// library has no facets for char16_t, so that `<<` of numbers, std::endl, std::setfill and the
/// like throw std::bad_cast. Turn numbers into texts first, and write u"\n".
using UTF16OutputStream = std::basic_ostream<char16_t>;

/// Writes `text` as it stands.
ORN_EXPORT void Write(UTF16OutputStream& stream, std::u16string_view text);

/// Commands by name. Names are compared exactly, unit by unit.
///
/// Threads: safe from any. A command runs on the thread that runs its line, without any lock held:
/// it may register, unregister (itself, too) and run commands.
class ORN_EXPORT CommandRegistry {
 public:
  /// Executes a command: its argument text and where it writes to give its result, 0 for success.
  using CommandFunction = std::function<int(const UTF16String& arguments, UTF16OutputStream&)>;

  /// What the list of commands tells of one.
  struct Command {
    UTF16String name;  ///< its name, as lines begin with it
    UTF16String help;  ///< what a usage line shows right behind the name
  };

  /// The process's registry; it is never destroyed.
  static CommandRegistry& Instance();

  /// A registry of its own, without commands; programs use `Instance`.
  CommandRegistry();
  ~CommandRegistry();
  CommandRegistry(const CommandRegistry&) = delete;
  CommandRegistry& operator=(const CommandRegistry&) = delete;

  /// Adds a command. False, and nothing is changed, when the name is taken, is empty or holds a
  /// blank (no line could run it), or when the function is empty. `help` is what a usage line shows
  /// right behind the name.
  bool RegisterCommandFunction(UTF16String name, UTF16String help, CommandFunction function);

  /// Removes a command; false when there is none of that name. A run under way ends normally.
  bool UnregisterCommand(std::u16string_view name);

  /// All commands, by name in ascending order of UTF-16 units.
  std::vector<Command> ListCommands() const;

  /// Runs one line: the name is its first word, blanks before it passed over; the argument text is
  /// all behind the one blank that ends the name, untouched. The command's result, or nothing when
  /// no command has that name. What the command throws passes through.
  std::optional<int> RunLine(std::u16string_view line, UTF16OutputStream& stream) const;

 private:
  struct Entry {
    UTF16String help;
    std::shared_ptr<const CommandFunction> function;
  };

  mutable std::mutex mutex_;
  std::map<UTF16String, Entry, std::less<>> commands_;
};

}  // namespace orncore::console

#endif  // ORNCORE_CONSOLE_COMMANDREGISTRY_H_
