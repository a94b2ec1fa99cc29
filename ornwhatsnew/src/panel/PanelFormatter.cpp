#include "ornwhatsnew/src/panel/PanelFormatter.h"

#include <memory>
#include <utility>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/string/CaseMapping.h>
#include <orncore/string/Conversion.h>
#include <ornwhatsnew/WhatsNewTypes.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/panel/Localization.h"
#include "ornwhatsnew/src/rules/Keywords.h"
#include "ornwhatsnew/src/rules/ReadAhead.h"

namespace ornwhatsnew {
namespace {

using orncore::string::UTF8to16;

// Both links leave out their template's leading blank. Only the issue's is as much shorter; the
// commit's keeps its length and so takes in the byte behind it. Panels have always drawn them so.
constexpr RunAdjustment kIssueLinkAdjustment{1, -1};
constexpr RunAdjustment kCommitLinkAdjustment{1, 0};

// What the tracker's own keys begin with, in the letter cases that a data file may use. Only these
// three letters have these three as their capitals.
bool MayBeOwnIssue(std::string_view id) {
  return id.size() >= kOwnIssuePrefix.size() &&
         CaseInsensitiveEqual(id.substr(0, kOwnIssuePrefix.size()), kOwnIssuePrefix);
}

}  // namespace

// What the shown changes of a feature ask of its rating record.
struct PanelFormatter::RatingSummary {
  UTF8String customText;
  bool hidesDescription = false;

  void Note(const FeatureListDetail& change) {
    const UTF8String& request = change.GetRatingRequestOptional();
    if (request.empty()) return;
    const bool isPlain = CaseInsensitiveEqual(request, keywords::kRequestRating);
    customText = isPlain ? UTF8String() : request;
    hidesDescription |=
        isPlain && CaseInsensitiveEqual(change.GetSalienceOptional(),
                                        keywords::kRatingHidesBetaFeatureDescription);
  }
};

PanelFormatter::PanelFormatter(DisplayOptions options, const UTF16String& ratingPlaceholder,
                               StyleRunMap& runs, RatingMap* ratingItems)
    : options_(options),
      ratingPlaceholder_(ratingPlaceholder),
      ratingItems_(ratingItems),
      bulletPrefix_(templates_.tab + templates_.changeBullet + templates_.tab),
      writer_(runs) {}

void PanelFormatter::Reserve(std::size_t changes, std::size_t descriptionBytes) {
  // What a change line has beside its text: bullet, platform, version, line end; and for internal
  // users a note, the issue and the commit.
  constexpr std::size_t kUnitsBesideText = 40;
  constexpr std::size_t kUnitsForInternalUsers = 90;
  // No byte of UTF-8 becomes more than one unit.
  std::size_t units = descriptionBytes + changes * kUnitsBesideText;
  if (isInternalUser_) units += changes * kUnitsForInternalUsers;
  writer_.Reserve(units);

  writer_.ReserveRuns(kStyleChangeText, 3 * changes);
  writer_.ReserveRuns(kStyleInternalCode, changes);
  writer_.ReserveRuns(kStyleCommitLink, changes);
}

void PanelFormatter::WriteHeader(const UTF8String& lastVersionSeen,
                                 const UTF8String& changesSinceVersion) {
  if (options_.Has(kRatingView)) {
    writer_.Append(kStyleHeader, templates_.newline + templates_.newline);
  } else if (options_.Has(kShowOnlyNew) && !lastVersionSeen.empty()) {
    WriteFilled(kStyleHeader, templates_.sinceLastOpened, UTF8to16(lastVersionSeen));
  } else {
    WriteFilled(kStyleHeader, templates_.sinceRelease, UTF8to16(changesSinceVersion));
  }
  isInternalUser_ = ornappsupport::feature::IsEntitlementSetToInternalFeaturesAllowed();
}

void PanelFormatter::WriteFeature(const FeatureListItem& item, const ItemFindings& findings) {
  const bool isSection = IsSpecialCaseSection(item.FeatureJiraIDKey());
  WriteTitleLine(item, isSection);
  if (!options_.Has(kRatingView)) WriteDescription(item);

  RatingSummary rating;
  const std::vector<ItemFindings::ShownChange>& changes = findings.shownChanges;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    ReadAhead(
        i, changes.size(), [&](std::size_t at) -> const auto& { return *changes[at].change; });
    WriteChangeLine(*changes[i].change, item, isSection);
    rating.Note(*changes[i].change);
  }
  WriteRating(item, rating);
}

