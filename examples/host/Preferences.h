// Defines `Preferences`, which contains the user's settings, the strings that the library stores,
// and a flag that is true while the application quits. A real application would store the settings
// and the strings in a registry, a property list or a database.
#ifndef EXAMPLES_HOST_PREFERENCES_H_
#define EXAMPLES_HOST_PREFERENCES_H_

#include <map>
#include <set>
#include <string>

struct Preferences {
  bool logsUsage = true;
  bool isStaff = false;
  bool isQuitting = false;
  std::set<std::string, std::less<>> switchedOn;
  std::map<std::string, std::string, std::less<>> texts;
};

#endif  // EXAMPLES_HOST_PREFERENCES_H_
