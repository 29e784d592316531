#pragma once

#include <windows.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "win/geometry.h"
#include "win/window.h"

namespace app {

/// The screen edges by their stored numbers; any other number is no edge.
enum Edge : std::int32_t { kLeftEdge = 1, kTopEdge = 2, kRightEdge = 3, kBottomEdge = 4 };

/// Where the docked window stands, in twips: all but a strip of 4 pixels is off the screen.
/// No value for a number that is no edge. Sizes in twips.
std::optional<win::Twips> DockedPosition(std::int32_t edge, win::Twips window, win::Twips screen,
                                         win::TwipsPerPixel twips);

/// Where the window stands in the middle of the screen, in twips.
win::Twips CentredPosition(win::Twips window, win::Twips screen);

/// How many waits of 100 ms a hover delay takes: the quotient rounded to the nearest, ties to even.
int HoverWaits(std::int32_t delay);

/// The text of the window under the mouse pointer (WindowFromPoint), at most 99 characters.
std::string WindowTextUnderMouse();

/// Docks the main window at its screen edge and brings it out again.
class EdgeDock {
  public:
    /// Takes the main window, and what gets its messages first while a hover is waited out; nothing is moved
    /// yet.
    void Attach(HWND window, win::MessageFilter preTranslate = {}) noexcept {
        window_ = window;
        preTranslate_ = std::move(preTranslate);
    }

    /// Brings the window out, or docks it and keeps it on top by the timer unless bUnTimer is set.
    void ShowQuon(bool bShow, bool bUnTimer);

    /// True while the window is docked.
    [[nodiscard]] bool Hidden() const noexcept { return hidden_; }

    /// Remembers where the window is, unless it is docked.
    void SavePosition();

    /// Moves the window off the screen to the left.
    void MoveAside();

    /// Switches the 500 ms timer on or off (SetTimer).
    void EnableTimer(bool enabled);

    /// The timer's tick: keeps the docked strip on top.
    void OnTimer();

    /// The mouse moves over the window: after the delay the docked window comes out, unless it was left.
    void OnHover();

    /// A mouse button went down on the window.
    void OnPress();

  private:
    void MoveTo(win::Twips place) const;
    [[nodiscard]] win::Twips WindowSize() const;
    [[nodiscard]] bool WaitOut(int waits) const;

    HWND window_ = nullptr;
    win::MessageFilter preTranslate_;
    bool hidden_ = false;
    bool hovering_ = false;
    float savedLeft_ = 0;
    float savedTop_ = 0;
};

}  // namespace app
