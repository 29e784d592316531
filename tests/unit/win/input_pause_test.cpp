#include "win/input_pause.h"

#include "tests/support/unit_test.h"

namespace win {
namespace {

/// Small windows at the edge of the screen, one of them topmost, one taking no input, one hidden.
class InputPauseDesktopTest : public ::testing::Test {
  protected:
    InputPauseDesktopTest() { SetActiveWindow(topmost_); }
    ~InputPauseDesktopTest() override {
        for (const HWND window : {plain_, topmost_, above_, disabled_, hidden_})
            if (IsWindow(window)) DestroyWindow(window);
    }

    static HWND Make(DWORD style, DWORD extendedStyle) {
        return CreateWindowExW(extendedStyle | WS_EX_TOOLWINDOW, L"STATIC", L"", WS_POPUP | style, 0, 0, 20,
                               20, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    }
    static bool IsTopmost(HWND window) { return testkit::Window(window).IsTopmost(); }

    HWND plain_ = Make(WS_VISIBLE, 0);
    HWND topmost_ = Make(WS_VISIBLE, WS_EX_TOPMOST);
    HWND above_ = Make(WS_VISIBLE, WS_EX_TOPMOST);
    HWND disabled_ = Make(WS_VISIBLE | WS_DISABLED, 0);
    HWND hidden_ = Make(0, WS_EX_TOPMOST);
};

TEST_F(InputPauseDesktopTest, NoVisibleWindowTakesInputOrStaysAboveOthers) {
    const InputPause pause;
    for (const HWND window : {plain_, topmost_, above_, disabled_}) {
        EXPECT_FALSE(IsWindowEnabled(window));
        EXPECT_FALSE(IsTopmost(window));
    }
    EXPECT_TRUE(IsWindowEnabled(hidden_));
    EXPECT_TRUE(IsTopmost(hidden_));
}

TEST_F(InputPauseDesktopTest, AfterwardsEachWindowIsAsBefore) {
    {
        const InputPause pause;
    }
    EXPECT_TRUE(IsWindowEnabled(plain_));
    EXPECT_FALSE(IsTopmost(plain_));
    EXPECT_TRUE(IsWindowEnabled(topmost_));
    EXPECT_TRUE(IsTopmost(topmost_));
    EXPECT_FALSE(IsWindowEnabled(disabled_));
    EXPECT_EQ(GetActiveWindow(), topmost_);
}

TEST_F(InputPauseDesktopTest, TheFrontmostOfTheTopmostWindowsStaysInFront) {
    SetWindowPos(above_, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    SetActiveWindow(plain_);
    {
        const InputPause pause;
    }
    bool above = false;
    for (HWND next = GetWindow(above_, GW_HWNDNEXT); next != nullptr; next = GetWindow(next, GW_HWNDNEXT))
        above = above || next == topmost_;
    EXPECT_TRUE(above);
}

TEST_F(InputPauseDesktopTest, AWindowThatGoesMeanwhileDoesNoHarm) {
    {
        const InputPause pause;
        DestroyWindow(topmost_);
    }
    EXPECT_TRUE(IsWindowEnabled(plain_));
}

}  // namespace
}  // namespace win
