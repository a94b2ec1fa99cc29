// Defines the list. It contains the items, their key order, the state of the user, and the
// callbacks through which the host persists that state.
#ifndef ORNWHATSNEW_FEATURELISTDATA_H_
#define ORNWHATSNEW_FEATURELISTDATA_H_

#include <list>
#include <memory>
#include <string>
#include <vector>

#include <orncore/Export.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/PanelLayout.h>
#include <ornwhatsnew/VisibilityExplanation.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornui::utility {
class ResourceManager;
}  // namespace ornui::utility

namespace ornwhatsnew {

/// A What's New list. `GetWhatsNew` creates a list and loads its data file.
///
///     auto list = GetWhatsNew(u"whatsnew.csv", &resources, getter, setter);
///     if (list->IsAnythingNew(kShowOnlyNew)) ShowBadge();
///
/// A `FeatureListData` is not copyable, because its state belongs to one user and one store. It is
/// not thread-safe: use one list from one thread at a time.
///
/// The list calls the getter and the setter synchronously, on the thread that called it. A callback
/// may call any method of the list, but must not destroy it. During a getter call, the list still
/// has its old state. During a setter call, it already has the new state. If a setter calls
/// `RefreshInternalSeenState` or `InitWithData`, it must store its value first, because the list
/// replaces its state with what the getter returns.
///
/// The list queries the host's services while it iterates over its items or creates items. During
/// such a query, the service may call only const methods of the list and must not destroy the list.
/// Debug builds check these rules with assertions.
///
/// Exceptions from callbacks, services and allocations propagate to the caller. If an exception
/// occurs before the first call to the setter, the list is unchanged, unless the comment of the
/// method says otherwise. After every exception, the list is usable. Each call except
/// `ParseWhatsNewData` can be repeated.
class ORN_EXPORT FeatureListData {
 public:
  /// Creates a list without items and with an empty state. Reads the full version from the host.
  /// Does not call the callbacks. If either callback is empty, the list uses neither of them and
  /// persists its state in the debug database.
  FeatureListData(StateGetter getter, StateSetter setter);

  /// Creates a list and calls `InitWithData` with `dataText` (UTF-8).
  FeatureListData(const UTF8String& dataText, StateGetter getter, StateSetter setter);

  /// Creates a list, loads the resource `path` of type "csv" through `resources`, and calls
  /// `InitWithData` with its bytes. If the resource cannot be loaded, the list has no changes.
  /// `resources` must not be null. The list uses it only during this call.
  FeatureListData(const UTF16String& path, const ornui::utility::ResourceManager* resources,
                  StateGetter getter, StateSetter setter);

  ~FeatureListData();
  FeatureListData(const FeatureListData&) = delete;
  FeatureListData& operator=(const FeatureListData&) = delete;

  /// Rebuilds the list from the persisted state, the host's beta features and `dataText` (UTF-8).
  /// Builds the new content first and then replaces the old content in one step. Until then, the
  /// getter and the services see the old content. If `dataText` does not set a changes-since
  /// version, the list keeps the previous changes-since version.
  void InitWithData(const UTF8String& dataText);

  /// Parses `dataText` (UTF-8) and adds its changes to the existing items. Sets the changes-since
  /// version if `dataText` contains one. Moves the keys of the features that received changes to
  /// the end of the key order, and the key "UNREVIEWED" after them. Inserts the key "UNREVIEWED" if
  /// it is missing. Ignores the header row and the rows that `DataFileReader` reports as skipped.
  /// No input is an error. If an allocation fails, the changes added so far remain, and a second
  /// call would add them again. Call `InitWithData` to start over.
  void ParseWhatsNewData(const UTF8String& dataText);

  /// Adds an item for each of the host's beta features, unless the items already have an entry for
  /// its key. Moves the keys of these features to the front of the key order, sorted by the UTF-8
  /// bytes of the unlocalised feature names. Then adds the missing sections at the end. After an
  /// exception, the items and keys added so far remain.
  void ParseBetaFeatures();

  /// Moves the key "UNREVIEWED" to the front of the key order, and the keys of the unlocked
  /// features directly after it. Inserts the key "UNREVIEWED" if it is missing. For each ordered
  /// key without an entry in the items, adds an empty entry. After an exception, the entries added
  /// so far remain.
  void BubbleUnlockedItemsToTheTop();

  /// Adds `item`, which must not be null. If the items already have an entry for its key, keeps
  /// that entry. Appends the key to the ordered keys in both cases.
  void InsertFeatureListItem(std::shared_ptr<FeatureListItem> item);

  /// Adds an item with this key, name and description, and appends its key to the ordered keys.
  /// Does nothing if the items already have an entry for the key. The name and the description can
  /// be key texts.
  void EnsureSpecialCaseItemExists(const std::string& key, const UTF16String& name,
                                   const UTF16String& description);

  /// Returns the items by key. An entry can be empty; see `BubbleUnlockedItemsToTheTop`. The
  /// reference is valid until the list is destroyed, and a reload does not invalidate it.
  const FeatureMap& GetFeatureItems() const;

  /// Returns the keys in key order, which is the order in which a panel shows the items. Some keys
  /// may have no item, and a key may occur several times. The reference is valid until the list is
  /// destroyed, and a reload does not invalidate it.
  const std::list<std::string>& GetOrderedFeatureKeys() const;

  /// Returns a summary of the data file that the constructor or `InitWithData` loaded last.
  /// `ParseWhatsNewData` does not change the summary.
  DataFileSummary GetDataFileSummary() const;

