#include "ornwhatsnew/src/panel/PanelFormatter.h"

#include <memory>
#include <span>
#include <utility>

#include <ornappsupport/feature/FeatureService.h>
#include <orncore/string/CaseMapping.h>
#include <orncore/string/Conversion.h>
#include <orncore/string/Replace.h>
#include <ornwhatsnew/WhatsNewTypes.h>
#include <ornwhatsnew/utility/TextHelpers.h>

#include "ornwhatsnew/src/panel/Localization.h"
#include "ornwhatsnew/src/panel/UnlockState.h"
#include "ornwhatsnew/src/rules/DebugSwitches.h"
#include "ornwhatsnew/src/rules/Keywords.h"

namespace ornwhatsnew {
namespace {

using orncore::string::Replacement;
using orncore::string::UTF8to16;

// The issue run and the commit run skip the leading space of their text. Compatibility: the length
// of the commit run is not reduced, so the run extends one byte past its text
// (docs/compatibility.md).
constexpr RunAdjustment kIssueLinkAdjustment{1, -1};
constexpr RunAdjustment kCommitLinkAdjustment{1, 0};

UTF16String Fill(std::u16string_view pattern, std::span<const Replacement> replacements) {
  UTF16String filled(pattern);
  orncore::string::ReplaceInString(filled, replacements);
  return filled;
}

UTF16String Fill(std::u16string_view pattern, std::u16string_view text) {
  const Replacement replacement[] = {{u"@0", text}};
  return Fill(pattern, replacement);
}

// Returns the title of an item, or its key if it has no title.
UTF16String TitleOf(const FeatureListItem& item) {
  UTF16String title = Localize(item.GetFeatureName());
  return title.empty() ? UTF8to16(item.FeatureJiraIDKey()) : title;
}

}  // namespace

// The fields of a rating record that depend on the rating requests of the shown changes.
struct PanelFormatter::RatingSummary {
  UTF8String customText;
  bool hidesDescription = false;

