// The library's version, written here once; the build reads it from this file.
//
// Versions are semantic: the major number changes when a host must change its code or be rebuilt
// against a changed binary interface, the minor number when something is added, the patch number
// otherwise. While the major number is 0, the minor number changes for all of the former, and the
// shared libraries of two minor versions do not stand in for each other.
#ifndef ORNWHATSNEW_VERSION_H_
#define ORNWHATSNEW_VERSION_H_

#include <string_view>

namespace ornwhatsnew {

/// Major number of the headers that the host is compiled against.
inline constexpr int kVersionMajor = 0;
/// Their minor number.
inline constexpr int kVersionMinor = 1;
/// Their patch number.
inline constexpr int kVersionPatch = 0;

/// The same version as text, `major.minor.patch`, ASCII.
inline constexpr std::string_view kVersionText = "0.1.0";

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_VERSION_H_
