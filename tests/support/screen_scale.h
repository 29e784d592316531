// Another scale of the screen.
//
//     ONLY_UNDER_WINE(kOneScale);
//     const ScreenScale screen(144);
//     const RunningProgram program(...);        // finds 144 dots per inch if it supports scales
//
// Wine reads the scale from the registry when a program starts; this program keeps the one it has. Windows
// takes it from the screen, and a test cannot change that.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include "tests/support/wine.h"

namespace testkit {

inline constexpr char kOneScale[] = "A screen of Windows keeps its scale, whatever a test writes down.";

class ScreenScale {
  public:
    explicit ScreenScale(DWORD dpi) { Write(dpi); }
    ~ScreenScale() { Write(USER_DEFAULT_SCREEN_DPI); }
    ScreenScale(const ScreenScale&) = delete;
    ScreenScale& operator=(const ScreenScale&) = delete;

  private:
    static void Write(DWORD dpi) {
        EXPECT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", L"LogPixels", REG_DWORD, &dpi,
                                  sizeof dpi),
                  ERROR_SUCCESS);
    }
};

}  // namespace testkit
