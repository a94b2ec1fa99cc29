// Makes a field of the data file the value that the list keeps: through UTF-16 and back, so that
// ill-formed bytes become U+FFFD, without carriage returns and line feeds, and in lower case where
// the column asks for it.
//
// Nearly all fields are ASCII and clean already: those are handed back as they stand, a view into
// the file, and never leave 8 bits. The others are worked out in buffers that are kept.
#ifndef ORNWHATSNEW_SRC_DATAFILE_FIELDCLEANER_H_
#define ORNWHATSNEW_SRC_DATAFILE_FIELDCLEANER_H_

#include <string>
#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Works on one field at a time, with kept buffers.
class FieldCleaner {
 public:
  /// The cleaned field: a view of `field` itself, or of `buffer`, which is overwritten; `field` may
  /// be a view of `buffer`.
  std::string_view Clean(std::string_view field, UTF8String& buffer);

 private:
  UTF16String utf16_;
};

/// A clean field in lower case: a view of `field` itself, or of `buffer`, which is overwritten.
std::string_view LowerField(std::string_view field, UTF8String& buffer);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_DATAFILE_FIELDCLEANER_H_
