// Lists the keys of the library's templates, for tests and fuzzers that translate them.
#ifndef TESTS_SUPPORT_TEMPLATEKEYS_H_
#define TESTS_SUPPORT_TEMPLATEKEYS_H_

#include <array>

namespace test_support {

/// The keys of the panel's templates, and the key of one section title. The inputs of fuzzers
/// contain indexes into this array, so add new keys only at the end.
inline constexpr std::array kTemplateKeys = {
    "$$$/ornwhatsnew/Feature/Item/Unlock/TarsaOnly",
    "$$$/ornwhatsnew/Feature/Item/Unlock/Off",
    "$$$/ornwhatsnew/Feature/Item/Unlock/Unlocked",
    "$$$/ornwhatsnew/Feature/Item/Unlock/InDevelopment",
    "$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate/Tab",
    "$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate",
    "$$$/ornwhatsnew/Feature/Detail/OS/displaytemplate",
    "$$$/ornwhatsnew/Feature/Detail/VersionAdded/displaytemplate",
    "$$$/ornwhatsnew/Feature/Detail/VersionRange/displaytemplate",
    "$$$/ornwhatsnew/Feature/Detail/JiraID/displaytemplate",
    "$$$/private/ornwhatsnew/Feature/Newline",
    "$$$/ornwhatsnew/Feature/Item/ViewMore/ViewMore",
    "$$$/ornwhatsnewui/WhatsNewView/SpaceWitDash",
    "$$$/ornwhatsnewui/WhatsNewView/ParenthesizedCode",
    "$$$/ornwhatsnew/Feature/ChangesSince/LastOpened/DisplayTemplate",
    "$$$/ornwhatsnew/Feature/ChangesSince/LastRelease/DisplayTemplate",
    "$$$/ornwhatsnew/feature/nonewchanges/displaytemplate",
    "$$$/ornwhatsnew/feature/optedOutOfAnalyticsPart1",
    "$$$/ornwhatsnew/feature/optedOutOfAnalyticsPart2",
    "$$$/ornwhatsnew/feature/nonewratings",
    "$$$/ornwhatsnew/SectionKey/BugFixes",
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_TEMPLATEKEYS_H_
