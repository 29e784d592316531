#pragma once

#include <windows.h>

namespace win {

/// The screen on which a window that has a region is seen, however much of the window lies on others
/// (GetWindowRgnBox, MonitorFromRect). Null for a window without a region, all of which is seen.
HMONITOR ScreenOfSeenPart(HWND window) noexcept;

/// The part of a screen that windows may take up: without the taskbar.
RECT WorkAreaOf(HMONITOR screen) noexcept;

/// The dots per inch of a screen (GetDpiForMonitor); `otherwise` where Windows does not tell.
int DpiOf(HMONITOR screen, int otherwise) noexcept;

}  // namespace win
