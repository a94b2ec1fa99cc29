// Lists the library's own strings, which a host's dictionary can translate. `PanelText` defines
// their order. `kPanelTexts` contains the key text of each string.
//
// A dictionary receives the key, which is the part of a key text before the first `=`.
#ifndef ORNWHATSNEW_PANELTEXT_H_
#define ORNWHATSNEW_PANELTEXT_H_

#include <array>
#include <cstddef>
#include <string_view>

#include <orncore/Export.h>  // reports a compiler that is not in C++20 mode

namespace ornwhatsnew {

/// The library's own strings. If the comment of a string mentions "@0" or "@1", the string contains
/// this placeholder.
enum class PanelText : std::size_t {
  /// The label of an item with the unlock state `ItemUnlockState::TarsaOnly`.
  kUnlockInternal,
  /// The label of a feature with the unlock state `ItemUnlockState::Off`.
  kUnlockOff,
  /// The label of a feature with the unlock state `ItemUnlockState::Unlocked`.
  kUnlockUnlocked,
  /// The label of a feature with the unlock state `ItemUnlockState::InDevelopment`.
  kUnlockInDevelopment,
  /// The white space before labels, before descriptions, before "View more", and on both sides of
  /// bullets.
  kTab,
  /// The bullet of a change.
  kChangeBullet,
  /// The platform of a change, in parentheses; "@0" is the name of the platform.
  kPlatform,
  /// The version of a change, in parentheses; "@0" is the version that added the change.
  kVersion,
  /// The versions of a change, in parentheses; "@0" is the earliest relevant version, and "@1" is
  /// the version that added the change.
  kVersionRange,
  /// A space and the key of an issue; "@0" is the key.
  kIssueKey,
  /// The end of a line.
  kNewline,
  /// The text of the link after a description.
  kViewMore,
  /// The separator before the internal key of a feature.
  kInternalDash,
  /// The internal key of a feature, in parentheses; "@0" is the key.
  kInternalCode,
  /// The heading with `kShowOnlyNew`, if the user has opened the panel before; "@0" is the version
  /// in which the user last opened it. The rating view does not use this string.
  kSinceLastOpened,
  /// The heading without `kShowOnlyNew`, or if the user has never opened the panel; "@0" is the
  /// changes-since version. The rating view does not use this string.
  kSinceRelease,
  /// The notice of a panel without items, except in the rating view.
  kNothingNew,
  /// The part of a notice before the URL of the privacy page. The rating view shows the notice if
  /// `FeatureListItem::AnalyticsDisabled` returns true.
  kOptedOutPart1,
  /// The part after the URL of the privacy page, in the notice that begins with `kOptedOutPart1`.
  kOptedOutPart2,
  /// The notice of a rating view without features, if `FeatureListItem::AnalyticsDisabled` returns
  /// false.
  kNothingToRate,
  /// The title of the section MISC.
  kMiscellaneous,
  /// The title of the section BUGFIX.
  kBugFixes,
  /// The title of the section INTERNAL.
  kInternalNotes,
  /// The title of the section UNREVIEWED.
  kUnreviewed,
};

/// The key texts of the library's own strings, indexed by the values of `PanelText`. They have the
/// form `key=default text` and can contain markup; see `orncore::config::Localizer::ZString`.
inline constexpr auto kPanelTexts = std::to_array<std::string_view>({
    "$$$/ornwhatsnew/Feature/Item/Unlock/TarsaOnly=TARSA ONLY",
    "$$$/ornwhatsnew/Feature/Item/Unlock/Off=OFF",
    "$$$/ornwhatsnew/Feature/Item/Unlock/Unlocked=UNLOCKED",
    "$$$/ornwhatsnew/Feature/Item/Unlock/InDevelopment=IN DEVELOPMENT",
    "$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate/Tab=\t",
    "$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate=^B ",
    "$$$/ornwhatsnew/Feature/Detail/OS/displaytemplate=(@0 only) ",
    "$$$/ornwhatsnew/Feature/Detail/VersionAdded/displaytemplate= (v@0)",
    "$$$/ornwhatsnew/Feature/Detail/VersionRange/displaytemplate= (v@0-v@1)",
    "$$$/ornwhatsnew/Feature/Detail/JiraID/displaytemplate= @0",
    "$$$/private/ornwhatsnew/Feature/Newline=#{endl}",
    "$$$/ornwhatsnew/Feature/Item/ViewMore/ViewMore=View more",
    "$$$/ornwhatsnewui/WhatsNewView/SpaceWitDash= #{mdash} ",
    "$$$/ornwhatsnewui/WhatsNewView/ParenthesizedCode=(@0)",
    "$$$/ornwhatsnew/Feature/ChangesSince/LastOpened/DisplayTemplate=#{endl}\t"
    "Changes since last opened in v@0#{endl}#{endl}",
    "$$$/ornwhatsnew/Feature/ChangesSince/LastRelease/DisplayTemplate=#{endl}\t"
    "Changes since v@0#{endl}#{endl}",
    "$$$/ornwhatsnew/feature/nonewchanges/displaytemplate="
    "\tYou^}re all caught up.#{endl}#{endl}",
    "$$$/ornwhatsnew/feature/optedOutOfAnalyticsPart1="
    "\tYou (or your organization) have opted out of sharing information with Tarsa."
    "#{endl}#{endl}\tIf you are using a personal account, you can rate features by "
    "enabling ^[Desktop and app usage^] at #{comment}this is followed by a URL, and "
    "then Part2; only shown when user has opted out of analytics, or non-Tarsa "
    "enterprise account",
    "$$$/ornwhatsnew/feature/optedOutOfAnalyticsPart2= and then quitting and relaunching.",
    "$$$/ornwhatsnew/feature/nonewratings=\tNo features need rating right now.",
    "$$$/ornwhatsnew/SectionKey/Miscellaneous=Miscellaneous",
    "$$$/ornwhatsnew/SectionKey/BugFixes=Bug fixes",
    "$$$/ornwhatsnew/SectionKey/Internal=Internal notes",
    "$$$/ornwhatsnew/SectionKey/Unreviewed=Unreviewed",
});

static_assert(kPanelTexts.size() == static_cast<std::size_t>(PanelText::kUnreviewed) + 1,
              "each value of PanelText has one key text");

/// Returns the key text of one of the library's own strings.
constexpr std::string_view KeyText(PanelText text) {
  return kPanelTexts[static_cast<std::size_t>(text)];
}

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_PANELTEXT_H_
