#include "sys/tooltip.h"

#include <uxtheme.h>

#include "tests/support/contrast_theme.h"
#include "tests/support/unit_test.h"
#include "win/colors.h"
#include "win/scale.h"
#include "win/text.h"
#include "win/window.h"

namespace sys {
namespace {

using ::testing::AllOf, ::testing::ElementsAre, ::testing::Field;
using testkit::CallLog, testkit::RecordedCall, testkit::RecordedCalls;

constexpr UINT kAddTool = 1028;
constexpr UINT kUpdateText = 1036;
constexpr UINT kSetTitle = 1056;

class TooltipTest : public ::testing::Test {
  protected:
    TooltipTest()
        : control_(CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE, 5, 6, 70, 80, parent_.Handle(),
                                   nullptr, nullptr, nullptr)) {}

    /// Logs the messages to tooltip windows and lets them through.
    RecordedCall LogMessages() {
        return WATCH_CALL(SendMessageA, [this](HWND, UINT message, WPARAM wParam, LPARAM lParam) {
            LogMessage(message, wParam, lParam);
        });
    }

    /// The tooltip windows of this thread.
    static std::vector<HWND> Tips() {
        std::vector<HWND> tips;
        EnumThreadWindows(GetCurrentThreadId(), &AppendTip, reinterpret_cast<LPARAM>(&tips));
        return tips;
    }

    testkit::HiddenWindow parent_;
    HWND control_;
    CallLog log_;

  private:
    static BOOL CALLBACK AppendTip(HWND window, LPARAM tips) {
        if (testkit::Window(window).Class() == "tooltips_class32")
            reinterpret_cast<std::vector<HWND>*>(tips)->push_back(window);
        return TRUE;
    }
    void LogMessage(UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == kAddTool || message == kUpdateText || message == TTM_ADDTOOLW ||
            message == TTM_UPDATETIPTEXTW) {
            const bool wide = message == TTM_ADDTOOLW || message == TTM_UPDATETIPTEXTW;
            const auto& record = *reinterpret_cast<const TTTOOLINFOA*>(lParam);
            EXPECT_EQ(wParam, 0U);
            EXPECT_EQ(record.cbSize, TTTOOLINFOA_V2_SIZE);
            EXPECT_EQ(record.uFlags, 16U);
            EXPECT_EQ(record.hwnd, control_);
            EXPECT_EQ(record.uId, 0U);
            EXPECT_EQ(record.hinst, win::ModuleInstance());
            EXPECT_THAT(record.rect, AllOf(Field(&RECT::left, 0), Field(&RECT::top, 0),
                                           Field(&RECT::right, 70), Field(&RECT::bottom, 80)));
            if (wide)
                log_.Add(message, reinterpret_cast<const TTTOOLINFOW*>(lParam)->lpszText);
            else
                log_.Add(message, record.lpszText);
        } else if (message == TTM_SETTITLEW) {
            log_.Add(message, wParam, reinterpret_cast<const wchar_t*>(lParam));
        } else if (message == kSetTitle) {
            log_.Add(message, wParam, reinterpret_cast<const char*>(lParam));
        } else {
            log_.Add(message, wParam, lParam);
        }
    }
};

TEST_F(TooltipTest, HasNoWindowUntilItIsCreated) {
    clsToolTip tip;
    tip.SetTitle("Title");
    tip.SetTipText("Text");
    tip.SetParentControl(control_);
    EXPECT_EQ(tip.Handle(), nullptr);
    EXPECT_EQ(tip.Title(), "Title");
    EXPECT_EQ(tip.TipText(), "Text");
    EXPECT_EQ(tip.ParentControl(), control_);
    EXPECT_THAT(Tips(), ElementsAre());
}

