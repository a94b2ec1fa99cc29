// Cuts a row of the data file into fields, and turns each field into the value that the list
// stores.
//
// Nearly all fields need no change. They are returned as views into the file and never copied.
#ifndef ORNWHATSNEW_SRC_DATAFILE_FIELDCLEANER_H_
#define ORNWHATSNEW_SRC_DATAFILE_FIELDCLEANER_H_

#include <cstddef>
#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Returns the index at which the field that begins at `begin` ends: that of the next comma outside
/// quotes, or the size of the row. Linear in the bytes that it passes.
std::size_t FindFieldEnd(std::string_view row, std::size_t begin);

/// Whether `CleanField` would return `text` unchanged. The fields of a clean row are clean.
bool IsClean(std::string_view text);

/// Returns the field without quotes and carriage returns, with each maximal subpart of an
/// ill-formed sequence replaced by U+FFFD. The result views `field` or `buffer`; the function
/// overwrites `buffer`.
std::string_view CleanField(std::string_view field, UTF8String& buffer);

/// Returns a clean field in lower case, as a view of `buffer`, which the function overwrites.
std::string_view LowerField(std::string_view field, UTF8String& buffer);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_DATAFILE_FIELDCLEANER_H_
