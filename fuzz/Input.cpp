#include "fuzz/Input.h"

#include <algorithm>

namespace fuzz {

std::vector<std::string_view> Input::TakeParts() {
  std::vector<std::string_view> parts;
  do {
    parts.push_back(TakePart());
  } while (!rest_.empty());
  return parts;
}

std::string_view Input::TakeUntil(char end) {
  const std::string_view taken = rest_.substr(0, rest_.find(end));
  rest_.remove_prefix(std::min(taken.size() + 1, rest_.size()));
  return taken;
}

}  // namespace fuzz
