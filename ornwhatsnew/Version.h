// The version of the library. The build reads it from this file.
//
// Versions are semantic. The major number changes if a host must change its code or be rebuilt, the
// minor number if something is added, and the patch number otherwise. While the major number is 0,
// the minor number changes in the first two cases, and the shared libraries of two minor versions
// are not interchangeable.
#ifndef ORNWHATSNEW_VERSION_H_
#define ORNWHATSNEW_VERSION_H_

#include <string_view>

namespace ornwhatsnew {

/// The major number of the headers that the host is compiled against.
inline constexpr int kVersionMajor = 0;
/// The minor number of these headers.
inline constexpr int kVersionMinor = 1;
/// The patch number of these headers.
inline constexpr int kVersionPatch = 0;

/// The version as ASCII text, `major.minor.patch`.
inline constexpr std::string_view kVersionText = "0.1.0";

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_VERSION_H_
