#include "hosts/console/JsonOutput.h"

#include <nlohmann/json.hpp>

namespace hosts::console {

std::string ToJsonText(const nlohmann::json& value) {
  return value.dump(2, ' ', true) + "\n";
}

}  // namespace hosts::console
