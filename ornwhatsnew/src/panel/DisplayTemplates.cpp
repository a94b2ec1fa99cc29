#include "ornwhatsnew/src/panel/DisplayTemplates.h"

#include <orncore/config/Localizer.h>

namespace ornwhatsnew {
namespace {

// Where links lead; set when the library is built.
constexpr std::u16string_view kCommitLink = u"" ORNWHATSNEW_COMMIT_BROWSER u"/ORN/orn/commit/@0";
constexpr std::u16string_view kIssueLink = u"" ORNWHATSNEW_ISSUE_TRACKER u"/browse/@0";

UTF16String Text(std::string_view keyText) {
  return orncore::config::Localizer::Get().ZString(keyText);
}

TextTemplate Template(std::string_view keyText,
                      TextTemplate::Marks marks = TextTemplate::Marks::kFirst) {
  return TextTemplate(Text(keyText), marks);
}

}  // namespace

DisplayTemplates::DisplayTemplates()
    : unlockInternal(Text("$$$/ornwhatsnew/Feature/Item/Unlock/TarsaOnly=TARSA ONLY")),
      unlockOff(Text("$$$/ornwhatsnew/Feature/Item/Unlock/Off=OFF")),
      unlockUnlocked(Text("$$$/ornwhatsnew/Feature/Item/Unlock/Unlocked=UNLOCKED")),
      unlockInDevelopment(Text("$$$/ornwhatsnew/Feature/Item/Unlock/InDevelopment=IN DEVELOPMENT")),
      tab(Text("$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate/Tab=\t")),
      changeBullet(Text("$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate=^B ")),
      platform(Template("$$$/ornwhatsnew/Feature/Detail/OS/displaytemplate=(@0 only) ")),
      version(Template("$$$/ornwhatsnew/Feature/Detail/VersionAdded/displaytemplate= (v@0)")),
      versionRange(
          Template("$$$/ornwhatsnew/Feature/Detail/VersionRange/displaytemplate= (v@0-v@1)",
                   TextTemplate::Marks::kBoth)),
      issueKey(Template("$$$/ornwhatsnew/Feature/Detail/JiraID/displaytemplate= @0")),
      newline(Text("$$$/private/ornwhatsnew/Feature/Newline=#{endl}")),
      viewMore(Text("$$$/ornwhatsnew/Feature/Item/ViewMore/ViewMore=View more")),
      internalDash(Text("$$$/ornwhatsnewui/WhatsNewView/SpaceWitDash= #{mdash} ")),
      internalCode(Template("$$$/ornwhatsnewui/WhatsNewView/ParenthesizedCode=(@0)")),
      sinceLastOpened(
          Template("$$$/ornwhatsnew/Feature/ChangesSince/LastOpened/DisplayTemplate=#{endl}\t"
                   "Changes since last opened in v@0#{endl}#{endl}")),
      sinceRelease(
          Template("$$$/ornwhatsnew/Feature/ChangesSince/LastRelease/DisplayTemplate=#{endl}\t"
                   "Changes since v@0#{endl}#{endl}")),
      nothingNew(Text("$$$/ornwhatsnew/feature/nonewchanges/displaytemplate="
                      "\tYou^}re all caught up.#{endl}#{endl}")),
      optedOutPart1(
          Text("$$$/ornwhatsnew/feature/optedOutOfAnalyticsPart1="
               "\tYou (or your organization) have opted out of sharing information with Tarsa."
               "#{endl}#{endl}\tIf you are using a personal account, you can rate features by "
               "enabling ^[Desktop and app usage^] at #{comment}this is followed by a URL, and "
               "then Part2; only shown when user has opted out of analytics, or non-Tarsa "
               "enterprise account")),
      optedOutPart2(Text("$$$/ornwhatsnew/feature/optedOutOfAnalyticsPart2= and then quitting "
                         "and relaunching.")),
      nothingToRate(
          Text("$$$/ornwhatsnew/feature/nonewratings=\tNo features need rating right now.")),
      commitCode(u" @0"),
      commitLink(kCommitLink),
      issueLink(kIssueLink),
      unknownIssueNote(u"(Unknown Jira Issue @0) "),
      ignoredURLNote(u"(View More URL ignored: @0) "),
      ignoredPlatformNote(u"(Malformed platform ignored: @0) "),
      ignoredSalienceNote(u"(Malformed salience ignored: @0) "),
      sectionReason(u"in @0 section") {}

}  // namespace ornwhatsnew
