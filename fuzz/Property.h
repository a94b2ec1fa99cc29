// Checks of properties. If a property does not hold, the process prints a message and aborts, and
// the fuzzer stores the input as a finding.
#ifndef FUZZ_PROPERTY_H_
#define FUZZ_PROPERTY_H_

#include <sstream>
#include <string_view>

namespace fuzz {

/// Prints the property and the details, and aborts.
[[noreturn]] void Fail(std::string_view property, std::string_view details = {});

/// Fails unless the property holds.
inline void Require(bool holds, std::string_view property) {
  if (!holds) Fail(property);
}

/// Fails unless two values are equal, and prints both values.
template <class Value>
void RequireEqual(const Value& got, const Value& expected, std::string_view property) {
  if (got == expected) return;
  std::ostringstream details;
  details << "got:\n" << got << "\nexpected:\n" << expected;
  Fail(property, details.str());
}

}  // namespace fuzz

#endif  // FUZZ_PROPERTY_H_
