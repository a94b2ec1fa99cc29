// Every service that the library asks, answered by this application.
#ifndef EXAMPLES_HOST_SERVICES_H_
#define EXAMPLES_HOST_SERVICES_H_

#include "Preferences.h"

/// Puts the application's own services in place of the defaults. `preferences` is asked at each
/// use, and has to live until RestoreServices.
void ReplaceServices(Preferences& preferences);

/// Puts the defaults back.
void RestoreServices();

#endif  // EXAMPLES_HOST_SERVICES_H_
