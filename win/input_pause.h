#pragma once

#include <windows.h>

#include <optional>
#include <vector>

#include "win/step_back.h"

namespace win {

/// While it lives, no visible window of this thread takes input, and none stays above other windows
/// (StepBack): for a window of the system that is to be answered first but has no window of ours for its
/// owner.
class InputPause {
  public:
    /// Disables the windows (EnableWindow); the destructor enables them again and brings the window to the
    /// foreground that was active.
    InputPause();
    InputPause(const InputPause&) = delete;
    InputPause& operator=(const InputPause&) = delete;
    InputPause(InputPause&&) = delete;
    InputPause& operator=(InputPause&&) = delete;
    ~InputPause();

  private:
    HWND active_;
    std::optional<StepBack> stepBack_;
    /// Those that took input before.
    std::vector<HWND> paused_;
};

}  // namespace win
