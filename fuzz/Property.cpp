#include "fuzz/Property.h"

#include <cstdlib>
#include <iostream>

namespace fuzz {

void Fail(std::string_view property, std::string_view details) {
  std::cerr << "property does not hold: " << property << '\n' << details << '\n';
  std::abort();
}

}  // namespace fuzz
