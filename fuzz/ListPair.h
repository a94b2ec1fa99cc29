// One list twice: the library's and the plain one, over stores with equal content. Every call is
// made on both, and what comes of it must be the same.
#ifndef FUZZ_LISTPAIR_H_
#define FUZZ_LISTPAIR_H_

#include <string>

#include <ornwhatsnew/FeatureListData.h>

#include "fuzz/World.h"
#include "tests/support/PlainPanel.h"

namespace fuzz {

/// Takes the world's state as it stands. The world must outlive it.
class ListPair {
 public:
  explicit ListPair(World& world);

  void Load(const std::string& dataText);
  /// A display pass with these option bits.
  test_support::PanelOutcome Display(unsigned options);
  bool IsAnythingNew(unsigned options) const;
  bool IsAnythingNeedingRating() const;
  void Rate(const std::string& key);

  const ornwhatsnew::FeatureListData& List() const { return list_; }
  /// What both have stored.
  const test_support::PlainPanel::Texts& Stored() const { return store_; }

 private:
  World& world_;
  test_support::PlainPanel::Texts store_;
  ornwhatsnew::FeatureListData list_;
  test_support::PlainPanel plain_;
};

}  // namespace fuzz

#endif  // FUZZ_LISTPAIR_H_