void PanelFormatter::WriteNothingToShow() {
  if (!options_.Has(kRatingView)) {
    writer_.Append(kStyleHeader, templates_.nothingNew);
  } else if (FeatureListItem::AnalyticsDisabled()) {
    writer_.Append(kStyleHeader, templates_.optedOutPart1);
    writer_.Append(kStyleHotSpot, kPrivacyPage, UTF16String(kPrivacyPage));
    writer_.Append(kStyleHeader, templates_.optedOutPart2);
  } else {
    writer_.Append(kStyleHeader, templates_.nothingToRate);
  }
}

void PanelFormatter::WriteTitleLine(const FeatureListItem& item, bool isSection) {
  writer_.Append(kStyleFeatureTitle, Title(item), UTF8to16(item.GetFeatureViewMoreURL()));

  const std::string& internalKey = item.BetaFeatureInternalKey();
  if (isInternalUser_ && !isSection && !internalKey.empty() && ShowingAllUnlockCodesInternally()) {
    writer_.Append(kStyleInternalCode, templates_.internalDash);
    WriteFilled(kStyleInternalCode, templates_.internalCode, UTF8to16(internalKey));
  }

  if (const UTF16String* label = UnlockLabel(item)) {
    writer_.Append(templates_.tab);
    writer_.RecordRunBefore(kStyleUnlockLabel, *label);
    writer_.Append(kStyleUnlockLabelBox, *label);
  }
  writer_.Append(templates_.newline);
}

void PanelFormatter::WriteDescription(const FeatureListItem& item) {
  Localize(item.GetFeatureDescription(), first_);
  if (first_.empty()) return;
  writer_.Append(kDescriptionMark);
  writer_.Append(templates_.tab);
  writer_.Append(kStyleFeatureDescription, first_);
  if (isInternalUser_) WriteIssueLink(item.FeatureJiraIDKey());
  if (!item.GetFeatureViewMoreURL().empty()) {
    writer_.Append(templates_.tab);
    writer_.Append(kStyleHotSpot, templates_.viewMore, UTF8to16(item.GetFeatureViewMoreURL()));
  }
  writer_.Append(templates_.newline);
}

void PanelFormatter::WriteChangeLine(const FeatureListDetail& change, const FeatureListItem& item,
                                     bool isSection) {
  writer_.Append(kStyleChangeText, bulletPrefix_);
  if (isInternalUser_) WriteAnnotations(change, item, isSection);
  WritePlatform(change);
  WriteChangeText(change);
  WriteVersion(change);
  if (isInternalUser_) {
    WriteIssueLink(change.GetJIRAStoryBugTaskID());
    WriteCommitLink(change.GetSHAOptional());
  }
  writer_.Append(templates_.newline);
}

void PanelFormatter::WriteAnnotations(const FeatureListDetail& change, const FeatureListItem& item,
                                      bool isSection) {
  if (change.DetailInternalCouldNotMatchBetaFeature()) {
    UTF8to16(change.GetJIRAEpicID(), first_);
    WriteFilled(kStyleInternalWarning, templates_.unknownIssueNote, first_);
  }
  if (!change.GetViewMoreURLOptional().empty()) WriteIgnoredURLNote(change, item, isSection);
  if (change.HasMalformedPlatform()) {
    UTF8to16(change.GetRelevantPlatformOptional(), first_);
    WriteFilled(kStyleInternalWarning, templates_.ignoredPlatformNote, first_);
  }
  if (change.HasMalformedSalience()) {
    UTF8to16(change.GetSalienceOptional(), first_);
    WriteFilled(kStyleInternalWarning, templates_.ignoredSalienceNote, first_);
  }
}

void PanelFormatter::WriteIgnoredURLNote(const FeatureListDetail& change,
                                         const FeatureListItem& item, bool isSection) {
  UTF16String& reasons = first_;
  reasons.clear();
  const auto add = [&reasons](std::u16string_view reason) {
    if (!reasons.empty()) reasons += kReasonSeparator;
    reasons += reason;
  };
  if (change.HasDuplicateURL()) add(kDuplicateReason);
  if (change.HasMalformedURL()) add(kMalformedReason);
  if (isSection) add(templates_.sectionReason.Filled(UTF8to16(item.FeatureJiraIDKey())));
  if (!reasons.empty()) WriteFilled(kStyleInternalWarning, templates_.ignoredURLNote, reasons);
}

