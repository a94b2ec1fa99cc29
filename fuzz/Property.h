// Checks of properties. A property that does not hold is a finding: the process ends with a
// message, and the fuzzer stores the input.
#ifndef FUZZ_PROPERTY_H_
#define FUZZ_PROPERTY_H_

#include <sstream>
#include <string_view>

namespace fuzz {

/// Prints which property does not hold and aborts.
[[noreturn]] void Fail(std::string_view property, std::string_view details = {});

/// Requires that the property holds.
inline void Require(bool holds, std::string_view property) {
  if (!holds) Fail(property);
}

/// Requires that two values are equal, and prints both if they are not.
template <class Value>
void RequireEqual(const Value& got, const Value& expected, std::string_view property) {
  if (got == expected) return;
  std::ostringstream details;
  details << "got:\n" << got << "\nexpected:\n" << expected;
  Fail(property, details.str());
}

}  // namespace fuzz

#endif  // FUZZ_PROPERTY_H_
