// The library's list and the plain list over stores with equal content. Every call is made on both,
// and the results must be equal.
#ifndef FUZZ_LISTPAIR_H_
#define FUZZ_LISTPAIR_H_

#include <string>

#include <ornwhatsnew/FeatureListData.h>

#include "fuzz/World.h"
#include "tests/support/PlainPanel.h"

namespace fuzz {

/// Copies the state of the world, which must outlive the pair.
class ListPair {
 public:
  explicit ListPair(World& world);

  void Load(const std::string& dataText);
  /// Formats both lists with these option bits and compares the results.
  test_support::PanelOutcome Display(unsigned options);
  bool IsAnythingNew(unsigned options) const;
  bool IsAnythingNeedingRating() const;
  void Rate(const std::string& key);

  const ornwhatsnew::FeatureListData& List() const { return list_; }
  /// Returns the texts that both have stored.
  const test_support::PlainPanel::Texts& Stored() const { return store_; }

 private:
  World& world_;
  test_support::PlainPanel::Texts store_;
  ornwhatsnew::FeatureListData list_;
  test_support::PlainPanel plain_;
};

}  // namespace fuzz

#endif  // FUZZ_LISTPAIR_H_
