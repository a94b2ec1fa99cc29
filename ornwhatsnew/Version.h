// Defines the version of the library. The build reads the version from this file.
//
// The version follows semantic versioning. If hosts must be modified or rebuilt, the major number
// increases. While the major number is 0, the minor number increases instead. If the interface is
// extended, the minor number increases. Otherwise, only the patch number increases. Until version
// 1.0, each host must therefore be rebuilt for each new minor version of the shared library.
#ifndef ORNWHATSNEW_VERSION_H_
#define ORNWHATSNEW_VERSION_H_

#include <string_view>

#include <orncore/Export.h>  // reports a compiler that is not in C++20 mode

namespace ornwhatsnew {

/// The version of these headers as `major.minor.patch`, in ASCII.
inline constexpr std::string_view kVersionText = "0.1.0";

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_VERSION_H_
