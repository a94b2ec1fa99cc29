// Reads what a page says about the program: its console blocks and what they say comes out.
#ifndef TESTS_EXAMPLES_WALKTHROUGH_H_
#define TESTS_EXAMPLES_WALKTHROUGH_H_

#include <string>
#include <string_view>
#include <vector>

namespace examples {

using Lines = std::vector<std::string>;

/// The lines of a text, without the blank ones at its end.
Lines SplitLines(std::string_view text);

/// One command of a page, and the lines that the page shows under it.
struct ShownCommand {
  std::string command;
  Lines output;
};

/// The commands of all blocks that open with "```console": lines that begin with "$ ".
std::vector<ShownCommand> ReadShownCommands(std::string_view page);

/// Whether the output is what the page shows, where a line "..." stands for any lines or none, and
/// "..." within a line for any characters.
bool IsShown(const Lines& shown, const Lines& output);

}  // namespace examples

#endif  // TESTS_EXAMPLES_WALKTHROUGH_H_
