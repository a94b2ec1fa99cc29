#include "ornwhatsnew/src/rules/IdentitySet.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <iterator>
#include <utility>

#include <ornwhatsnew/utility/PersistedList.h>

namespace ornwhatsnew {

IdentitySet::IdentitySet(std::vector<Guid> identities) : identities_(std::move(identities)) {
  constexpr std::size_t kIdentitiesInRange = 4;
  constexpr unsigned kLeadingBits = 64;
  const std::size_t ranges = size() / kIdentitiesInRange;
  const auto bits = std::max(1U, static_cast<unsigned>(std::bit_width(ranges)));
  shift_ = kLeadingBits - bits;
  rangeBegins_.assign((std::size_t{1} << bits) + 1, size());
  // Iterate backwards, so that the last index written for a range is that of its first identity.
  for (std::size_t i = size(); i > 0; --i) rangeBegins_[IndexOf(identities_[i - 1])] = i - 1;
  for (std::size_t i = rangeBegins_.size() - 1; i > 0; --i) {
    rangeBegins_[i - 1] = std::min(rangeBegins_[i - 1], rangeBegins_[i]);
  }
}

bool IdentitySet::contains(const Guid& identity) const noexcept {
  if (identities_.empty()) return false;
  const std::size_t index = IndexOf(identity);
  const Guid* const identities = identities_.data();
  return std::binary_search(identities + rangeBegins_[index], identities + rangeBegins_[index + 1],
                            identity);
}

IdentitySet MakeIdentitySet(std::vector<Guid> identities) {
  if (std::ranges::adjacent_find(identities, std::greater_equal()) != identities.end()) {
    std::ranges::sort(identities);
    identities.erase(std::unique(identities.begin(), identities.end()), identities.end());
  }
  return IdentitySet(std::move(identities));
}

IdentitySet UnionOf(const IdentitySet& some, const IdentitySet& others) {
  std::vector<Guid> merged;
  merged.reserve(some.size() + others.size());
  std::ranges::set_union(some, others, std::back_inserter(merged));
  return IdentitySet(std::move(merged));
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
