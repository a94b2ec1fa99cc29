// Formats the output that the program prints when CLI11 stops parsing: a help text, the version or
// an error message.
#ifndef HOSTS_CONSOLE_PARSEERRORS_H_
#define HOSTS_CONSOLE_PARSEERRORS_H_

#include "hosts/console/Arguments.h"

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace hosts::console {

/// Returns the text to print for `error`, which the parser `app` has thrown. If the user requests
/// the help or the version, returns the requested text. Otherwise, returns an error message with a
/// hint about `--help`.
Answer AnswerTo(const CLI::App& app, const CLI::ParseError& error);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_PARSEERRORS_H_
