// The texts that the display builds on: templates that a dictionary may replace, and fixed ones.
#ifndef ORNWHATSNEW_SRC_PANEL_DISPLAYTEMPLATES_H_
#define ORNWHATSNEW_SRC_PANEL_DISPLAYTEMPLATES_H_

#include <string_view>

#include <ornwhatsnew/utility/SharedTypes.h>

#include "ornwhatsnew/src/panel/TextTemplate.h"

namespace ornwhatsnew {

/// The templates in the user's language, made once for each display. `@0` and `@1` stand for what
/// is filled in; texts where nothing is are plain.
struct DisplayTemplates {
  /// Asks the host's localiser for each of them.
  DisplayTemplates();

  UTF16String unlockInternal;
  UTF16String unlockOff;
  UTF16String unlockUnlocked;
  UTF16String unlockInDevelopment;
  UTF16String tab;
  UTF16String changeBullet;
  TextTemplate platform;
  TextTemplate version;
  TextTemplate versionRange;
  TextTemplate issueKey;
  UTF16String newline;
  UTF16String viewMore;
  UTF16String internalDash;
  TextTemplate internalCode;
  TextTemplate sinceLastOpened;
  TextTemplate sinceRelease;
  UTF16String nothingNew;
  UTF16String optedOutPart1;
  UTF16String optedOutPart2;
  UTF16String nothingToRate;

  // Those that are the same in every language.
  TextTemplate commitCode;
  TextTemplate commitLink;
  TextTemplate issueLink;
  TextTemplate unknownIssueNote;
  TextTemplate ignoredURLNote;
  TextTemplate ignoredPlatformNote;
  TextTemplate ignoredSalienceNote;
  TextTemplate sectionReason;
};

/// Texts that are the same in every language and take nothing.
inline constexpr std::u16string_view kMacDisplayName = u"macOS";
inline constexpr std::string_view kOwnIssuePrefix = "ORN";
inline constexpr std::u16string_view kDuplicateReason = u"duplicate";
inline constexpr std::u16string_view kMalformedReason = u"malformed";
inline constexpr std::u16string_view kReasonSeparator = u" and ";

/// Marks the start of a description paragraph in the text, for hosts that lay it out.
inline constexpr std::u16string_view kDescriptionMark = u"\uFEFF\uFEFF";

/// The page on which users allow or forbid usage logging; set when the library is built.
inline constexpr std::u16string_view kPrivacyPage = u"" ORNWHATSNEW_PRIVACY_PAGE;

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_DISPLAYTEMPLATES_H_