TEST_F(TooltipTest, IsCreatedStepByStep) {
    RecordedCalls calls;
    HWND made = nullptr;
    calls.push_back(FAKE_CALL(
        CreateWindowExA, [&](DWORD extended, LPCSTR name, LPCSTR text, DWORD style, int x, int y, int width,
                             int height, HWND owner, HMENU menu, HINSTANCE instance, LPVOID data) {
            EXPECT_EQ(owner, control_);
            EXPECT_EQ(instance, win::ModuleInstance());
            EXPECT_EQ(data, nullptr);
            EXPECT_TRUE(x == CW_USEDEFAULT && y == CW_USEDEFAULT && width == CW_USEDEFAULT &&
                        height == CW_USEDEFAULT);
            log_.Add("create", extended, name, text, style, menu);
            made = ORIGINAL_CALL(CreateWindowExA)(extended, name, text, style, x, y, width, height, owner,
                                                  menu, instance, data);
            return made;
        }));
    calls.push_back(WATCH_CALL(SetWindowPos,
                               [&](HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
                                   EXPECT_EQ(window, made);
                                   EXPECT_EQ(after, HWND_TOPMOST);
                                   log_.Add("place", x, y, width, height, flags);
                               }));
    calls.push_back(FAKE_CALL(SetWindowTheme, [&](HWND window, LPCWSTR name, LPCWSTR list) {
        EXPECT_EQ(window, made);
        log_.Add("theme [" + testkit::Utf8(name) + "]", "[" + testkit::Utf8(list) + "]");
        return E_FAIL;
    }));
    calls.push_back(LogMessages());
    clsToolTip tip;
    tip.SetTitle("Title");
    tip.SetTipText("first\nsecond");
    tip.SetParentControl(control_);
    EXPECT_FALSE(tip.Create());
    EXPECT_THAT(log_.Lines(),
                ElementsAre("create 0 tooltips_class32 (null) 3 null", "place 0 0 0 0 19", "theme [] []",
                            "1028 first\nsecond", "1056 0 Title", "1048 0 32767", "1043 14541277 0"));
    EXPECT_EQ(tip.Handle(), made);
}

TEST_F(TooltipTest, HasTheThemesColoursUnderAContrastTheme) {
    const bool on = true;
    const RecordedCall contrast = testkit::ContrastThemeIs(on);
    win::ForgetColors();
    const RecordedCall messages = LogMessages();
    clsToolTip tip;
    tip.SetParentControl(control_);
    tip.Create();
    const std::vector<std::string> lines = log_.Lines();
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[lines.size() - 2], "1043 " + std::to_string(GetSysColor(COLOR_INFOBK)) + " 0");
    EXPECT_EQ(lines.back(), "1044 " + std::to_string(GetSysColor(COLOR_INFOTEXT)) + " 0");
    win::ForgetColors();
}

TEST_F(TooltipTest, FollowsTheColoursOnceItIsThere) {
    bool dark = false;
    const RecordedCall contrast = testkit::ContrastThemeIs(dark);
    DWORD text = RGB(1, 2, 3);
    const RecordedCall colors = FAKE_CALL(GetSysColor, [&](int index) -> DWORD {
        return index == COLOR_INFOTEXT ? text : ORIGINAL_CALL(GetSysColor)(index);
    });
    win::ForgetColors();
    clsToolTip tip;
    tip.FollowColors();
    tip.SetParentControl(control_);
    tip.Create();
    dark = true;
    win::ForgetColors();
    tip.FollowColors();
    EXPECT_EQ(SendMessageW(tip.Handle(), TTM_GETTIPBKCOLOR, 0, 0), GetSysColor(COLOR_INFOBK));
    EXPECT_EQ(SendMessageW(tip.Handle(), TTM_GETTIPTEXTCOLOR, 0, 0), RGB(1, 2, 3));
    dark = false;
    text = RGB(4, 5, 6);
    win::ForgetColors();
    tip.FollowColors();
    EXPECT_EQ(SendMessageW(tip.Handle(), TTM_GETTIPBKCOLOR, 0, 0), RGB(0xDD, 0xE1, 0xDD));
    EXPECT_EQ(SendMessageW(tip.Handle(), TTM_GETTIPTEXTCOLOR, 0, 0), RGB(4, 5, 6));
    win::ForgetColors();
}

