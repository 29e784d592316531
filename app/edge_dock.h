#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "win/front_watch.h"
#include "win/geometry.h"
#include "win/scale.h"
#include "win/window.h"

namespace app {

/// The timer of the main window that keeps the docked panel on top; its tick comes every 500 ms.
constexpr UINT_PTR Timer1 = 1;

/// The timer of the main window that raises a panel again which a question of the system's kept back.
constexpr UINT_PTR kRaiseTimer = 2;

/// The timer of the main window that comes when another window is in front of a docked panel without Timer1,
/// or the one in front has changed its size.
constexpr UINT_PTR kFrontTimer = 3;

/// How many waits of 100 ms a hover delay takes: the quotient rounded to the nearest, ties to even.
int HoverWaits(std::int32_t delay);

/// The text of the window under the mouse pointer (WindowFromPoint), at most 99 characters.
std::string WindowTextUnderMouse();

/// Docks the main window at its screen edge and brings it out again.
class EdgeDock {
  public:
    /// Takes the main window, and the filter that gets its messages first during a hover's wait; nothing is
    /// moved yet.
    void Attach(HWND window, win::MessageFilter preTranslate = {}) noexcept {
        window_ = window;
        preTranslate_ = std::move(preTranslate);
    }

    /// Called when the window has been brought out, before it is seen, or docked: lays it out for the scale
    /// of the screen that it is on by now, and has it follow the screen then. True when that changed its
    /// size.
    void OnFit(std::function<bool()> fit) { fit_ = std::move(fit); }

    /// Brings the window out, or docks it and keeps it on top by the timer unless bUnTimer is set.
    void ShowQuon(bool bShow, bool bUnTimer);

    /// True while the window is docked.
    [[nodiscard]] bool Hidden() const noexcept { return hidden_; }

    /// True while only the strip can be seen: docked, and at a valid edge.
    [[nodiscard]] bool OutOfSight() const noexcept { return outOfSight_; }

    /// True while this moves the window. Windows tells it of another screen's scale in the middle of that,
    /// when neither its place nor what can be seen of it is settled.
    [[nodiscard]] bool Moving() const noexcept { return moving_; }

    /// Remembers where the window is, unless it is docked.
    void SavePosition();

    /// Moves the window off the screen to the left.
    void MoveAside();

    /// Switches Timer1 on or off (SetTimer).
    void EnableTimer(bool enabled);

    /// The tick of Timer1: keeps the docked strip on top, but behind a program that fills the screen.
    void OnTimer();

    /// kFrontTimer's tick: without Timer1, puts the docked strip behind a program that fills the screen, and
    /// back on top after it.
    void OnFrontTimer();

    /// The window is not the active one any more: should the shell's question be what has come up, the panel
    /// makes way.
    void OnDeactivated() const;

    /// kRaiseTimer's tick: makes way for the shell's question, and raises the window again once nothing is
    /// asked any more.
    void OnRaiseTimer();

    /// WM_QUON_HAND_ON: gives the foreground to another program, if the docked window still has it and
    /// nothing that waits for the user was opened meanwhile.
    void HandOn() const noexcept;

    /// The screen, its size, its scale or the taskbar's place has changed: docks a docked window anew, and
    /// brings one that is out back to where its caption can be reached.
    void FollowScreen();

    /// The window has grown where it stands: brings one that is out to where all of it can be seen.
    void ShowWhole();

    /// The mouse moves over the window: after the delay the docked window comes out, unless the mouse has
    /// left it.
    void OnHover();

    /// A mouse button went down on the window.
    void OnPress();

    /// Ends the wait that a hover has begun without bringing the window out.
    void AbandonHover() noexcept { hovering_ = false; }

  private:
    void BringOut();
    void MoveOut();
    void Dock(bool bUnTimer);
    void PlaceAtEdge();
    void PullIn(const RECT& window);
    void WatchFront();
    bool GoBehindFullScreen();
    void Raise();
    [[nodiscard]] bool KeptBack() const noexcept;
    [[nodiscard]] bool SavedPlaceCounts() const;
    [[nodiscard]] win::Scale ScreenScale() const noexcept;
    [[nodiscard]] RECT StripOnScreen() const;
    void MoveTo(win::Twips place);
    [[nodiscard]] win::Twips WindowSize() const;
    [[nodiscard]] bool WaitOut(int waits) const;

    HWND window_ = nullptr;
    win::MessageFilter preTranslate_;
    std::function<bool()> fit_;
    bool moving_ = false;
    bool hidden_ = false;
    bool outOfSight_ = false;
    bool ticking_ = false;  // Timer1 is on
    std::optional<win::FrontWatch> watch_;
    bool behindFullScreen_ = false;
    bool raiseOwed_ = false;
    HWND behindQuestion_ = nullptr;
    bool hovering_ = false;
    float savedLeft_ = 0;
    float savedTop_ = 0;
};

}  // namespace app
