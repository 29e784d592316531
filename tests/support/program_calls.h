// What the product asks Windows about its own program, and asks it to start.
#pragma once

#include <string>

#include "tests/support/call_log.h"
#include "tests/support/recorded_call.h"

namespace testkit {

/// The running program's file lies at this path as long as the fake is in force (GetModuleFileNameW).
[[nodiscard]] RecordedCall ProgramLiesAt(const std::string& path);

/// Programs are not started; "start", the command line and the state of the first window are logged
/// (CreateProcessA).
[[nodiscard]] RecordedCall LogStarts(CallLog& log);

}  // namespace testkit