TEST_F(TooltipTest, HasTheMessageFontOfAScreenWithAScaleOfItsOwn) {
    const RecordedCall screen = FAKE_CALL(GetDpiForWindow, [](HWND) { return 144U; });
    clsToolTip tip;
    tip.SetParentControl(control_);
    tip.Create();
    // The control keeps a copy of what it is given.
    LOGFONTW given{};
    LOGFONTW expected{};
    GetObjectW(reinterpret_cast<HFONT>(SendMessageW(tip.Handle(), WM_GETFONT, 0, 0)), sizeof given, &given);
    GetObjectW(win::MessageFont(win::Scale(144, win::TextPercent())), sizeof expected, &expected);
    EXPECT_EQ(given.lfHeight, expected.lfHeight);
    EXPECT_STREQ(given.lfFaceName, expected.lfFaceName);
}

TEST_F(TooltipTest, SendsAnEmptyTitleWhenItIsCreated) {
    const RecordedCall messages = LogMessages();
    clsToolTip tip;
    tip.SetParentControl(control_);
    tip.Create();
    EXPECT_EQ(log_.Count("1056 0 "), 1U);
}

TEST_F(TooltipTest, LooksAsItWasToldTo) {
    clsToolTip tip;
    tip.SetParentControl(control_);
    tip.SetTipText("Text");
    tip.Create();
    EXPECT_EQ(SendMessageW(tip.Handle(), TTM_GETTIPBKCOLOR, 0, 0), RGB(0xDD, 0xE1, 0xDD));
    EXPECT_EQ(SendMessageW(tip.Handle(), TTM_GETMAXTIPWIDTH, 0, 0), 0x7FFF);
    EXPECT_EQ(SendMessageW(tip.Handle(), TTM_GETTOOLCOUNT, 0, 0), 1);
    EXPECT_TRUE(testkit::Window(tip.Handle()).IsTopmost());
    EXPECT_FALSE(testkit::Window(tip.Handle()).IsVisible());
    EXPECT_EQ(testkit::Window(tip.Handle()).Style() & (TTS_ALWAYSTIP | TTS_NOPREFIX | TTS_BALLOON),
              TTS_ALWAYSTIP | TTS_NOPREFIX);
}

TEST_F(TooltipTest, KeepsOneWindowWhenItIsCreatedAgain) {
    clsToolTip tip;
    tip.SetParentControl(control_);
    tip.Create();
    EXPECT_EQ(Tips().size(), 1U);
    tip.Create();
    EXPECT_THAT(Tips(), ElementsAre(tip.Handle()));
}

TEST_F(TooltipTest, DestroysItsWindowWithItself) {
    {
        clsToolTip tip;
        tip.SetParentControl(control_);
        tip.Create();
        EXPECT_EQ(Tips().size(), 1U);
    }
    EXPECT_THAT(Tips(), ElementsAre());
}

TEST_F(TooltipTest, WithoutAControlCreatingOnlyDestroys) {
    clsToolTip tip;
    EXPECT_FALSE(tip.Create());
    EXPECT_EQ(tip.Handle(), nullptr);
    tip.SetParentControl(control_);
    tip.Create();
    tip.SetParentControl(nullptr);
    EXPECT_FALSE(tip.Create());
    EXPECT_EQ(tip.Handle(), nullptr);
    EXPECT_THAT(Tips(), ElementsAre());
}

TEST_F(TooltipTest, DestroysNothingWhenItsControlTookTheWindowAlong) {
    clsToolTip tip;
    tip.SetParentControl(control_);
    tip.Create();
    parent_.Destroy();
    const RecordedCall destroy = LOG_CALL(log_, DestroyWindow);
    tip.SetParentControl(nullptr);
    tip.Create();
    EXPECT_THAT(log_.Lines(), ElementsAre());
}

TEST_F(TooltipTest, ChangesTheTitleOfALiveTipUnlessItIsEmpty) {
    clsToolTip tip;
    tip.SetParentControl(control_);
    tip.SetTitle("before");
    const RecordedCall messages = LogMessages();
    tip.SetTitle("earlier");
    EXPECT_THAT(log_.Lines(), ElementsAre());
    tip.Create();
    log_.Clear();
    tip.SetTitle("later");
    EXPECT_THAT(log_.Lines(), ElementsAre("1056 0 later"));
    log_.Clear();
    tip.SetTitle("");
    EXPECT_THAT(log_.Lines(), ElementsAre());
    EXPECT_EQ(tip.Title(), "");
}

