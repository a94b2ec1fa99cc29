// Reads the console blocks of a Markdown page, which contain commands and their output.
#ifndef TESTS_EXAMPLES_WALKTHROUGH_H_
#define TESTS_EXAMPLES_WALKTHROUGH_H_

#include <string>
#include <string_view>
#include <vector>

namespace examples {

using Lines = std::vector<std::string>;

/// Returns the lines of a string without the empty lines at its end.
Lines SplitLines(std::string_view text);

/// A command in a page, and the output that the page shows for it.
struct ShownCommand {
  std::string command;
  Lines output;
};

/// Returns the commands (lines that begin with "$ ") of all blocks that open with "```console".
std::vector<ShownCommand> ReadShownCommands(std::string_view page);

/// Returns whether `output` matches `shown`. In `shown`, the line "..." matches any number of
/// lines, and "..." within a line matches any characters.
bool IsShown(const Lines& shown, const Lines& output);

}  // namespace examples

#endif  // TESTS_EXAMPLES_WALKTHROUGH_H_
