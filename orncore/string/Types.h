// The two text types that every module shares. They are the standard's own, so that hosts pass
// their texts as they are.
#ifndef ORNCORE_STRING_TYPES_H_
#define ORNCORE_STRING_TYPES_H_

#include <string>

#include <orncore/Export.h>  // reports a compiler that is not in C++20 mode

namespace orncore::string {

/// UTF-8 text, sizes in bytes: file text, persisted values, identifiers. May hold any bytes.
using UTF8String = std::string;
/// UTF-16 text, sizes in 16-bit units: paths and display text. May hold any units.
using UTF16String = std::u16string;

}  // namespace orncore::string

#endif  // ORNCORE_STRING_TYPES_H_
