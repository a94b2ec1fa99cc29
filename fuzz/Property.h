// Checks properties. If a property does not hold, the process prints a message and aborts.
// libFuzzer then writes the input to a file.
#ifndef FUZZ_PROPERTY_H_
#define FUZZ_PROPERTY_H_

#include <sstream>
#include <string_view>

namespace fuzz {

/// Prints the violated property and the details, and aborts the process.
[[noreturn]] void Fail(std::string_view property, std::string_view details = {});

/// Calls `Fail` if `holds` is false.
inline void Require(bool holds, std::string_view property) {
  if (!holds) Fail(property);
}

/// Calls `Fail` with both values if they differ.
template <class Value>
void RequireEqual(const Value& got, const Value& expected, std::string_view property) {
  if (got == expected) return;
  std::ostringstream details;
  details << "got:\n" << got << "\nexpected:\n" << expected;
  Fail(property, details.str());
}

}  // namespace fuzz

#endif  // FUZZ_PROPERTY_H_
