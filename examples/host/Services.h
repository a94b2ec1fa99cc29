// The application's implementation of every service of the library.
#ifndef EXAMPLES_HOST_SERVICES_H_
#define EXAMPLES_HOST_SERVICES_H_

#include "Preferences.h"

/// Replaces the default services by the application's own. The services read `preferences` on every
/// use; it must outlive them, until RestoreServices.
void ReplaceServices(Preferences& preferences);

/// Restores the default services.
void RestoreServices();

#endif  // EXAMPLES_HOST_SERVICES_H_
