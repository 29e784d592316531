// No caption is cut, whatever the screen's scale and the size of the text.
#include "tests/support/caption_room.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "res/resource.h"
#include "tests/support/recorded_call.h"
#include "tests/unit/app/every_window.h"
#include "win/handles.h"
#include "win/scale.h"
#include "win/text.h"

namespace app {
namespace {

using testkit::Window;

/// A text of another size, and a screen of another scale, as long as it lives. The dialogs' templates know of
/// the text's size only: Windows scales them itself by the screen that the test has.
class ScopedLook {
  public:
    ScopedLook(int dpi, int textHeight) {
        calls_.push_back(FAKE_CALL(GetDpiForWindow, [dpi](HWND) { return static_cast<UINT>(dpi); }));
        calls_.push_back(FAKE_CALL(GetDpiForSystem, [dpi] { return static_cast<UINT>(dpi); }));
        calls_.push_back(FAKE_CALL(
            AdjustWindowRectExForDpi,
            [](LPRECT rect, DWORD style, WINBOOL menu, DWORD extended, UINT) -> WINBOOL {
                return ORIGINAL_CALL(AdjustWindowRectExForDpi)(rect, style, menu, extended, win::kPlainDpi);
            }));
        calls_.push_back(
            FAKE_CALL(SystemParametersInfoForDpi,
                      [textHeight](UINT what, UINT size, PVOID value, UINT flags, UINT screen) -> WINBOOL {
                          const WINBOOL done =
                              ORIGINAL_CALL(SystemParametersInfoForDpi)(what, size, value, flags, screen);
                          if (what == SPI_GETNONCLIENTMETRICS)
                              static_cast<NONCLIENTMETRICSW*>(value)->lfMessageFont.lfHeight =
                                  -MulDiv(textHeight, static_cast<int>(screen), win::kPlainDpi);
                          return done;
                      }));
        win::ForgetTextSize();
    }
    ~ScopedLook() { win::ForgetTextSize(); }
    ScopedLook(const ScopedLook&) = delete;
    ScopedLook& operator=(const ScopedLook&) = delete;

  private:
    testkit::RecordedCalls calls_;
};

void ExpectRoom(const std::string& what, Window window) {
    for (const Window control : window.Descendants()) {
        const LONG missing = testkit::MissingRoom(control.Handle());
        const bool seen = (control.Style() & WS_VISIBLE) != 0;
        EXPECT_TRUE(!seen || missing == 0) << what << ": " << control.Describe() << " lacks " << missing;
    }
}

/// The texts that the panel draws itself, in the places that they have.
void ExpectRoomOnPanel(const std::string& what, Window panel) {
    const win::Scale scale = win::Scale::Of(panel.Handle());
    const win::WindowDc dc(panel.Handle());
    const win::Selection font(dc.Get(), win::MessageFont(scale));
    const auto lines = [&](const char* text, int width) {
        RECT place{0, 0, width, 0};
        win::DrawPlainText(dc.Get(), text, place, DT_CALCRECT | DT_WORDBREAK);
        return place;
    };
    EXPECT_LE(lines("Quon", 1000).bottom, scale(28)) << what;
    EXPECT_LE(lines("Empty", scale(96)).bottom, scale(30)) << what;
    EXPECT_LE(lines("Two lines of text", scale(96)).bottom, scale(30)) << what << ": two lines of a name";
    EXPECT_LE(lines("Main", 1000).bottom, scale(17)) << what << ": a tab's label";
}

void ExpectRoomEverywhere(int dpi, int textHeight) {
    const std::string look = std::to_string(dpi) + " dpi, text of " + std::to_string(textHeight) + ": ";
    const ScopedLook scoped(dpi, textHeight);
    ForEveryWindow([&](const std::string& name, Window window) {
        if (name == "the panel") ExpectRoomOnPanel(look + name, window);
        // The other windows come from templates, which Windows scales.
        const bool fromTemplate = window.FindChild(frmMsg_l1).Handle() == nullptr && name != "the panel";
        if (fromTemplate && dpi != win::kPlainDpi) return;
        ExpectRoom(look + name, window);
    });
}

TEST(CaptionRoomTest, EveryWindowHasRoomForItsCaptionsAtEverySizeOfTheText) {
    // Of 96 dots per inch: 12 is the usual one, 27 the largest that Windows offers.
    for (const int height : {12, 15, 18, 27})
        ExpectRoomEverywhere(win::kPlainDpi, height);
}

TEST(CaptionRoomTest, WhatIsLaidOutInPixelsHasRoomAtEveryScaleToo) {
    ExpectRoomEverywhere(120, 27);
    ExpectRoomEverywhere(144, 12);
    ExpectRoomEverywhere(192, 18);
    ExpectRoomEverywhere(192, 27);
}

TEST(CaptionRoomTest, IsMissedWhereACaptionIsTooLong) {
    const HWND parent =
        CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 200, 200, nullptr, nullptr, nullptr, nullptr);
    const auto missing = [&](const wchar_t* kind, DWORD style, int width, int height) {
        return testkit::MissingRoom(CreateWindowExW(0, kind, L"A caption of some length", WS_CHILD | style, 0,
                                                    0, width, height, parent, nullptr, nullptr, nullptr));
    };
    EXPECT_EQ(missing(L"Button", BS_PUSHBUTTON, 300, 30), 0);
    EXPECT_GT(missing(L"Button", BS_PUSHBUTTON, 80, 30), 0);
    EXPECT_GT(missing(L"Button", BS_PUSHBUTTON, 300, 9), 0);
    EXPECT_GT(missing(L"Button", BS_AUTOCHECKBOX, 80, 30), 0);
    EXPECT_GT(missing(L"Static", SS_LEFT, 80, 10), 0);
    EXPECT_EQ(missing(L"Static", SS_LEFT, 80, 100), 0) << "a label wraps";
    DestroyWindow(parent);
}

}  // namespace
}  // namespace app
