// Defines the version of the library. The build reads the version from this file.
//
// The version follows semantic versioning. The major number changes if hosts must be modified or
// rebuilt. While the major number is 0, such a change increments the minor number instead. The
// minor number also changes if the interface is extended. Otherwise, only the patch number changes.
// Until version 1.0, each host must therefore be rebuilt for each new minor version of the shared
// library.
#ifndef ORNWHATSNEW_VERSION_H_
#define ORNWHATSNEW_VERSION_H_

#include <string_view>

#include <orncore/Export.h>  // reports a compiler that is not in C++20 mode

namespace ornwhatsnew {

/// The version of these headers as `major.minor.patch`, in ASCII.
inline constexpr std::string_view kVersionText = "0.1.0";

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_VERSION_H_
