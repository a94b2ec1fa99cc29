// Writes the panel of the plain implementation.
#include <cstdint>
#include <memory>

#include <ornappsupport/feature/FeatureService.h>
#include <ornappsupport/links/PanelLinks.h>
#include <orncore/config/Localizer.h>
#include <orncore/debug/DebugDatabase.h>

#include "tests/support/PlainPanel.h"
#include "tests/support/PlainText.h"

namespace test_support {

using ornwhatsnew::StyleID;
using ornwhatsnew::StyleRunMap;

namespace feature = ornappsupport::feature;

namespace {

using namespace std::string_view_literals;

std::u16string ZString(std::string_view keyText) {
  return orncore::config::Localizer::Get().ZString(keyText);
}

std::u16string LocalizeIfNecessary(const std::string& text) {
  return PlainIsZString(text) ? ZString(text) : PlainUTF8to16(text);
}

std::u16string Fill(std::u16string_view pattern, std::u16string_view argument) {
  return PlainReplace(pattern, u"@0", argument);
}

// Replaces `@0` with `first` and `@1` with `second` in one pass, so that the function does not
// search the inserted arguments.
std::u16string Fill(std::u16string_view pattern, std::u16string_view first,
                    std::u16string_view second) {
  std::u16string result;
  while (!pattern.empty()) {
    const bool isFirst = pattern.starts_with(u"@0");
    const bool isSecond = pattern.starts_with(u"@1");
    result += isFirst ? first : isSecond ? second : pattern.substr(0, 1);
    pattern.remove_prefix(isFirst || isSecond ? 2 : 1);
  }
  return result;
}

int Measure(std::u16string_view text, int adjustment) {
  return static_cast<int>(static_cast<std::uint32_t>(PlainUTF16to8(text).size()) +
                          static_cast<std::uint32_t>(adjustment));
}

}  // namespace

// Writes the text, the style runs and the rating records of one display to a `PanelOutcome`.
class PlainPanel::Formatting {
 public:
  Formatting(unsigned options, std::u16string_view placeholder, PanelOutcome& outcome)
      : options_(options),
        rating_((options & kRatingBit) != 0),
        internal_(feature::IsEntitlementSetToInternalFeaturesAllowed()),
        placeholder_(placeholder),
        out_(outcome) {}

  void Header(const std::string& lastVersion, const std::string& changesSince) {
    std::u16string header;
    if (rating_) {
      header = newline_ + newline_;
    } else if ((options_ & kOnlyNewBit) != 0 && !lastVersion.empty()) {
      header = Fill(ZString("$$$/ornwhatsnew/Feature/ChangesSince/LastOpened/DisplayTemplate="
                            "#{endl}\tChanges since last opened in v@0#{endl}#{endl}"),
                    PlainUTF8to16(lastVersion));
    } else {
      header = Fill(ZString("$$$/ornwhatsnew/Feature/ChangesSince/LastRelease/DisplayTemplate="
                            "#{endl}\tChanges since v@0#{endl}#{endl}"),
                    PlainUTF8to16(changesSince));
    }
    Styled(3, header);
  }

  void Feature(const PlainItem& item, const std::vector<const PlainChange*>& changes) {
    std::u16string name = LocalizeIfNecessary(item.name);
    if (name.empty()) name = PlainUTF8to16(item.groupingKey);
    TitleLine(item, name);
    if (!rating_) Description(item);
    for (const PlainChange* change : changes) ChangeLine(*change, item);
    Record(item, name, changes);
    if (!placeholder_.empty()) {
      Styled(13, newline_ + std::u16string(placeholder_) + newline_);
    }
  }

  void NothingToShow() {
    if (!rating_) {
      Styled(3, ZString("$$$/ornwhatsnew/feature/nonewchanges/displaytemplate="
                        "\tYou^}re all caught up.#{endl}#{endl}"));
    } else if (PlainAnalyticsDisabled()) {
      Styled(3, ZString("$$$/ornwhatsnew/feature/optedOutOfAnalyticsPart1=\tYou (or your "
                        "organization) have opted out of sharing information with Tarsa.#{endl}"
                        "#{endl}\tIf you are using a personal account, you can rate features by "
                        "enabling ^[Desktop and app usage^] at #{comment}"));
      Styled(6, links_.privacyPage, links_.privacyPage);
      Styled(3, ZString("$$$/ornwhatsnew/feature/optedOutOfAnalyticsPart2= and then quitting and "
                        "relaunching."));
    } else {
      Styled(3, ZString("$$$/ornwhatsnew/feature/nonewratings=\tNo features need rating right "
                        "now."));
    }
  }

