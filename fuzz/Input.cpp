#include "fuzz/Input.h"

#include <algorithm>

namespace fuzz {

std::vector<std::string_view> Input::ReadParts() {
  std::vector<std::string_view> parts;
  do {
    parts.push_back(ReadPart());
  } while (!rest_.empty());
  return parts;
}

bool Input::HasSlowChecks() const {
  unsigned sum = 0;
  for (const char c : rest_) sum += static_cast<unsigned char>(c);
  return sum % 3 == 0;
}

std::string_view Input::ReadUntil(char end) {
  const std::string_view taken = rest_.substr(0, rest_.find(end));
  rest_.remove_prefix(std::min(taken.size() + 1, rest_.size()));
  return taken;
}

}  // namespace fuzz
