// Plays the user of Windows' pickers of files and folders.
#pragma once

#include <functional>
#include <string>

#include "tests/support/recorded_call.h"

namespace testkit {

enum class Picker { kFile, kFolder };

/// From now on every picker asks `pick` for a path; "" cancels it. The fakes are added to `fakes`.
void AnswerPickers(RecordedCalls& fakes, const std::function<std::string(Picker)>& pick);

}  // namespace testkit