 private:
  void CaptureStyle(int style, std::u16string_view piece, std::u16string_view runString,
                    int startAdjust, int lengthAdjust) {
    out_.runs[static_cast<StyleID>(style)].emplace_back(
        std::pair(Measure(out_.text, startAdjust), Measure(piece, lengthAdjust)),
        std::u16string(runString));
  }

  void Styled(int style, std::u16string_view piece, std::u16string_view runString = {},
              int startAdjust = 0, int lengthAdjust = 0) {
    CaptureStyle(style, piece, runString, startAdjust, lengthAdjust);
    out_.text += piece;
  }

  void TitleLine(const PlainItem& item, const std::u16string& name) {
    Styled(0, name, PlainUTF8to16(item.viewMoreURL));
    const bool showsCode =
        orncore::debug::DebugDatabase::Instance().GetEntry(
            "ornappsupport.betafeature.SimulateShowingAllUnlockCodesInWhatsNew") == "true";
    if (internal_ && showsCode && !item.internalKey.empty() && !PlainIsSection(item.groupingKey)) {
      Styled(4, ZString("$$$/ornwhatsnewui/WhatsNewView/SpaceWitDash= #{mdash} "));
      Styled(4, Fill(ZString("$$$/ornwhatsnewui/WhatsNewView/ParenthesizedCode=(@0)"),
                     PlainUTF8to16(item.internalKey)));
    }
    if (const auto label = Label(item)) {
      out_.text += tab_;
      CaptureStyle(9, *label, {}, 0, 0);
      CaptureStyle(11, *label, {}, 0, 0);
      out_.text += *label;
    }
    out_.text += newline_;
  }

  std::optional<std::u16string> Label(const PlainItem& item) const {
    const auto internalLabel = ZString("$$$/ornwhatsnew/Feature/Item/Unlock/TarsaOnly=TARSA ONLY");
    const auto unlocked = ZString("$$$/ornwhatsnew/Feature/Item/Unlock/Unlocked=UNLOCKED");
    if (PlainIsInternalSection(item.groupingKey)) return internalLabel;
    if (PlainIsSection(item.groupingKey)) return std::nullopt;
    const auto& table = feature::GetConstBetaFeatureMap();
    const auto entry = table.find(item.internalKey);
    if (entry == table.end()) return std::nullopt;
    const auto state = static_cast<std::int32_t>(entry->second.GetVisibility());
    if (state == 0) {
      if (!PlainShowsAllOffFeatures()) return unlocked;
      if (feature::IsFeatureEnabled(item.internalKey.c_str())) return unlocked;
      return ZString("$$$/ornwhatsnew/Feature/Item/Unlock/Off=OFF");
    }
    if (state == 1 || item.internalOverride) return internal_ ? internalLabel : unlocked;
    if (state == 2) {
      return ZString("$$$/ornwhatsnew/Feature/Item/Unlock/InDevelopment=IN DEVELOPMENT");
    }
    return std::nullopt;
  }

  void Description(const PlainItem& item) {
    const std::u16string description = LocalizeIfNecessary(item.description);
    if (description.empty()) return;
    out_.text += u"\uFEFF\uFEFF" + tab_;
    Styled(1, description);
    IssueKey(item.groupingKey);
    if (!item.viewMoreURL.empty()) {
      out_.text += tab_;
      Styled(6, ZString("$$$/ornwhatsnew/Feature/Item/ViewMore/ViewMore=View more"),
             PlainUTF8to16(item.viewMoreURL));
    }
    out_.text += newline_;
  }

  void IssueKey(const std::string& id) {
    if (!internal_) return;
    const std::u16string key = PlainUpper(PlainUTF8to16(id));
    const std::u16string& prefix = links_.issuePrefix;
    if (prefix.empty() || key.compare(0, prefix.size(), prefix) != 0) return;
    Styled(7, Fill(ZString("$$$/ornwhatsnew/Feature/Detail/JiraID/displaytemplate= @0"), key),
           Fill(links_.issueLink, key), 1, -1);
  }

  void ChangeLine(const PlainChange& change, const PlainItem& item) {
    Styled(2, tab_ + ZString("$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate=^B ") + tab_);
    if (internal_) Annotations(change, item);
    if (!change.platform.empty() && !change.HasMalformedPlatform()) {
      const bool mac = PlainEqualIgnoringCase(change.platform, "Mac");
      Styled(2, Fill(ZString("$$$/ornwhatsnew/Feature/Detail/OS/displaytemplate=(@0 only) "),
                     mac ? u"macOS" : PlainUTF8to16(change.platform)));
    }
    Styled(2, LocalizeIfNecessary(change.description));
    VersionSuffix(change);
    IssueKey(change.story);
    if (internal_ && !change.sha.empty()) {
      const std::u16string sha = PlainUTF8to16(change.sha);
      Styled(5, Fill(u" @0", sha), Fill(links_.commitLink, sha), 1, 0);
    }
    out_.text += newline_;
  }

