#include "app/tray_icon.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "app/edge_dock.h"

namespace app {
namespace {

constexpr UINT kIconId = 1;

}  // namespace

void TrayIcon::AddTrayIcon(HWND window, HICON icon) {
    constexpr std::string_view kTip = " Quon ";
    record_ = {};
    record_.cbSize = NOTIFYICONDATAA_V1_SIZE;
    record_.hWnd = window;
    record_.uID = kIconId;
    record_.uFlags = NIF_MESSAGE | NIF_ICON | NIF_TIP;
    record_.uCallbackMessage = WM_MOUSEMOVE;
    record_.hIcon = icon;
    std::copy(kTip.begin(), kTip.end(), record_.szTip);
    Shell_NotifyIconA(NIM_ADD, &record_);
    shown_ = true;
}

UINT TrayIcon::CallbackEvent(WPARAM wParam, LPARAM lParam) noexcept {
    // The panel is narrower than any of these messages, so no real move looks like one.
    const UINT message = LOWORD(lParam);
    const bool callback = wParam == kIconId && HIWORD(lParam) == 0 && message > WM_MOUSEMOVE;
    return callback ? message : 0;
}

bool PointerOverNotificationArea() {
    constexpr std::array<std::wstring_view, 3> kClasses{L"Shell_TrayWnd", L"NotifyIconOverflowWindow",
                                                        L"TopLevelWindowForOverflowXamlIsland"};
    if (WindowTextUnderMouse().starts_with("Notification")) return true;
    const POINT pointer = win::PointerPlace();
    for (HWND window = WindowFromPoint(pointer); window != nullptr; window = GetAncestor(window, GA_PARENT)) {
        wchar_t name[64]{};
        GetClassNameW(window, name, static_cast<int>(std::size(name)));
        if (std::find(kClasses.begin(), kClasses.end(), name) != kClasses.end()) return true;
    }
    return false;
}

void TrayIcon::RemoveTrayIcon() noexcept {
    if (!shown_) return;
    shown_ = false;
    Shell_NotifyIconA(NIM_DELETE, &record_);
}

}  // namespace app
