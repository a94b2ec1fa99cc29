// The functions that a scenario can call by name.
#ifndef TESTS_CONFORMANCE_CALLFUNCTIONS_H_
#define TESTS_CONFORMANCE_CALLFUNCTIONS_H_

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include <nlohmann/json_fwd.hpp>

namespace ornwhatsnew {
class FeatureListData;
}  // namespace ornwhatsnew

namespace conformance {

struct CallFunction {
  std::string_view name;
  std::size_t argumentCount;
  /// Whether it is a function of a list, and `list` not null for it.
  bool usesList;
  /// Calls it; the arguments are UTF-8 texts.
  nlohmann::json (*call)(std::span<const std::string> arguments,
                         const ornwhatsnew::FeatureListData* list);
};

/// The function of this name, or null. Valid for the whole run.
const CallFunction* FindCallFunction(std::string_view name);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_CALLFUNCTIONS_H_
