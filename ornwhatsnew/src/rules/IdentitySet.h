// Defines a set of the identities that count as seen or rated, and its conversion from and to a
// persisted list.
#ifndef ORNWHATSNEW_SRC_RULES_IDENTITYSET_H_
#define ORNWHATSNEW_SRC_RULES_IDENTITYSET_H_

#include <cstddef>
#include <string_view>
#include <vector>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// A set of identities in ascending order. The persisted list has the same order, so the library
/// can read, merge and write sets in linear time.
///
/// An index maps the first bits of an identity to the range of positions that can contain the
/// identity. Identities are hashes, so a range has fewer than four elements on average. Without the
/// index, a binary search reads more elements, and `IsAnythingNew` takes about 1.6 times as long
/// (docs/performance.md).
class IdentitySet {
 public:
  IdentitySet() = default;
  /// Creates a set of `identities`, which must be in ascending order and without duplicates.
  explicit IdentitySet(std::vector<Guid> identities);

  [[nodiscard]] bool contains(const Guid& identity) const noexcept;

  [[nodiscard]] bool empty() const noexcept { return identities_.empty(); }
  [[nodiscard]] std::size_t size() const noexcept { return identities_.size(); }
  [[nodiscard]] auto begin() const noexcept { return identities_.begin(); }
  [[nodiscard]] auto end() const noexcept { return identities_.end(); }

 private:
  [[nodiscard]] std::size_t IndexOf(const Guid& identity) const noexcept {
    return static_cast<std::size_t>(identity.LeadingBits() >> shift_);
  }

  std::vector<Guid> identities_;
  /// Element `i` is the position of the first identity for which `IndexOf` returns `i` or more. The
  /// last element is the number of identities.
  std::vector<std::size_t> rangeBegins_;
  /// The number of low bits of `Guid::LeadingBits()` that the index ignores.
  unsigned shift_ = 0;
};

/// Returns the set of `identities`, which can be in any order and contain duplicates. Takes linear
/// time if they are in ascending order and without duplicates.
IdentitySet MakeIdentitySet(std::vector<Guid> identities);

/// Returns the identities that are in either set, in linear time.
IdentitySet UnionOf(const IdentitySet& some, const IdentitySet& others);

/// Returns the identities of a persisted list. An element that is not an identity becomes the nil
/// identity.
IdentitySet ParseIdentities(std::string_view list);

/// Returns the persisted list of the identities.
UTF8String FormatIdentities(const IdentitySet& identities);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_IDENTITYSET_H_
