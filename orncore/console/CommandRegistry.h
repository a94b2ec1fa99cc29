// The commands of the host's console.
//
// A host with a console passes each line that is not one of its own commands to RunLine, with a
// stream for the output. A host without a console need not use this header.
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

/// The output of a command. Use Write (below) for strings and put() for single units. The C++
/// library has no facets for char16_t, so `<<` of numbers, std::endl and std::setfill throw
/// std::bad_cast: convert numbers to strings first, and write u"\n".
using UTF16OutputStream = std::basic_ostream<char16_t>;

/// Writes `text` unchanged.
ORN_EXPORT void Write(UTF16OutputStream& stream, std::u16string_view text);

/// Commands by name. Names are compared unit by unit.
///
/// Threads: safe to use from any thread. A command runs on the thread that calls `RunLine`, without
/// a lock: it may register, unregister (also itself) and run commands.
class ORN_EXPORT CommandRegistry {
 public:
  /// Executes a command with its argument text and its output. Returns 0 for success.
  using CommandFunction = std::function<int(const UTF16String& arguments, UTF16OutputStream&)>;

  /// An entry of the list of commands.
  struct Command {
    UTF16String name;  ///< the first word of a line that runs it
    UTF16String help;  ///< the usage line shows it directly after the name
  };

  /// Returns the registry of the process, which is never destroyed.
  static CommandRegistry& Instance();

  /// Creates a separate, empty registry.
  CommandRegistry();
  ~CommandRegistry();
  CommandRegistry(const CommandRegistry&) = delete;
  CommandRegistry& operator=(const CommandRegistry&) = delete;

  /// Adds a command. Returns false without effect if the name is taken, is empty or contains a
  /// space (no line could run it), or if `function` is empty. The usage line shows `help` directly
  /// after the name.
  bool RegisterCommandFunction(UTF16String name, UTF16String help, CommandFunction function);

  /// Removes a command. Returns false if no command has that name. A call in progress is not
  /// affected.
  bool UnregisterCommand(std::u16string_view name);

  /// Returns all commands, sorted by name in ascending order of UTF-16 units.
  std::vector<Command> ListCommands() const;

  /// Runs a line. The name is the first word after any leading spaces. The argument text is
  /// everything after the single space that ends the name, unchanged. Returns the result of the
  /// command; nothing if no command has that name. Passes on what the command throws.
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
