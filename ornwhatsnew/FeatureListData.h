// The What's New list that a host holds: its items in display order, what the user has seen and
// rated, and the callbacks that persist that state.
#ifndef ORNWHATSNEW_FEATURELISTDATA_H_
#define ORNWHATSNEW_FEATURELISTDATA_H_

#include <list>
#include <memory>
#include <string>

#include <orncore/Export.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornui::utility {
class ResourceManager;
}  // namespace ornui::utility

namespace ornwhatsnew {

/// A list. `GetWhatsNew` makes a loaded one.
///
/// A list is not copyable, because its state belongs to one user and one store. It is not
/// thread-safe: use one list from one thread at a time.
///
/// The list calls the getter and the setter synchronously, on the thread that called it. A callback
/// may call any method of the list, but must not destroy it. During a getter call the list still
/// has its old state; during a setter call it already has the new one. If a setter calls
/// `RefreshInternalSeenState` or `InitWithData`, it must store its value first, because the list
/// replaces its state with what the getter returns.
///
/// The list queries the platform services while it walks its items or builds new ones. A service
/// may then query the list, but must not change it, display it, rate a feature or destroy it. Debug
/// builds check these rules for callbacks and services with assertions.
///
/// The methods pass on every exception of a callback, a service or an allocation. Unless a method
/// states otherwise, the list is then unchanged if the setter was not called yet. The list always
/// remains usable, and repeating the call has its full effect.
class ORN_EXPORT FeatureListData {
 public:
  /// Makes an empty list. Reads the running version from the host. If either callback is empty,
  /// replaces both: the list then persists its state in the host's debug database.
  FeatureListData(StateGetter getter, StateSetter setter);

  /// Makes a list and calls `InitWithData` with `dataText`.
  FeatureListData(const UTF8String& dataText, StateGetter getter, StateSetter setter);

  /// Makes a list from the resource `path` of type "csv". If the resource cannot be loaded, the
  /// list has no changes. REQUIRES: `resources` is not null. The list does not keep it.
  FeatureListData(const UTF16String& path, const ornui::utility::ResourceManager* resources,
                  StateGetter getter, StateSetter setter);

  ~FeatureListData();
  FeatureListData(const FeatureListData&) = delete;
  FeatureListData& operator=(const FeatureListData&) = delete;

  /// Rebuilds the list from the persisted state, the host's beta features and `dataText` (UTF-8).
  /// Builds the new content beside the old one and replaces it at the end, so callbacks and
  /// services see the old content. Keeps the changes-since version if `dataText` does not set one.
  void InitWithData(const UTF8String& dataText);

  /// Parses `dataText` (UTF-8) and adds its changes to the existing items. Sets the changes-since
  /// version. Moves every feature that received a change after the features that did not. Skips
  /// malformed rows; no input is an error. If an allocation fails, the changes added so far remain;
  /// call `InitWithData` to start over.
  void ParseWhatsNewData(const UTF8String& dataText);

  /// Adds an item for each of the host's beta features, moves their keys to the front in the order
  /// of their names, and adds the missing sections. After an exception, the items added so far
  /// remain.
  void ParseBetaFeatures();

  /// Moves the features that are unlocked for this user to the front, and "UNREVIEWED" before them.
  /// Adds an empty entry to the items for each ordered key that has none.
  void BubbleUnlockedItemsToTheTop();

  /// Adds `item` unless its key is present, and appends its key to the ordered keys in either case.
  /// REQUIRES: `item` is not null.
  void InsertFeatureListItem(std::shared_ptr<FeatureListItem> item);

  /// Inserts a section item with this key, name and description unless the key is present.
  void EnsureSpecialCaseItemExists(const std::string& key, const UTF16String& name,
                                   const UTF16String& description);

  /// Returns the items by key. Entries can be empty. The reference is valid as long as the list,
  /// also after a reload.
  const FeatureMap& GetFeatureItems() const;

  /// Returns the keys in display order. A key can be present without an item, or twice. The
  /// reference is valid as long as the list, also after a reload.
  const std::list<std::string>& GetOrderedFeatureKeys() const;

  /// Returns the text for display: a localisation key through the host's localiser, any other text
  /// unchanged.
  UTF16String LocalizeIfNecessary(const UTF8String& text) const;

  /// Reads the three persisted values, discards what was shown since the last read, and calls
  /// `BubbleUnlockedItemsToTheTop`.
  void RefreshInternalSeenState();

  /// Returns the identities to persist: everything seen, rated or shown, as a persisted list.
  UTF8String GetNewSeenState() const;

  /// Returns whether any item is listed with these options. What was shown counts as seen only
  /// after `RefreshInternalSeenState` has read it back.
  bool IsAnythingNew(const DisplayOptions& options) const;

  /// Returns whether any feature waits for a rating, on this platform and for the user's versions.
  bool IsAnythingNeedingRating() const;

  /// Adds the rated identity of the feature under `featureKey` to the state and calls the setter.
  /// Does nothing for a section or an unknown key.
  void MarkItemHasBeenRated(const std::string& featureKey);

  /// Returns the panel's text (UTF-16) for these options.
  ///
  /// Replaces the content of `runs` with the style runs of the text. If `ratingItems` is not null,
  /// replaces its content with a record of each feature written; the caller owns the records. If
  /// `ratingPlaceholder` is not empty, writes it as a paragraph after each feature; the host
  /// replaces it with its rating control. At the end, adds what was shown to the state and calls
  /// the setter for the three persisted values, even if nothing was shown.
  UTF16String GetFormattedTextForDisplay(const DisplayOptions& options,
                                         const UTF16String& ratingPlaceholder, StyleRunMap& runs,
                                         std::shared_ptr<RatingMap> ratingItems);

  /// Records a style run for `piece`, which the caller appends to `textSoFar` next. Start and
  /// length are in UTF-8 bytes, plus the adjustments, in wrapping 32-bit arithmetic. Nothing is
  /// clamped.
  void CaptureStyle(StyleID style, const UTF16String& textSoFar, const UTF16String& piece,
                    int startAdjust, int lengthAdjust, const UTF16String& runString,
                    StyleRunMap& runs) const;

 private:
  struct Impl;
  const std::unique_ptr<Impl> impl_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_FEATURELISTDATA_H_
