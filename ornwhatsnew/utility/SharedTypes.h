// Defines the types that the library and its hosts share: strings, identities, display options,
// style runs, and the two callbacks for the state.
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

/// A UTF-8 string (`std::string`). Data files, fields, persisted values and keys have this type.
using orncore::string::UTF8String;
/// A UTF-16 string (`std::u16string`). Paths and display text have this type.
using orncore::string::UTF16String;
/// An identity: the 128-bit hash under which a change or an item counts as seen or rated.
using orncore::utility::Guid;

/// The options of a display: any combination of the five constants of this type. If no option is
/// set, the display shows everything that is available to the user.
using DisplayOptions = orncore::utility::Flags<unsigned char>;

/// Hides changes that the user has seen. Hides a feature if the user has seen the feature and none
/// of its changes is shown. Has no effect with `kRatingView`.
inline constexpr DisplayOptions kShowOnlyNew{0x01};
/// Hides changes that are relevant only to a platform other than the host's.
inline constexpr DisplayOptions kFilterRelevantPlatform{0x02};
/// Hides changes that are relevant neither to the current version nor to any other version in which
/// the user opened the panel; see `FeatureListDetail::IsRelevantToVersions`.
inline constexpr DisplayOptions kFilterRelevantVersion{0x04};
/// Hides changes whose salience is not malformed. Compatibility: the option also hides changes with
/// the salience "Headline", despite its name (docs/compatibility.md).
inline constexpr DisplayOptions kFilterHeadlinesOnly{0x08};
/// Shows only features that the user has seen but not rated, with the changes that request a
/// rating. `HidingRule` lists all rules.
inline constexpr DisplayOptions kRatingView{0x10};

/// The identities that count as seen or rated. Hosts pass them to functions such as
/// `FeatureListItem::ItemHasBeenSeen`.
using GuidSet = std::unordered_set<Guid>;
/// The full versions in which a user opened the panel.
using VersionSet = std::unordered_set<UTF8String>;

/// The role of a range of the panel's text. Hosts map the values to fonts, so the values never
/// change. The library never uses the values 8 and 12, which are reserved for hosts.
enum class StyleID : int {
  /// The title of an item. The string of the run is the item's URL, or empty.
  kStyleFeatureTitle = 0,
  /// The description of an item.
  kStyleFeatureDescription = 1,
  /// The bullet, the platform or the description of a change, each with its own run.
  kStyleChangeText = 2,
  /// The header line, or the notice of a panel without items.
  kStyleHeader = 3,
  /// The separator after a title, the internal key after this separator, or the version after a
  /// change. Each of them has a separate run.
  kStyleInternalCode = 4,
  /// The commit ID of a change, for internal users. The string of the run is the commit's URL. It
  /// is empty if the host's link template for commits is empty.
  kStyleCommitLink = 5,
  /// The link "View more", or the URL of the privacy page. The string of the run is the URL of the
  /// link.
  kStyleHotSpot = 6,
  /// An issue key, for internal users. The string of the run is the issue's URL. It is empty if the
  /// host's link template for issues is empty.
  kStyleIssueLink = 7,
  /// The unlock label after a title.
  kStyleUnlockLabel = 9,
  /// A note for internal users: the change is unmatched, or one of its fields may be wrong.
  kStyleInternalWarning = 10,
  /// The box around an unlock label. It has the same range as `kStyleUnlockLabel`.
  kStyleUnlockLabelBox = 11,
  /// The paragraph with the rating placeholder, which the host replaces with its rating control.
  kStyleRatingPlaceholder = 13,
};
using enum StyleID;

/// A style run: ((start, length), string). The start and the length are in UTF-8 bytes, although
/// the text is UTF-16. The start is an offset in the whole text. The string is a URL or empty. A
/// run of `kStyleCommitLink` extends one byte past the commit ID, so hosts should limit each run to
/// the text.
using StyleRun = std::pair<std::pair<int, int>, UTF16String>;
/// The style runs of a panel's text, by style. The runs of each style are in the order of the text.
using StyleRunMap = std::unordered_map<StyleID, std::vector<StyleRun>>;

/// The items of a list by key. An entry can be empty; see
/// `FeatureListData::BubbleUnlockedItemsToTheTop`. The library treats an empty entry like a missing
/// item. Only `InitWithData` removes or replaces an empty entry.
using FeatureMap = std::unordered_map<std::string, std::shared_ptr<FeatureListItem>>;
/// The rating records of a display, by the key of the item. A rating record has the keys, the
/// visibility, the localised title and the localised description of an item, and a custom question.
/// If the item has no title, the record contains its key instead. The description is empty if the
/// item has none or if a change hides it. `FeatureListItem::GetCustomRatingStr` returns the
/// question. A record has no changes.
using RatingMap = FeatureMap;

/// Returns the value that the setter last stored under `key`, or an empty string if there is none.
/// The keys are in `PersistedList.h`.
using StateGetter = std::function<UTF8String(const UTF8String& key)>;
/// Stores `value` under `key`, replacing the previous value.
using StateSetter = std::function<void(const UTF8String& key, const UTF8String& value)>;

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_UTILITY_SHAREDTYPES_H_
