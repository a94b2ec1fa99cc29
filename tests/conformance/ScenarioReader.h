// Reads scenarios from JSON. The reader checks a whole scenario before its first step runs.
#ifndef TESTS_CONFORMANCE_SCENARIOREADER_H_
#define TESTS_CONFORMANCE_SCENARIOREADER_H_

#include "hosts/common/JsonReader.h"
#include "tests/conformance/Scenario.h"

namespace conformance {

/// Reads a scenario from `object`. Accepts but ignores the member `expect`. Throws
/// `hosts::common::JsonError` in these cases:
/// - A member is unknown or missing, or its value has the wrong type or is out of range.
/// - The name of a step or the value of `callbacks` is unknown.
/// - A `call` step has an unknown function or the wrong number of arguments.
/// - A step has several data files, or `dataBase64` is malformed.
/// - A step needs a list, but no earlier step creates one.
/// - `SetPanelLinks` does not accept a link of the host.
Scenario ReadScenario(const hosts::common::JsonReader& object);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_SCENARIOREADER_H_
