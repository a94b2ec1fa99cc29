// Reads scenarios from JSON. The reader checks the whole scenario before the first step runs.
#ifndef TESTS_CONFORMANCE_SCENARIOREADER_H_
#define TESTS_CONFORMANCE_SCENARIOREADER_H_

#include "hosts/common/JsonReader.h"
#include "tests/conformance/Scenario.h"

namespace conformance {

/// Returns the scenario that `object` contains, without `expect`. Throws `hosts::common::JsonError`
/// for an unknown, missing or duplicate member, for a value of the wrong type or range, and for a
/// step that needs a list before one exists.
Scenario ReadScenario(const hosts::common::JsonReader& object);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_SCENARIOREADER_H_
