// From JSON to a scenario that can be executed: everything that can be wrong with its form is found
// here, before its first call.
#ifndef TESTS_CONFORMANCE_SCENARIOREADER_H_
#define TESTS_CONFORMANCE_SCENARIOREADER_H_

#include "hosts/common/JsonReader.h"
#include "tests/conformance/Scenario.h"

namespace conformance {

/// Reads one scenario. Throws `hosts::common::JsonError` when it is not of the form: an unknown,
/// missing or doubled member, a value of the wrong type or range, or a step that uses a list before
/// one has been made. `expect` is left to whoever compares.
Scenario ReadScenario(const hosts::common::JsonReader& object);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_SCENARIOREADER_H_
