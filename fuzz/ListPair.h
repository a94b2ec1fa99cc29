// Makes each call on a list of the library and on a list of the plain implementation, and requires
// equal results.
#ifndef FUZZ_LISTPAIR_H_
#define FUZZ_LISTPAIR_H_

#include <string>

#include <ornwhatsnew/FeatureListData.h>

#include "fuzz/World.h"
#include "tests/support/PlainPanel.h"

namespace fuzz {

/// The plain list starts with a copy of the world's state. The world must outlive this object.
class ListPair {
 public:
  explicit ListPair(World& world);

  /// Loads the data file into both lists and requires equal content.
  void Load(const std::string& dataText);
  /// Displays both lists with these option bits, requires equal panels and states, and returns the
  /// panel.
  test_support::PanelOutcome Display(unsigned options);
  bool IsAnythingNew(unsigned options) const;
  bool IsAnythingNeedingRating() const;
  void Rate(const std::string& key);

  const ornwhatsnew::FeatureListData& List() const { return list_; }
  /// Returns the state, which is the same for both lists.
  const test_support::PlainPanel::Texts& Stored() const { return store_; }

 private:
  World& world_;
  test_support::PlainPanel::Texts store_;
  ornwhatsnew::FeatureListData list_;
  test_support::PlainPanel plain_;
};

}  // namespace fuzz

#endif  // FUZZ_LISTPAIR_H_
