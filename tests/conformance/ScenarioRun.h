// Executes a scenario: a fresh host, then one call after the other.
#ifndef TESTS_CONFORMANCE_SCENARIORUN_H_
#define TESTS_CONFORMANCE_SCENARIORUN_H_

#include <nlohmann/json_fwd.hpp>

#include "tests/conformance/Scenario.h"

namespace conformance {

/// Executes the scenario's steps and gives the array of their results. The process's services are
/// put back to the start first, so that nothing is left of another scenario. Throws what the
/// library throws. One at a time.
nlohmann::json RunScenario(const Scenario& scenario);

}  // namespace conformance

#endif  // TESTS_CONFORMANCE_SCENARIORUN_H_
