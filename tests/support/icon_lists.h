// The system's lists of icons with what a test puts into them.
//
//     IconLists lists;
//     lists.Put(SHIL_EXTRALARGE, 48, MakeIcon(48, [](int, int) { return RGB(255, 0, 0); }));
//     EXPECT_TRUE(win::ListedIcon(0, 24));
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <map>

#include "tests/support/recorded_call.h"

namespace testkit {

/// An icon of these pixels, which has to be destroyed; CLR_NONE for one that is not there.
HICON MakeIcon(int size, const std::function<COLORREF(int x, int y)>& color);

/// The color of one pixel of an icon that is drawn as it is on black.
COLORREF PixelOf(HICON icon, int x, int y);

/// The width of an icon; 0 for none.
int WidthOf(HICON icon);

class IconLists {
  public:
    IconLists();
    ~IconLists();
    IconLists(const IconLists&) = delete;
    IconLists& operator=(const IconLists&) = delete;

    /// Adds a list (SHIL_) of icons of this size, or adds to it; takes the icon over.
    void Put(int kind, int size, HICON icon);

  private:
    std::map<int, HIMAGELIST> lists_;
    RecordedCall get_;
};

}  // namespace testkit
