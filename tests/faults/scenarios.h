// What a user does with the panel, one thing at a time; some call of Windows fails in the middle of it.
#pragma once

#include "tests/faults/stage.h"
#include "tests/support/unit_test.h"

namespace faults {

struct Scenario {
    std::string name;
    std::function<void(Stage&)> act;
    /// The act is the start itself, so the panel is not loaded before it.
    bool starts = false;
};

std::vector<Scenario> StartAndEndScenarios();
std::vector<Scenario> ButtonScenarios();
std::vector<Scenario> CommandScenarios();
std::vector<Scenario> DropScenarios();
std::vector<Scenario> WindowScenarios();
std::vector<Scenario> ShortcutBoxScenarios();
std::vector<Scenario> DialogScenarios();

}  // namespace faults
