#include "app/edge_dock.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "app/screen_place.h"
#include "config/settings.h"
#include "res/resource.h"
#include "win/dialog.h"
#include "win/foreground.h"
#include "win/handles.h"
#include "win/modal_windows.h"
#include "win/scale.h"
#include "win/shell_call.h"

namespace app {
namespace {

constexpr UINT kTimerInterval = 500;  // milliseconds
constexpr UINT kRaiseInterval = 250;  // milliseconds
constexpr DWORD kHoverWait = 100;     // milliseconds
constexpr UINT kFrontDelay = 1000;    // milliseconds: the shell takes its time to see a full screen
constexpr int kAsideLeft = -5300;     // twips
constexpr std::string_view kCaptionStart = "Quon";

win::Twips ScreenSize(win::TwipsPerPixel twips) {
    return {win::ToTwips(GetSystemMetrics(SM_CXSCREEN), twips.x),
            win::ToTwips(GetSystemMetrics(SM_CYSCREEN), twips.y)};
}

/// Minimised or maximised by another program, the window would be neither docked nor out.
void MakeNormal(HWND window) {
    if (IsIconic(window) != 0 || IsZoomed(window) != 0) ShowWindow(window, SW_SHOWNOACTIVATE);
}

/// In pixels. Of the primary screen, at whose edges windows dock: most of the window may lie on a neighbour
/// with another scale.
int StripWidth() noexcept { return win::Scale(win::PrimaryDpi())(kStripPixels); }

bool PointerOverQuon() { return WindowTextUnderMouse().starts_with(kCaptionStart); }

}  // namespace

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
    MakeNormal(window_);
    if (bShow)
        BringOut();
    else
        Dock(bUnTimer);
}

void EdgeDock::MoveOut() {
    if (SavedPlaceCounts())
        MoveTo({static_cast<int>(savedLeft_), static_cast<int>(savedTop_)});
    else
        MoveTo(CentredPosition(WindowSize(), ScreenSize(win::ScreenTwipsPerPixel())));
}

void EdgeDock::BringOut() {
    MoveOut();
    hidden_ = false;
    outOfSight_ = false;
    behindFullScreen_ = false;
    // With another size the middle of the screen is elsewhere.
    if (fit_ && fit_()) MoveOut();
    SetWindowRgn(window_, nullptr, TRUE);
    Raise();
    WatchFront();
}

void EdgeDock::Dock(bool bUnTimer) {
    behindFullScreen_ = false;
    PlaceAtEdge();
    EnableTimer(!bUnTimer);
    Raise();
    hidden_ = true;
    WatchFront();
    // Where most of the window lies by now, Windows draws its frame for that screen: parts laid out for
    // another one could reach into the strip.
    if (fit_) fit_();
    // Posted, because the caller may be about to open a dialog, which a program in the background could not
    // bring to the front.
    if (outOfSight_ && GetForegroundWindow() == window_) PostMessageW(window_, WM_QUON_HAND_ON, 0, 0);
}

void EdgeDock::HandOn() const noexcept {
    if (!outOfSight_ || GetForegroundWindow() != window_) return;
    if (win::AnyDialogOpen() || win::AnyMenuOpen() || win::SystemAsks()) return;
    win::HandOnForeground(window_);
}

void EdgeDock::PlaceAtEdge() {
    const win::TwipsPerPixel twips = win::ScreenTwipsPerPixel();
    const auto place =
        DockedPosition(config::Settings.Edge, WindowSize(), ScreenSize(twips), twips, StripWidth());
    if (!place) return;
    outOfSight_ = true;
    MoveTo(*place);
    RECT window{};
    GetWindowRect(window_, &window);
    const RECT strip = StripOf(config::Settings.Edge, win::Width(window), win::Height(window), StripWidth());
    // Without it, a monitor beyond the edge would show the rest.
    win::Region region(CreateRectRgnIndirect(&strip));
    if (SetWindowRgn(window_, region.Get(), TRUE) != 0) region.Release();
}

void EdgeDock::Raise() {
    raiseOwed_ = KeptBack();
    if (raiseOwed_) {
        SetTimer(window_, kRaiseTimer, kRaiseInterval, nullptr);
        return;
    }
    behindQuestion_ = nullptr;
    win::SetTopmost(true, window_);
}

bool EdgeDock::KeptBack() const noexcept {
    // What waits for an answer would be covered, by a panel that is out even where it is not in front.
    return win::SystemAsks() || (!outOfSight_ && win::LaunchQuestion() != nullptr);
}

void EdgeDock::OnDeactivated() const {
    // Not yet: until the other window has become the foreground window nobody knows whose it is.
    SetTimer(window_, kRaiseTimer, kRaiseInterval, nullptr);
}

void EdgeDock::OnRaiseTimer() {
    const HWND question = win::ShellQuestion();
    if (question != nullptr && question != behindQuestion_ && win::PutBehind(window_, question)) {
        behindQuestion_ = question;
        raiseOwed_ = true;
    }
    if (raiseOwed_ ? KeptBack() : GetForegroundWindow() == nullptr) return;
    KillTimer(window_, kRaiseTimer);
    if (raiseOwed_) Raise();
}

