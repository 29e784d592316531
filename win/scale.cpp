#include "win/scale.h"

#include <algorithm>
#include <cstdlib>

#include "win/seen_screen.h"

namespace win {
namespace {

/// The height of the message font in pixels of 96 dots per inch where nobody has changed the text's size.
constexpr int kUsualTextHeight = 12;
constexpr int kLargestText = 225;

int g_textPercent = 0;  // 0 until it is asked for
int g_tallest = 0;      // layout pixels

int AskTextPercent() noexcept {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    if (SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, kPlainDpi) == FALSE)
        return 100;
    const int height = std::abs(static_cast<int>(metrics.lfMessageFont.lfHeight));
    return std::clamp(height * 100 / kUsualTextHeight, 100, kLargestText);
}

bool FitsEverywhere() noexcept { return TextPercent() == 100 || g_tallest == 0; }

/// The text's size that leaves the tallest window on a screen with this work area.
int PercentThatFits(const RECT& area, int dpi) noexcept {
    RECT frame{};
    AddFrame(frame, WS_POPUP | WS_CAPTION, WS_EX_TOOLWINDOW, dpi);
    const LONG room = (area.bottom - area.top) - (frame.bottom - frame.top);
    return std::clamp(static_cast<int>(room * 100LL * kPlainDpi / (static_cast<long long>(g_tallest) * dpi)),
                      100, TextPercent());
}

}  // namespace

Scale Scale::Of(HWND window) noexcept {
    const UINT told = window == nullptr ? GetDpiForSystem() : GetDpiForWindow(window);
    // 0 says that the window is gone.
    const int dpi = told == 0 ? kPlainDpi : static_cast<int>(told);
    if (FitsEverywhere()) return Scale(dpi, win::TextPercent());
    // A child may lie on another screen than most of its window.
    return On(MonitorFromWindow(GetAncestor(window, GA_ROOT), MONITOR_DEFAULTTOPRIMARY), dpi);
}

Scale Scale::On(HMONITOR screen, int dpi) noexcept {
    return Scale(dpi, FitsEverywhere() ? win::TextPercent() : PercentThatFits(WorkAreaOf(screen), dpi));
}

void FitTextTo(int layoutHeight) noexcept { g_tallest = layoutHeight; }

int PrimaryDpi() noexcept {
    return DpiOf(MonitorFromPoint({0, 0}, MONITOR_DEFAULTTOPRIMARY), static_cast<int>(GetDpiForSystem()));
}

int TextPercent() noexcept {
    if (g_textPercent == 0) g_textPercent = AskTextPercent();
    return g_textPercent;
}

void ForgetTextSize() noexcept { g_textPercent = 0; }

RECT ScreenOf(HWND window) noexcept {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY), &info);
    return info.rcMonitor;
}

RECT WorkAreaOf(HWND window) noexcept {
    return WorkAreaOf(MonitorFromWindow(window, MONITOR_DEFAULTTOPRIMARY));
}

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
