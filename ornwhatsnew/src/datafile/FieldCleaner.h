// Finds the fields of a row of the data file, and cleans them.
//
// Most fields need no cleaning. `CleanField` returns such fields as views into the file, without
// copying.
#ifndef ORNWHATSNEW_SRC_DATAFILE_FIELDCLEANER_H_
#define ORNWHATSNEW_SRC_DATAFILE_FIELDCLEANER_H_

#include <cstddef>
#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Returns the index in `row` of the end of the field that begins at the index `begin`. The end is
/// the next comma outside quotes, or the end of the row. Finding the ends of all fields of a row
/// takes time linear in the length of the row.
std::size_t FindFieldEnd(std::string_view row, std::size_t begin);

/// Returns whether `CleanField` would return `text` unchanged. If a row is clean, its fields are
/// clean.
bool IsClean(std::string_view text);

/// Returns the field without quotes or carriage returns. Replaces each maximal subpart of an
/// ill-formed UTF-8 sequence with U+FFFD. The result is a view of `field` or of `buffer`. The
/// function can overwrite `buffer`.
std::string_view CleanField(std::string_view field, UTF8String& buffer);

/// Returns `field` in lower case, as a view of `buffer`. Overwrites `buffer`. REQUIRES: `field` is
/// clean.
std::string_view LowerField(std::string_view field, UTF8String& buffer);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_DATAFILE_FIELDCLEANER_H_
