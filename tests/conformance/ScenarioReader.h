// Reads scenarios from JSON. The reader checks a whole scenario before its first step runs.
#ifndef TESTS_CONFORMANCE_SCENARIOREADER_H_
#define TESTS_CONFORMANCE_SCENARIOREADER_H_

#include "hosts/common/JsonReader.h"
#include "tests/conformance/Scenario.h"

namespace conformance {

/// Reads a scenario from `object`. Accepts but ignores the member `expect`. Throws
/// `hosts::common::JsonError` for an unknown, missing or duplicate member, and for a value that has
/// the wrong type or is out of range. Also throws it if a step needs a list, but no earlier step
/// creates one.
Scenario ReadScenario(const hosts::common::JsonReader& object);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_SCENARIOREADER_H_
