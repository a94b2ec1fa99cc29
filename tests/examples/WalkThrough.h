// Reads the console code blocks of a Markdown page, which contain commands and their output.
#ifndef TESTS_EXAMPLES_WALKTHROUGH_H_
#define TESTS_EXAMPLES_WALKTHROUGH_H_

#include <string>
#include <string_view>
#include <vector>

namespace examples {

using Lines = std::vector<std::string>;

/// Splits a string into lines. Omits empty lines at the end of the string.
Lines SplitLines(std::string_view text);

/// A command in a Markdown page, and the output that the page shows for it.
struct ShownCommand {
  std::string command;
  Lines output;
};

/// Returns the commands in the code blocks of `page` that open with "```console". A command is a
/// line that begins with "$ ". Its output is the lines up to the next command or the end of the
/// block, without empty lines at the end.
std::vector<ShownCommand> ReadShownCommands(std::string_view page);

/// Returns whether the `output` of a command matches the output that the page shows. In `shown`,
/// the line "..." matches any number of lines, and the first "..." within a line matches any
/// characters.
bool IsShown(const Lines& shown, const Lines& output);

}  // namespace examples

#endif  // TESTS_EXAMPLES_WALKTHROUGH_H_
