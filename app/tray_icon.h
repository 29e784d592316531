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

    /// Shows the icon; its events arrive at `window` as mouse moves (Shell_NotifyIconA). False when nobody
    /// can show it yet, as at logon before there is a taskbar.
    bool AddTrayIcon(HWND window, HICON icon);

    /// Tries once more what AddTrayIcon could not do; true when the icon is there.
    bool AddAgain();

    /// Shows another picture from now on; the one before may be destroyed. False when the icon is there but
    /// the taskbar did not take it.
    bool ChangeIcon(HICON icon);

    /// Takes the icon away; harmless when there is none.
    void RemoveTrayIcon() noexcept;

    /// The mouse message over the icon that a mouse move of the window stands for (WM_LBUTTONUP,
    /// WM_RBUTTONUP); 0 for a real move. The message is in the place of the x coordinate.
    static UINT CallbackEvent(WPARAM wParam, LPARAM lParam) noexcept;

    /// The middle of the icon on the screen (Shell_NotifyIconGetRect), or the pointer's place if Windows does
    /// not know.
    [[nodiscard]] POINT Place() const;
    /// True for a mouse move whose point is that of the pointer over the window (GetMessagePos). A callback's
    /// is not, but on large scales the window reaches as far to the right as the messages' numbers.
    static bool IsRealMove(HWND window, LPARAM lParam) noexcept;

  private:
    NOTIFYICONDATAA record_{};
    bool asked_ = false;
    bool there_ = false;
};

/// True when the pointer is over the taskbar's notification area, by the caption of the window there or by
/// the classes of the windows that hold it.
bool PointerOverNotificationArea();

/// True when the user's keys go to the taskbar or to a window that opens from it: a click on the icon then
/// comes from the keyboard.
bool NotificationAreaHasKeyboard();

}  // namespace modTray
}  // namespace app
