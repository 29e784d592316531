#pragma once

#include <windows.h>

#include "win/handles.h"

namespace win {

/// While it lives, a timer of a window comes once after each time that another program's window has come to
/// the front, or that the one in front has changed its place or size (SetWinEventHook). It costs nothing as
/// long as no such thing happens. There may be one at a time.
class FrontWatch {
  public:
    /// The timer comes `delay` milliseconds after the last change, the watch's begin being the first one. It
    /// has to be ended by who handles it, and may come once more when the watch is over.
    FrontWatch(HWND window, UINT_PTR timer, UINT delay) noexcept;
    FrontWatch(const FrontWatch&) = delete;
    FrontWatch& operator=(const FrontWatch&) = delete;
    FrontWatch(FrontWatch&&) = delete;
    FrontWatch& operator=(FrontWatch&&) = delete;
    ~FrontWatch();

  private:
    static void CALLBACK OnEvent(HWINEVENTHOOK hook, DWORD event, HWND window, LONG object, LONG child,
                                 DWORD thread, DWORD time) noexcept;
    void Follow(HWND front) noexcept;
    void Expect() const noexcept { SetTimer(window_, timer_, delay_, nullptr); }

    static inline FrontWatch* current_ = nullptr;

    HWND window_;
    UINT_PTR timer_;
    UINT delay_;
    EventHook front_;
    /// Of the thread that has the window in front: those of all windows come with every move of the mouse.
    EventHook place_;
};

}  // namespace win
