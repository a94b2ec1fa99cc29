// Defines the codes of all findings of `ornwhatsnew lint`. One table contains the name, the
// severity and the explanation of each code. `--explain`, `--list-codes` and docs/lint-codes.md
// show the contents of this table.
#ifndef HOSTS_AUTHOR_LINT_LINTCODE_H_
#define HOSTS_AUTHOR_LINT_LINTCODE_H_

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace hosts::author {

/// The severities of findings, from the lowest to the highest. `kOff` suppresses a finding.
enum class Severity { kOff, kNote, kWarning, kError };

/// Returns "off", "note", "warning" or "error".
std::string_view SeverityName(Severity severity);

/// Returns the severity with the name `name`. Returns `std::nullopt` for any other string.
std::optional<Severity> FindSeverity(std::string_view name);

/// The codes in the order of the table.
enum class LintCode : std::size_t {
  // The form of the file.
  kFileSeparator,
  kFileUTF16,
  kFileNotUTF8,
  kFileLineEnds,
  kFileEmpty,
  kNulByte,
  kConflictMark,
  kInnerByteOrderMark,
  // The header row.
  kHeaderMissing,
  kHeaderWidth,
  kHeaderSecondNameEmpty,
  kHeaderOverLines,
  kHeaderRepeated,
  kHeaderOrder,
  kChangesSinceBeforeHeader,
  // The shape of a row.
  kFieldCount,
  kUnquotedComma,
  kDecimalComma,
  kWrongQuotes,
  kIssueList,
  kMissingComma,
  kTrailingComma,
  kOpenQuote,
  kTextOverLines,
  kGroupingIDEmpty,
  kTextMissing,
  // Words.
  kGroupingIDUnknown,
  kSalienceUnknown,
  kSalienceTwoWords,
  kKeywordColumn,
  kPlatformUnknown,
  kRatingRequestWord,
  kChangesSinceSpelling,
  kChangesSinceOverwritten,
  kChangesSinceVersion,
  // Versions.
  kVersionPrefix,
  kVersionDate,
  kVersionPlaceholder,
  kBoundsComponents,
  kBoundsNumber,
  kBoundsNoVersion,
  kBoundsOrder,
  kBoundsHost,
  // Links and key texts.
  kLinkNotHttps,
  kLinkSpace,
  kLinkTwo,
  kKeySpace,
  kKeyPrefix,
  kKeyNoDefault,
  // The feature table of the host.
  kHostEpicKeyEmpty,
  kHostEpicKeyTwice,
  // Warnings.
  kQuotesVanish,
  kLinkInSection,
  kLinkInText,
  kRatingInSection,
  kChangesSinceMissing,
  kChangesSinceRepeated,
  kVersionMissing,
  kSameIdentity,
  kKeyTwoDefaults,
  kMarkupOutsideKey,
  kMarkupUnknown,
  kHTML,
  kMojibake,
  kCommitNumber,
  kOuterSpaces,
  kFeatureUnseen,
  kFeatureHidden,
  kInternalWithFeatureKey,
  // Notes.
  kNoChange,
  kVersionAboveHost,
  kLinkLater,
  kFeatureWithoutChange,
  kStoryIDWins,
  kUnreviewedLeft,
  kCommentLine,
  // The comparison with a baseline.
  kBaselineNew,
  kBaselineNewAgain,
  kBaselineVanished,
  kBaselineRatedAgain,
};

/// Describes a code. All strings are in English. `explanation` and `remedy` consist of sentences.
struct LintCodeInfo {
  LintCode code;
  std::string_view name;  ///< stable: configurations and scripts contain it
  Severity severity;      ///< the severity without configuration
  std::string_view summary;
  std::string_view explanation;
  std::string_view remedy;
};

/// Returns the table, in the order of `LintCode`.
std::span<const LintCodeInfo> LintCodes();

/// Returns the entry of the table for `code`.
const LintCodeInfo& InfoOf(LintCode code);

/// Returns the code with the name `name`, or `std::nullopt` if there is none.
std::optional<LintCode> FindLintCode(std::string_view name);

/// Returns the text that `--explain` prints.
std::string Explanation(LintCode code);

/// Returns the text that `--list-codes` prints: name, severity and summary of each code.
std::string CodeList();

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_LINTCODE_H_
