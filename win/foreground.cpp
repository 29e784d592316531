#include "win/foreground.h"

#include <dwmapi.h>
#include <shellapi.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace win {
namespace {

bool IsDesktop(HWND window) {
    constexpr std::array<std::wstring_view, 4> kClasses{L"Progman", L"WorkerW", L"Shell_TrayWnd",
                                                        L"Shell_SecondaryTrayWnd"};
    wchar_t name[64]{};
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return std::find(kClasses.begin(), kClasses.end(), name) != kClasses.end();
}

bool IsOwn(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == GetCurrentProcessId();
}

bool IsCloaked(HWND window) {
    DWORD cloaked = 0;
    return SUCCEEDED(DwmGetWindowAttribute(window, DWMWA_CLOAKED, &cloaked, sizeof cloaked)) && cloaked != 0;
}

WindowTraits TraitsOf(HWND window) {
    const LONG_PTR style = GetWindowLongPtrW(window, GWL_EXSTYLE);
    RECT place{};
    GetWindowRect(window, &place);
    WindowTraits traits;
    traits.visible = IsWindowVisible(window) != 0;
    traits.enabled = IsWindowEnabled(window) != 0;
    traits.minimized = IsIconic(window) != 0;
    traits.tool = (style & (WS_EX_TOOLWINDOW | WS_EX_NOACTIVATE)) != 0;
    traits.cloaked = IsCloaked(window);
    traits.own = IsOwn(window);
    traits.desktop = IsDesktop(window);
    traits.empty = IsRectEmpty(&place) != 0;
    return traits;
}

bool FillsMonitor(HWND window) {
    if (window == nullptr || IsOwn(window) || IsDesktop(window)) return false;
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    RECT place{};
    RECT common{};
    if (GetWindowRect(window, &place) == 0) return false;
    if (GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor) == 0) return false;
    IntersectRect(&common, &place, &monitor.rcMonitor);
    return EqualRect(&common, &monitor.rcMonitor) != 0;
}

}  // namespace

void HandOnForeground(HWND window) noexcept {
    HWND next = GetWindow(window, GW_HWNDNEXT);
    while (next != nullptr && !CanTakeForeground(TraitsOf(next)))
        next = GetWindow(next, GW_HWNDNEXT);
    if (next == nullptr) return;
    // Otherwise a program that has just been started would lose its right to come to the front here.
    AllowSetForegroundWindow(ASFW_ANY);
    SetForegroundWindow(next);
}

bool FullScreenProgramInFront() noexcept {
    QUERY_USER_NOTIFICATION_STATE state{};
    if (FAILED(SHQueryUserNotificationState(&state))) return false;
    if (state == QUNS_PRESENTATION_MODE) return FillsMonitor(GetForegroundWindow());
    return state == QUNS_BUSY || state == QUNS_RUNNING_D3D_FULL_SCREEN;
}

bool PutBehindForeground(HWND window, const RECT& seen) noexcept {
    const HWND front = GetForegroundWindow();
    if (front == nullptr || IsOwn(front) || IsDesktop(front)) return false;
    RECT covering{};
    RECT common{};
    GetWindowRect(front, &covering);
    if (IntersectRect(&common, &covering, &seen) == 0 || EqualRect(&common, &seen) == 0) return false;
    constexpr UINT kOrderOnly = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
    return SetWindowPos(window, front, 0, 0, 0, 0, kOrderOnly) != 0;
}

}  // namespace win
