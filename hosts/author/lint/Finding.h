// Defines a finding of `ornwhatsnew lint`: a mistake in a data file, with its place and its fix.
#ifndef HOSTS_AUTHOR_LINT_FINDING_H_
#define HOSTS_AUTHOR_LINT_FINDING_H_

#include <cstddef>
#include <string>
#include <vector>

#include "hosts/author/lint/LintCode.h"

namespace hosts::author {

/// A range of a file. Lines and columns are counted from 1. Columns count code points; a byte order
/// mark at the start of the file and the line end do not count. `endColumn` is the column after the
/// last character. A place for the whole file is 1:1 to 1:1.
struct Place {
  std::size_t line = 1;
  std::size_t column = 1;
  std::size_t endLine = 1;
  std::size_t endColumn = 1;
};

/// Another place that a finding refers to.
struct RelatedPlace {
  std::string file;
  std::size_t line = 1;
  std::size_t column = 1;
  std::string message;
};

/// A replacement of bytes of the file.
struct Edit {
  std::size_t offset = 0;  ///< in the bytes of the file
  std::size_t length = 0;
  std::string replacement;
};

struct Finding {
  std::string file;
  Place place;
  /// The number of the field, counted from 1, and its name in the header. 0 and empty if the
  /// finding concerns no single field.
  std::size_t fieldNumber = 0;
  std::string fieldName;
  Severity severity = Severity::kError;
  LintCode code = LintCode::kFieldCount;
  /// One line of well-formed UTF-8 without control characters: what happens to the change, and what
  /// to write instead. Begins in lower case and has no full stop.
  std::string message;
  std::vector<RelatedPlace> related;
  /// The edits that fix the mistake. Empty if there is not exactly one right answer.
  std::vector<Edit> edits;
  /// Equal in two runs if the code, the field and the content of the row are equal, even if the row
  /// moved.
  std::string fingerprint;
};

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_FINDING_H_
