// Reports errors as the program `ornwhatsnew`.
#ifndef HOSTS_CONSOLE_ERRORREPORT_H_
#define HOSTS_CONSOLE_ERRORREPORT_H_

#include <string_view>

#include "hosts/common/StandardStreams.h"

namespace hosts::console {

/// Writes "ornwhatsnew: " and `message` to standard error, as `common::ReportError` does.
inline void ReportError(std::string_view message) {
  common::ReportError("ornwhatsnew", message);
}

}  // namespace hosts::console

#endif  // HOSTS_CONSOLE_ERRORREPORT_H_
