// Adds the options that several commands share, and options with checked values.
#ifndef HOSTS_CONSOLE_ARGUMENTOPTIONS_H_
#define HOSTS_CONSOLE_ARGUMENTOPTIONS_H_

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <ornwhatsnew/utility/SharedTypes.h>
#include <CLI/CLI.hpp>

#include "hosts/common/CommandLineHelp.h"
#include "hosts/console/Commands.h"

namespace hosts::console {

// Each `Add` function below adds options or arguments to `command`. The parser stores their values
// in the object to which the function's other non-const reference refers. This object must live as
// long as the command.

/// Adds the required argument for the data file.
void AddData(CLI::App& command, std::filesystem::path& data);

/// Adds the option `--host`. `Path` is `std::filesystem::path`, `std::string`, or a `std::optional`
/// of either type.
template <class Path>
CLI::Option* AddHost(CLI::App& command, Path& host) {
  return command.add_option("--host", host, common::kHostHelp)->type_name("FILE");
}

/// Adds the option `--state`.
void AddState(CLI::App& command, std::optional<std::filesystem::path>& state);

/// Adds the required argument for the data file, the required option `--host`, and the option
/// `--state`.
void AddSources(CLI::App& command, SourceArguments& sources);

/// Adds the options `--platform`, `--relevant-versions` and `--headlines`.
void AddFilters(CLI::App& command, ornwhatsnew::DisplayOptions& options);

/// Adds the options `--only-new` and `--rating`, and those of `AddFilters`.
void AddDisplayOptions(CLI::App& command, ornwhatsnew::DisplayOptions& options);

/// Adds the option `--format` for a result that can be text or JSON.
void AddFormat(CLI::App& command, OutputFormat& format);

/// Adds an option whose value is a number from `minimum` to `maximum` in decimal digits.
CLI::Option* AddNumber(CLI::App& command, const std::string& name,
                       std::optional<std::size_t>& number, std::size_t minimum, std::size_t maximum,
                       const std::string& description);

/// The words that an option accepts, and their meanings.
template <class Choice>
struct Choices {
  const char* noun;  ///< what each word is, with an article, for error messages
  std::vector<std::pair<std::string, Choice>> words;
};

/// Returns the words, joined for a message, such as "text, json or sarif".
template <class Choice>
std::string ListOfWords(const Choices<Choice>& choices) {
  std::string list;
  for (const auto& [word, choice] : choices.words) {
    if (!list.empty()) list += word == choices.words.back().first ? " or " : ", ";
    list += word;
  }
  return list;
}

/// Adds an option that accepts the words of `choices`, which must live as long as the command. Does
/// not use `IsMember` of CLI11, whose error message does not quote the word.
template <class Choice>
CLI::Option* AddChoice(CLI::App& command, const std::string& name, const Choices<Choice>& choices,
                       Choice& chosen, const std::string& description) {
  const auto choose = [&choices, &chosen, name](const std::string& word) {
    const auto found =
        std::ranges::find(choices.words, word, &std::pair<std::string, Choice>::first);
    if (found == choices.words.end()) {
      throw CLI::ValidationError(
          name, "'" + word + "' is not " + choices.noun + "; write " + ListOfWords(choices));
    }
    chosen = found->second;
  };
  return command.add_option_function<std::string>(name, choose, description);
}

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_ARGUMENTOPTIONS_H_
