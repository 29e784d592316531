#pragma once

#include <windows.h>

#include <shellapi.h>

namespace app {
/// The icon in the notification area.
inline namespace modTray {

/// The icon in the notification area; it goes with this object at the latest.
class TrayIcon {
  public:
    TrayIcon() = default;
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;
    TrayIcon(TrayIcon&&) = delete;
    TrayIcon& operator=(TrayIcon&&) = delete;
    ~TrayIcon() { RemoveTrayIcon(); }

    /// Shows the icon; its events arrive at `window` as mouse moves (Shell_NotifyIconA). False when there is
    /// nobody to show it yet, as at logon before the taskbar has come.
    bool AddTrayIcon(HWND window, HICON icon);

    /// Tries once more what AddTrayIcon could not do; true when the icon is there.
    bool AddAgain();

    /// Takes the icon away; harmless when there is none.
    void RemoveTrayIcon() noexcept;

    /// The mouse message over the icon that a mouse move of the window stands for (WM_LBUTTONUP,
    /// WM_RBUTTONUP); 0 for a real move. The message stands in the place of the x coordinate.
    static UINT CallbackEvent(WPARAM wParam, LPARAM lParam) noexcept;

    /// The middle of the icon on the screen (Shell_NotifyIconGetRect); where the pointer is if Windows does
    /// not tell.
    [[nodiscard]] POINT Place() const;
    /// True for a mouse move that tells where the pointer was over the window (GetMessagePos), as a callback
    /// does not: on large scales the window reaches as far to the right as the messages' numbers do.
    static bool IsRealMove(HWND window, LPARAM lParam) noexcept;

  private:
    NOTIFYICONDATAA record_{};
    bool asked_ = false;
};

/// True when the pointer is over the taskbar's notification area, by the caption of the window there or by
/// the classes of the windows that hold it.
bool PointerOverNotificationArea();

/// True when what the user types goes to the taskbar or to what opens from it: a click on the icon comes from
/// the keyboard then.
bool NotificationAreaHasKeyboard();

}  // namespace modTray
}  // namespace app
