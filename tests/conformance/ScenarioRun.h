// Runs the steps of a scenario with a new host.
#ifndef TESTS_CONFORMANCE_SCENARIORUN_H_
#define TESTS_CONFORMANCE_SCENARIORUN_H_

#include <nlohmann/json_fwd.hpp>

#include "tests/conformance/Scenario.h"

namespace conformance {

/// Runs the steps of a scenario and returns the array of their results. Resets all services first,
/// so that earlier scenarios have no effect. Leaves the services of the scenario installed.
/// Propagates the library's exceptions. Not thread-safe, because the services are global.
nlohmann::json RunScenario(const Scenario& scenario);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_SCENARIORUN_H_
