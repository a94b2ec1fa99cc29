// Constants and small types that the library shares with its hosts: section keys, layout constants,
// unlock states, the running version and the debug switches.
#ifndef ORNWHATSNEW_WHATSNEWTYPES_H_
#define ORNWHATSNEW_WHATSNEWTYPES_H_

#include <array>
#include <string>
#include <string_view>

#include <orncore/Export.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Grouping key of the section for what belongs to no feature, as a data file writes it.
extern ORN_EXPORT const UTF8String kMiscKey;
/// That of the section for mended faults.
extern ORN_EXPORT const UTF8String kBugfixKey;
/// That of the internal notes.
extern ORN_EXPORT const UTF8String kInternalKey;
/// That of the changes that wait for review.
extern ORN_EXPORT const UTF8String kUnreviewedKey;

// Font sizes, tab width and margin for the host's drawing code, in its own units. The library
// itself does not use them.
inline constexpr float kFontSize_Title = 28.0F;        ///< size of a feature's title
inline constexpr float kFontSize_Header = 18.0F;       ///< size of the header line
inline constexpr float kFontSize_Buttons = 20.0F;      ///< size of the text on buttons
inline constexpr float kFontSize_Normal = 18.0F;       ///< size of descriptions and changes
inline constexpr float kFontSize_NormalSmall = 16.0F;  ///< size of what stands back behind them
inline constexpr float kFontSize_HotSpot = 16.0F;      ///< size of links that stand alone
inline constexpr float kFontSize_HotSpotCopy = 16.0F;  ///< size of links in running text
inline constexpr int kTabWidth = 6;                    ///< width of a tab
inline constexpr int kRightMargin = 26;                ///< margin at the right of the panel

/// Marks of UTF-8 text that stand apart from words: signs, quotation marks, the small triangle,
/// and the hyphens, dashes and minus signs that writers mix. Published as they are; the library
/// itself does not use them.
inline constexpr std::array<std::string_view, 12> kTypographicMarks = {
    "\xC2\xB0",      // degree sign
    "\xC2\xAB",      // left-pointing double angle quotation mark
    "\xC2\xBB",      // right-pointing double angle quotation mark
    "\xE2\x96\xBE",  // black down-pointing small triangle
    "-",             // hyphen-minus
    "\xEF\xB9\x98",  // small em dash
    "\xE2\x80\x93",  // en dash
    "\xE2\x88\x92",  // minus sign
    "\xEF\xB9\xA3",  // small hyphen-minus
    "\xEF\xBC\x8D",  // fullwidth hyphen-minus
    "\xE2\x80\x94",  // em dash
    "\xE2\x80\x95",  // horizontal bar
};

/// What the label behind a feature's title says about its availability.
enum class ItemUnlockState {
  TarsaOnly,      ///< only for users with the internal-features permission
  Off,            ///< a public feature that is switched off, shown because a debug switch says so
  Unlocked,       ///< available to this user
  InDevelopment,  ///< switched on before it is finished
  Unlabelled,     ///< no label
};

/// The unlock state of an item, from the host's feature table of the moment; nothing is cached.
ORN_EXPORT ItemUnlockState GetItemUnlockState(const FeatureListItem& item);

/// Whether features that are switched off are to be listed all the same: a debug entry that only
/// counts for users with the internal-features permission. Read afresh at each call.
ORN_EXPORT bool ShowingAllOffFeaturesInternally();

/// Whether titles are followed by the feature's internal key: the second debug entry, with the same
/// rule. Read afresh at each call.
ORN_EXPORT bool ShowingAllUnlockCodesInternally();

/// The running host's version with its build number behind it; a version of exactly two parts is
/// padded with a third (`25.1` and build `42` give `25.1.0.42`, `25` gives `25.42`). Read afresh
/// from the host at each call.
ORN_EXPORT UTF16String GetFullClientVersionString();

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_WHATSNEWTYPES_H_
