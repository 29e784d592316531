#include "app/tray_icon.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shellscalingapi.h>

#include <cstddef>
#include <cstring>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

#include "config/settings.h"
#include "res/resource.h"
#include "tests/support/icon_lists.h"
#include "tests/support/recorded_call.h"
#include "tests/support/text.h"
#include "tests/unit/app/panel_harness.h"
#include "tests/unit/app/shell_question.h"
#include "win/shell_call.h"

namespace app {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const HWND kWindow = reinterpret_cast<HWND>(INT_PTR{0x4711});
const HICON kIcon = reinterpret_cast<HICON>(INT_PTR{0x815});
const HICON kOtherIcon = reinterpret_cast<HICON>(INT_PTR{0x816});

struct Notified {
    DWORD what;
    NOTIFYICONDATAA record;
};

class TrayIconTest : public ::testing::Test {
  protected:
    TrayIconTest()
        : notify_(FAKE_CALL(Shell_NotifyIconA, [this](DWORD what, PNOTIFYICONDATAA record) {
              Notified call{what, {}};
              std::memcpy(&call.record, record, record->cbSize);
              calls_.push_back(call);
              return what == NIM_MODIFY ? there_ : taken_;
          })) {}

    BOOL taken_ = TRUE;
    BOOL there_ = FALSE;
    std::vector<Notified> calls_;
    testkit::RecordedCall notify_;
};

TEST_F(TrayIconTest, AddsTheIconWithTheRecordOfTheFirstVersion) {
    TrayIcon tray;
    tray.AddTrayIcon(kWindow, kIcon);
    ASSERT_EQ(calls_.size(), 1u);
    EXPECT_EQ(calls_[0].what, DWORD{NIM_ADD});
    const NOTIFYICONDATAA& record = calls_[0].record;
    // The text field of 64 bytes ends the first version's record: 88 bytes with handles of 32 bits.
    EXPECT_EQ(record.cbSize, offsetof(NOTIFYICONDATAA, szTip) + 64);
    EXPECT_EQ(record.hWnd, kWindow);
    EXPECT_EQ(record.uID, 1u);
    EXPECT_EQ(record.uFlags, 7u);
    EXPECT_EQ(record.uCallbackMessage, 512u);
    EXPECT_EQ(record.hIcon, kIcon);
    EXPECT_EQ(std::string(record.szTip, 7), std::string(" Quon \0", 7));
}

TEST_F(TrayIconTest, DeletesTheIconOnceWithTheSameRecord) {
    TrayIcon tray;
    tray.AddTrayIcon(kWindow, kIcon);
    tray.RemoveTrayIcon();
    tray.RemoveTrayIcon();
    ASSERT_EQ(calls_.size(), 2u);
    EXPECT_EQ(calls_[1].what, DWORD{NIM_DELETE});
    EXPECT_EQ(std::memcmp(&calls_[0].record, &calls_[1].record, sizeof(NOTIFYICONDATAA)), 0);
}

TEST_F(TrayIconTest, TellsWhetherTheIconIsThereAndTriesAgainUntilItIs) {
    TrayIcon tray;
    taken_ = FALSE;
    EXPECT_FALSE(tray.AddTrayIcon(kWindow, kIcon));
    ASSERT_EQ(calls_.size(), 1u) << "the first time nothing but the icon is asked for";
    EXPECT_FALSE(tray.AddAgain());
    EXPECT_EQ(std::memcmp(&calls_[0].record, &calls_[1].record, sizeof(NOTIFYICONDATAA)), 0);
    // The taskbar had it already, and answered too late.
    there_ = TRUE;
    EXPECT_TRUE(tray.AddAgain());
    taken_ = TRUE;
    there_ = FALSE;
    EXPECT_TRUE(tray.AddAgain());
    EXPECT_TRUE(TrayIcon().AddTrayIcon(kWindow, kIcon));
}

TEST_F(TrayIconTest, ExchangesNothingButThePicture) {
    TrayIcon tray;
    tray.AddTrayIcon(kWindow, kIcon);
    there_ = TRUE;
    EXPECT_TRUE(tray.ChangeIcon(kOtherIcon));
    ASSERT_EQ(calls_.size(), 2u);
    EXPECT_EQ(calls_[1].what, DWORD{NIM_MODIFY});
    const NOTIFYICONDATAA& record = calls_[1].record;
    EXPECT_EQ(record.cbSize, calls_[0].record.cbSize);
    EXPECT_EQ(record.hWnd, kWindow);
    EXPECT_EQ(record.uID, 1u);
    EXPECT_EQ(record.uFlags, UINT{NIF_ICON});
    EXPECT_EQ(record.hIcon, kOtherIcon);
    there_ = FALSE;
    EXPECT_FALSE(tray.ChangeIcon(kIcon));
    tray.RemoveTrayIcon();
    EXPECT_EQ(calls_.back().record.uFlags, 7u) << "the record itself stays whole";
}

TEST_F(TrayIconTest, ExchangesNoPictureOfAnIconThatIsNotThere) {
    TrayIcon tray;
    EXPECT_TRUE(tray.ChangeIcon(kOtherIcon));
    taken_ = FALSE;
    tray.AddTrayIcon(kWindow, kIcon);
    EXPECT_TRUE(tray.ChangeIcon(kOtherIcon));
    ASSERT_EQ(calls_.size(), 1u) << "the taskbar does not know it yet";
    taken_ = TRUE;
    EXPECT_TRUE(tray.AddAgain());
    EXPECT_EQ(calls_.back().record.hIcon, kOtherIcon) << "it comes with the new one";
    there_ = TRUE;
    EXPECT_TRUE(tray.ChangeIcon(kIcon));
    EXPECT_EQ(calls_.back().what, DWORD{NIM_MODIFY});
    tray.RemoveTrayIcon();
    const size_t before = calls_.size();
    EXPECT_TRUE(tray.ChangeIcon(kOtherIcon));
    EXPECT_EQ(calls_.size(), before);
}

TEST_F(TrayIconTest, KnowsWhereTheIconIsOrElseTakesThePointersPlace) {
    TrayIcon tray;
    tray.AddTrayIcon(kWindow, kIcon);
    HRESULT result = S_OK;
    const auto rect = FAKE_CALL(Shell_NotifyIconGetRect, [&](const NOTIFYICONIDENTIFIER* icon, RECT* place) {
        EXPECT_EQ(icon->cbSize, sizeof *icon);
        EXPECT_EQ(icon->hWnd, kWindow);
        EXPECT_EQ(icon->uID, 1u);
        *place = {1000, 740, 1024, 768};
        return result;
    });
    const auto cursor = FAKE_CALL(GetCursorPos, [](LPPOINT point) {
        *point = {31, 47};
        return TRUE;
    });
    EXPECT_EQ(tray.Place().x, 1012);
    EXPECT_EQ(tray.Place().y, 754);
    result = E_FAIL;
    EXPECT_EQ(tray.Place().x, 31);
    EXPECT_EQ(tray.Place().y, 47);
}

TEST_F(TrayIconTest, TakesTheIconAwayWithItself) {
    {
        TrayIcon().AddTrayIcon(kWindow, kIcon);
    }
    ASSERT_EQ(calls_.size(), 2u);
    EXPECT_EQ(calls_[1].what, DWORD{NIM_DELETE});
}

TEST_F(TrayIconTest, DeletesNothingThatWasNotAdded) {
    {
        TrayIcon tray;
    }
    EXPECT_THAT(calls_, IsEmpty());
}

TEST_F(TrayIconTest, AMoveWithTheIconsNumberAndNoHeightComesFromTheIcon) {
    EXPECT_EQ(TrayIcon::CallbackEvent(1, 514), 514u);
    EXPECT_EQ(TrayIcon::CallbackEvent(1, 517), 517u);
    EXPECT_EQ(TrayIcon::CallbackEvent(0, 514), 0u);
    EXPECT_EQ(TrayIcon::CallbackEvent(2, 514), 0u);
    EXPECT_EQ(TrayIcon::CallbackEvent(1, MAKELPARAM(514, 1)), 0u);
    EXPECT_EQ(TrayIcon::CallbackEvent(1, 512), 0u);
    EXPECT_EQ(TrayIcon::CallbackEvent(1, 100), 0u);
}

TEST_F(TrayIconTest, KnowsAMoveAtThePointersPlace) {
    const testkit::RecordedCall position = ANSWER_CALL(GetMessagePos, MAKELONG(614, static_cast<WORD>(-20)));
    const testkit::RecordedCall client = FAKE_CALL(ScreenToClient, [](HWND window, LPPOINT point) -> WINBOOL {
        EXPECT_EQ(window, kWindow);
        point->x -= 100;
        point->y += 20;
        return TRUE;
    });
    EXPECT_TRUE(TrayIcon::IsRealMove(kWindow, MAKELPARAM(514, 0)));
    EXPECT_FALSE(TrayIcon::IsRealMove(kWindow, MAKELPARAM(517, 0)));
    EXPECT_FALSE(TrayIcon::IsRealMove(kWindow, MAKELPARAM(514, 1)));
}

/// The panel's answer to the icon, docked at the right edge at first; the panel is never on the screen.
class TrayEventTest : public ::testing::Test {
  protected:
    TrayEventTest() {
        fakes_.push_back(FAKE_CALL(GetWindowTextA, [this](HWND, LPSTR text, int size) {
            std::strncpy(text, underMouse_.c_str(), static_cast<size_t>(size));
            return static_cast<int>(underMouse_.size());
        }));
        fakes_.push_back(FAKE_CALL(WindowFromPoint, [this](POINT) { return below_; }));
        fakes_.push_back(FAKE_CALL(GetCursorPos, [](LPPOINT point) {
            *point = {613, 741};
            return TRUE;
        }));
        fakes_.push_back(
            FAKE_CALL(TrackPopupMenu, [this](HMENU menu, UINT, int x, int y, int, HWND owner, const RECT*) {
                ++menus_;
                menuPlace_ = {x, y};
                order_.emplace_back(owner == panel_.Panel().Handle() ? "menu" : "another's menu");
                for (int index = 0; index < GetMenuItemCount(menu); ++index) {
                    char caption[64] = "";
                    GetMenuStringA(menu, static_cast<UINT>(index), caption, sizeof caption, MF_BYPOSITION);
                    captions_.emplace_back(caption);
                }
                return chosen_;
            }));
        fakes_.push_back(FAKE_CALL(SetForegroundWindow, [this](HWND window) {
            order_.push_back(window == panel_.Panel().Handle() ? "foreground" : "another in front");
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(GetForegroundWindow, [this] { return front_; }));
        panel_.Load();
        panel_.Log().Clear();
    }

    bool Shown() { return panel_.Window().Rect().left != GetSystemMetrics(SM_CXSCREEN) - 4; }
    void Send(UINT event) { panel_.Window().Send(WM_MOUSEMOVE, 1, event); }

    PanelHarness panel_{"Main=1,False,True,False,False,False,False,3,False,False,False\r\n"};
    std::string underMouse_;
    HWND below_ = nullptr;
    HWND front_ = nullptr;
    int chosen_ = 0;
    int menus_ = 0;
    POINT menuPlace_{};
    std::vector<std::string> captions_;
    std::vector<std::string> order_;
    testkit::RecordedCalls fakes_;
};

TEST_F(TrayEventTest, BringsThePanelOutForALeftClick) {
    ASSERT_FALSE(Shown());
    Send(WM_LBUTTONUP);
    EXPECT_TRUE(Shown());
    EXPECT_EQ(menus_, 0);
}

TEST_F(TrayEventTest, BringsAQuestionOfTheShellsForwardAndRaisesNoPanelAboveIt) {
    const HWND question =
        CreateWindowExW(0, L"#32770", L"Security", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    const auto visible = FAKE_CALL(IsWindowVisible, [&](HWND window) -> BOOL {
        return window == question ? TRUE : ORIGINAL_CALL(IsWindowVisible)(window);
    });
    const auto shell = FAKE_CALL(ShellExecuteA, [&] {
        Send(WM_LBUTTONUP);
        return reinterpret_cast<HINSTANCE>(INT_PTR{33});
    });
    win::OpenInShell(nullptr, "a", nullptr, nullptr, SW_SHOWNORMAL);
    EXPECT_TRUE(Shown());
    EXPECT_THAT(order_, ElementsAre("another in front"));
    EXPECT_EQ(panel_.Log().Count("topmost"), 0u);
    DestroyWindow(question);
    order_.clear();
    Send(WM_LBUTTONUP);
    EXPECT_THAT(order_, ElementsAre("foreground"));
    EXPECT_EQ(panel_.Log().Count("topmost"), 1u);
}

TEST_F(TrayEventTest, BringsTheShellsQuestionAboutALaunchForwardThoughItIsNotInFront) {
    ShellQuestion question;
    Send(WM_LBUTTONUP);
    EXPECT_TRUE(Shown());
    EXPECT_THAT(order_, ElementsAre("another in front"));
    EXPECT_EQ(panel_.Log().Count("topmost"), 0u);
    order_.clear();
    underMouse_ = "Notification";
    Send(WM_RBUTTONUP);
    EXPECT_THAT(order_, ElementsAre("foreground", "menu", "another in front"))
        << "behind a window of another program the menu would stay open";
    EXPECT_EQ(panel_.Log().Count("topmost"), 0u);
    question.Close();
    order_.clear();
    Send(WM_LBUTTONUP);
    EXPECT_THAT(order_, ElementsAre("foreground"));
    EXPECT_EQ(panel_.Log().Count("topmost"), 1u);
}

TEST_F(TrayEventTest, ShowsItsMenuForARightClickInTheNotificationArea) {
    underMouse_ = "Notification Area";
    Send(WM_RBUTTONUP);
    EXPECT_TRUE(Shown());
    EXPECT_EQ(menus_, 1);
    EXPECT_THAT(captions_, ElementsAre("Show Quon", "", "Close"));
    EXPECT_EQ(menuPlace_.x, 613);
    EXPECT_EQ(menuPlace_.y, 741);
    // In this order, or the menu stays open when the user clicks elsewhere.
    EXPECT_THAT(order_, ElementsAre("foreground", "menu"));
    EXPECT_EQ(panel_.Log().Count("place"), 1u) << "nothing was chosen";
}

TEST_F(TrayEventTest, ShowsTheWindowAndTheIconOfThePanelInTheNotificationArea) {
    EXPECT_EQ(panel_.TrayRecord().hWnd, panel_.Panel().Handle());
    EXPECT_NE(panel_.TrayRecord().hIcon, nullptr);
    EXPECT_EQ(reinterpret_cast<LRESULT>(panel_.TrayRecord().hIcon),
              panel_.Window().Send(WM_GETICON, ICON_SMALL));
}

/// The icon in the notification area of a primary screen whose scale changes. The panel is on another screen,
/// which keeps its own.
class TrayIconSizeTest : public ::testing::Test {
  protected:
    TrayIconSizeTest() {
        fakes_.push_back(FAKE_CALL(GetDpiForMonitor, [this](HMONITOR, MONITOR_DPI_TYPE, UINT* x, UINT* y) {
            *x = *y = primaryDpi_;
            return HRESULT{S_OK};
        }));
        fakes_.push_back(FAKE_CALL(GetSystemMetricsForDpi, [this](int index, UINT dpi) {
            if (index == SM_CXSMICON && smallIcon_ != 0) return smallIcon_;
            return ORIGINAL_CALL(GetSystemMetricsForDpi)(index, dpi);
        }));
        fakes_.push_back(FAKE_CALL(Shell_NotifyIconA, [this](DWORD what, PNOTIFYICONDATAA record) -> BOOL {
            if (what == NIM_ADD) added_.push_back(testkit::WidthOf(record->hIcon));
            if (what == NIM_MODIFY) changed_.push_back(testkit::WidthOf(record->hIcon));
            return what != NIM_MODIFY || !busy_;
        }));
        fakes_.push_back(FAKE_CALL(
            LoadImageW,
            [this](HINSTANCE module, LPCWSTR name, UINT kind, int width, int height, UINT flags) -> HANDLE {
                if (name == MAKEINTRESOURCEW(IDI_QUON)) ++loaded_;
                if (name == MAKEINTRESOURCEW(IDI_QUON) && missing_) return nullptr;
                return ORIGINAL_CALL(LoadImageW)(module, name, kind, width, height, flags);
            }));
    }

    void Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        panel_.Window().Send(message, wParam, lParam);
    }
    HICON IconOfWindow() { return reinterpret_cast<HICON>(panel_.Window().Send(WM_GETICON, ICON_SMALL)); }

    PanelHarness panel_;
    UINT primaryDpi_ = 96;
    int smallIcon_ = 0;
    bool busy_ = false;
    bool missing_ = false;
    int loaded_ = 0;
    std::vector<int> added_;
    std::vector<int> changed_;
    testkit::RecordedCalls fakes_;
};

TEST_F(TrayIconSizeTest, IsThatOfTheSystemsSmallIconsAtTheScaleOfThePrimaryScreen) {
    const std::vector<std::pair<UINT, int>> sizes{{96, 16}, {120, 20}, {144, 24}, {192, 32}};
    for (const auto& [dpi, size] : sizes) {
        primaryDpi_ = dpi;
        added_.clear();
        panel_.Renew();
        panel_.Load();
        EXPECT_THAT(added_, ElementsAre(size));
        EXPECT_THAT(changed_, IsEmpty());
        EXPECT_EQ(testkit::WidthOf(IconOfWindow()), size);
        EXPECT_NE(GetClassLongPtrW(panel_.Panel().Handle(), GCLP_HICON), 0) << "the large one stays";
    }
}

TEST_F(TrayIconSizeTest, FollowsTheScaleWhateverMessageTellsOfIt) {
    panel_.Load();
    primaryDpi_ = 120;
    Send(WM_DISPLAYCHANGE, 32, MAKELPARAM(1024, 768));
    EXPECT_THAT(changed_, ElementsAre(20));
    primaryDpi_ = 144;
    Send(WM_TIMER, kScreenTimer);
    EXPECT_THAT(changed_, ElementsAre(20, 24)) << "the scale may be known later than the message comes";
    primaryDpi_ = 192;
    Send(WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS);
    EXPECT_THAT(changed_, ElementsAre(20, 24, 32));
    primaryDpi_ = 96;
    RECT place = panel_.Window().Rect();
    Send(WM_DPICHANGED, MAKEWPARAM(96, 96), reinterpret_cast<LPARAM>(&place));
    EXPECT_THAT(changed_, ElementsAre(20, 24, 32, 16));
    EXPECT_EQ(testkit::WidthOf(IconOfWindow()), 16);
}

TEST_F(TrayIconSizeTest, FollowsTheSystemsSmallIcons) {
    panel_.Load();
    smallIcon_ = 24;
    Send(WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS);
    EXPECT_THAT(changed_, ElementsAre(24));
}

TEST_F(TrayIconSizeTest, IsLeftAloneWhileItIsTheSame) {
    panel_.Load();
    const HICON icon = IconOfWindow();
    loaded_ = 0;
    Send(WM_SETTINGCHANGE, SPI_SETDOUBLECLICKTIME);
    Send(WM_DISPLAYCHANGE, 32, MAKELPARAM(1024, 768));
    Send(WM_TIMER, kScreenTimer);
    Send(WM_SYSCOLORCHANGE);
    RECT place = panel_.Window().Rect();
    Send(WM_DPICHANGED, MAKEWPARAM(96, 96), reinterpret_cast<LPARAM>(&place));
    EXPECT_THAT(changed_, IsEmpty());
    EXPECT_EQ(loaded_, 0);
    EXPECT_EQ(IconOfWindow(), icon);
}

TEST_F(TrayIconSizeTest, IsTriedAgainWithTheNextMessageWhenTheTaskbarIsBusy) {
    panel_.Load();
    busy_ = true;
    primaryDpi_ = 144;
    Send(WM_DISPLAYCHANGE, 32, MAKELPARAM(1024, 768));
    EXPECT_THAT(changed_, ElementsAre(24));
    busy_ = false;
    Send(WM_TIMER, kScreenTimer);
    EXPECT_THAT(changed_, ElementsAre(24, 24));
    Send(WM_SETTINGCHANGE);
    EXPECT_THAT(changed_, ElementsAre(24, 24));
    EXPECT_THAT(added_, ElementsAre(16)) << "it is never added anew";
}

TEST_F(TrayIconSizeTest, StaysTheOneItWasWhenTheOtherCannotBeLoaded) {
    panel_.Load();
    const HICON icon = IconOfWindow();
    missing_ = true;
    primaryDpi_ = 144;
    Send(WM_SETTINGCHANGE);
    EXPECT_THAT(changed_, IsEmpty());
    EXPECT_EQ(IconOfWindow(), icon);
    EXPECT_EQ(testkit::WidthOf(icon), 16) << "it is still there";
}

TEST_F(TrayEventTest, KnowsTheNotificationAreaByTheClassesOfItsWindowsToo) {
    const auto makeWindow = [](const wchar_t* name, HWND parent) {
        WNDCLASSW record{};
        record.lpfnWndProc = &DefWindowProcW;
        record.hInstance = GetModuleHandleW(nullptr);
        record.lpszClassName = name;
        RegisterClassW(&record);
        return CreateWindowExW(0, name, L"", parent ? WS_CHILD : WS_POPUP, 0, 0, 9, 9, parent, nullptr,
                               record.hInstance, nullptr);
    };
    int expected = 0;
    for (const wchar_t* name : {L"Shell_TrayWnd", L"NotifyIconOverflowWindow",
                                L"TopLevelWindowForOverflowXamlIsland", L"Shell_TrayWndow"}) {
        const HWND area = makeWindow(name, nullptr);
        // The icons stand on a window of their own in it.
        below_ = makeWindow(L"QuonTestIcons", makeWindow(L"QuonTestIcons", area));
        ASSERT_NE(below_, nullptr);
        if (std::wcscmp(name, L"Shell_TrayWndow") != 0) ++expected;
        Send(WM_RBUTTONUP);
        EXPECT_EQ(menus_, expected) << testkit::Utf8(name);
        DestroyWindow(area);
    }
}

TEST_F(TrayEventTest, ShowsItsMenuAtTheIconForTheKeyboardWhereverThePointerIs) {
    const HWND taskbar = FindWindowExW(nullptr, nullptr, L"Shell_TrayWnd", nullptr);
    ASSERT_NE(taskbar, nullptr);
    const auto rect = FAKE_CALL(Shell_NotifyIconGetRect, [](const NOTIFYICONIDENTIFIER*, RECT* place) {
        *place = {1000, 740, 1024, 768};
        return S_OK;
    });
    underMouse_ = "Desktop";
    Send(WM_RBUTTONUP);
    EXPECT_EQ(menus_, 0);
    front_ = taskbar;
    Send(WM_RBUTTONUP);
    EXPECT_EQ(menus_, 1);
    EXPECT_TRUE(Shown());
    EXPECT_EQ(menuPlace_.x, 1012);
    EXPECT_EQ(menuPlace_.y, 754);
}

TEST_F(TrayEventTest, LeavesNoStateBehindItsMenu) {
    underMouse_ = "Notification";
    const HWND panel = panel_.Panel().Handle();
    MSG message{};
    while (PeekMessageW(&message, panel, WM_NULL, WM_NULL, PM_REMOVE) != 0) {
    }
    Send(WM_RBUTTONUP);
    EXPECT_NE(PeekMessageW(&message, panel, WM_NULL, WM_NULL, PM_REMOVE), 0);
}

TEST_F(TrayEventTest, DoesNothingForARightButtonElsewhere) {
    for (const char* other : {"notification area", "Notificatio", "Desktop", ""}) {
        underMouse_ = other;
        Send(WM_RBUTTONUP);
        EXPECT_FALSE(Shown()) << other;
    }
    EXPECT_EQ(menus_, 0);
}

TEST_F(TrayEventTest, DoesNothingForMovesOverTheIcon) {
    config::Settings.PopOnHover = false;
    for (const int event : {WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_RBUTTONDOWN, WM_LBUTTONDBLCLK})
        Send(static_cast<UINT>(event));
    EXPECT_FALSE(Shown());
    EXPECT_EQ(panel_.Log().Lines().size(), 0u);
}

TEST_F(TrayEventTest, AddsTheIconOnceThoughTheTaskbarIsMadeAnew) {
    panel_.Window().Send(RegisterWindowMessageW(L"TaskbarCreated"));
    EXPECT_EQ(panel_.Log().Count("tray"), 0u);
}

TEST_F(TrayEventTest, EndsTheProgramByCloseWhateverTheSettingAndSavesTheSettingUnchanged) {
    underMouse_ = "Notification";
    chosen_ = 2602;
    Send(WM_RBUTTONUP);
    EXPECT_EQ(panel_.Panel().Handle(), nullptr);
    EXPECT_TRUE(TakeQuitMessage());
    EXPECT_EQ(panel_.Folder().IniValue("Settings", "Main"),
              "1,False,True,False,False,False,False,3,False,False,False");
}

TEST_F(TrayEventTest, ShowsThePanelByItsFirstEntry) {
    underMouse_ = "Notification";
    chosen_ = 2600;
    Send(WM_RBUTTONUP);
    EXPECT_TRUE(Shown());
    EXPECT_EQ(panel_.Log().Count("place"), 2u);
    EXPECT_NE(panel_.Panel().Handle(), nullptr);
}

TEST_F(TrayEventTest, ARealMoveAtTheMessagesNumberIsAMove) {
    // On a large scale the panel reaches as far to the right.
    const testkit::RecordedCall position = FAKE_CALL(GetMessagePos, [this]() -> DWORD {
        POINT point{514, 0};
        ClientToScreen(panel_.Panel().Handle(), &point);
        return static_cast<DWORD>(MAKELONG(point.x, point.y));
    });
    Send(WM_LBUTTONUP);
    EXPECT_FALSE(Shown());
}

}  // namespace
}  // namespace app
