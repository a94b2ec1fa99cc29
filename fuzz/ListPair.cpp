#include "fuzz/ListPair.h"

#include "fuzz/Property.h"

namespace fuzz {

using test_support::ExplainedVisibilities;
using test_support::FormatWithLibrary;
using test_support::PanelOutcome;

ListPair::ListPair(World& world)
    : world_(world),
      store_(world.Host().State().AllTexts()),
      list_(world.Host().Getter(), world.Host().Setter()),
      plain_(store_) {}

void ListPair::Load(const std::string& dataText) {
  list_.InitWithData(dataText);
  plain_.Load(dataText);
  RequireEqual(FirstDifference(list_, plain_), {}, "the list equals the plain list");
}

PanelOutcome ListPair::Display(unsigned options) {
  PanelOutcome outcome =
      FormatWithLibrary(list_, world_.Host().State(), options, world_.Placeholder());
  RequireEqual(outcome, plain_.Format(options, world_.Placeholder()),
               "the panel equals the plain panel");
  Require(world_.Host().State().AllTexts() == store_,
          "the state equals the state of the plain list");
  Require(ExplainedVisibilities(list_, options) == plain_.Visibilities(options),
          "exactly the hidden items and changes have a hiding rule");
  return outcome;
}

bool ListPair::IsAnythingNew(unsigned options) const {
  const bool isNew = list_.IsAnythingNew(static_cast<unsigned char>(options));
  RequireEqual(isNew, plain_.IsAnythingNew(options), "something is new in both lists or in none");
  return isNew;
}

bool ListPair::IsAnythingNeedingRating() const {
  constexpr unsigned kRatingOptions = 0x16;
  const bool needsRating = list_.IsAnythingNeedingRating();
  RequireEqual(needsRating, plain_.IsAnythingNew(kRatingOptions),
               "something needs rating in both lists or in none");
  return needsRating;
}

void ListPair::Rate(const std::string& key) {
  list_.MarkItemHasBeenRated(key);
  plain_.MarkItemHasBeenRated(key);
  Require(world_.Host().State().AllTexts() == store_,
          "a rating stores the same state as in the plain list");
}

}  // namespace fuzz
