// Moves keys within the display order, in time linear in the order however many move.
#ifndef ORNWHATSNEW_SRC_RULES_KEYORDER_H_
#define ORNWHATSNEW_SRC_RULES_KEYORDER_H_

#include <list>
#include <string>
#include <string_view>
#include <vector>

namespace ornwhatsnew {

/// Keys that are to move, each taken once, in the order in which they come. They view texts that
/// outlive the move and are not in the order itself.
using MovingKeys = std::vector<std::string_view>;

/// Removes every occurrence of the keys and puts each once to the front, in the given order.
void MoveKeysToFront(std::list<std::string>& order, const MovingKeys& keys);

/// Removes every occurrence of the keys and puts each once to the end, in the given order.
void MoveKeysToBack(std::list<std::string>& order, const MovingKeys& keys);

}  // namespace ornwhatsnew

#endif  // ORNWHATSNEW_SRC_RULES_KEYORDER_H_
