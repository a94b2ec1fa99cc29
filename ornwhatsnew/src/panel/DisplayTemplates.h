// Defines the strings of the panel: the localised templates, and fixed strings.
#ifndef ORNWHATSNEW_SRC_PANEL_DISPLAYTEMPLATES_H_
#define ORNWHATSNEW_SRC_PANEL_DISPLAYTEMPLATES_H_

#include <string_view>

#include <orncore/config/Localizer.h>
#include <ornwhatsnew/PanelText.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Returns one of the library's own strings in the user's language.
inline UTF16String LocalizedText(PanelText text) {
  return orncore::config::Localizer::Get().ZString(KeyText(text));
}

/// The templates in the user's language. `@0` and `@1` are placeholders. The constructor queries
/// the localiser once for each template, in the order of the members. Create one object for each
/// display, because the language can change between displays.
struct DisplayTemplates {
  UTF16String unlockInternal = LocalizedText(PanelText::kUnlockInternal);
  UTF16String unlockOff = LocalizedText(PanelText::kUnlockOff);
  UTF16String unlockUnlocked = LocalizedText(PanelText::kUnlockUnlocked);
  UTF16String unlockInDevelopment = LocalizedText(PanelText::kUnlockInDevelopment);
  UTF16String tab = LocalizedText(PanelText::kTab);
  UTF16String changeBullet = LocalizedText(PanelText::kChangeBullet);
  UTF16String platform = LocalizedText(PanelText::kPlatform);
  UTF16String version = LocalizedText(PanelText::kVersion);
  UTF16String versionRange = LocalizedText(PanelText::kVersionRange);
  UTF16String issueKey = LocalizedText(PanelText::kIssueKey);
  UTF16String newline = LocalizedText(PanelText::kNewline);
  UTF16String viewMore = LocalizedText(PanelText::kViewMore);
  UTF16String internalDash = LocalizedText(PanelText::kInternalDash);
  UTF16String internalCode = LocalizedText(PanelText::kInternalCode);
  UTF16String sinceLastOpened = LocalizedText(PanelText::kSinceLastOpened);
  UTF16String sinceRelease = LocalizedText(PanelText::kSinceRelease);
  UTF16String nothingNew = LocalizedText(PanelText::kNothingNew);
  UTF16String optedOutPart1 = LocalizedText(PanelText::kOptedOutPart1);
  UTF16String optedOutPart2 = LocalizedText(PanelText::kOptedOutPart2);
  UTF16String nothingToRate = LocalizedText(PanelText::kNothingToRate);
};

// The templates below are not translated.
inline constexpr std::u16string_view kCommitCode = u" @0";
inline constexpr std::u16string_view kUnknownIssueNote = u"(Unknown Jira Issue @0) ";
inline constexpr std::u16string_view kIgnoredURLNote = u"(View More URL ignored: @0) ";
inline constexpr std::u16string_view kIgnoredPlatformNote = u"(Malformed platform ignored: @0) ";
inline constexpr std::u16string_view kIgnoredSalienceNote = u"(Malformed salience ignored: @0) ";
inline constexpr std::u16string_view kSectionReason = u"in @0 section";

// The strings below are not translated and have no placeholder.
inline constexpr std::u16string_view kDuplicateReason = u"duplicate";
inline constexpr std::u16string_view kMalformedReason = u"malformed";
inline constexpr std::u16string_view kReasonSeparator = u" and ";
inline constexpr std::u16string_view kMacDisplayName = u"macOS";

/// Compatibility: these invisible characters mark the start of a description. Existing hosts may
/// search for these characters to lay out the panel (docs/compatibility.md).
inline constexpr std::u16string_view kDescriptionMark = u"\uFEFF\uFEFF";

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_DISPLAYTEMPLATES_H_