bool EdgeDock::SavedPlaceCounts() const {
    if (savedLeft_ == 0) return false;
    const win::TwipsPerPixel twips = win::ScreenTwipsPerPixel();
    RECT window{};
    GetWindowRect(window_, &window);
    OffsetRect(&window, win::ToPixels(static_cast<int>(savedLeft_), twips.x) - window.left,
               win::ToPixels(static_cast<int>(savedTop_), twips.y) - window.top);
    return IsInReach(window, ScreenScale());
}

/// Without the text's size: what it is for is to be hit, not read.
win::Scale EdgeDock::ScreenScale() const noexcept { return win::Scale(win::Scale::Of(window_).Dpi()); }

RECT EdgeDock::StripOnScreen() const {
    RECT window{};
    GetWindowRect(window_, &window);
    RECT strip = StripOf(config::Settings.Edge, win::Width(window), win::Height(window), StripWidth());
    OffsetRect(&strip, window.left, window.top);
    return strip;
}

void EdgeDock::FollowScreen() {
    if (IsIconic(window_) != 0) return;
    if (hidden_) {
        PlaceAtEdge();
        if (fit_) fit_();
        return;
    }
    RECT window{};
    GetWindowRect(window_, &window);
    if (IsInReachBesideTaskbar(window, ScreenScale())) return;
    PullIn(window);
}

void EdgeDock::ShowWhole() {
    if (IsIconic(window_) != 0 || hidden_) return;
    RECT window{};
    GetWindowRect(window_, &window);
    PullIn(window);
}

void EdgeDock::PullIn(const RECT& window) {
    const POINT place = PlaceInReach(window);
    if (place.x == window.left && place.y == window.top) return;
    SetWindowPos(window_, nullptr, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
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
    // With large text the window is wider than that.
    MoveTo({std::min(kAsideLeft, -WindowSize().x), win::ToTwips(place.top, twips.y)});
}

void EdgeDock::EnableTimer(bool enabled) {
    ticking_ = enabled;
    if (enabled)
        SetTimer(window_, Timer1, kTimerInterval, nullptr);
    else
        KillTimer(window_, Timer1);
    WatchFront();
}

void EdgeDock::WatchFront() {
    if (!hidden_ || ticking_)
        watch_.reset();
    else if (!watch_)
        watch_.emplace(window_, kFrontTimer, kFrontDelay);
}

bool EdgeDock::GoBehindFullScreen() {
    if (!win::FullScreenProgramInFront()) return false;
    // Only once: after that the programs decide their own order.
    if (!behindFullScreen_) behindFullScreen_ = win::PutBehindForeground(window_, StripOnScreen());
    return true;
}

void EdgeDock::OnTimer() {
    if (!hidden_ || GoBehindFullScreen()) return;
    behindFullScreen_ = false;
    Raise();
}

void EdgeDock::OnFrontTimer() {
    KillTimer(window_, kFrontTimer);
    // Without Timer1 the strip does not rise by itself, only to where it was.
    if (!hidden_ || GoBehindFullScreen() || !behindFullScreen_) return;
    behindFullScreen_ = false;
    Raise();
}

void EdgeDock::OnHover() {
    // The wait lets events run, among them further moves over the strip; one wait at a time is enough.
    if (hovering_ || !hidden_ || !config::Settings.PopOnHover || !PointerOverQuon()) return;
    hovering_ = true;
    const bool alive = WaitOut(HoverWaits(config::Settings.PopDelay));
    const bool abandoned = !hovering_;
    hovering_ = false;
    if (alive && !abandoned && PointerOverQuon() && hidden_) ShowQuon(true, true);
}

bool EdgeDock::WaitOut(int waits) const {
    const HWND window = window_;
    // A panel brought out by other means has nothing left to wait for; while waiting it would answer only
    // between two sleeps.
    for (int wait = 0; wait < waits && hidden_ && hovering_; ++wait) {
        Sleep(kHoverWait);
        if (!win::ProcessPendingMessages(preTranslate_) || IsWindow(window) == 0) return false;
    }
    return true;
}

void EdgeDock::OnPress() {
    if (hidden_ && config::Settings.ClickShows) ShowQuon(true, true);
}

void EdgeDock::MoveTo(win::Twips place) {
    const win::TwipsPerPixel twips = win::ScreenTwipsPerPixel();
    moving_ = true;
    SetWindowPos(window_, nullptr, win::ToPixels(place.x, twips.x), win::ToPixels(place.y, twips.y), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    moving_ = false;
}

win::Twips EdgeDock::WindowSize() const {
    const win::TwipsPerPixel twips = win::ScreenTwipsPerPixel();
    RECT place{};
    GetWindowRect(window_, &place);
    return {win::ToTwips(win::Width(place), twips.x), win::ToTwips(win::Height(place), twips.y)};
}

}  // namespace app