  void Add(const FeatureListDetail& change) {
    const UTF8String& request = change.GetRatingRequestOptional();
    if (request.empty()) return;
    const bool isPlain = CaseInsensitiveEqual(request, keywords::kRequestRating);
    customText = isPlain ? UTF8String() : request;
    hidesDescription |=
        isPlain &&
        change.GetSalience() == FeatureListDetail::Salience::kRatingHidesBetaFeatureDescription;
  }
};

PanelFormatter::PanelFormatter(DisplayOptions options, const UTF16String& ratingPlaceholder,
                               RatingMap* ratingItems, PanelWriter& writer)
    : options_(options),
      ratingPlaceholder_(ratingPlaceholder),
      ratingItems_(ratingItems),
      bulletPrefix_(templates_.tab + templates_.changeBullet + templates_.tab),
      isInternalUser_(ornappsupport::feature::IsEntitlementSetToInternalFeaturesAllowed()),
      writer_(writer) {}

void PanelFormatter::Reserve(std::size_t items, std::size_t changes, std::size_t descriptionBytes) {
  // The estimated number of UTF-16 units for the bullet, platform, version and newline of a change
  // line. The number of bytes is the estimate for the descriptions, because a string never has more
  // UTF-16 units than bytes of UTF-8.
  constexpr std::size_t kUnitsBesideDescription = 40;
  // Count a paragraph for each change, for the title and the description of each item, and for the
  // header.
  writer_.Reserve(changes + 2 * items + 1, descriptionBytes + changes * kUnitsBesideDescription);
}

void PanelFormatter::WriteHeader(const UTF8String& lastVersionSeen,
                                 const UTF8String& changesSinceVersion) {
  writer_.BeginParagraph(ParagraphKind::kHeader, nullptr);
  if (options_.Has(kRatingView)) {
    writer_.AppendStyled(kStyleHeader, templates_.newline + templates_.newline);
  } else if (options_.Has(kShowOnlyNew) && !lastVersionSeen.empty()) {
    WriteFilled(kStyleHeader, templates_.sinceLastOpened, UTF8to16(lastVersionSeen));
  } else {
    WriteFilled(kStyleHeader, templates_.sinceRelease, UTF8to16(changesSinceVersion));
  }
  writer_.EndParagraph({});
}

void PanelFormatter::WriteFeature(const FeatureListItem& item, const ShownItem& shown) {
  WriteTitleLine(item);
  if (!options_.Has(kRatingView)) WriteDescription(item);

  RatingSummary rating;
  for (const ShownItem::Change& line : shown.changes) {
    WriteChangeLine(*line.change, item);
    rating.Add(*line.change);
  }

  AddRating(item, rating);
  if (!ratingPlaceholder_.empty()) {
    writer_.AppendStyled(kStyleRatingPlaceholder,
                         templates_.newline + ratingPlaceholder_ + templates_.newline);
  }
}

void PanelFormatter::WriteNothingToShow() {
  writer_.BeginParagraph(ParagraphKind::kNotice, nullptr);
  if (!options_.Has(kRatingView)) {
    writer_.AppendStyled(kStyleHeader, templates_.nothingNew);
  } else if (FeatureListItem::AnalyticsDisabled()) {
    writer_.AppendStyled(kStyleHeader, templates_.optedOutPart1);
    writer_.AppendRun(kStyleHotSpot, links_.privacyPage, links_.privacyPage, {});
    writer_.AppendStyled(kStyleHeader, templates_.optedOutPart2);
  } else {
    writer_.AppendStyled(kStyleHeader, templates_.nothingToRate);
  }
  writer_.EndParagraph({});
}

void PanelFormatter::WriteTitleLine(const FeatureListItem& item) {
  // Determine the label first, because hosts can observe the order of the service queries.
  const UTF16String* const label = UnlockLabel(item);
  writer_.BeginParagraph(ParagraphKind::kTitle, &item);
  writer_.AppendRun(kStyleFeatureTitle, TitleOf(item), UTF8to16(item.GetFeatureViewMoreURL()), {});

  const std::string& internalKey = item.BetaFeatureInternalKey();
  if (isInternalUser_ && !item.IsSection() && !internalKey.empty() &&
      IsInternalDebugSwitchOn(kShowAllUnlockCodes)) {
    writer_.AppendStyled(kStyleInternalCode, templates_.internalDash);
    WriteFilled(kStyleInternalCode, templates_.internalCode, UTF8to16(internalKey));
  }

  if (label != nullptr) {
    writer_.AppendTemplate(templates_.tab);
    writer_.AppendUnlockLabel(*label);
  }
  writer_.EndParagraph(templates_.newline);
}

void PanelFormatter::WriteDescription(const FeatureListItem& item) {
  const UTF16String description = Localize(item.GetFeatureDescription());
  if (description.empty()) return;
  writer_.BeginParagraph(ParagraphKind::kDescription, &item);
  writer_.AppendTemplate(kDescriptionMark);
  writer_.AppendTemplate(templates_.tab);
  writer_.AppendStyled(kStyleFeatureDescription, description);
  if (isInternalUser_) WriteIssueLink(item.FeatureJiraIDKey());
  if (!item.GetFeatureViewMoreURL().empty()) {
    writer_.AppendTemplate(templates_.tab);
    writer_.AppendRun(kStyleHotSpot, templates_.viewMore, UTF8to16(item.GetFeatureViewMoreURL()),
                      {});
  }
  writer_.EndParagraph(templates_.newline);
}

void PanelFormatter::WriteChangeLine(const FeatureListDetail& change, const FeatureListItem& item) {
  writer_.BeginParagraph(ParagraphKind::kChange, &item);
  writer_.AppendBullet(bulletPrefix_);
  if (isInternalUser_) WriteNotes(change, item);
  WritePlatform(change);
  WriteChangeText(change);
  WriteVersion(change);
  if (isInternalUser_) {
    WriteIssueLink(change.GetJIRAStoryBugTaskID());
    WriteCommitLink(change.GetSHAOptional());
  }
  writer_.EndParagraph(templates_.newline);
}

void PanelFormatter::WriteNotes(const FeatureListDetail& change, const FeatureListItem& item) {
  if (change.DetailInternalCouldNotMatchBetaFeature()) {
    WriteFilled(kStyleInternalWarning, kUnknownIssueNote, UTF8to16(change.GetJIRAEpicID()));
  }
  if (!change.GetViewMoreURLOptional().empty()) WriteIgnoredURLNote(change, item);
  if (change.HasMalformedPlatform()) {
    WriteFilled(kStyleInternalWarning, kIgnoredPlatformNote,
                UTF8to16(change.GetRelevantPlatformOptional()));
  }
  if (change.HasMalformedSalience()) {
    WriteFilled(kStyleInternalWarning, kIgnoredSalienceNote,
                UTF8to16(change.GetSalienceOptional()));
  }
}

void PanelFormatter::WriteIgnoredURLNote(const FeatureListDetail& change,
                                         const FeatureListItem& item) {
  UTF16String reasons;
  const auto add = [&reasons](std::u16string_view reason) {
    if (!reasons.empty()) reasons += kReasonSeparator;
    reasons += reason;
  };
  if (change.HasDuplicateURL()) add(kDuplicateReason);
  if (change.HasMalformedURL()) add(kMalformedReason);
  if (item.IsSection()) add(Fill(kSectionReason, UTF8to16(item.FeatureJiraIDKey())));
  if (!reasons.empty()) WriteFilled(kStyleInternalWarning, kIgnoredURLNote, reasons);
}

void PanelFormatter::WritePlatform(const FeatureListDetail& change) {
  if (!change.HasUsablePlatform()) return;
  const bool isMac = change.GetPlatform() == FeatureListDetail::Platform::kMac;
  WriteFilled(
      kStyleChangeText, templates_.platform,
      isMac ? UTF16String(kMacDisplayName) : UTF8to16(change.GetRelevantPlatformOptional()));
}

void PanelFormatter::WriteChangeText(const FeatureListDetail& change) {
  const UTF8String& text = change.GetDescription();
  if (IsZString(text)) {
    writer_.AppendChangeText(Localize(text));
  } else {
    writer_.AppendChangeTextUTF8(text);
  }
}

void PanelFormatter::WriteVersion(const FeatureListDetail& change) {
  const UTF16String addedVersion = Localize(change.GetChangeAddedVersion());
  if (addedVersion.empty()) return;
  const UTF16String firstVersion = Localize(change.GetRelevantFirstVersionOptional());
  if (firstVersion.empty()) {
    WriteFilled(kStyleInternalCode, templates_.version, addedVersion);
    return;
  }
  const Replacement versions[] = {{u"@0", firstVersion}, {u"@1", addedVersion}};
  writer_.AppendStyled(kStyleInternalCode, Fill(templates_.versionRange, versions));
}

void PanelFormatter::WriteIssueLink(std::string_view id) {
  if (links_.issuePrefix.empty()) return;
  const UTF16String key = orncore::string::UpperCase(UTF8to16(id));
  if (!key.starts_with(links_.issuePrefix)) return;
  writer_.AppendRun(kStyleIssueLink, Fill(templates_.issueKey, key), Fill(links_.issueLink, key),
                    kIssueLinkAdjustment);
}

void PanelFormatter::WriteCommitLink(const UTF8String& commit) {
  if (commit.empty()) return;
  const UTF16String commitID = UTF8to16(commit);
  writer_.AppendRun(kStyleCommitLink, Fill(kCommitCode, commitID),
                    Fill(links_.commitLink, commitID), kCommitLinkAdjustment);
}

void PanelFormatter::AddRating(const FeatureListItem& item, const RatingSummary& rating) {
  const bool hasRequest = options_.Has(kRatingView) && writer_.HasRatingRequests();
  if (ratingItems_ == nullptr && !hasRequest) return;
  UTF16String description;
  if (!rating.hidesDescription) description = Localize(item.GetFeatureDescription());
  UTF16String title = TitleOf(item);
  if (ratingItems_ != nullptr) {
    auto record = std::make_shared<FeatureListItem>(
        item.GetFeatureJiraIDKey(), item.BetaFeatureInternalKey(), orncore::string::UTF16to8(title),
        orncore::string::UTF16to8(description), item.GetVisibility());
    record->SetCustomRatingStr(rating.customText);
    (*ratingItems_)[item.GetFeatureJiraIDKey()] = std::move(record);
  }
  if (hasRequest) {
    // The strings of a layout are in the user's language. Compatibility: the question of a rating
    // record is not localised (docs/compatibility.md).
    writer_.AddRatingRequest(item, {item.GetFeatureJiraIDKey(), std::move(title),
                                    Localize(rating.customText), std::move(description)});
  }
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

void PanelFormatter::WriteFilled(StyleID style, std::u16string_view pattern,
                                 std::u16string_view text) {
  writer_.AppendStyled(style, Fill(pattern, text));
}

}  // namespace ornwhatsnew
