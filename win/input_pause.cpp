#include "win/input_pause.h"

#include <algorithm>
#include <exception>

#include "win/message_ban.h"
#include "win/window.h"

namespace win {
namespace {

int g_pauses = 0;

}  // namespace

bool InputPause::Any() noexcept { return g_pauses > 0; }

InputPause::InputPause() : active_(GetActiveWindow()) {
    AssertMayPump("a window of the system");
    ++g_pauses;
    EnumThreadWindows(GetCurrentThreadId(), &InputPause::Collect, reinterpret_cast<LPARAM>(&paused_));
    for (const Paused& paused : paused_) {
        EnableWindow(paused.window, FALSE);
        if (paused.topmost) SetTopmost(false, paused.window);
    }
}

InputPause::~InputPause() {
    --g_pauses;
    // From the back to the front, because the last window that is made topmost stands above the others.
    std::for_each(paused_.rbegin(), paused_.rend(), [](const Paused& paused) {
        if (IsWindow(paused.window) == 0) return;
        if (paused.topmost) SetTopmost(true, paused.window);
        if (paused.enabled) EnableWindow(paused.window, TRUE);
    });
    if (IsWindow(active_) != 0) SetForegroundWindow(active_);
}

BOOL CALLBACK InputPause::Collect(HWND window, LPARAM paused) noexcept {
    if (IsWindowVisible(window) == 0) return TRUE;
    try {
        const bool topmost = (GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
        auto& windows = *reinterpret_cast<std::vector<Paused>*>(paused);
        windows.push_back({window, IsWindowEnabled(window) != 0, topmost});
        return TRUE;
    } catch (const std::exception&) {
        return FALSE;
    }
}

}  // namespace win