void PanelFormatter::WritePlatform(const FeatureListDetail& change) {
  const UTF8String& platform = change.GetRelevantPlatformOptional();
  if (!change.HasUsablePlatform()) return;
  if (CaseInsensitiveEqual(platform, keywords::kMac)) {
    WriteFilled(kStyleChangeText, templates_.platform, kMacDisplayName);
  } else {
    UTF8to16(platform, first_);
    WriteFilled(kStyleChangeText, templates_.platform, first_);
  }
}

void PanelFormatter::WriteChangeText(const FeatureListDetail& change) {
  const UTF8String& text = change.GetDescription();
  if (!IsZString(text)) {
    writer_.AppendUTF8(kStyleChangeText, text);
    return;
  }
  Localize(text, first_);
  writer_.Append(kStyleChangeText, first_);
}

void PanelFormatter::WriteVersion(const FeatureListDetail& change) {
  Localize(change.GetChangeAddedVersion(), first_);
  if (first_.empty()) return;
  Localize(change.GetRelevantFirstVersionOptional(), second_);
  if (second_.empty()) {
    WriteFilled(kStyleInternalCode, templates_.version, first_);
    return;
  }
  templates_.versionRange.Fill(filled_, second_, first_);
  writer_.Append(kStyleInternalCode, filled_);
}

void PanelFormatter::WriteIssueLink(std::string_view id) {
  if (!MayBeOwnIssue(id)) return;
  UTF8to16(id, first_);
  orncore::string::UpperCase(first_, second_);
  templates_.issueKey.Fill(filled_, second_);
  writer_.Append(kStyleIssueLink, filled_, templates_.issueLink.Filled(second_),
                 kIssueLinkAdjustment);
}

void PanelFormatter::WriteCommitLink(const UTF8String& commit) {
  if (commit.empty()) return;
  UTF8to16(commit, first_);
  templates_.commitCode.Fill(filled_, first_);
  writer_.Append(kStyleCommitLink, filled_, templates_.commitLink.Filled(first_),
                 kCommitLinkAdjustment);
}

void PanelFormatter::WriteRating(const FeatureListItem& item, const RatingSummary& rating) {
  if (ratingItems_ != nullptr) RecordForRating(item, rating);
  if (ratingPlaceholder_.empty()) return;
  writer_.Append(kStyleRatingPlaceholder,
                 templates_.newline + ratingPlaceholder_ + templates_.newline);
}

void PanelFormatter::RecordForRating(const FeatureListItem& item, const RatingSummary& rating) {
  UTF8String description;
  if (!rating.hidesDescription) {
    Localize(item.GetFeatureDescription(), first_);
    orncore::string::UTF16to8(first_, description);
  }
  auto record = std::make_shared<FeatureListItem>(
      item.GetFeatureJiraIDKey(), item.BetaFeatureInternalKey(),
      orncore::string::UTF16to8(Title(item)), description, item.GetVisibility());
  record->SetCustomRatingStr(rating.customText);
  (*ratingItems_)[item.GetFeatureJiraIDKey()] = std::move(record);
}

UTF16String PanelFormatter::Title(const FeatureListItem& item) const {
  UTF16String title;
  Localize(item.GetFeatureName(), title);
  return title.empty() ? UTF8to16(item.FeatureJiraIDKey()) : title;
}

const UTF16String* PanelFormatter::UnlockLabel(const FeatureListItem& item) const {
  switch (GetItemUnlockState(item)) {
    case ItemUnlockState::TarsaOnly:
      return &templates_.unlockInternal;
    case ItemUnlockState::Off:
      return &templates_.unlockOff;
    case ItemUnlockState::Unlocked:
      return &templates_.unlockUnlocked;
    case ItemUnlockState::InDevelopment:
      return &templates_.unlockInDevelopment;
    case ItemUnlockState::Unlabelled:
      break;
  }
  return nullptr;
}

void PanelFormatter::WriteFilled(StyleID style, const TextTemplate& pattern,
                                 std::u16string_view text) {
  pattern.Fill(filled_, text);
  writer_.Append(style, filled_);
}

}  // namespace ornwhatsnew
