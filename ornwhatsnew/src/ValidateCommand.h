// The console command with which authors check that their data file can be read and parsed.
#ifndef ORNWHATSNEW_SRC_VALIDATECOMMAND_H_
#define ORNWHATSNEW_SRC_VALIDATECOMMAND_H_

namespace ornwhatsnew {

/// Puts "ValidateWhatsNew" into the host's console registry. Always true: whether the name was
/// still free is the registry's business.
bool RegisterValidateCommand();

/// Takes it out again.
void UnregisterValidateCommand();

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_VALIDATECOMMAND_H_
