#include "win/scale.h"

#include <algorithm>
#include <cstdlib>

namespace win {
namespace {

/// The height of the message font in pixels of 96 dots per inch where nobody has changed the text's size.
constexpr int kUsualTextHeight = 12;
constexpr int kLargestText = 225;

int g_textPercent = 0;  // 0 until it is asked for

int AskTextPercent() noexcept {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, kPlainDpi) == FALSE)
        return 100;
    const int height = std::abs(static_cast<int>(metrics.lfMessageFont.lfHeight));
    return std::clamp(height * 100 / kUsualTextHeight, 100, kLargestText);
}

MONITORINFO MonitorOf(HWND window) noexcept {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &info);
    return info;
}

}  // namespace

Scale Scale::Of(HWND window) noexcept {
    const UINT dpi = window == nullptr ? GetDpiForSystem() : GetDpiForWindow(window);
    // 0 says that the window is gone.
    return Scale(dpi == 0 ? kPlainDpi : static_cast<int>(dpi), win::TextPercent());
}

int TextPercent() noexcept {
    if (g_textPercent == 0) g_textPercent = AskTextPercent();
    return g_textPercent;
}

void ForgetTextSize() noexcept { g_textPercent = 0; }

RECT ScreenOf(HWND window) noexcept { return MonitorOf(window).rcMonitor; }

RECT WorkAreaOf(HWND window) noexcept { return MonitorOf(window).rcWork; }

void AddFrame(RECT& rect, HWND window) noexcept {
    const UINT dpi = GetDpiForWindow(window);
    AddFrame(rect, static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE)),
             static_cast<DWORD>(GetWindowLongPtrW(window, GWL_EXSTYLE)),
             dpi == 0 ? kPlainDpi : static_cast<int>(dpi));
}

void AddFrame(RECT& rect, DWORD style, DWORD extendedStyle, int dpi) noexcept {
    AdjustWindowRectExForDpi(&rect, style, FALSE, extendedStyle, static_cast<UINT>(dpi));
}

}  // namespace win
