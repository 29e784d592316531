#include "win/scroll_bar.h"

#include <algorithm>

#include "win/accessible.h"

namespace win {
namespace {

SCROLLINFO Record(UINT mask) noexcept {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = mask;
    return info;
}

}  // namespace

void ScrollBar::Attach(HWND bar, const Steps& steps) noexcept {
    bar_ = bar;
    steps_ = steps;
    value_ = 0;
    NameByText(bar_);
    SetMaximum(0);
}

void ScrollBar::SetMaximum(int maximum) noexcept {
    maximum_ = std::max(0, maximum);
    SCROLLINFO info = Record(SIF_RANGE | SIF_PAGE);
    // The greatest value that Windows lets the thumb reach is less than the range's end by the page.
    info.nPage = maximum_ > 0 ? static_cast<UINT>(steps_.page) : 0;
    info.nMax = maximum_ + std::max(0, static_cast<int>(info.nPage) - 1);
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
        case SB_LINEUP: SetValue(value_ - steps_.small); return;
        case SB_LINEDOWN: SetValue(value_ + steps_.small); return;
        case SB_PAGEUP: SetValue(value_ - steps_.large); return;
        case SB_PAGEDOWN: SetValue(value_ + steps_.large); return;
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
