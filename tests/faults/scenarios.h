// What a user does with the panel, one thing at a time, for a call of Windows to fail in the midst of it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/faults/stage.h"

namespace faults {

struct Scenario {
    std::string name;
    std::function<void(Stage&)> act;
    /// The act is the start itself: the panel is not loaded before.
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
