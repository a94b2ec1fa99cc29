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

/// Grouping key of the section for changes that belong to no feature, as in a data file.
extern ORN_EXPORT const UTF8String kMiscKey;
/// Grouping key of the section for bug fixes.
extern ORN_EXPORT const UTF8String kBugfixKey;
/// Grouping key of the section for internal notes.
extern ORN_EXPORT const UTF8String kInternalKey;
/// Grouping key of the section for unreviewed changes.
extern ORN_EXPORT const UTF8String kUnreviewedKey;

// Font sizes, tab width and margin for the host's drawing code, in the units of the host. The
// library does not use them.
inline constexpr float kFontSize_Title = 28.0F;        ///< size of a feature's title
inline constexpr float kFontSize_Header = 18.0F;       ///< size of the header line
inline constexpr float kFontSize_Buttons = 20.0F;      ///< size of the text on buttons
inline constexpr float kFontSize_Normal = 18.0F;       ///< size of descriptions and changes
inline constexpr float kFontSize_NormalSmall = 16.0F;  ///< size of secondary text
inline constexpr float kFontSize_HotSpot = 16.0F;  ///< size of links in a paragraph of their own
inline constexpr float kFontSize_HotSpotCopy = 16.0F;  ///< size of links in running text
inline constexpr int kTabWidth = 6;                    ///< width of a tab
inline constexpr int kRightMargin = 26;                ///< margin at the right of the panel

/// UTF-8 characters that are not part of words: a sign, quotation marks, a triangle, and the
/// hyphens, dashes and minus signs. They are for the host's drawing code. The library does not use
/// them.
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

/// What the label after a feature's title says about the availability of the feature.
enum class ItemUnlockState {
  TarsaOnly,      ///< only for users with the internal-features permission
  Off,            ///< a public feature that is off; a debug switch shows it
  Unlocked,       ///< available to this user
  InDevelopment,  ///< in development
  Unlabelled,     ///< no label
};

/// Returns the unlock state of an item. Queries the host's feature table at each call.
ORN_EXPORT ItemUnlockState GetItemUnlockState(const FeatureListItem& item);

/// Returns whether a debug entry lists the features that are off, too. Always false for users
/// without the internal-features permission. Reads the entry at each call.
ORN_EXPORT bool ShowingAllOffFeaturesInternally();

/// Returns whether a debug entry shows the internal key after the title of a feature. Always false
/// for users without the internal-features permission. Reads the entry at each call.
ORN_EXPORT bool ShowingAllUnlockCodesInternally();

/// Returns the version of the running host, followed by its build number. A version of exactly two
/// components gets a third: `25.1` and build `42` give `25.1.0.42`, `25` gives `25.42`. Queries the
/// host at each call.
ORN_EXPORT UTF16String GetFullClientVersionString();

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_WHATSNEWTYPES_H_