  /// Returns the display text for `text` (UTF-8). Localises a key text through the `Localizer`, and
  /// converts any other string to UTF-16.
  UTF16String LocalizeIfNecessary(const UTF8String& text) const;

  /// Replaces the state with the three persisted values from the getter, and calls
  /// `BubbleUnlockedItemsToTheTop`. Items and changes that were shown count as seen only if the
  /// getter returns their identities. After an exception, the state is unchanged, but entries that
  /// `BubbleUnlockedItemsToTheTop` added remain.
  void RefreshInternalSeenState();

  /// Returns the identities to persist, as a persisted list. It contains the identities from the
  /// last read of the state, and the identities that displays, `MarkAllSeen` and
  /// `MarkItemHasBeenRated` added since then. Does not call the callbacks.
  UTF8String GetNewSeenState() const;

  /// Returns whether a display with these options would show any item. An item that was displayed
  /// counts as seen only after `RefreshInternalSeenState` or `InitWithData` has read the state.
  bool IsAnythingNew(const DisplayOptions& options) const;

  /// Returns how many items and changes a display with these options would show. With
  /// `kShowOnlyNew`, a badge can show the number of changes. An item that was displayed counts as
  /// seen only after `RefreshInternalSeenState` or `InitWithData` has read the state.
  NewCount CountNew(const DisplayOptions& options) const;

  /// Returns which rules hide each item and each change from a display with these options. The
  /// result contains all items in key order, including the shown items. The pointers in the result
  /// are valid until the items of the list change.
  ///
  /// Does not change the state and does not call the setter. Unlike a display, checks the remaining
  /// rules after one rule hides an item or a change. Makes the calls to the host that these rules
  /// need.
  std::vector<ItemVisibility> ExplainVisibility(const DisplayOptions& options) const;

  /// Returns whether the rating view, with the options `kFilterRelevantPlatform` and
  /// `kFilterRelevantVersion`, would show any feature.
  bool IsAnythingNeedingRating() const;

  /// Adds the rated identity of the feature with the key `featureKey` to the state, and passes the
  /// value of `GetNewSeenState` to the setter. Does nothing for a section or an unknown key.
  void MarkItemHasBeenRated(const std::string& featureKey);

  /// Returns the text of the panel for these options.
  ///
  /// Replaces the content of `runs` with the style runs of the text. If `ratingItems` is not null,
  /// replaces its content with a rating record of each shown item. The caller owns the records. If
  /// `ratingPlaceholder` is not empty, writes it as a paragraph after each item. The host replaces
  /// each placeholder with its rating control. After an exception, `runs` and `ratingItems` are
  /// unspecified.
  ///
  /// At the end, adds the identities of the shown items and changes to the state. In the rating
  /// view, adds only the seen identities of the items. Then calls the setter once for each of the
  /// three persisted values, even if nothing was shown. Makes no other call to the host between the
  /// three setter calls, so a host can store the values in one transaction.
  UTF16String GetFormattedTextForDisplay(const DisplayOptions& options,
                                         const UTF16String& ratingPlaceholder, StyleRunMap& runs,
                                         std::shared_ptr<RatingMap> ratingItems);

  /// Returns the layout of the panel for these options. Updates the state and calls the setter like
  /// `GetFormattedTextForDisplay`.
  ///
  /// Except in the rating view, makes the same calls to the host, in the same order, as
  /// `GetFormattedTextForDisplay` without `ratingItems`. In the rating view, makes the same calls
  /// as `GetFormattedTextForDisplay` with `ratingItems`. In addition, looks up the translation of
  /// each custom question that is a key text.
  ///
  /// After a call to `RefreshInternalSeenState`, a layout with `kShowOnlyNew` contains no change
  /// that was shown and stored before. A view should therefore keep the layout that it shows.
  PanelLayout GetLayoutForDisplay(const DisplayOptions& options);

  /// Returns the same layout as `GetLayoutForDisplay`. Does not change the state and does not call
  /// the setter, so the items and changes in the layout do not count as seen.
  PanelLayout PreviewLayout(const DisplayOptions& options) const;

  /// Changes the state like a display without options, and makes the same calls to the setter. A
  /// feature that is not available to the user does not count as seen, so it is new when it
  /// becomes available.
  ///
  /// For a user who starts the application for the first time, call this method and then
  /// `RefreshInternalSeenState`. Until `RefreshInternalSeenState` is called, `IsAnythingNew` and
  /// `CountNew` still report everything as new.
  ///
  ///     list->MarkAllSeen();
  ///     list->RefreshInternalSeenState();
  void MarkAllSeen();

  /// Adds to `runs` the style run of `appended`, a string that the caller appends to `textSoFar`
  /// afterwards. `runString` is the string to store in the run: the URL of a link, or empty.
  ///
  /// The start of the run is the length of `textSoFar` plus `startAdjust`. The length of the run is
  /// the length of `appended` plus `lengthAdjust`. All lengths are in UTF-8 bytes. Each sum wraps
  /// modulo 2^32, and the run can extend beyond the text. Takes time linear in the lengths of both
  /// strings.
  void CaptureStyle(StyleID style, const UTF16String& textSoFar, const UTF16String& appended,
                    int startAdjust, int lengthAdjust, const UTF16String& runString,
                    StyleRunMap& runs) const;

 private:
  struct Impl;
  const std::unique_ptr<Impl> impl_;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_FEATURELISTDATA_H_
