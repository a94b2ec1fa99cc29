#include <ornwhatsnew/utility/IdentitySet.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <iterator>
#include <utility>

namespace ornwhatsnew {
namespace {

using orncore::utility::Guid;

// So many identities share a place on average: as many as a line of the processor's cache holds.
constexpr std::size_t kGuidsPerPlace = 4;
constexpr unsigned kLeadingBits = 64;

void SortAndDropRepeats(std::vector<Guid>& guids) {
  const bool areInOrder = std::ranges::adjacent_find(guids, std::greater_equal()) == guids.end();
  if (areInOrder) return;
  std::ranges::sort(guids);
  guids.erase(std::unique(guids.begin(), guids.end()), guids.end());
}

// How many of the 64 leading bits the table leaves out; at least one bit leads into it.
unsigned ShiftFor(std::size_t count) {
  const auto bits = static_cast<unsigned>(std::bit_width(count / kGuidsPerPlace));
  return kLeadingBits - std::max(bits, 1U);
}

std::vector<std::size_t> FindPlaces(const std::vector<Guid>& guids, unsigned shift) {
  std::vector<std::size_t> places((std::size_t{1} << (kLeadingBits - shift)) + 1, guids.size());
  std::size_t next = 0;
  for (std::size_t i = 0; i < guids.size(); ++i) {
    const std::uint64_t bits = guids[i].LeadingBits() >> shift;
    while (next <= bits) places[next++] = i;
  }
  return places;
}

}  // namespace

IdentitySet::IdentitySet(std::initializer_list<Guid> guids)
    : IdentitySet(std::vector<Guid>(guids)) {}

IdentitySet::IdentitySet(std::vector<Guid> guids) : guids_(std::move(guids)) {
  SortAndDropRepeats(guids_);
  if (guids_.empty()) return;
  shift_ = ShiftFor(guids_.size());
  places_ = FindPlaces(guids_, shift_);
}

bool IdentitySet::contains(const Guid& guid) const noexcept {
  if (guids_.empty()) return false;
  const auto bits = static_cast<std::size_t>(guid.LeadingBits() >> shift_);
  const Guid* const guids = guids_.data();
  return std::binary_search(guids + places_[bits], guids + places_[bits + 1], guid);
}

void IdentitySet::insert(const Guid& guid) {
  if (!contains(guid)) insert(IdentitySet{guid});
}

void IdentitySet::insert(const IdentitySet& others) {
  if (others.empty()) return;
  std::vector<Guid> merged;
  merged.reserve(guids_.size() + others.size());
  std::ranges::set_union(guids_, others.guids_, std::back_inserter(merged));
  *this = IdentitySet(std::move(merged));
}

void IdentitySet::clear() noexcept {
  guids_.clear();
  places_.clear();
}

void IdentitySet::swap(IdentitySet& other) noexcept {
  guids_.swap(other.guids_);
  places_.swap(other.places_);
  std::swap(shift_, other.shift_);
}

}  // namespace ornwhatsnew
