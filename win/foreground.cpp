#include "win/foreground.h"

#include <dwmapi.h>
#include <shellapi.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "win/handles.h"

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

/// The path of the program that a window belongs to; empty when it does not tell, or is too long for one of
/// the system's own.
std::wstring_view ProgramOf(HWND window, std::array<wchar_t, MAX_PATH>& path) noexcept {
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    const KernelObject process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
    auto length = static_cast<DWORD>(path.size());
    if (!process || QueryFullProcessImageNameW(process.Get(), 0, path.data(), &length) == 0) return {};
    return {path.data(), length};
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

/// Can be answered where it is. Windows shows some of its questions without a taskbar button.
bool CanBeAnswered(const WindowTraits& window) {
    return window.visible && window.enabled && !window.minimized && !window.cloaked && !window.empty;
}

BOOL CALLBACK MatchShellQuestion(HWND window, LPARAM found) noexcept {
    if (!CanBeAnswered(TraitsOf(window)) || !AsksForShell(window)) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

}  // namespace

bool IsCloaked(HWND window) noexcept {
    DWORD cloaked = 0;
    return SUCCEEDED(DwmGetWindowAttribute(window, DWMWA_CLOAKED, &cloaked, sizeof cloaked)) && cloaked != 0;
}

bool AsksForShell(HWND window) noexcept {
    constexpr std::array<const wchar_t*, 2> kAsking{L"OpenWith.exe", L"smartscreen.exe"};
    if (window == nullptr || IsOwn(window)) return false;
    std::array<wchar_t, MAX_PATH> buffer{};
    const std::wstring_view path = ProgramOf(window, buffer);
    const std::wstring_view name = path.substr(path.rfind(L'\\') + 1);
    return std::any_of(kAsking.begin(), kAsking.end(), [name](const wchar_t* asking) {
        return CompareStringOrdinal(name.data(), static_cast<int>(name.size()), asking, -1, TRUE) ==
               CSTR_EQUAL;
    });
}

HWND ShownShellQuestion() noexcept {
    HWND found = nullptr;
    EnumWindows(&MatchShellQuestion, reinterpret_cast<LPARAM>(&found));
    return found;
}

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

bool PutBehind(HWND window, HWND front) noexcept {
    constexpr UINT kOrderOnly = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
    return SetWindowPos(window, front, 0, 0, 0, 0, kOrderOnly) != 0;
}

bool PutBehindForeground(HWND window, const RECT& seen) noexcept {
    const HWND front = GetForegroundWindow();
    if (front == nullptr || IsOwn(front) || IsDesktop(front)) return false;
    RECT covering{};
    RECT common{};
    GetWindowRect(front, &covering);
    if (IntersectRect(&common, &covering, &seen) == 0 || EqualRect(&common, &seen) == 0) return false;
    return PutBehind(window, front);
}

}  // namespace win
