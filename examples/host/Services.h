// Declares functions that replace the services of the library and restore the default services.
#ifndef EXAMPLES_HOST_SERVICES_H_
#define EXAMPLES_HOST_SERVICES_H_

#include "Preferences.h"

/// Replaces the default services with those of the application. The new services read `preferences`
/// whenever the library queries them, and store debug entries in it. `preferences` must exist until
/// RestoreServices is called.
void ReplaceServices(Preferences& preferences);

/// Restores the default services.
void RestoreServices();

#endif  // EXAMPLES_HOST_SERVICES_H_
