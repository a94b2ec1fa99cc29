#include "ornwhatsnew/src/rules/IdentitySet.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <ornwhatsnew/utility/PersistedList.h>

namespace ornwhatsnew {

IdentitySet MakeIdentitySet(std::vector<Guid> identities) {
  IdentitySet set;
  set.adopt_sequence(std::move(identities));
  return set;
}

IdentitySet UnionOf(const IdentitySet& some, const IdentitySet& others) {
  std::vector<Guid> merged;
  merged.reserve(some.size() + others.size());
  std::ranges::set_union(some, others, std::back_inserter(merged));
  IdentitySet set;
  set.adopt_sequence(boost::container::ordered_unique_range, std::move(merged));
  return set;
}

IdentitySet ParseIdentities(std::string_view list) {
  const std::vector<std::string_view> elements = SplitPersistedList(list);
  std::vector<Guid> guids;
  guids.reserve(elements.size());
  for (const std::string_view element : elements) guids.emplace_back(element);
  return MakeIdentitySet(std::move(guids));
}

UTF8String FormatIdentities(const IdentitySet& identities) {
  UTF8String list;
  list.reserve(identities.size() * (Guid::kTextLength + 1));
  for (const Guid& identity : identities) {
    if (!list.empty()) list += ' ';
    identity.AppendTo(list);
  }
  return list;
}

}  // namespace ornwhatsnew
