// The set of identities that a user has seen or rated.
//
// It is read from a text that is in order, asked for every change of the list, merged with what was
// shown, and written in order. So it is kept in order, in one piece of memory, and a small table
// leads from an identity's first bits to the few places where it can stand:
//
//     places   0   0   3   4        first bits 00, 01, 10, 11: each up to where the next begins
//              |   |    \   \       (identities are hashes, so the places are evenly filled)
//     guids    [01..][02..][07..][81..][c3..][f0..]
//
// A hash table of nodes takes three times the time to read and to merge, and a list of identities
// that begin alike, which a damaged or forged text can hold, makes it quadratic; here such a list
// costs a binary search. Hosts that ask a single record hand in a standard set, see `GuidSet`.
#ifndef ORNWHATSNEW_UTILITY_IDENTITYSET_H_
#define ORNWHATSNEW_UTILITY_IDENTITYSET_H_

#include <cstddef>
#include <initializer_list>
#include <vector>

#include <orncore/Export.h>
#include <orncore/utility/Guid.h>

namespace ornwhatsnew {

/// Identities in ascending order, each once. Named like the standard's sets, and used like them.
/// A value; any number of threads may read it while none writes. What throws (an allocation) leaves
/// it unchanged.
class ORN_EXPORT IdentitySet {
 public:
  using value_type = orncore::utility::Guid;                       ///< as the standard's sets have
  using const_iterator = std::vector<value_type>::const_iterator;  ///< leads to them in order

  IdentitySet() = default;
  /// In any order, with repeats.
  IdentitySet(std::initializer_list<value_type> guids);

  /// The same. Takes linear time when they are in ascending order already.
  explicit IdentitySet(std::vector<value_type> guids);

  /// Whether the identity is in the set. Looks at two places in memory, mostly; at worst it
  /// searches by halves.
  [[nodiscard]] bool contains(const value_type& guid) const noexcept;

  /// Adds an identity, in time linear in the set; see below for many.
  void insert(const value_type& guid);
  /// Adds the identities of another set, in time linear in both.
  void insert(const IdentitySet& others);

  /// Takes all identities out; the memory is given back with the set.
  void clear() noexcept;
  /// Exchanges the identities of two sets.
  void swap(IdentitySet& other) noexcept;

  /// Whether there is none.
  [[nodiscard]] bool empty() const noexcept { return guids_.empty(); }
  /// How many there are.
  [[nodiscard]] std::size_t size() const noexcept { return guids_.size(); }
  /// The least one.
  [[nodiscard]] const_iterator begin() const noexcept { return guids_.begin(); }
  /// Behind the greatest.
  [[nodiscard]] const_iterator end() const noexcept { return guids_.end(); }

  /// Whether both hold the same.
  friend bool operator==(const IdentitySet& a, const IdentitySet& b) noexcept {
    return a.guids_ == b.guids_;
  }

 private:
  std::vector<value_type> guids_;
  /// For each value of the first bits the place of the first identity that has it or a greater one,
  /// and the end.
  std::vector<std::size_t> places_;
  unsigned shift_ = 0;
};

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_UTILITY_IDENTITYSET_H_
