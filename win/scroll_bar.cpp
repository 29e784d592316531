#include "win/scroll_bar.h"

#include <algorithm>

namespace win {
namespace {

SCROLLINFO Record(UINT mask) noexcept {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = mask;
    return info;
}

}  // namespace

void ScrollBar::Attach(HWND bar, int smallStep, int largeStep) noexcept {
    bar_ = bar;
    smallStep_ = smallStep;
    largeStep_ = largeStep;
    value_ = 0;
    SetMaximum(0);
}

void ScrollBar::SetMaximum(int maximum) noexcept {
    maximum_ = std::max(0, maximum);
    SCROLLINFO info = Record(SIF_RANGE | SIF_PAGE);
    info.nMax = maximum_;
    SetScrollInfo(bar_, SB_CTL, &info, TRUE);
    EnableWindow(bar_, maximum_ > 0 ? TRUE : FALSE);
    SetValue(value_);
}

void ScrollBar::SetValue(int value) noexcept {
    value_ = std::clamp(value, 0, maximum_);
    SCROLLINFO info = Record(SIF_POS);
    info.nPos = value_;
    SetScrollInfo(bar_, SB_CTL, &info, TRUE);
}

void ScrollBar::Act(int code) noexcept {
    // Named for vertical bars; those of a horizontal one are the same numbers.
    switch (code) {
        case SB_LINEUP: SetValue(value_ - smallStep_); return;
        case SB_LINEDOWN: SetValue(value_ + smallStep_); return;
        case SB_PAGEUP: SetValue(value_ - largeStep_); return;
        case SB_PAGEDOWN: SetValue(value_ + largeStep_); return;
        case SB_TOP: SetValue(0); return;
        case SB_BOTTOM: SetValue(maximum_); return;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION: {
            // The message itself carries only 16 bits of it.
            SCROLLINFO info = Record(SIF_TRACKPOS);
            if (GetScrollInfo(bar_, SB_CTL, &info) != 0) SetValue(info.nTrackPos);
            return;
        }
        default: return;
    }
}

}  // namespace win
