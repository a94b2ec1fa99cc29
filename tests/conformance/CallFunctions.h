// Finds the functions that a scenario can call by name.
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

/// A library function that the step `call` can call.
struct CallFunction {
  std::string_view name;
  std::size_t argumentCount;
  /// True if the function needs a list. If false, the `list` argument of `call` may be null.
  bool usesList;
  /// Calls the function with `argumentCount` UTF-8 arguments and returns its result.
  nlohmann::json (*call)(std::span<const std::string> arguments,
                         const ornwhatsnew::FeatureListData* list);
};

/// Returns the function with this name, or null if there is none. The pointer is valid until the
/// program ends.
const CallFunction* FindCallFunction(std::string_view name);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_CALLFUNCTIONS_H_
