// Declares constants, unlock states and two functions for hosts. The constants are section keys,
// sizes and typographic marks. The functions return the value of a debug switch and the full
// version.
#ifndef ORNWHATSNEW_WHATSNEWTYPES_H_
#define ORNWHATSNEW_WHATSNEWTYPES_H_

#include <array>
#include <string>
#include <string_view>

#include <orncore/Export.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

// The grouping IDs of the four sections in a data file, which are also the keys of their items.
// Static objects of the host must not use the keys in their constructors, which can run before the
// keys are initialised.

/// The key of the section for miscellaneous changes.
extern ORN_EXPORT const UTF8String kMiscKey;
/// The key of the section for bug fixes.
extern ORN_EXPORT const UTF8String kBugfixKey;
/// The key of the section for internal notes and unmatched changes. Only internal users see this
/// section.
extern ORN_EXPORT const UTF8String kInternalKey;
/// The key of the section for unreviewed changes. Only internal users see this section.
extern ORN_EXPORT const UTF8String kUnreviewedKey;

// A host can use these font sizes, the tab width and the margin to draw the panel. The library does
// not use them. The font sizes and the margin are in device-independent pixels: 96 pixels are one
// inch on a screen without scaling, as in CSS. The tab width is a number of spaces in the font of
// the paragraph.

inline constexpr float kFontSize_Title = 28.0F;        ///< size of a feature's title
inline constexpr float kFontSize_Header = 18.0F;       ///< size of the header line
inline constexpr float kFontSize_Buttons = 20.0F;      ///< size of the text on buttons
inline constexpr float kFontSize_Normal = 18.0F;       ///< size of descriptions and changes
inline constexpr float kFontSize_NormalSmall = 16.0F;  ///< size of secondary text
inline constexpr float kFontSize_HotSpot = 16.0F;      ///< size of links in a separate paragraph
inline constexpr float kFontSize_HotSpotCopy = 16.0F;  ///< size of links within a paragraph
inline constexpr int kTabWidth = 6;                    ///< width of a tab, in spaces
inline constexpr int kRightMargin = 26;                ///< right margin of the panel

/// Characters that do not belong to words, each in UTF-8. A host that draws the panel can use them
/// to find word boundaries. The library does not use them.
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

/// The unlock state of an item, which the unlock label after its title shows. The unlock state of a
/// feature depends on the visibility in the host's feature table.
enum class ItemUnlockState {
  /// The item is a section that only internal users see. For internal users, a feature also has
  /// this state if its visibility is `kInternal`, or if it is not public and has the internal
  /// override.
  TarsaOnly,
  /// The item is a public feature that is switched off. This state occurs only while
  /// `ShowingAllOffFeaturesInternally` returns true.
  Off,
  /// The item is a public feature that does not have the state `Off`. For external users, a feature
  /// also has this state if it has the state `TarsaOnly` for internal users.
  Unlocked,
  /// The item is a feature with the visibility `kInDevelopment` and without the internal override.
  InDevelopment,
  /// The item has no label. It is the section MISC or BUGFIX, or a feature that is not in the
  /// host's feature table. A feature without the internal override also has this state if its
  /// visibility is `kUnlabelled` or an unknown number.
  Unlabelled,
};

/// Returns whether the debug switch
/// "ornappsupport.betafeature.SimulateShowingAllOffFeaturesInWhatsNew" is on. While it is on, the
/// list also shows features that are switched off and that the user cannot switch on. Always
/// returns false for external users. For internal users, reads the debug database at each call.
ORN_EXPORT bool ShowingAllOffFeaturesInternally();

/// Returns the full version of the host: the version, a dot and the build number. If the version
/// has exactly two components, inserts a third component 0. With the build number `42`, the version
/// `25.1` gives `25.1.0.42`, and the version `25` gives `25.42`. Queries the host at each call.
ORN_EXPORT UTF16String GetFullClientVersionString();

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_WHATSNEWTYPES_H_
