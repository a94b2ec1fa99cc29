// Registers and runs console commands.
//
// A host with a console passes each line to RunLine, unless the line is a command of the host
// itself. The commands write to a stream of the host. A host without a console does not need this
// header.
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
#include <orncore/string/Conversion.h>

namespace orncore::console {

using string::UTF16String;

/// A stream for the output of a command. Use `Write` for strings and `put` for single UTF-16 units.
///
/// Standard libraries have no facets for `char16_t`. Therefore, `stream << number` writes nothing
/// and sets the bad bit of the stream. `std::endl` and `std::setfill` throw `std::bad_cast`.
/// Convert numbers to strings first, and write `u"\n"` for a line end.
using UTF16OutputStream = std::basic_ostream<char16_t>;

/// Writes `text` to `stream` without formatting. A failure sets the state bits of `stream`, as for
/// `std::ostream::write`.
ORN_EXPORT void Write(UTF16OutputStream& stream, std::u16string_view text);

/// Maps names to commands. Names are compared as sequences of UTF-16 units, so letter case matters.
///
/// Threads: safe to use from any thread. A command runs without a lock, on the thread that calls
/// `RunLine`. It may register, unregister and run commands, and may unregister itself.
class ORN_EXPORT CommandRegistry {
 public:
  /// The function of a command. It receives the argument text and the output stream, and returns 0
  /// for success. Several threads may call it at the same time.
  using CommandFunction = std::function<int(const UTF16String& arguments, UTF16OutputStream&)>;

  /// The name and the help text of a command. `ListCommands` returns one object for each command.
  struct Command {
    UTF16String name;  ///< the first word of a line that runs the command
    UTF16String help;  ///< the text that follows the name in the usage line
  };

  /// Returns the registry of the process. It is never destroyed, so static destructors may use it.
  static CommandRegistry& Instance();

  /// Creates a separate, empty registry.
  CommandRegistry();
  ~CommandRegistry();
  CommandRegistry(const CommandRegistry&) = delete;
  CommandRegistry& operator=(const CommandRegistry&) = delete;

  /// Adds a command and returns true. Returns false and adds nothing in these cases:
  /// - a command with that name exists;
  /// - `name` is empty or contains a space, because no line could run such a command;
  /// - `function` is empty.
  ///
  /// `help` is the text that directly follows the name in the usage line. It must therefore start
  /// with a separator, such as a space.
  bool RegisterCommandFunction(UTF16String name, UTF16String help, CommandFunction function);

  /// Removes a command and returns true. Returns false if no command has that name. Does not wait
  /// for running calls to the command. If a call is running, the function of the command is
  /// destroyed when the last running call ends.
  bool UnregisterCommand(std::u16string_view name);

  /// Returns copies of all commands, sorted by name in ascending order of UTF-16 units.
  std::vector<Command> ListCommands() const;

  /// Runs the command that `line` names and returns its result. Returns `std::nullopt` if no
  /// command has this name.
  ///
  /// The name is the first word after any leading spaces. A space ends the name. The rest of the
  /// line after this space is the argument text. Exceptions from the command propagate to the
  /// caller.
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
