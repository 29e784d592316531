#include "win/seen_screen.h"

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
    using Function = HRESULT(WINAPI*)(HMONITOR, int, UINT*, UINT*);
    constexpr int kEffective = 0;  // MDT_EFFECTIVE_DPI
    // The shell has loaded the library; nothing else of it is needed.
    const auto ask = reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"shcore"), "GetDpiForMonitor")));
    UINT x = 0;
    UINT y = 0;
    if (ask == nullptr || FAILED(ask(screen, kEffective, &x, &y)) || x == 0) return otherwise;
    return static_cast<int>(x);
}

}  // namespace win