TEST_F(TooltipTest, ChangesTheTextOfALiveTip) {
    clsToolTip tip;
    tip.SetParentControl(control_);
    const RecordedCall messages = LogMessages();
    tip.SetTipText("early");
    EXPECT_THAT(log_.Lines(), ElementsAre());
    tip.Create();
    log_.Clear();
    tip.SetTipText("new\nline");
    tip.SetTipText("");
    EXPECT_THAT(log_.Lines(), ElementsAre("1036 new\nline", "1036 "));
    EXPECT_EQ(tip.TipText(), "");
}

TEST_F(TooltipTest, SendsTextBeyondAsciiInWideMessages) {
    const RecordedCall messages = LogMessages();
    clsToolTip tip;
    tip.SetParentControl(control_);
    tip.SetTitle("Наслов č");
    tip.SetTipText("први\nдруги 文");
    tip.Create();
    tip.SetTitle("Други 😀");
    tip.SetTipText("é");
    tip.SetTipText("e");
    EXPECT_THAT(log_.Lines(), ElementsAre("1074 први\nдруги 文", "1057 0 Наслов č", "1048 0 32767",
                                          "1043 14541277 0", "1057 0 Други 😀", "1081 é", "1036 e"));
    tip.SetTipText("први\nдруги 文");
    std::wstring shown(100, L'\0');
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V2_SIZE;
    tool.hwnd = control_;
    tool.lpszText = shown.data();
    SendMessageW(tip.Handle(), TTM_GETTEXTW, shown.size(), reinterpret_cast<LPARAM>(&tool));
    EXPECT_STREQ(shown.c_str(), L"први\nдруги 文");
}

TEST_F(TooltipTest, ShowsAsMuchOfALongTitleAsATooltipTakes) {
    const RecordedCall messages = LogMessages();
    clsToolTip tip;
    tip.SetParentControl(control_);
    tip.Create();
    log_.Clear();
    const auto repeated = [](const std::string& text, int count) {
        std::string all;
        while (count-- > 0)
            all += text;
        return all;
    };
    tip.SetTitle(repeated("x", 99));
    tip.SetTitle(repeated("x", 100));
    tip.SetTitle(repeated("ж", 300));
    tip.SetTitle(repeated("😀", 50));
    EXPECT_THAT(log_.Lines(), ElementsAre("1056 0 " + repeated("x", 99), "1056 0 " + repeated("x", 99),
                                          "1057 0 " + repeated("ж", 99), "1057 0 " + repeated("😀", 49)));
    EXPECT_EQ(tip.Title(), repeated("😀", 50));
}

class TooltipDesktopTest : public TooltipTest {
  protected:
    /// The size of the tip while it shows a text.
    SIZE SizeOf(const clsToolTip& tip, std::string text) const {
        TTTOOLINFOA tool{};
        tool.cbSize = TTTOOLINFOA_V2_SIZE;
        // A tool that is shown without the mouse.
        tool.uFlags = TTF_TRACK | TTF_ABSOLUTE;
        tool.hwnd = control_;
        tool.uId = 7;
        tool.lpszText = text.data();
        const auto record = reinterpret_cast<LPARAM>(&tool);
        SendMessageA(tip.Handle(), TTM_ADDTOOLA, 0, record);
        SendMessageA(tip.Handle(), TTM_TRACKACTIVATE, TRUE, record);
        EXPECT_TRUE(testkit::Window(tip.Handle()).IsVisible());
        const RECT place = testkit::Window(tip.Handle()).Rect();
        SendMessageA(tip.Handle(), TTM_TRACKACTIVATE, FALSE, record);
        SendMessageA(tip.Handle(), TTM_DELTOOLA, 0, record);
        return {place.right - place.left, place.bottom - place.top};
    }
};

