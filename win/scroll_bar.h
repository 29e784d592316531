#pragma once

#include <windows.h>

namespace win {

/// A scroll bar control that starts at 0. Where there is nothing to scroll it takes no input.
class ScrollBar {
  public:
    /// Takes over a control (SetScrollInfo); the steps are those of its arrows and of its shaft.
    void Attach(HWND bar, int smallStep, int largeStep) noexcept;

    /// Sets the greatest value; the present one is kept inside.
    void SetMaximum(int maximum) noexcept;

    /// The greatest value.
    [[nodiscard]] int Maximum() const noexcept { return maximum_; }

    /// Sets the value, or the end nearest to it.
    void SetValue(int value) noexcept;

    /// The value, 0 to Maximum().
    [[nodiscard]] int Value() const noexcept { return value_; }

    /// Moves as a code of WM_VSCROLL or WM_HSCROLL says (SB_LINEDOWN and its like).
    void Act(int code) noexcept;

  private:
    HWND bar_ = nullptr;
    int smallStep_ = 0;
    int largeStep_ = 0;
    int maximum_ = 0;
    int value_ = 0;
};

}  // namespace win
