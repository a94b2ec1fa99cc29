// The table of all codes of `ornwhatsnew lint`.
#ifndef HOSTS_AUTHOR_LINT_LINTCODETABLE_H_
#define HOSTS_AUTHOR_LINT_LINTCODETABLE_H_

#include <array>

#include "hosts/author/lint/LintCode.h"

namespace hosts::author {

/// The table contains each code once, in the order of `LintCode`.
inline constexpr auto kLintCodes = std::to_array<LintCodeInfo>({
    {LintCode::kFileSeparator, "file-separator", Severity::kError,
     "the fields are separated by semicolons, tabs or vertical bars",
     "Commas separate the fields of a data file. The library skips rows with other separators. In "
     "many countries, spreadsheet programs separate the fields with semicolons.",
     "Export the table with commas as separators."},
    {LintCode::kFileUTF16, "file-utf16", Severity::kError, "the file is UTF-16",
     "A data file is UTF-8. The library reads the bytes of a UTF-16 file as UTF-8, so external "
     "users see no changes, and internal users see unreadable text. Spreadsheet programs call "
     "UTF-16 \"Unicode text\".",
     "Save the file as UTF-8."},
    {LintCode::kFileNotUTF8, "file-not-utf8", Severity::kError,
     "the file contains bytes that are not UTF-8",
     "Users see the replacement character U+FFFD instead of bytes that are not valid UTF-8. "
     "Usually, the encoding of the file is Latin-1 or Windows-1252.",
     "Save the file as UTF-8."},
    {LintCode::kFileLineEnds, "file-line-ends", Severity::kError, "a line ends in CR alone",
     "A CR without LF does not end a row. The library removes the CR and joins the lines into one "
     "row. This row has the wrong number of fields or the wrong text.",
     "Use LF or CR LF line endings. --fix replaces CR line endings with LF if each resulting line "
     "is a complete row."},
    {LintCode::kFileEmpty, "file-empty", Severity::kError, "the file is empty",
     "Users see no changes.", "Add the header row and the changes."},
    {LintCode::kNulByte, "nul-byte", Severity::kError, "a field contains a NUL byte",
     "The library keeps the NUL byte in the field, but many views truncate the text at this byte.",
     "Delete the NUL byte."},
    {LintCode::kConflictMark, "conflict-mark", Severity::kError,
     "the line is a merge-conflict marker",
     "The file contains both versions of the conflicting lines, so users can see a change twice.",
     "Resolve the conflict and delete the markers."},
    {LintCode::kInnerByteOrderMark, "inner-byte-order-mark", Severity::kError,
     "a byte order mark is not at the start of the file",
     "The library removes a byte order mark only at the start of the header row. Any other "
     "byte order mark becomes an invisible character of its field, so the field matches no key "
     "and no keyword. Joining two files can leave such a byte order mark.",
     "Delete the byte order mark."},
    {LintCode::kHeaderMissing, "header-missing", Severity::kError,
     "the first row is a change, not a header",
     "The first row that the library does not skip is the header, even if the row contains a "
     "change. This change is lost.",
     "Insert a header row with ten column names before the first row."},
    {LintCode::kHeaderWidth, "header-width", Severity::kError,
     "the header does not have ten fields",
     "The library skips a header that does not have ten fields, and uses the next row as the "
     "header. The content of the next row is lost.",
     "Write exactly ten column names. If a name contains a comma, put double quotes around the "
     "name."},
    {LintCode::kHeaderSecondNameEmpty, "header-second-name-empty", Severity::kError,
     "the second column of the header has no name",
     "The library skips a row whose second field is empty, and uses the next row as the header. "
     "The content of the next row is lost.",
     "Write a name for the second column."},
    {LintCode::kHeaderOverLines, "header-over-lines", Severity::kError,
     "the header continues on the next line",
     "Every line feed ends a row, even between quotes. The library skips a header that continues "
     "on the next line, and uses a later row as the header. The content of the later row is lost.",
     "Write the header on one line."},
    {LintCode::kHeaderRepeated, "header-repeated", Severity::kError,
     "the file has a second header row",
     "The library reads the second header as a change, which internal users see. Joining two "
     "files can leave such a row.",
     "Delete the row."},
    {LintCode::kHeaderOrder, "header-order", Severity::kError, "the columns are in the wrong order",
     "The library identifies a column by its position and ignores its name. The library therefore "
     "reads the values of a misplaced column as values of another column.",
     "Put the columns in the order given in ornwhatsnew(5)."},
    {LintCode::kChangesSinceBeforeHeader, "changes-since-before-header", Severity::kError,
     "a Changes-Since row precedes the header",
     "If a Changes-Since row precedes the header, the library uses this row as the header. The "
     "version in the row is lost, and the library reads the real header as a change.",
     "Move the row below the header."},
    {LintCode::kFieldCount, "field-count", Severity::kError, "the row does not have ten fields",
     "The library skips the row, so its change is lost.",
     "Write ten fields, separated by nine commas."},
    {LintCode::kUnquotedComma, "unquoted-comma", Severity::kError,
     "a comma outside quotes splits a field",
     "A comma outside quotes ends a field. The row has too many fields, so the library skips "
     "it and the change is lost.",
     "Put double quotes around the field."},
    {LintCode::kDecimalComma, "decimal-comma", Severity::kError, "a version contains a comma",
     "Outside quotes, the comma splits the version into two fields, so the library skips the row "
     "and the change is lost. If the field is quoted, users see the comma.",
     "Write the version with dots instead of commas."},
    {LintCode::kWrongQuotes, "wrong-quotes", Severity::kError,
     "a field with commas is in typographic or single quotes",
     "Only the double quote (U+0022) protects a comma. The row has too many fields, so the "
     "library skips it and the change is lost.",
     "Replace the quotes with double quotes."},
    {LintCode::kIssueList, "issue-list", Severity::kError,
     "the story ID contains several issue keys",
     "A row can contain only one story ID. Each additional issue key shifts the fields after it, "
     "so the library skips the row and the change is lost.",
     "Keep one story ID, or write one row for each issue."},
    {LintCode::kMissingComma, "missing-comma", Severity::kError, "the row has too few commas",
     "The row has too few fields, so the library skips it and the change is lost.",
     "Add the missing commas. A complete row has nine commas outside quotes."},
    {LintCode::kTrailingComma, "trailing-comma", Severity::kError,
     "the row has commas after the last field",
     "The row has too many fields, so the library skips it and the change is lost.",
     "Delete the commas after the text."},
    {LintCode::kOpenQuote, "open-quote", Severity::kError,
     "a quote is not closed, and commas follow it",
     "The quote is not closed, so the commas after it do not separate fields. The row has "
     "too few fields, and the library skips it.",
     "Close the quote. For inches, write the character U+2033."},
    {LintCode::kTextOverLines, "text-over-lines", Severity::kError,
     "the text continues on the next line",
     "Every line feed ends a row, even between quotes. Either users see only the first line of "
     "the text, or the library skips the row. The other lines are lost.",
     "Write the text on one line. In the default text of a key, #{endl} starts a new line."},
    {LintCode::kGroupingIDEmpty, "grouping-id-empty", Severity::kError, "the grouping ID is empty",
     "The library skips a row without a grouping ID, so the change is lost.",
     "Write the key of a feature or a section into the second column."},
    {LintCode::kTextMissing, "text-missing", Severity::kError, "the row has no text and no effect",
     "Users do not see a change without text. A row without text has an effect only if it requests "
     "a rating, hides or shows a feature, or sets the link of an item.",
     "Write the text, or delete the row."},
    {LintCode::kGroupingIDUnknown, "grouping-id-unknown", Severity::kError,
     "the grouping ID matches no feature and no section",
     "The change belongs to the section INTERNAL, so only internal users see it. Except for "
     "INTERNAL, a key must match exactly, including its letter case. Without --host, lint reports "
     "only misspelt section keys and grouping IDs that consist of spaces.",
     "Write the epic key of a feature, or MISC, BUGFIX or INTERNAL."},
    {LintCode::kSalienceUnknown, "salience-unknown", Severity::kError,
     "the salience is not a keyword",
     "The library ignores an unknown salience. The change is shown, even if its author "
     "intended to hide the change or the feature.",
     "Write a keyword that ornwhatsnew(5) lists, or leave the field empty."},
    {LintCode::kSalienceTwoWords, "salience-two-words", Severity::kError,
     "the salience contains several words",
     "The salience is one keyword. If the field contains several words, none of them has an effect "
     "and the change is shown.",
     "Keep one keyword."},
    {LintCode::kKeywordColumn, "keyword-column", Severity::kError,
     "a keyword is in the wrong column",
     "A keyword has an effect only in its own column. In another column, the library treats "
     "it as an ordinary value.",
     "Move the keyword into its column."},
    {LintCode::kPlatformUnknown, "platform-unknown", Severity::kError,
     "the platform is neither Mac nor Win",
     "The library ignores an unknown platform, so the change is shown on every platform.",
     "Write Mac or Win. For a change on every platform, leave the field empty."},
    {LintCode::kRatingRequestWord, "rating-request-word", Severity::kError,
     "the rating request is a word, not a question",
     "Any text except RequestRating is a question, so the rating view shows this word as the "
     "question.",
     "Write RequestRating, or a question, or leave the field empty."},
    {LintCode::kChangesSinceSpelling, "changes-since-spelling", Severity::kError,
     "Changes-Since is misspelt or in the wrong column",
     "The row does not set the version in the heading. The library skips the row, or reads the row "
     "as a change.",
     "Write the version into the first column and Changes-Since into the second column."},
    {LintCode::kChangesSinceOverwritten, "changes-since-overwritten", Severity::kError,
     "a line after the Changes-Since row replaces its version",
     "A row with fewer than ten fields inherits the missing fields from the row before it. A line "
     "with one field after a Changes-Since row is therefore a second Changes-Since row, and the "
     "heading shows the text of this line. A comment line without a comma also replaces the "
     "version.",
     "Move the line away from the Changes-Since row."},
    {LintCode::kChangesSinceVersion, "changes-since-version", Severity::kError,
     "the Changes-Since version is empty, begins with a v, or contains a comma",
     "The heading adds a v before the version. If the version is empty, users see only this v. If "
     "the version begins with a v, users see a second v. If the version contains a comma, users "
     "see the comma.",
     "Write the version as numbers separated by dots, for example 4.2."},
    {LintCode::kVersionPrefix, "version-prefix", Severity::kError, "the version begins with a v",
     "The panel adds a v before the version, so users see a second v. In a comparison of "
     "versions, the component with the v counts as 0.",
     "Delete the v."},
    {LintCode::kVersionDate, "version-date", Severity::kError, "the version is a date",
     "Spreadsheet programs convert versions such as 4.3 to dates. Users see the date as the "
     "version.",
     "In the spreadsheet, format the column as text, and then write the version again."},
    {LintCode::kVersionPlaceholder, "version-placeholder", Severity::kWarning,
     "a component of the version is a placeholder",
     "Users see the version unchanged, for example v4.x.",
     "Write the version that introduced the change."},
    {LintCode::kBoundsComponents, "bounds-components", Severity::kError,
     "the versions in columns 1 and 6 have different numbers of components",
     "The library does not add missing components, so 4.3 is less than 4.2.0.0. The change "
     "is therefore relevant to the wrong versions or to no version.",
     "Write both versions with as many components as the full version of the application."},
    {LintCode::kBoundsNumber, "bounds-number", Severity::kError,
     "a version has too many components, or a component that is not a number below 1000",
     "The library combines the components of a version into one number in base 1000. A component "
     "above 999 increases the component to its left. A component that is not a number counts as 0. "
     "With seven components or more, the number can be too large for 64 bits.",
     "Write at most six components, each of them a number from 0 to 999."},
    {LintCode::kBoundsNoVersion, "bounds-no-version", Severity::kError,
     "the change has a version in column 6, but no version in column 1",
     "The change is relevant only to versions earlier than the version in the first column. If the "
     "first column is empty, the change is relevant to no version, and a panel that is filtered by "
     "version never shows the change.",
     "Write the version that introduced the change into the first column."},
    {LintCode::kBoundsOrder, "bounds-order", Severity::kError,
     "the version in column 6 is not earlier than the version in column 1",
     "The change is relevant to no version, so a panel that is filtered by version never shows it.",
     "Write the first relevant version into the sixth column, and the version that "
     "introduced the change into the first column."},
    {LintCode::kBoundsHost, "bounds-host", Severity::kError,
     "the full version of the host cannot be compared with the versions of the change",
     "The library compares both versions of the change with the full version of the application, "
     "which consists of a version and a build number. If the numbers of components differ, or if a "
     "component is above 999, the results of the comparisons are meaningless.",
     "Write as many components as the full version has. If the build number is above 999, "
     "leave the sixth column empty."},
    {LintCode::kLinkNotHttps, "link-not-https", Severity::kError,
     "the link does not begin with https://",
     "The library ignores the link. Only internal users see a note about it.",
     "Write a link that begins with https:// in lower case."},
    {LintCode::kLinkSpace, "link-space", Severity::kError, "the link contains a space",
     "The library ignores a link with a leading space. A link with a space at another position "
     "does not open.",
     "Delete the space, or write it as %20."},
    {LintCode::kLinkTwo, "link-two", Severity::kError, "the field for the link contains two links",
     "The library reads the field as one link, which does not open.", "Keep one link."},
    {LintCode::kKeySpace, "key-space", Severity::kError, "a space precedes a localisation key",
     "The text does not begin with $$$/, so users see the key instead of its translation.",
     "Delete the space."},
    {LintCode::kKeyPrefix, "key-prefix", Severity::kError,
     "a localisation key begins with two dollar signs, or with more than three",
     "The text does not begin with $$$/, so users see the key instead of its translation.",
     "Begin the key with $$$/."},
    {LintCode::kKeyNoDefault, "key-no-default", Severity::kError,
     "a localisation key has no default text",
     "If a key has neither a default text nor a translation in the host's dictionary, users see "
     "the key. Without --host, the dictionary is unknown, and the finding is a warning.",
     "Add = and a default text after the key."},
    {LintCode::kHostEpicKeyEmpty, "host-epic-key-empty", Severity::kError,
     "a feature of the host has no epic key",
     "Every change with an empty third column belongs to the feature without an epic key. The "
     "exceptions are changes with the grouping ID INTERNAL or the salience Unreviewed.",
     "Give the feature an epic key in the feature table of the host."},
    {LintCode::kHostEpicKeyTwice, "host-epic-key-twice", Severity::kError,
     "two features of the host have the same epic key",
     "If several features have the same epic key, the list contains only the feature whose "
     "internal key sorts first. The panel never shows the other features.",
     "Give each feature its own epic key."},
    {LintCode::kQuotesVanish, "quotes-vanish", Severity::kWarning,
     "the library removes double quotes inside a field",
     "The library removes every double quote, even a doubled one, so users do not see it.",
     "Write typographic quotes, or the character U+2033 for inches."},
    {LintCode::kLinkInSection, "link-in-section", Severity::kWarning,
     "a change in a section has a link",
     "The first link of a section becomes the link of its title. The change itself gets no "
     "\"View more\" link.",
     "Delete the link, or move the change to a feature."},
    {LintCode::kLinkInText, "link-in-text", Severity::kWarning, "the text contains a link",
     "The panel shows the link as plain text, so users cannot open it.",
     "Move the link into column 8."},
    {LintCode::kRatingInSection, "rating-in-section", Severity::kWarning,
     "a change in a section requests a rating",
     "Sections cannot be rated, so the rating request has no effect.",
     "Delete the rating request, or move the change to a feature."},
    {LintCode::kChangesSinceMissing, "changes-since-missing", Severity::kWarning,
     "there is no Changes-Since row",
     "The heading of the panel has no version. Users see \"Changes since v\".",
     "After the header, add a row with the version in column 1 and Changes-Since in column 2."},
    {LintCode::kChangesSinceRepeated, "changes-since-repeated", Severity::kWarning,
     "there are several Changes-Since rows", "Only the last Changes-Since row has an effect.",
     "Keep one Changes-Since row."},
    {LintCode::kVersionMissing, "version-missing", Severity::kWarning, "the change has no version",
     "The panel shows the change without a version.",
     "Write the version that introduced the change into the first column."},
    {LintCode::kSameIdentity, "same-identity", Severity::kWarning,
     "two changes have the same identity",
     "Users see the change twice. If one of the rows counts as seen, the other row counts as seen, "
     "too.",
     "Delete one of the rows."},
    {LintCode::kKeyTwoDefaults, "key-two-defaults", Severity::kWarning,
     "a localisation key has two default texts",
     "A dictionary has only one translation for each key, so translated panels show the same text "
     "for every change with this key.",
     "Use two keys, or the same default text."},
    {LintCode::kMarkupOutsideKey, "markup-outside-key", Severity::kWarning,
     "the text contains markup, but is not a key text",
     "The library expands markup only in key texts and translations. Users see the markup.",
     "Write the character itself, or make the text a key text."},
    {LintCode::kMarkupUnknown, "markup-unknown", Severity::kWarning,
     "a key text contains unknown markup",
     "The library does not change unknown markup. Users see the markup.",
     "Write markup that ornwhatsnew(5) lists, for example #{endl}."},
    {LintCode::kHTML, "html", Severity::kWarning, "the text contains HTML",
     "The panel does not interpret HTML, so users see the tags or entities.", "Write plain text."},
    {LintCode::kMojibake, "mojibake", Severity::kWarning,
     "the text was decoded with the wrong encoding",
     "Sequences such as U+00C3 U+00A4 result from UTF-8 bytes that a program read as Windows-1252. "
     "Users see the wrong characters.",
     "Restore the characters, and save the file as UTF-8."},
    {LintCode::kCommitNumber, "commit-number", Severity::kWarning,
     "the commit ID is a number with an exponent or a fraction",
     "Spreadsheet programs convert some commit IDs to numbers, so the links to these commits do "
     "not work.",
     "In the spreadsheet, format the column as text, and then write the commit ID again."},
    {LintCode::kOuterSpaces, "outer-spaces", Severity::kWarning,
     "a field begins or ends with a space",
     "The library keeps spaces at the start and the end of a field. A field with such spaces "
     "matches no key and no keyword. In every column except column 5, these spaces affect the "
     "identity of the change.",
     "Delete the spaces. --fix deletes them in columns 2, 3, 4, 6 and 7, but keeps a grouping ID "
     "that consists of spaces."},
    {LintCode::kFeatureUnseen, "feature-unseen", Severity::kWarning,
     "no user of the host sees the feature",
     "The panel shows neither the feature nor its changes. Either the feature is switched off and "
     "users cannot switch it on, or its visibility is 1 and no change has the salience "
     "UnhideBetaFeature.",
     "If the feature is switched off, switch it on in the host. If its visibility is 1, write "
     "UnhideBetaFeature into column 4 of a change."},
    {LintCode::kFeatureHidden, "feature-hidden", Severity::kWarning,
     "HideBetaFeature hides other changes of the feature",
     "The salience HideBetaFeature hides the whole feature and all its changes from everyone.",
     "Delete the other changes, or the salience."},
    {LintCode::kInternalWithFeatureKey, "internal-with-feature-key", Severity::kWarning,
     "the grouping ID is INTERNAL, and the story ID is the key of a feature",
     "The grouping ID INTERNAL takes precedence over the third column. Only internal users see "
     "the change, in the section INTERNAL.",
     "If external users should see the change, write the key of the feature into the second "
     "column."},
    {LintCode::kNoChange, "no-change", Severity::kNote, "the file contains no changes",
     "Users see no changes.", "Add changes below the header."},
    {LintCode::kVersionAboveHost, "version-above-host", Severity::kNote,
     "the version is later than the version of the host",
     "The change belongs to a later version of the application, or the host description is out "
     "of date.",
     "Check the version, or update the host description."},
    {LintCode::kLinkLater, "link-later", Severity::kNote, "a feature has more than one link",
     "The first well-formed link of a feature becomes its link. The library ignores later links.",
     "Delete the later links, or write the best link first."},
    {LintCode::kFeatureWithoutChange, "feature-without-change", Severity::kNote,
     "some features have no changes",
     "For a feature without changes, the panel shows only the title and the description.",
     "If a feature without changes is new or different, add a change for the feature."},
    {LintCode::kStoryIDWins, "story-id-wins", Severity::kNote, "the story ID is the key of an item",
     "The story ID takes precedence over the grouping ID. The change therefore belongs to the item "
     "whose key is the story ID.",
     "To make the row easier to understand, write the story ID into the second column, too."},
    {LintCode::kUnreviewedLeft, "unreviewed-left", Severity::kNote, "a change is still unreviewed",
     "Only internal users see the change, in the section UNREVIEWED.",
     "After the review, delete the salience."},
    {LintCode::kCommentLine, "comment-line", Severity::kNote, "the line is a comment",
     "The format has no comments. The library skips the line because it does not have ten "
     "fields.",
     "No action is needed. Do not write a comment line directly after a Changes-Since row."},
    {LintCode::kBaselineNew, "baseline-new", Severity::kNote, "the row is new",
     "The change is not in the earlier file, so it is new for every user.", "No action is needed."},
    {LintCode::kBaselineNewAgain, "baseline-new-again", Severity::kWarning,
     "an edited row is new again",
     "The library identifies a change by its content. Users who saw the earlier version of the "
     "row see the edited row as new.",
     "If the edit is not worth an announcement, undo the edit. Edits of double quotes, default "
     "texts, or the letter case in columns 2, 3, 4, 6 and 7 do not make a row new again."},
    {LintCode::kBaselineVanished, "baseline-vanished", Severity::kWarning,
     "a row of the earlier file was removed", "Users no longer see the change.",
     "If users still need the change, restore the row."},
    {LintCode::kBaselineRatedAgain, "baseline-rated-again", Severity::kWarning,
     "a feature requests a rating again",
     "The rating requests of the feature changed. Users who rated the feature are asked to rate it "
     "again.",
     "If the earlier ratings are still valid, restore the earlier rating requests."},
});

}  // namespace hosts::author

#endif  // HOSTS_AUTHOR_LINT_LINTCODETABLE_H_
