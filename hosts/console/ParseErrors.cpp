#include "hosts/console/ParseErrors.h"

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

namespace hosts::console {
namespace {

std::string FullName(const CLI::App& command) {
  const CLI::App* const parent = command.get_parent();
  return (parent == nullptr ? "" : FullName(*parent) + " ") + command.get_name();
}

/// Returns the error message for a missing command, an unknown command, or an unknown option in
/// place of a command. The message of CLI11 cannot be used, because it reports each of these errors
/// as a missing command.
std::string MissingCommandMessage(const CLI::App& command) {
  const std::vector<std::string> words = command.remaining();
  if (words.empty()) return "no command given";
  const bool isOption = words.front().starts_with('-');
  return std::string(isOption ? "unknown option '" : "unknown command '") + words.front() + "'";
}

/// Returns the first unknown option of `command`, or an empty string if there is none.
std::string UnknownOption(const CLI::App& command) {
  for (const std::string& word : command.remaining()) {
    if (word == "--") break;
    if (word.starts_with('-')) return word;
  }
  return "";
}

/// Returns the error message for words that no command accepts. The message of CLI11 cannot be
/// used, because it lists the words in reverse order.
std::string UnexpectedWordsMessage(const CLI::App& command) {
  constexpr bool kWithSubcommands = true;
  std::vector<std::string> words = command.remaining(kWithSubcommands);
  // `remaining` also returns the "--" that ends the options. `remaining_size` does not count it.
  if (words.size() > command.remaining_size(kWithSubcommands)) {
    words.erase(std::ranges::find(words, "--"));
  }
  if (words.size() == 1 && words.front().starts_with('-')) {
    return "unknown option '" + words.front() + "'";
  }
  std::string message = words.size() == 1 ? "unexpected argument" : "unexpected arguments";
  for (const std::string& word : words) message += " '" + word + "'";
  return message;
}

/// Returns the error message for an option that has the wrong number of values. `message` is the
/// message of CLI11, which is not clear. It begins with the name of the option.
std::string ValueCountMessage(std::string_view message) {
  std::string name(message.substr(0, message.find_first_of(": ")));
  if (!name.starts_with('-')) name.insert(0, "--");
  if (message.find("At Most") != message.npos) return name + " can be given only once";
  return name + (message.ends_with(" missing") ? " requires a value" : " takes no value");
}

/// Returns the innermost command that CLI11 recognised.
const CLI::App& ParsedCommand(const CLI::App& app) {
  const CLI::App* command = &app;
  while (!command->get_subcommands().empty()) command = command->get_subcommands().back();
  return *command;
}

std::string ErrorMessage(const CLI::App& app, const CLI::ParseError& error) {
  const CLI::App& command = ParsedCommand(app);
  switch (static_cast<CLI::ExitCodes>(error.get_exit_code())) {
    case CLI::ExitCodes::ExtrasError:
      return UnexpectedWordsMessage(app);
    case CLI::ExitCodes::RequiredError:
      if (command.get_require_subcommand_min() > 0) return MissingCommandMessage(command);
      // If there is an unknown option, report it. It is probably a misspelt required option.
      if (const std::string option = UnknownOption(command); !option.empty()) {
        return "unknown option '" + option + "'";
      }
      return error.what();
    case CLI::ExitCodes::ArgumentMismatch:
      return ValueCountMessage(error.what());
    default:
      return error.what();
  }
}

}  // namespace

Answer AnswerTo(const CLI::App& app, const CLI::ParseError& error) {
  std::ostringstream output;
  std::ostringstream problem;
  const bool isError = app.exit(error, output, problem) != 0;
  if (!isError) return {output.str(), false};
  return {
      ErrorMessage(app, error) + ". Run '" + FullName(ParsedCommand(app)) + " --help' for usage.",
      true};
}

}  // namespace hosts::console
