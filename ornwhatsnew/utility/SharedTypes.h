// The types that the library and its hosts exchange: strings, identities, display options, style
// runs and the two state callbacks.
#ifndef ORNWHATSNEW_UTILITY_SHAREDTYPES_H_
#define ORNWHATSNEW_UTILITY_SHAREDTYPES_H_

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <orncore/string/Conversion.h>
#include <orncore/utility/Flags.h>
#include <orncore/utility/Guid.h>

namespace ornwhatsnew {

class FeatureListItem;

/// UTF-8 string for file text, field values, persisted values and identifiers. A `std::string`.
using orncore::string::UTF8String;
/// UTF-16 string for paths and display text. A `std::u16string`.
using orncore::string::UTF16String;
/// A 128-bit hash of content.
using orncore::utility::Guid;

/// What the host wants to show: any combination of the five bits below.
using DisplayOptions = orncore::utility::Flags<unsigned char>;

/// List only what the user has not seen.
inline constexpr DisplayOptions kShowOnlyNew{0x01};
/// Omit changes that are relevant on another platform only.
inline constexpr DisplayOptions kFilterRelevantPlatform{0x02};
/// Omit changes whose range of relevant versions the user never ran.
inline constexpr DisplayOptions kFilterRelevantVersion{0x04};
/// Omit every change with a well-formed salience, including an empty one.
inline constexpr DisplayOptions kFilterHeadlinesOnly{0x08};
/// List the features that the user has seen and not rated.
inline constexpr DisplayOptions kRatingView{0x10};

/// The identities that the user has seen or rated. A standard set, because hosts pass their own
/// sets to the predicates of the records.
using GuidSet = std::unordered_set<Guid>;
/// The full client versions in which the user opened What's New.
using VersionSet = std::unordered_set<UTF8String>;

/// The role of a range of the panel's text. The values never change, because hosts map them to
/// fonts. The values 8 and 12 are reserved for hosts; the library never produces them.
enum class StyleID : int {
  kStyleFeatureTitle = 0,        ///< a feature's title; the string is its view-more URL
  kStyleFeatureDescription = 1,  ///< a feature's description paragraph
  kStyleChangeText = 2,          ///< bullet prefix, platform text and text of a change
  kStyleHeader = 3,              ///< the header line and every notice paragraph
  kStyleInternalCode = 4,        ///< unlock codes and version suffixes
  kStyleCommitLink = 5,          ///< a commit identifier; the string is the commit's URL
  kStyleHotSpot = 6,             ///< a link text; the string is the URL that a click opens
  kStyleIssueLink = 7,           ///< an issue key; the string is the issue's URL
  kStyleUnlockLabel = 9,         ///< the unlock label after a title
  kStyleInternalWarning = 10,    ///< notes that explain what was ignored in a change
  kStyleUnlockLabelBox = 11,     ///< a second run over the same text as `kStyleUnlockLabel`
  kStyleRatingPlaceholder = 13,  ///< the paragraph that the host replaces with a rating control
};
using enum StyleID;

/// One style run: ((start, length), string). Start and length are in UTF-8 bytes of the whole text,
/// not in UTF-16 units. The string is a URL or empty. A run of `kStyleCommitLink` extends one byte
/// past its text.
using StyleRun = std::pair<std::pair<int, int>, UTF16String>;
/// The runs of each style in the order of the text. The caller owns the map.
using StyleRunMap = std::unordered_map<StyleID, std::vector<StyleRun>>;

/// The items of a list by grouping key. An entry can be empty, for an ordered key without an item.
/// All queries treat an empty entry as a missing item.
using FeatureMap = std::unordered_map<std::string, std::shared_ptr<FeatureListItem>>;
/// The features offered for rating, by grouping key. The caller owns the records.
using RatingMap = FeatureMap;

/// Returns one persisted value: what the setter last stored under the key, or an empty string.
using StateGetter = std::function<UTF8String(const UTF8String& key)>;
/// Stores one persisted value under its key.
using StateSetter = std::function<void(const UTF8String& key, const UTF8String& value)>;

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_UTILITY_SHAREDTYPES_H_
