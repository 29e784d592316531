// What a scenario leaves behind, in Quon.ini and on the screen, and whether anything is lost by it.
#pragma once

#include "tests/faults/fault_points.h"
#include "tests/faults/scenarios.h"

namespace faults {

/// A call of a function that fails.
struct Fault {
    std::string function;
    unsigned call = 1;
    bool lasting = false;  ///< all later calls of it fail, too
};

using Section = std::map<std::string, std::string>;
using Records = std::map<std::string, Section>;

/// The records of Quon.ini, with "%" for the folder of the targets, which is another each time.
Records ReadRecords(Stage& stage);

/// What was to be seen of a scenario.
struct Outcome {
    Records before;
    Records after;
    std::vector<std::string> said;
    std::vector<std::string> open;
    std::vector<CalledFunction> called;
    bool failed = false;
};

/// Plays a scenario on a stage of its own, with a call failing or with all of them counted; after a failure
/// once more on the same panel.
Outcome Play(const Scenario& scenario, const std::optional<Fault>& fault);

/// Fails the test unless each record is as it was or as `usual` has it, and no target is lost under both
/// names.
void ExpectKept(const std::string& name, const Fault& fault, const Outcome& usual, const Outcome& outcome);

/// How many windows this thread has.
unsigned CountWindows();

/// So that each start registers the classes of its windows anew.
void UnregisterClasses();

/// Whether a line is among others.
bool Contains(const std::vector<std::string>& lines, const std::string& line);

}  // namespace faults
