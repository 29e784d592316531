#include "app/tray_icon.h"

#include <windowsx.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "app/edge_dock.h"
#include "win/trace.h"

namespace app {
inline namespace modTray {
namespace {

constexpr UINT kIconId = 1;

/// Whether a window is one of those that show notification icons, or stands on one.
bool HoldsNotificationArea(HWND window) {
    constexpr std::array<std::wstring_view, 3> kClasses{L"Shell_TrayWnd", L"NotifyIconOverflowWindow",
                                                        L"TopLevelWindowForOverflowXamlIsland"};
    for (; window != nullptr; window = GetAncestor(window, GA_PARENT)) {
        wchar_t name[64]{};
        GetClassNameW(window, name, static_cast<int>(std::size(name)));
        if (std::find(kClasses.begin(), kClasses.end(), name) != kClasses.end()) return true;
    }
    return false;
}

}  // namespace

bool TrayIcon::AddTrayIcon(HWND window, HICON icon) {
    constexpr std::string_view kTip = " Quon ";
    record_ = {};
    record_.cbSize = NOTIFYICONDATAA_V1_SIZE;
    record_.hWnd = window;
    record_.uID = kIconId;
    record_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    record_.uCallbackMessage = WM_MOUSEMOVE;
    record_.hIcon = icon;
    std::copy(kTip.begin(), kTip.end(), record_.szTip);
    asked_ = true;
    there_ = win::Traced(Shell_NotifyIconA(NIM_ADD, &record_), "Shell_NotifyIconA") != FALSE;
    return there_;
}

bool TrayIcon::AddAgain() {
    // The taskbar is busy at logon and may have taken the icon earlier without answering in time.
    there_ =
        Shell_NotifyIconA(NIM_ADD, &record_) != FALSE || Shell_NotifyIconA(NIM_MODIFY, &record_) != FALSE;
    return there_;
}

bool TrayIcon::ChangeIcon(HICON icon) {
    record_.hIcon = icon;
    // One that is yet to be added comes with this picture.
    if (!there_) return true;
    NOTIFYICONDATAA change = record_;
    change.uFlags = NIF_ICON;
    return win::Traced(Shell_NotifyIconA(NIM_MODIFY, &change), "Shell_NotifyIconA") != FALSE;
}

POINT TrayIcon::Place() const {
    NOTIFYICONIDENTIFIER icon{};
    icon.cbSize = sizeof icon;
    icon.hWnd = record_.hWnd;
    icon.uID = record_.uID;
    RECT place{};
    if (FAILED(Shell_NotifyIconGetRect(&icon, &place))) return win::PointerPlace();
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

UINT TrayIcon::CallbackEvent(WPARAM wParam, LPARAM lParam) noexcept {
    const UINT message = LOWORD(lParam);
    const bool callback = wParam == kIconId && HIWORD(lParam) == 0 && message > WM_MOUSEMOVE;
    return callback ? message : 0;
}

bool TrayIcon::IsRealMove(HWND window, LPARAM lParam) noexcept {
    const DWORD position = GetMessagePos();
    POINT pointer{GET_X_LPARAM(position), GET_Y_LPARAM(position)};
    ScreenToClient(window, &pointer);
    return pointer.x == GET_X_LPARAM(lParam) && pointer.y == GET_Y_LPARAM(lParam);
}

bool PointerOverNotificationArea() {
    return WindowTextUnderMouse().starts_with("Notification") ||
           HoldsNotificationArea(WindowFromPoint(win::PointerPlace()));
}

bool NotificationAreaHasKeyboard() { return HoldsNotificationArea(GetForegroundWindow()); }

void TrayIcon::RemoveTrayIcon() noexcept {
    if (!asked_) return;
    asked_ = there_ = false;
    win::Traced(Shell_NotifyIconA(NIM_DELETE, &record_), "Shell_NotifyIconA");
}

}  // namespace modTray
}  // namespace app
