// A whole list written the slow and plain way, from the data file's text to the panel: the oracle
// for tests and fuzzers that hand the library arbitrary files, hosts and options.
//
//   PlainPanel::Texts store = ...;
//   PlainPanel oracle(store);
//   oracle.Load(dataText);
//   if (FormatWithLibrary(list, state, options, placeholder) != oracle.Format(options,
//   placeholder))
//
// Every run is measured over the whole text so far, rows and fields are cut by Boost's own
// tokenizer, every key is moved by itself. It asks the host's services, as the library does.
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

/// What the rating map says of one feature.
struct PlainRatingRecord {
  std::string internalKey;
  std::string name;
  std::string description;
  std::string customRating;
  std::int32_t visibility = 0;

  friend bool operator==(const PlainRatingRecord&, const PlainRatingRecord&) = default;
};

/// All that one display pass gives.
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

/// One display pass of the library, in the form to compare. `state` is the store behind the list's
/// callbacks; its log is emptied.
PanelOutcome FormatWithLibrary(ornwhatsnew::FeatureListData& list, FakeStateStore& state,
                               unsigned options, const std::u16string& ratingPlaceholder);

class PlainPanel;

/// Where the two lists' keys, items and changes differ first, in words; empty when they are equal.
std::string FirstDifference(const ornwhatsnew::FeatureListData& list, const PlainPanel& plain);

/// The list. One thread at a time.
class PlainPanel {
 public:
  using Texts = FakeStateStore::Texts;
  /// An entry without an item is a key that was only looked up.
  using Items = std::map<std::string, std::optional<PlainItem>>;

  /// An empty list over a store of persisted values, which it reads and writes and which outlives
  /// it. Takes the running version from the host.
  explicit PlainPanel(Texts& store);

  /// Loads a data file's text, as often as you like.
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
