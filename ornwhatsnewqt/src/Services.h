// Installs the services of the library that are selected in the settings of a `WhatsNew`.
#ifndef ORNWHATSNEWQT_SRC_SERVICES_H_
#define ORNWHATSNEWQT_SRC_SERVICES_H_

#include <ornwhatsnewqt/Settings.h>

namespace ornwhatsnewqt {

/// Installs the services that `settings` selects, and leaves the others unchanged. Prints a warning
/// if `settings.applicationVersion` is an empty string.
void installServices(const Settings& settings);

}  // namespace ornwhatsnewqt

#endif  // ORNWHATSNEWQT_SRC_SERVICES_H_
