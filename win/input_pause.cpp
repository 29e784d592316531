#include "win/input_pause.h"

#include <algorithm>
#include <iterator>

#include "win/message_ban.h"
#include "win/window.h"

namespace win {

InputPause::InputPause() : active_(GetActiveWindow()) {
    AssertMayPump("a window of the system");
    stepBack_.emplace(StepBack::When::kAtOnce);
    const std::vector<HWND> windows = ThreadWindows();
    std::copy_if(windows.begin(), windows.end(), std::back_inserter(paused_),
                 [](HWND window) { return IsWindowVisible(window) != 0 && IsWindowEnabled(window) != 0; });
    for (HWND window : paused_)
        EnableWindow(window, FALSE);
}

InputPause::~InputPause() {
    stepBack_.reset();
    for (HWND window : paused_)
        if (IsWindow(window) != 0) EnableWindow(window, TRUE);
    if (IsWindow(active_) != 0) SetForegroundWindow(active_);
}

}  // namespace win
