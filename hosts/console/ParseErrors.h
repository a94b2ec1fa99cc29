// Formats the help texts and the error messages that end the parsing of the command line.
#ifndef HOSTS_CONSOLE_PARSEERRORS_H_
#define HOSTS_CONSOLE_PARSEERRORS_H_

#include "hosts/console/Arguments.h"

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace hosts::console {

/// Returns the text to print for `error`, which the parser `app` has thrown: the help or the
/// version if the user requests it, otherwise an error message and a hint about `--help`.
Answer AnswerTo(const CLI::App& app, const CLI::ParseError& error);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_PARSEERRORS_H_
