// Quotes words for a POSIX shell, and creates the command line that rates a feature.
#ifndef HOSTS_CONSOLE_SHELLCOMMAND_H_
#define HOSTS_CONSOLE_SHELLCOMMAND_H_

#include <string>

#include "hosts/console/Commands.h"

namespace hosts::console {

/// Returns `word`, which may contain any bytes except NUL, as one word of a POSIX shell. Adds
/// quotes if necessary. If `orncore::string::EscapeInvisible` would change `word`, the result is
/// ASCII with octal escapes in `$'...'`, so that a terminal shows and copies it unchanged.
std::string ShellWord(const std::string& word);

/// Returns the command line that rates the feature with the key `key`. `sources` are the files that
/// the command line names.
std::string RatingCommand(const std::string& key, const SourceArguments& sources);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_SHELLCOMMAND_H_
