// How far a scroll bar control goes.
//
//     EXPECT_EQ(ScrollEnd(bar), content - frame);
#pragma once

#include <windows.h>

#include <algorithm>

namespace testkit {

/// The greatest value that a user can scroll to: the range's end, less what the thumb takes of it.
inline int ScrollEnd(HWND bar) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE;
    if (GetScrollInfo(bar, SB_CTL, &info) == FALSE) return -1;
    return info.nMax - std::max(0, static_cast<int>(info.nPage) - 1);
}

}  // namespace testkit
