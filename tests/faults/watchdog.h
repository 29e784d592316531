// Says what was being tried when the test program crashes, hangs or ends in the middle of it.
#pragma once

#include <string>

namespace faults {

/// From now on a crash, a hang of a minute and a termination name what is tried.
void StartWatchdog();
/// Prints it as well, for a death that nothing can catch.
void NoteAttempt(const std::string& what);

}  // namespace faults
