// Registers the console command that checks whether a data file can be read and parsed.
#ifndef ORNWHATSNEW_SRC_VALIDATECOMMAND_H_
#define ORNWHATSNEW_SRC_VALIDATECOMMAND_H_

namespace ornwhatsnew {

/// Registers "ValidateWhatsNew" in the host's console registry. Always returns true, even if the
/// registry already has a command with this name.
bool RegisterValidateCommand();

/// Removes the command from the registry, cancels the background reads, and waits until their
/// thread has ended.
void UnregisterValidateCommand();

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_VALIDATECOMMAND_H_
