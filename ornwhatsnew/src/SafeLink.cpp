#include <ornwhatsnew/SafeLink.h>

#include "orncore/src/string/SafeLink.h"

namespace ornwhatsnew {

bool IsSafeLink(std::string_view link) noexcept {
  return orncore::string::IsSafeLink(link);
}

bool IsSafeLink(std::u16string_view link) noexcept {
  return orncore::string::IsSafeLink(link);
}

}  // namespace ornwhatsnew
