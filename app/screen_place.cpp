#include "app/screen_place.h"

#include <algorithm>

namespace app {
namespace {

/// How much of a caption must show for the pointer to drag it, in layout pixels; the close button does not
/// count.
constexpr int kGripWidth = 64;

/// A tool window's caption with the frame above it, in pixels.
int CaptionHeight(const win::Scale& scale) {
    const auto dpi = static_cast<UINT>(scale.Dpi());
    return GetSystemMetricsForDpi(SM_CYFIXEDFRAME, dpi) + GetSystemMetricsForDpi(SM_CYSMCAPTION, dpi);
}

struct Monitor {
    RECT all{};
    RECT work{};  ///< without the taskbar
};

std::optional<Monitor> MonitorAt(const RECT& place, DWORD otherwise) {
    MONITORINFO info{};
    info.cbSize = sizeof info;
    const HMONITOR monitor = MonitorFromRect(&place, otherwise);
    if (monitor == nullptr || GetMonitorInfoW(monitor, &info) == 0) return std::nullopt;
    return Monitor{info.rcMonitor, info.rcWork};
}

std::optional<Monitor> MonitorOfCaption(const RECT& window, const win::Scale& scale) {
    return MonitorAt({window.left, window.top, window.right, window.top + CaptionHeight(scale)},
                     MONITOR_DEFAULTTONULL);
}

}  // namespace

std::optional<win::Twips> DockedPosition(std::int32_t edge, win::Twips window, win::Twips screen,
                                         win::TwipsPerPixel twips, int stripPixels) {
    const win::Twips strip{win::ToTwips(stripPixels, twips.x), win::ToTwips(stripPixels, twips.y)};
    const win::Twips centre = CentredPosition(window, screen);
    switch (edge) {
        case kLeftEdge: return win::Twips{-window.x + strip.x, centre.y};
        case kTopEdge: return win::Twips{centre.x, -window.y + strip.y};
        case kRightEdge: return win::Twips{screen.x - strip.x, centre.y};
        case kBottomEdge: return win::Twips{centre.x, screen.y - strip.y};
        default: return std::nullopt;
    }
}

win::Twips CentredPosition(win::Twips window, win::Twips screen) {
    return {(screen.x - window.x) / 2, (screen.y - window.y) / 2};
}

RECT StripOf(std::int32_t edge, int width, int height, int strip) {
    switch (edge) {
        case kLeftEdge: return {width - strip, 0, width, height};
        case kTopEdge: return {0, height - strip, width, height};
        case kRightEdge: return {0, 0, strip, height};
        case kBottomEdge: return {0, 0, width, strip};
        default: return {0, 0, width, height};
    }
}

bool CaptionInReach(const RECT& window, int captionHeight, const RECT& area, const win::Scale& scale) {
    const RECT caption{window.left, window.top, window.right, window.top + captionHeight};
    const LONG across = std::min(caption.right, area.right) - std::max(caption.left, area.left);
    const LONG down = std::min(caption.bottom, area.bottom) - std::max(caption.top, area.top);
    return across >= std::min<LONG>(scale(kGripWidth), win::Width(window)) && down >= (captionHeight + 1) / 2;
}

POINT PulledInto(const RECT& window, const RECT& area) {
    const LONG left = std::min<LONG>(window.left, area.right - win::Width(window));
    const LONG top = std::min<LONG>(window.top, area.bottom - win::Height(window));
    return {std::max(left, area.left), std::max(top, area.top)};
}

bool IsInReach(const RECT& window, const win::Scale& scale) {
    const std::optional<Monitor> monitor = MonitorOfCaption(window, scale);
    return monitor && CaptionInReach(window, CaptionHeight(scale), monitor->all, scale);
}

bool IsInReachBesideTaskbar(const RECT& window, const win::Scale& scale) {
    const std::optional<Monitor> monitor = MonitorOfCaption(window, scale);
    return monitor && CaptionInReach(window, CaptionHeight(scale), monitor->work, scale);
}

POINT PlaceInReach(const RECT& window) {
    const std::optional<Monitor> monitor = MonitorAt(window, MONITOR_DEFAULTTONEAREST);
    return monitor ? PulledInto(window, monitor->work) : POINT{window.left, window.top};
}

}  // namespace app
