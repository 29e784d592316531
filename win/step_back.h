#pragma once

#include <windows.h>

#include <vector>

#include "win/handles.h"

namespace win {

/// While it lives, the system is at work for this program, and what it asks comes up before this thread's
/// windows: a question of the system's may have no window of ours for its owner, and would lie behind those
/// that stay above all others. They stand among the other windows meanwhile and return in the end.
class StepBack {
  public:
    /// When the windows step back.
    enum class When {
        kAtOnce,
        kAtQuestion,  ///< once a window becomes active on this thread that was not there before (WH_CBT)
    };

    explicit StepBack(When when);
    StepBack(const StepBack&) = delete;
    StepBack& operator=(const StepBack&) = delete;
    StepBack(StepBack&&) = delete;
    StepBack& operator=(StepBack&&) = delete;
    ~StepBack();

    /// True while there is one.
    [[nodiscard]] static bool Any() noexcept { return current_ != nullptr; }

  private:
    static LRESULT CALLBACK OnHook(int code, WPARAM wParam, LPARAM lParam) noexcept;
    void OnActivate(HWND window) noexcept;
    void Step();

    static inline StepBack* current_ = nullptr;

    StepBack* outer_;
    /// All of the thread's when this one came, frontmost first.
    std::vector<HWND> windows_;
    /// Those that have stepped back, frontmost first.
    std::vector<HWND> lowered_;
    MessageHook hook_;
};

}  // namespace win
