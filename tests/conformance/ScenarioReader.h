// Reads scenarios from JSON. Every error of form is reported here, before the first step runs.
#ifndef TESTS_CONFORMANCE_SCENARIOREADER_H_
#define TESTS_CONFORMANCE_SCENARIOREADER_H_

#include "hosts/common/JsonReader.h"
#include "tests/conformance/Scenario.h"

namespace conformance {

/// Reads one scenario. Throws `hosts::common::JsonError` for an unknown, missing or duplicate
/// member, for a value of the wrong type or range, and for a step that needs a list before one
/// exists. Does not read `expect`.
Scenario ReadScenario(const hosts::common::JsonReader& object);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_SCENARIOREADER_H_
