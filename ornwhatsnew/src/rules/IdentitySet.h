// The identities that a user has seen or rated, in memory and as a persisted list.
#ifndef ORNWHATSNEW_SRC_RULES_IDENTITYSET_H_
#define ORNWHATSNEW_SRC_RULES_IDENTITYSET_H_

#include <functional>
#include <string_view>
#include <vector>

#include <boost/container/flat_set.hpp>

#include <ornwhatsnew/utility/SharedTypes.h>

namespace ornwhatsnew {

/// Identities in ascending order, each once. The persisted list has the same order, so reading,
/// merging and writing it take linear time.
using IdentitySet = boost::container::flat_set<Guid, std::less<Guid>, std::vector<Guid>>;

/// Returns the set of the identities, which can be in any order and repeated. Takes linear time if
/// they are in order.
IdentitySet MakeIdentitySet(std::vector<Guid> identities);

/// Returns the identities that are in either set, in linear time.
IdentitySet UnionOf(const IdentitySet& some, const IdentitySet& others);

/// Returns the identities of a persisted list. An element that is no identity gives the nil one.
IdentitySet ParseIdentities(std::string_view list);

/// Returns the persisted list of the identities.
UTF8String FormatIdentities(const IdentitySet& identities);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_IDENTITYSET_H_
