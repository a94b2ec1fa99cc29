// The plain implementation of a list: it parses a data file and formats the panel. It is slow and
// simple. Tests and fuzzers compare the library with it for arbitrary files, hosts and options.
//
//   PlainPanel::Texts store = ...;
//   PlainPanel plain(store);
//   plain.Load(dataText);
//   const PanelOutcome expected = plain.Format(options, placeholder);
//   EXPECT_EQ(FormatWithLibrary(list, state, options, placeholder), expected);
//
// The plain implementation computes the position of each style run from the complete text so far.
// It splits rows and fields with Boost's tokenizer, and changes the key order one key at a time.
//
// The two implementations share some code: the `Guid` class, the types of style runs, the localiser
// with its markup, and the host's other services. These are the client information, the feature
// table, the internal-features permission, the panel links, the debug database, usage logging, and
// the termination query. A bug in shared code affects both implementations equally, so only unit
// tests can find it. The plain implementation calls ICU, Boost's tokenizer and the reference
// implementation of the hash directly.
#ifndef TESTS_SUPPORT_PLAINPANEL_H_
#define TESTS_SUPPORT_PLAINPANEL_H_

#include <iosfwd>
#include <list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <ornwhatsnew/FeatureListData.h>
#include <ornwhatsnew/utility/SharedTypes.h>

#include "tests/support/FakeStateStore.h"
#include "tests/support/PlainRecords.h"

namespace test_support {

/// A rating record in the plain implementation.
struct PlainRatingRecord {
  std::string internalKey;
  std::string name;
  std::string description;
  std::string customRating;
  std::int32_t visibility = 0;

  friend bool operator==(const PlainRatingRecord&, const PlainRatingRecord&) = default;
};

/// The results and the setter calls of one display.
struct PanelOutcome {
  std::u16string text;
  ornwhatsnew::StyleRunMap runs;
  std::map<std::string, PlainRatingRecord> ratingItems;
  /// The setter calls, in order.
  std::vector<FakeStateStore::Write> writes;

  friend bool operator==(const PanelOutcome&, const PanelOutcome&) = default;
};

/// Writes an outcome to `stream`. GoogleTest calls this operator when a comparison fails.
std::ostream& operator<<(std::ostream& stream, const PanelOutcome& outcome);

/// Displays the list with the library and returns all results. `options` is a bitwise OR of display
/// options. `state` must be the store that the list's callbacks use; the function clears its log.
PanelOutcome FormatWithLibrary(ornwhatsnew::FeatureListData& list, FakeStateStore& state,
                               unsigned options, const std::u16string& ratingPlaceholder);

/// Whether a display shows an item, and which changes of the item pass the rules for changes. If
/// the display does not show the item, it shows none of its changes.
struct PlainVisibility {
  bool isItemShown = false;
  std::vector<bool> areChangesShown;

  friend bool operator==(const PlainVisibility&, const PlainVisibility&) = default;
};

/// Calls `ExplainVisibility` with these options, and returns by key which items and changes a
/// display would show. An item or a change counts as shown if no rule hides it.
std::map<std::string, PlainVisibility> ExplainedVisibilities(
    const ornwhatsnew::FeatureListData& list, unsigned options);

class PlainPanel;

/// Compares the keys, items and changes of two lists. Returns a description of the first
/// difference, or an empty string if they are equal.
std::string FirstDifference(const ornwhatsnew::FeatureListData& list, const PlainPanel& plain);

/// A list in the plain implementation. Not thread-safe.
class PlainPanel {
 public:
  using Texts = FakeStateStore::Texts;
  /// The items by key. An empty entry means that the list has no item for this key, although the
  /// key is in the key order.
  using Items = std::map<std::string, std::optional<PlainItem>>;

  /// Creates an empty list that reads and writes its state in `store`, which must outlive the list.
  /// Queries the host for the full version.
  explicit PlainPanel(Texts& store);

  /// Reads the state. Replaces the content of the list with the host's features, the sections, and
  /// the changes of the data file `dataText`.
  void Load(const std::string& dataText);

  /// Displays the list, writes the state, and returns all results. `options` is a bitwise OR of
  /// display options.
  PanelOutcome Format(unsigned options, std::u16string_view ratingPlaceholder);
  /// Returns whether a display with these options would show an item.
  bool IsAnythingNew(unsigned options) const;
  /// Returns by key which items and changes a display with these options would show.
  std::map<std::string, PlainVisibility> Visibilities(unsigned options) const;
  /// Stores the rated identity of an item in the state. Ignores sections and unknown keys.
  void MarkItemHasBeenRated(const std::string& key);

  /// Returns the keys in key order.
  const std::list<std::string>& Order() const { return order_; }
  const Items& AllItems() const { return items_; }

 private:
  class Formatting;

  std::string Stored(const std::string& key) const;
  void ReadState();
  void MergeFeatures();
  void EnsureSection(const std::string& key, const std::string& name);
  void ParseRows(const std::string& dataText);
  void AddChange(const std::vector<std::string>& values, std::vector<std::string>& touched);
  void BubbleUnlocked();
  PlainItem* Find(const std::string& key);
  std::string SeenState() const;
  void Persist(const std::string& key, const std::string& value, PanelOutcome& outcome);

  Texts& store_;
  std::string currentVersion_;
  std::string lastVersion_;
  std::string changesSince_;
  PlainVersions versions_;
  PlainGuids seen_;
  PlainGuids newlySeen_;
  Items items_;
  std::list<std::string> order_;
};

}  // namespace test_support

#endif  // TESTS_SUPPORT_PLAINPANEL_H_
