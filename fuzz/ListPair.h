// Makes each call on a list of the library and on a list of the plain implementation, and aborts
// the process if the results differ.
#ifndef FUZZ_LISTPAIR_H_
#define FUZZ_LISTPAIR_H_

#include <string>

#include <ornwhatsnew/FeatureListData.h>

#include "fuzz/World.h"
#include "tests/support/PlainPanel.h"

namespace fuzz {

/// A list of the library and a list of the plain implementation in the same host. The library's
/// list uses the state of the `World`, and the plain list uses a copy of this state. The `World`
/// must outlive this object.
class ListPair {
 public:
  explicit ListPair(World& world);

  /// Loads the data file into both lists. Aborts the process if their content differs.
  void Load(const std::string& dataText);
  /// Displays both lists and returns the panel. `options` is a bitwise OR of `DisplayOptions`
  /// values. Checks that the panels and the stored states are equal, and that exactly the hidden
  /// items and changes have a hiding rule. Aborts the process if one of these checks fails.
  test_support::PanelOutcome Display(unsigned options);
  /// Returns the result of `IsAnythingNew` for `options`, a bitwise OR of `DisplayOptions` values.
  /// Aborts the process if the two lists return different results.
  bool IsAnythingNew(unsigned options) const;
  /// Returns the result of `IsAnythingNeedingRating`. Aborts the process if the two lists return
  /// different results.
  bool IsAnythingNeedingRating() const;
  /// Marks the item with this key as rated in both lists. Aborts the process if the stored states
  /// differ.
  void Rate(const std::string& key);

  const ornwhatsnew::FeatureListData& List() const { return list_; }
  /// Returns the stored state, which is the same for both lists.
  const test_support::PlainPanel::Texts& Stored() const { return store_; }

 private:
  World& world_;
  test_support::PlainPanel::Texts store_;
  ornwhatsnew::FeatureListData list_;
  test_support::PlainPanel plain_;
};

}  // namespace fuzz

#endif  // FUZZ_LISTPAIR_H_
