// The What's New list that a host holds: its features and sections in display order, what the user
// has seen and rated, and the two callbacks through which that is kept.
#ifndef ORNWHATSNEW_FEATURELISTDATA_H_
#define ORNWHATSNEW_FEATURELISTDATA_H_

#include <list>
#include <memory>
#include <string>

#include <orncore/Export.h>
#include <ornwhatsnew/FeatureListItem.h>
#include <ornwhatsnew/utility/IdentitySet.h>
#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornui::utility {
class ResourceManager;
}  // namespace ornui::utility

namespace ornwhatsnew {

class PanelFormatter;

/// A loaded list. Made by `GetWhatsNew` and held by the host for as long as it wants it.
///
/// Not copyable: its state belongs to one user and one store. One thread at a time.
///
/// The two callbacks are called synchronously on the calling thread. They may call any operation of
/// the list that called them, but must not destroy it: a getter then finds the state from before
/// the call, a setter the state that it is being told of. A setter that has the list read its state
/// again (`RefreshInternalSeenState`, `InitWithData`) stores what it was told first: what is read
/// is taken for all that there is. The platform services that the list asks while it goes through
/// its items may ask it as well, but must not change it, display it, rate or destroy it. Debug
/// builds assert both.
///
/// What a callback, a service or an allocation throws comes out of the call unchanged. The list
/// then is as it was before the call, unless the setter had been told something already or a note
/// at the operation says otherwise; in any case it can still be used, and the same call repeated
/// has its full effect.
class ORN_EXPORT FeatureListData {
 public:
  /// An empty list. Takes the running version from the host. When either callback is empty both are
  /// replaced: the state then lives in the host's debug database.
  FeatureListData(StateGetter getter, StateSetter setter);

  /// A list loaded from the text of a data file, UTF-8.
  FeatureListData(const UTF8String& dataText, StateGetter getter, StateSetter setter);

  /// A list loaded from the resource `path` of type "csv". A resource that cannot be loaded leaves
  /// a valid list without changes. REQUIRES: `resources` is not null; it is not kept.
  FeatureListData(const UTF16String& path, const ornui::utility::ResourceManager* resources,
                  StateGetter getter, StateSetter setter);

  ~FeatureListData();
  FeatureListData(const FeatureListData&) = delete;
  FeatureListData& operator=(const FeatureListData&) = delete;

  /// Rebuilds the list: persisted state, then the host's features and the sections, then the
  /// changes of `dataText`, then the unlocked features to the top. The changes-since version of an
  /// earlier text stays unless the new one names its own. Until all of that is done, callbacks and
  /// services still find the list from before.
  void InitWithData(const UTF8String& dataText);

  /// Hangs the changes of a data file's text on the items that are there, takes its changes-since
  /// version, and moves the features that it touches behind the others. Rows that are not well
  /// formed are skipped; nothing is an error. An exception leaves the changes that were hung
  /// already; `InitWithData` then starts afresh.
  void ParseWhatsNewData(const UTF8String& dataText);

  /// Makes an item for each of the host's beta features, puts their keys to the front in the order
  /// of their names, and makes sure that the four sections exist. An exception leaves the items
  /// that were made already.
  void ParseBetaFeatures();

  /// Moves the features that are unlocked for this user to the front of the order, and the
  /// unreviewed section before them. Leaves an empty entry for a key without an item.
  void BubbleUnlockedItemsToTheTop();

  /// Stores the item unless its key is taken, and appends its key to the order in any case.
  /// REQUIRES: `item` is not null.
  void InsertFeatureListItem(std::shared_ptr<FeatureListItem> item);

  /// Makes and inserts a section item, unless the key is taken.
  void EnsureSpecialCaseItemExists(const std::string& key, const UTF16String& name,
                                   const UTF16String& description);

  /// The items by key; entries may be empty. Valid as long as the list.
  const FeatureMap& GetFeatureItems() const { return featureItems_; }

  /// The keys in display order; a key may stand there without an item, or twice.
  const std::list<std::string>& GetOrderedFeatureKeys() const { return orderedKeys_; }

  /// The text for display: a localisation key through the host's localiser, any other text as it
  /// is.
  UTF16String LocalizeIfNecessary(const UTF8String& text) const;

  /// Reads the three persisted values again, forgets what was shown since, and bubbles.
  void RefreshInternalSeenState();

  /// The text to persist for everything seen, rated or shown so far.
  UTF8String GetNewSeenState() const;

  /// Whether any item would be listed with these options. What was shown counts as seen only after
  /// it has been read back from the host.
  bool IsAnythingNew(const DisplayOptions& options) const;

  /// Whether any feature waits for the user's rating, on this platform and for the user's versions.
  bool IsAnythingNeedingRating() const;

  /// Remembers that the user rated the feature under `featureKey` and tells the setter at once.
  /// Sections and unknown keys change nothing.
  void MarkItemHasBeenRated(const std::string& featureKey);

  /// Writes the panel's text, UTF-16, for these options.
  ///
  /// `runs` is cleared and filled with the text's style runs. `ratingItems`, when not null, is
  /// cleared and filled with a record of each feature written, owned by the caller.
  /// `ratingPlaceholder`, when not empty, is written behind each feature as a paragraph that the
  /// host replaces by its rating control. What is shown is remembered, and at the end the three
  /// persisted values are handed to the setter, whatever was shown.
  UTF16String GetFormattedTextForDisplay(const DisplayOptions& options,
                                         const UTF16String& ratingPlaceholder, StyleRunMap& runs,
                                         std::shared_ptr<RatingMap> ratingItems);

  /// Records a run for `piece`, which is about to be appended to `textSoFar`. Start and length are
  /// measured in UTF-8 bytes and adjusted in wrapping 32-bit arithmetic; nothing is clamped.
  void CaptureStyle(StyleID style, const UTF16String& textSoFar, const UTF16String& piece,
                    int startAdjust, int lengthAdjust, const UTF16String& runString,
                    StyleRunMap& runs) const;

 private:
  /// An empty list of the given version. REQUIRES: neither callback is empty.
  FeatureListData(StateGetter getter, StateSetter setter, UTF8String currentVersion);
  /// Exchanges everything but the version, which stays for good, and the callbacks.
  void SwapContent(FeatureListData& other) noexcept;
  /// The item under a key, or null when there is none or only an empty entry.
  const FeatureListItem* FindItem(const std::string& key) const;
  /// Writes what is to be shown; the identities under which that is remembered, none when nothing
  /// is.
  IdentitySet WriteShownFeatures(const DisplayOptions& options, PanelFormatter& panel) const;
  /// The text that the host keeps under a key.
  UTF8String AskHost(const UTF8String& key) const;
  /// Has the host keep a text under a key.
  void TellHost(const UTF8String& key, const UTF8String& text);
  /// Remembers what was shown and tells the setter.
  void RememberDisplayPass(const IdentitySet& shown);

  FeatureMap featureItems_;
  std::list<std::string> orderedKeys_;
  IdentitySet seenGuids_;
  IdentitySet newlySeenGuids_;
  UTF8String currentVersion_;
  VersionSet seenVersions_;
  UTF8String lastVersionSeen_;
  UTF8String changesSinceVersion_;
  StateGetter stateGetter_;
  StateSetter stateSetter_;
  /// Walks over the items that are under way; while there are any, the items must stay.
  mutable int walks_ = 0;
  /// Callbacks that are under way; while there are any, the list must live.
  mutable int callbacks_ = 0;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_FEATURELISTDATA_H_
