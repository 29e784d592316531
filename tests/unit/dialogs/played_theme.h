// A contrast theme that comes and goes while windows are open.
#pragma once

#include <windows.h>

#include "tests/support/contrast_theme.h"
#include "tests/support/recorded_call.h"
#include "win/colors.h"

namespace dialogs {

class PlayedTheme {
  public:
    static constexpr COLORREF kGround = RGB(0, 0, 0);
    static constexpr COLORREF kText = RGB(255, 255, 254);
    static constexpr COLORREF kHighlight = RGB(26, 235, 255);

    PlayedTheme() {
        fakes_.push_back(FAKE_CALL(GetSysColor, [this](int index) -> DWORD {
            return dark_ ? DarkColor(index) : ORIGINAL_CALL(GetSysColor)(index);
        }));
        fakes_.push_back(testkit::ContrastThemeIs(dark_));
        win::ForgetColors();
    }
    ~PlayedTheme() {
        fakes_.clear();
        win::ForgetColors();
    }
    PlayedTheme(const PlayedTheme&) = delete;
    PlayedTheme& operator=(const PlayedTheme&) = delete;

    /// Nobody is told; the product finds out by itself, or by a message that the test sends.
    void Switch(bool dark) { dark_ = dark; }

  private:
    static DWORD DarkColor(int index) {
        switch (index) {
            case COLOR_WINDOWTEXT:
            case COLOR_BTNTEXT:
            case COLOR_INFOTEXT: return kText;
            case COLOR_HIGHLIGHT: return kHighlight;
            default: return kGround;
        }
    }

    bool dark_ = false;
    testkit::RecordedCalls fakes_;
};

}  // namespace dialogs
