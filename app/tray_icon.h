#pragma once

#include <windows.h>

#include <shellapi.h>

namespace app {

/// The icon in the notification area; it goes with this object at the latest.
class TrayIcon {
  public:
    TrayIcon() = default;
    TrayIcon(const TrayIcon&) = delete;
    TrayIcon& operator=(const TrayIcon&) = delete;
    TrayIcon(TrayIcon&&) = delete;
    TrayIcon& operator=(TrayIcon&&) = delete;
    ~TrayIcon() { RemoveTrayIcon(); }

    /// Shows the icon; its events arrive at `window` as mouse moves (Shell_NotifyIconA).
    void AddTrayIcon(HWND window, HICON icon);

    /// Takes the icon away; harmless when there is none.
    void RemoveTrayIcon() noexcept;

    /// The mouse message over the icon that a mouse move of the window stands for (WM_LBUTTONUP,
    /// WM_RBUTTONUP); 0 for a real move. The message stands in the place of the x coordinate.
    static UINT CallbackEvent(WPARAM wParam, LPARAM lParam) noexcept;

  private:
    NOTIFYICONDATAA record_{};
    bool shown_ = false;
};

/// True when the pointer is over the taskbar's notification area, by the caption of the window there or by
/// the classes of the windows that hold it.
bool PointerOverNotificationArea();

}  // namespace app
