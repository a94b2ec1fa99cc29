// Adds the command lines that rate features to a panel.
#ifndef HOSTS_CONSOLE_RATINGCOMMANDS_H_
#define HOSTS_CONSOLE_RATINGCOMMANDS_H_

#include <string>

#include <ornwhatsnew/PanelLayout.h>

#include "hosts/console/Commands.h"

namespace hosts::console {

/// Returns `word`, which may contain any bytes except NUL, as one word of a POSIX shell. Adds
/// quotes if necessary. If `word` has invisible characters, control characters or ill-formed UTF-8,
/// the result is ASCII with octal escapes in `$'...'`, so that a terminal shows and copies it
/// unchanged.
std::string ShellWord(const std::string& word);

/// Adds a line to the question of each rating request in `layout`: the command line that rates the
/// feature. `sources` are the files that the command line names.
void AddRatingCommands(const SourceArguments& sources, ornwhatsnew::PanelLayout& layout);

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_RATINGCOMMANDS_H_
