// Defines a finding of `ornwhatsnew lint`: a message about a position in a file, and an optional
// edit that corrects the mistake.
#ifndef HOSTS_AUTHOR_LINT_FINDING_H_
#define HOSTS_AUTHOR_LINT_FINDING_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "hosts/author/lint/LintCode.h"

namespace hosts::author {

/// A range of a file. Line and column numbers start at 1. Column numbers count code points, without
/// a byte order mark at the start of the file and without line endings. `endColumn` is the column
/// number after the last character. For a finding about the whole file, the range is 1:1 to 1:1.
struct Place {
  std::size_t line = 1;
  std::size_t column = 1;
  std::size_t endLine = 1;
  std::size_t endColumn = 1;
};

/// Another position to which a finding refers.
struct RelatedPlace {
  std::string file;
  std::size_t line;
  std::size_t column;
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
  /// The number of the field, starting at 1, and the name of its column. If the finding is not
  /// about a single field, the number is 0 and the name is empty.
  std::size_t fieldNumber = 0;
  std::string fieldName;
  Severity severity = Severity::kError;
  LintCode code = LintCode::kFieldCount;
  /// One line of well-formed UTF-8 without control characters. States the mistake or the fact, and
  /// usually its effect and what to write instead. Does not begin with a capital letter or end with
  /// a full stop.
  std::string message;
  std::vector<RelatedPlace> related;
  /// The edit that corrects the mistake. Has no value if `--fix` cannot correct the mistake.
  std::optional<Edit> edit;
  /// Identifies the finding in later runs. Depends on the code and on the bytes of the row, but not
  /// on the line number of the row. For a finding about the whole file, depends only on the code.
  /// For a finding about the host description, depends on the code and the message. `FinishReport`
  /// makes the fingerprints in each file unique.
  std::string fingerprint;
};

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_FINDING_H_
