#include "app/edge_dock.h"

#include <array>
#include <cmath>

#include "config/settings.h"

namespace app {
namespace {

constexpr int kStripPixels = 4;
constexpr UINT_PTR kTimerId = 1;
constexpr UINT kTimerInterval = 500;  // milliseconds
constexpr DWORD kHoverWait = 100;     // milliseconds
constexpr int kAsideLeft = -5300;     // twips
constexpr std::string_view kCaptionStart = "Quon";

win::Twips ScreenSize(win::TwipsPerPixel twips) {
    return {win::ToTwips(GetSystemMetrics(SM_CXSCREEN), twips.x),
            win::ToTwips(GetSystemMetrics(SM_CYSCREEN), twips.y)};
}

bool PointerOverQuon() { return WindowTextUnderMouse().starts_with(kCaptionStart); }

}  // namespace

std::optional<win::Twips> DockedPosition(std::int32_t edge, win::Twips window, win::Twips screen,
                                         win::TwipsPerPixel twips) {
    const win::Twips strip{kStripPixels * twips.x, kStripPixels * twips.y};
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

int HoverWaits(std::int32_t delay) {
    // The default rounding mode: to the nearest, ties to even.
    return static_cast<int>(std::nearbyint(static_cast<double>(delay) / kHoverWait));
}

std::string WindowTextUnderMouse() {
    const POINT pointer = win::PointerPlace();
    std::array<char, 100> text{};
    GetWindowTextA(WindowFromPoint(pointer), text.data(), static_cast<int>(text.size()));
    return text.data();
}

void EdgeDock::ShowQuon(bool bShow, bool bUnTimer) {
    const win::TwipsPerPixel twips = win::ScreenTwipsPerPixel();
    const win::Twips screen = ScreenSize(twips);
    if (bShow) {
        if (savedLeft_ != 0)
            MoveTo({static_cast<int>(savedLeft_), static_cast<int>(savedTop_)});
        else
            MoveTo(CentredPosition(WindowSize(), screen));
        hidden_ = false;
        win::SetTopmost(true, window_);
        return;
    }
    if (const auto place = DockedPosition(config::Settings.Edge, WindowSize(), screen, twips)) MoveTo(*place);
    EnableTimer(!bUnTimer);
    win::SetTopmost(true, window_);
    hidden_ = true;
}

void EdgeDock::SavePosition() {
    if (hidden_) return;
    const win::TwipsPerPixel twips = win::ScreenTwipsPerPixel();
    RECT place{};
    GetWindowRect(window_, &place);
    savedLeft_ = static_cast<float>(win::ToTwips(place.left, twips.x));
    savedTop_ = static_cast<float>(win::ToTwips(place.top, twips.y));
}

void EdgeDock::MoveAside() {
    const win::TwipsPerPixel twips = win::ScreenTwipsPerPixel();
    RECT place{};
    GetWindowRect(window_, &place);
    MoveTo({kAsideLeft, win::ToTwips(place.top, twips.y)});
}

void EdgeDock::EnableTimer(bool enabled) {
    if (enabled)
        SetTimer(window_, kTimerId, kTimerInterval, nullptr);
    else
        KillTimer(window_, kTimerId);
}

void EdgeDock::OnTimer() {
    if (hidden_) win::SetTopmost(true, window_);
}

void EdgeDock::OnHover() {
    // The wait lets events run, further moves over the strip among them: one wait at a time is enough.
    if (hovering_ || !hidden_ || !config::Settings.PopOnHover || !PointerOverQuon()) return;
    hovering_ = true;
    const bool alive = WaitOut(HoverWaits(config::Settings.PopDelay));
    hovering_ = false;
    if (alive && PointerOverQuon() && hidden_) ShowQuon(true, true);
}

bool EdgeDock::WaitOut(int waits) const {
    const HWND window = window_;
    // Brought out by other means, the panel has nothing to wait for, and would answer only between two
    // sleeps.
    for (int wait = 0; wait < waits && hidden_; ++wait) {
        Sleep(kHoverWait);
        if (!win::ProcessPendingMessages(preTranslate_) || IsWindow(window) == 0) return false;
    }
    return true;
}

void EdgeDock::OnPress() {
    if (hidden_ && config::Settings.ClickShows) ShowQuon(true, true);
}

void EdgeDock::MoveTo(win::Twips place) const {
    const win::TwipsPerPixel twips = win::ScreenTwipsPerPixel();
    SetWindowPos(window_, nullptr, win::ToPixels(place.x, twips.x), win::ToPixels(place.y, twips.y), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

win::Twips EdgeDock::WindowSize() const {
    const win::TwipsPerPixel twips = win::ScreenTwipsPerPixel();
    RECT place{};
    GetWindowRect(window_, &place);
    return {win::ToTwips(win::Width(place), twips.x), win::ToTwips(win::Height(place), twips.y)};
}

}  // namespace app
