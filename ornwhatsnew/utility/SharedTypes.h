// The types that the library and its hosts hand to each other: texts, identities, display options,
// style runs and the two state callbacks.
#ifndef ORNWHATSNEW_UTILITY_SHAREDTYPES_H_
#define ORNWHATSNEW_UTILITY_SHAREDTYPES_H_

#include <functional>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include <orncore/string/Types.h>
#include <orncore/utility/Flags.h>
#include <orncore/utility/Guid.h>

namespace ornwhatsnew {

class FeatureListItem;

/// UTF-8 text: file text, field values, persisted values, identifiers. A plain `std::string`.
using orncore::string::UTF8String;
/// UTF-16 text: paths and display text. A plain `std::u16string`.
using orncore::string::UTF16String;
/// A 128-bit identity made by hashing content.
using orncore::utility::Guid;

/// What the host asks to be shown: any combination of the five bits below.
using DisplayOptions = orncore::utility::Flags<unsigned char>;

/// Only what the user has not seen.
inline constexpr DisplayOptions kShowOnlyNew{0x01};
/// Drop changes that are marked for another platform.
inline constexpr DisplayOptions kFilterRelevantPlatform{0x02};
/// Drop changes that only matter to versions that the user never ran.
inline constexpr DisplayOptions kFilterRelevantVersion{0x04};
/// Drop every change that carries a well-formed salience, an empty one included.
inline constexpr DisplayOptions kFilterHeadlinesOnly{0x08};
/// The rating view: features that the user has seen and not yet rated.
inline constexpr DisplayOptions kRatingView{0x10};

/// The identities that the user has seen or rated. A plain standard set and not one of ours,
/// however much faster: it stands in the signatures of the records' predicates, which hosts call
/// with sets of their own.
using GuidSet = std::unordered_set<Guid>;
/// The full client versions in which the user opened What's New. A standard set for the same
/// reason.
using VersionSet = std::unordered_set<UTF8String>;

/// The role of a range of the panel's text. The host maps the values to fonts, so they never
/// change; 8 and 12 belong to the host and are never produced here.
enum class StyleID : int {
  kStyleFeatureTitle = 0,        ///< a feature's title; the string is its view-more URL
  kStyleFeatureDescription = 1,  ///< a feature's description paragraph
  kStyleChangeText = 2,          ///< bullet prefix, platform text and text of a change
  kStyleHeader = 3,              ///< the header line and every notice paragraph
  kStyleInternalCode = 4,        ///< unlock codes and version suffixes
  kStyleCommitLink = 5,          ///< a commit identifier; the string is the commit's URL
  kStyleHotSpot = 6,             ///< a link text; the string is the URL that a click opens
  kStyleIssueLink = 7,           ///< an issue key; the string is the issue's URL
  kStyleUnlockLabel = 9,         ///< the unlock label behind a title
  kStyleInternalWarning = 10,    ///< notes that explain what was ignored in a change
  kStyleUnlockLabelBox = 11,     ///< a second run over the same text as `kStyleUnlockLabel`
  kStyleRatingPlaceholder = 13,  ///< the paragraph that the host replaces by a rating control
};
using enum StyleID;

/// One styled range: ((start, length), string). Start and length count UTF-8 bytes of the whole
/// text converted from UTF-16, not UTF-16 units; the string is a URL or empty. The run of
/// `kStyleCommitLink` reaches one byte past its text.
using StyleRun = std::pair<std::pair<int, int>, UTF16String>;
/// For each style its runs, in the order in which their text was written. Owned by the caller.
using StyleRunMap = std::unordered_map<StyleID, std::vector<StyleRun>>;

/// The items of a list by grouping key. An entry may be empty: a key that stands in the order
/// without an item. Everything that reads treats it as missing.
using FeatureMap = std::unordered_map<std::string, std::shared_ptr<FeatureListItem>>;
/// The features offered for rating, by grouping key; the records are the caller's own.
using RatingMap = FeatureMap;

/// Reads one persisted value: what the setter last stored under the key, or an empty text.
using StateGetter = std::function<UTF8String(const UTF8String& key)>;
/// Stores one persisted value under its key.
using StateSetter = std::function<void(const UTF8String& key, const UTF8String& value)>;

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_UTILITY_SHAREDTYPES_H_
