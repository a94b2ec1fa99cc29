// Defines the strings of the panel: templates that the host's dictionary can translate, and fixed
// strings.
#ifndef ORNWHATSNEW_SRC_PANEL_DISPLAYTEMPLATES_H_
#define ORNWHATSNEW_SRC_PANEL_DISPLAYTEMPLATES_H_

#include <string_view>

#include <orncore/config/Localizer.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Returns the text for the key text `keyText` in the user's language.
inline UTF16String LocalizedText(std::string_view keyText) {
  return orncore::config::Localizer::Get().ZString(keyText);
}

/// The templates in the user's language. `@0` and `@1` are placeholders. The constructor queries
/// the localiser once for each template, in the order of the members. Create one object for each
/// display, because the language can change between displays.
struct DisplayTemplates {
  UTF16String unlockInternal =
      LocalizedText("$$$/ornwhatsnew/Feature/Item/Unlock/TarsaOnly=TARSA ONLY");
  UTF16String unlockOff = LocalizedText("$$$/ornwhatsnew/Feature/Item/Unlock/Off=OFF");
  UTF16String unlockUnlocked =
      LocalizedText("$$$/ornwhatsnew/Feature/Item/Unlock/Unlocked=UNLOCKED");
  UTF16String unlockInDevelopment =
      LocalizedText("$$$/ornwhatsnew/Feature/Item/Unlock/InDevelopment=IN DEVELOPMENT");
  UTF16String tab = LocalizedText("$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate/Tab=\t");
  UTF16String changeBullet =
      LocalizedText("$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate=^B ");
  UTF16String platform =
      LocalizedText("$$$/ornwhatsnew/Feature/Detail/OS/displaytemplate=(@0 only) ");
  UTF16String version =
      LocalizedText("$$$/ornwhatsnew/Feature/Detail/VersionAdded/displaytemplate= (v@0)");
  UTF16String versionRange =
      LocalizedText("$$$/ornwhatsnew/Feature/Detail/VersionRange/displaytemplate= (v@0-v@1)");
  UTF16String issueKey = LocalizedText("$$$/ornwhatsnew/Feature/Detail/JiraID/displaytemplate= @0");
  UTF16String newline = LocalizedText("$$$/private/ornwhatsnew/Feature/Newline=#{endl}");
  UTF16String viewMore = LocalizedText("$$$/ornwhatsnew/Feature/Item/ViewMore/ViewMore=View more");
  UTF16String internalDash =
      LocalizedText("$$$/ornwhatsnewui/WhatsNewView/SpaceWitDash= #{mdash} ");
  UTF16String internalCode = LocalizedText("$$$/ornwhatsnewui/WhatsNewView/ParenthesizedCode=(@0)");
  UTF16String sinceLastOpened = LocalizedText(
      "$$$/ornwhatsnew/Feature/ChangesSince/LastOpened/DisplayTemplate=#{endl}\t"
      "Changes since last opened in v@0#{endl}#{endl}");
  UTF16String sinceRelease = LocalizedText(
      "$$$/ornwhatsnew/Feature/ChangesSince/LastRelease/DisplayTemplate=#{endl}\t"
      "Changes since v@0#{endl}#{endl}");
  UTF16String nothingNew = LocalizedText(
      "$$$/ornwhatsnew/feature/nonewchanges/displaytemplate="
      "\tYou^}re all caught up.#{endl}#{endl}");
  UTF16String optedOutPart1 = LocalizedText(
      "$$$/ornwhatsnew/feature/optedOutOfAnalyticsPart1="
      "\tYou (or your organization) have opted out of sharing information with Tarsa."
      "#{endl}#{endl}\tIf you are using a personal account, you can rate features by "
      "enabling ^[Desktop and app usage^] at #{comment}this is followed by a URL, and "
      "then Part2; only shown when user has opted out of analytics, or non-Tarsa "
      "enterprise account");
  UTF16String optedOutPart2 = LocalizedText(
      "$$$/ornwhatsnew/feature/optedOutOfAnalyticsPart2= and then quitting and relaunching.");
  UTF16String nothingToRate =
      LocalizedText("$$$/ornwhatsnew/feature/nonewratings=\tNo features need rating right now.");
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

/// Compatibility: these invisible characters mark the start of a description. Existing hosts search
/// for them when they lay out the panel (docs/compatibility.md).
inline constexpr std::u16string_view kDescriptionMark = u"\uFEFF\uFEFF";

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_PANEL_DISPLAYTEMPLATES_H_
