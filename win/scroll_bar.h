#pragma once

#include <windows.h>

namespace win {

/// A scroll bar control that starts at 0. Its thumb takes as much of the shaft as is seen of the whole. Where
/// there is nothing to scroll it takes no input.
class ScrollBar {
  public:
    /// What a bar scrolls by, and how much is seen at once.
    struct Steps {
        int small = 0;  ///< of its arrows
        int large = 0;  ///< of its shaft
        int page = 0;   ///< seen at once; 0 leaves the thumb as Windows makes it
    };

    /// Takes over a control (SetScrollInfo), whose text is what screen readers call it.
    void Attach(HWND bar, const Steps& steps) noexcept;

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
    Steps steps_;
    int maximum_ = 0;
    int value_ = 0;
};

}  // namespace win
