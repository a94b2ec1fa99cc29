// Registers the console command that reads and parses a data file.
#ifndef ORNWHATSNEW_SRC_VALIDATECOMMAND_H_
#define ORNWHATSNEW_SRC_VALIDATECOMMAND_H_

namespace ornwhatsnew {

/// Adds the console command "ValidateWhatsNew" to `CommandRegistry::Instance()`, unless the
/// registry already has a command with this name. Always returns true.
bool RegisterValidateCommand();

/// Removes the command from the registry, cancels the background reads, and waits until their
/// thread has ended.
void UnregisterValidateCommand();

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_VALIDATECOMMAND_H_
