// The console command with which authors check that a data file can be read and parsed.
#ifndef ORNWHATSNEW_SRC_VALIDATECOMMAND_H_
#define ORNWHATSNEW_SRC_VALIDATECOMMAND_H_

namespace ornwhatsnew {

/// Registers "ValidateWhatsNew" in the host's console registry. Always returns true: the registry
/// handles a name that is already registered.
bool RegisterValidateCommand();

/// Removes the command from the registry.
void UnregisterValidateCommand();

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_VALIDATECOMMAND_H_
