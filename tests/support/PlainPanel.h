// A second, slow and plain implementation of a list, from the data file's text to the panel. Tests
// and fuzzers compare the library with it for arbitrary files, hosts and options.
//
//   PlainPanel::Texts store = ...;
//   PlainPanel oracle(store);
//   oracle.Load(dataText);
//   if (FormatWithLibrary(list, state, options, placeholder) != oracle.Format(options,
//   placeholder))
//
// It measures every run over the complete text so far, splits rows and fields with Boost's
// tokenizer, and moves each key separately.
//
// It shares these with the library: the host's services (client information, feature table,
// localizer and its markup, debug database, usage logging), the `Guid` class, and the types of
// style runs and options. A bug in those shows on both sides; their own unit tests cover them. ICU,
// Boost's tokenizer and the reference implementation of the hash are called directly, not by way of
// the library.
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

/// One record of the rating map.
struct PlainRatingRecord {
  std::string internalKey;
  std::string name;
  std::string description;
  std::string customRating;
  std::int32_t visibility = 0;

  friend bool operator==(const PlainRatingRecord&, const PlainRatingRecord&) = default;
};

/// All results of one display call.
struct PanelOutcome {
  std::u16string text;
  ornwhatsnew::StyleRunMap runs;
  std::map<std::string, PlainRatingRecord> ratingItems;
  /// The setter's calls, in order.
  std::vector<FakeStateStore::Write> writes;

  friend bool operator==(const PanelOutcome&, const PanelOutcome&) = default;
};

/// Prints an outcome for a failed comparison.
std::ostream& operator<<(std::ostream& stream, const PanelOutcome& outcome);

/// Returns the results of one display call of the library. `state` is the store of the list's
/// callbacks; its log is cleared.
PanelOutcome FormatWithLibrary(ornwhatsnew::FeatureListData& list, FakeStateStore& state,
                               unsigned options, const std::u16string& ratingPlaceholder);

class PlainPanel;

/// Describes the first difference between the keys, items and changes of two lists. Returns an
/// empty string if they are equal.
std::string FirstDifference(const ornwhatsnew::FeatureListData& list, const PlainPanel& plain);

/// The list. Not thread-safe.
class PlainPanel {
 public:
  using Texts = FakeStateStore::Texts;
  /// An entry without an item is a key that was looked up and not found.
  using Items = std::map<std::string, std::optional<PlainItem>>;

  /// Creates an empty list that reads and writes the persisted values in `store`, which must
  /// outlive it. Reads the running version from the host.
  explicit PlainPanel(Texts& store);

  /// Loads the text of a data file. Can be called repeatedly.
  void Load(const std::string& dataText);

  PanelOutcome Format(unsigned options, std::u16string_view ratingPlaceholder);
  bool IsAnythingNew(unsigned options) const;
  void MarkItemHasBeenRated(const std::string& key);

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