  void VersionSuffix(const PlainChange& change) {
    const std::u16string added = LocalizeIfNecessary(change.versionAdded);
    const std::u16string first = LocalizeIfNecessary(change.firstVersion);
    if (added.empty()) return;
    if (first.empty()) {
      Styled(4, Fill(ZString("$$$/ornwhatsnew/Feature/Detail/VersionAdded/displaytemplate= (v@0)"),
                     added));
    } else {
      Styled(4, Fill(ZString("$$$/ornwhatsnew/Feature/Detail/VersionRange/displaytemplate="
                             " (v@0-v@1)"),
                     first, added));
    }
  }

  void Annotations(const PlainChange& change, const PlainItem& item) {
    if (change.unmatched) {
      Styled(10, Fill(u"(Unknown Jira Issue @0) ", PlainUTF8to16(change.epic)));
    }
    std::u16string reasons = change.duplicateURL ? u"duplicate" : u"";
    if (change.HasMalformedURL()) reasons += reasons.empty() ? u"malformed" : u" and malformed";
    if (PlainIsSection(item.groupingKey)) {
      if (!reasons.empty()) reasons += u" and ";
      reasons += Fill(u"in @0 section", PlainUTF8to16(item.groupingKey));
    }
    if (!change.url.empty() && !reasons.empty()) {
      Styled(10, Fill(u"(View More URL ignored: @0) ", reasons));
    }
    if (change.HasMalformedPlatform()) {
      Styled(10, Fill(u"(Malformed platform ignored: @0) ", PlainUTF8to16(change.platform)));
    }
    if (change.HasMalformedSalience()) {
      Styled(10, Fill(u"(Malformed salience ignored: @0) ", PlainUTF8to16(change.salience)));
    }
  }

  void Record(const PlainItem& item, const std::u16string& name,
              const std::vector<const PlainChange*>& changes) {
    std::string custom;
    bool hidesDescription = false;
    for (const PlainChange* change : changes) {
      if (change->ratingRequest.empty()) continue;
      custom = change->ratingRequest;
      if (!PlainEqualIgnoringCase(custom, "RequestRating")) continue;
      custom.clear();
      if (PlainEqualIgnoringCase(change->salience, "RatingHidesBetaFeatureDescription")) {
        hidesDescription = true;
      }
    }
    out_.ratingItems[item.groupingKey] = {
        .internalKey = item.internalKey,
        .name = PlainUTF16to8(name),
        .description = hidesDescription ? "" : PlainUTF16to8(LocalizeIfNecessary(item.description)),
        .customRating = custom,
        .visibility = item.visibility};
  }

  const unsigned options_;
  const bool rating_;
  const bool internal_;
  const std::u16string_view placeholder_;
  PanelOutcome& out_;
  const ornappsupport::links::PanelLinks links_ = ornappsupport::links::GetPanelLinks();
  const std::u16string tab_ =
      ZString("$$$/ornwhatsnew/Feature/Detail/Plain/DisplayTemplate/Tab=\t");
  const std::u16string newline_ = ZString("$$$/private/ornwhatsnew/Feature/Newline=#{endl}");
};

PanelOutcome PlainPanel::Format(unsigned options, std::u16string_view ratingPlaceholder) {
  PanelOutcome outcome;
  Formatting panel(options, ratingPlaceholder, outcome);
  panel.Header(lastVersion_, changesSince_);

  bool anyShown = false;
  for (const std::string& key : order_) {
    const PlainItem* const item = Find(key);
    if (item == nullptr || !item->IsShown(options, seen_, versions_)) continue;
    anyShown = true;
    newlySeen_.insert(item->Seen());
    std::vector<const PlainChange*> changes;
    for (const PlainChange& change : item->changes) {
      if (!change.IsShown(options, seen_, versions_)) continue;
      changes.push_back(&change);
      if ((options & kRatingBit) == 0) newlySeen_.insert(change.Seen());
    }
    panel.Feature(*item, changes);
  }
  if (!anyShown) panel.NothingToShow();

  Persist("WhatsNew.AllSeenItems", SeenState(), outcome);
  Persist("WhatsNew.LastVersionSeenWhatsNew", currentVersion_, outcome);
  std::string versions;
  for (const std::string& version : versions_) versions += (versions.empty() ? "" : " ") + version;
  Persist("WhatsNew.AllVersionSeenWhatsNew", versions, outcome);
  return outcome;
}

}  // namespace test_support
