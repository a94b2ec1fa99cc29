#include "fuzz/Property.h"

#include <cstdio>
#include <cstdlib>

namespace fuzz {

void Fail(std::string_view property, std::string_view details) {
  std::fprintf(stderr, "This does not hold: %.*s\n%.*s\n", static_cast<int>(property.size()),
               property.data(), static_cast<int>(details.size()), details.data());
  std::abort();
}

}  // namespace fuzz
