#pragma once

#include <windows.h>

#include <functional>

namespace win {

/// Tries something again after a while, for as long as that asks for it: first soon, then at twice the time
/// between each two tries, up to some seconds. Its timer belongs to a window (SetTimer).
class RetryTimer {
  public:
    /// `id` is the timer's among the window's; the times are milliseconds.
    RetryTimer(UINT_PTR id, UINT first) noexcept : id_(id), first_(first) {}

    /// What is tried.
    std::function<void()> onTry;

    /// Has it tried again soon, or, when called by what is tried, after a longer while than the last time.
    void Again(HWND window);

    /// To be called on each WM_TIMER of the window: tries, when it is this timer. False for another one.
    bool OnTimer(HWND window, UINT_PTR timer);

  private:
    UINT_PTR id_;
    UINT first_;
    UINT pause_ = 0;
    bool trying_ = false;
};

}  // namespace win
