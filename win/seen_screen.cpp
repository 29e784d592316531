#include "win/seen_screen.h"

#include <shellscalingapi.h>

namespace win {

HMONITOR ScreenOfSeenPart(HWND window) noexcept {
    RECT seen{};
    RECT place{};
    const int kind = GetWindowRgnBox(window, &seen);
    if (kind == ERROR || kind == NULLREGION || GetWindowRect(window, &place) == FALSE) return nullptr;
    // A region lies in its window.
    OffsetRect(&seen, place.left, place.top);
    return MonitorFromRect(&seen, MONITOR_DEFAULTTONEAREST);
}

RECT WorkAreaOf(HMONITOR screen) noexcept {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    GetMonitorInfoW(screen, &info);
    return info.rcWork;
}

int DpiOf(HMONITOR screen, int otherwise) noexcept {
    UINT x = 0;
    UINT y = 0;
    if (FAILED(GetDpiForMonitor(screen, MDT_EFFECTIVE_DPI, &x, &y)) || x == 0) return otherwise;
    return static_cast<int>(x);
}

}  // namespace win