TEST_F(TooltipDesktopTest, BreaksItsTextAtEachLineFeedAndNowhereElse) {
    clsToolTip tip;
    tip.SetParentControl(control_);
    tip.Create();
    const SIZE one = SizeOf(tip, "први 文");
    const SIZE two = SizeOf(tip, "први 文\nx");
    const SIZE three = SizeOf(tip, "први 文\nx\ny");
    EXPECT_GE(two.cy - one.cy, 8);
    EXPECT_EQ(three.cy - two.cy, two.cy - one.cy);
    EXPECT_EQ(three.cx, one.cx);
    const SIZE wide = SizeOf(tip, std::string(200, 'x') + " " + std::string(200, 'y'));
    EXPECT_EQ(wide.cy, one.cy);
    EXPECT_GT(wide.cx, 10 * one.cx);
}

/// Where a tip comes up that is shown below a control while windows may take up only a part of the screen.
class TooltipPlaceDesktopTest : public TooltipTest {
  protected:
    // A tooltip may stand by the width of its edge beside the place that it is given.
    static constexpr int kEdge = 3;

    RECT ShownIn(const RECT& area) {
        ShowWindow(parent_.Handle(), SW_SHOWNA);
        const RecordedCall screen = FAKE_CALL(GetMonitorInfoW, [&](HMONITOR, LPMONITORINFO info) -> WINBOOL {
            info->rcMonitor = info->rcWork = area;
            return TRUE;
        });
        clsToolTip tip;
        tip.SetParentControl(control_);
        tip.SetTipText("Text that is wider than the control that it explains");
        tip.ShowBelow();
        EXPECT_TRUE(testkit::Window(tip.Handle()).IsVisible());
        // What it covers can still be clicked.
        EXPECT_EQ(SendMessageW(tip.Handle(), WM_NCHITTEST, 0, 0), HTTRANSPARENT);
        return testkit::Window(tip.Handle()).Rect();
    }
    RECT Control() const { return testkit::Window(control_).Rect(); }
};

TEST_F(TooltipPlaceDesktopTest, IsBelowTheControlWhereThereIsRoom) {
    const RECT tip = ShownIn({0, 0, 1024, 768});
    EXPECT_NEAR(tip.left, Control().left, kEdge);
    EXPECT_NEAR(tip.top, Control().bottom + 2, kEdge);
}

TEST_F(TooltipPlaceDesktopTest, IsAboveItWhereTheScreenEnds) {
    const RECT tip = ShownIn({0, 0, 1024, Control().bottom + 5});
    EXPECT_NEAR(tip.left, Control().left, kEdge);
    EXPECT_NEAR(tip.bottom, Control().top - 2, kEdge);
}

TEST_F(TooltipPlaceDesktopTest, IsFartherLeftWhereTheScreenEnds) {
    SetWindowPos(parent_.Handle(), nullptr, 400, 10, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    const LONG right = Control().left + 100;
    const RECT tip = ShownIn({0, 0, right, 768});
    EXPECT_NEAR(tip.right, right, kEdge);
    EXPECT_LT(tip.left, Control().left - kEdge);
    EXPECT_NEAR(tip.top, Control().bottom + 2, kEdge);
    // A tip wider than the screen begins at the screen's left.
    EXPECT_NEAR(ShownIn({7, 0, 50, 768}).left, 7, kEdge);
}

TEST_F(TooltipTest, IsKeptDownAndLetUpAgain) {
    const RecordedCall messages = LogMessages();
    clsToolTip tip;
    tip.Activate(false);
    EXPECT_THAT(log_.Lines(), ElementsAre());
    tip.SetParentControl(control_);
    tip.Create();
    log_.Clear();
    tip.Activate(false);
    tip.Activate(true);
    EXPECT_THAT(log_.Lines(), ElementsAre("1025 0 0", "1025 1 0"));
}

TEST_F(TooltipTest, SetsNoDelays) {
    const RecordedCall messages = LogMessages();
    clsToolTip tip;
    tip.SetParentControl(control_);
    tip.Create();
    tip.SetTipText("text");
    tip.SetTitle("title");
    EXPECT_EQ(log_.Count(std::to_string(TTM_SETDELAYTIME)), 0U);
}

}  // namespace
}  // namespace sys
