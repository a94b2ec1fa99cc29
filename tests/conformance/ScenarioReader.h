// Reads scenarios from JSON. The reader checks a whole scenario before its first step runs.
#ifndef TESTS_CONFORMANCE_SCENARIOREADER_H_
#define TESTS_CONFORMANCE_SCENARIOREADER_H_

#include "hosts/common/JsonReader.h"
#include "tests/conformance/Scenario.h"

namespace conformance {

/// Reads a scenario from `object`. Accepts but ignores the member `expect`. Throws
/// `hosts::common::JsonError` for an unknown, missing or duplicate member, and for a value of the
/// wrong type or range. Also throws it for a step that needs a list before one exists.
Scenario ReadScenario(const hosts::common::JsonReader& object);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_SCENARIOREADER_H_
