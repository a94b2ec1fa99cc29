// Moves keys to the front or the back of the key order, in linear time.
#ifndef ORNWHATSNEW_SRC_RULES_KEYORDER_H_
#define ORNWHATSNEW_SRC_RULES_KEYORDER_H_

#include <list>
#include <string>
#include <string_view>
#include <vector>

namespace ornwhatsnew {

/// The keys to move, in their new order. Only the first occurrence of each key counts. The views
/// must not refer to the strings of the order, because the move destroys those strings.
using MovingKeys = std::vector<std::string_view>;

/// Removes every occurrence of the keys, and inserts each key once at the front, in the given
/// order. Also inserts keys that `order` did not contain. If an allocation fails, `order` is
/// unchanged.
void MoveKeysToFront(std::list<std::string>& order, const MovingKeys& keys);

/// Removes every occurrence of the keys, and appends each key once, in the given order. Also
/// appends keys that `order` did not contain. If an allocation fails, `order` is unchanged.
void MoveKeysToBack(std::list<std::string>& order, const MovingKeys& keys);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_KEYORDER_H_
