#include "config/settings.h"
#include "dialogs/define_tab.h"
#include "dialogs/message_box.h"
#include "dialogs/options.h"
#include "res/resource.h"
#include "tests/unit/app/panel_harness.h"
#include "win/dialog.h"
#include "win/menu_array.h"
#include "win/modal_windows.h"
#include "win/window.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::StartsWith;

constexpr const char* kHides =
    "Main=1,False,False,False,False,False,False,3,False,False,False\r\n"
    "popdelay=250\r\npoptf=True\r\nclickshow=True\r\n";
constexpr const char* kEnds = "Main=1,False,False,False,False,True,False,3,False,False,False\r\n";

/// The lines of the log about writing and the tray.
std::vector<std::string> EndOf(const testkit::CallLog& log) {
    std::vector<std::string> lines;
    for (const std::string& line : log.Lines())
        if (line.starts_with("tray") || line.starts_with("write Settings")) lines.push_back(line);
    return lines;
}

struct ClosingPanel : PanelHarness {
    explicit ClosingPanel(const char* settings) : PanelHarness(settings) {
        Load();
        Log().Clear();
    }

    bool Ended() { return Panel().Handle() == nullptr; }
    bool Docked() { return Window().Rect().left == GetSystemMetrics(SM_CXSCREEN) - 4; }
};

TEST(CloseRequestTest, HidesThePanelForTheCloseButton) {
    ClosingPanel panel(kHides);
    panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE);
    ASSERT_FALSE(panel.Ended());
    EXPECT_TRUE(panel.Docked());
    EXPECT_THAT(EndOf(panel.Log()), ElementsAre());
    EXPECT_FALSE(TakeQuitMessage());
}

TEST(CloseRequestTest, IgnoresTheLowBitsOfTheSystemCommand) {
    ClosingPanel panel(kHides);
    panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE | 3);
    ASSERT_FALSE(panel.Ended());
    EXPECT_TRUE(panel.Docked());
}

TEST(CloseRequestTest, LeavesOtherSystemCommandsToWindows) {
    ClosingPanel panel(kHides);
    std::vector<WPARAM> left;
    const auto rest = FAKE_CALL(DefWindowProcW, [&](HWND, UINT message, WPARAM wParam, LPARAM) -> LRESULT {
        if (message == WM_SYSCOMMAND) left.push_back(wParam);
        return 0;
    });
    panel.Window().Send(WM_SYSCOMMAND, SC_MOVE);
    panel.Window().Send(WM_SYSCOMMAND, SC_KEYMENU, ' ');
    // ALT by itself opens no menu.
    panel.Window().Send(WM_SYSCOMMAND, SC_KEYMENU, 0);
    EXPECT_THAT(left, ElementsAre(WPARAM{SC_MOVE}, WPARAM{SC_KEYMENU}));
    EXPECT_FALSE(panel.Docked());
}

TEST(CloseRequestTest, MovesThePanel5300TwipsAsideBeforeItDocks) {
    ClosingPanel panel(kHides);
    const RECT place = panel.Window().Rect();
    panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE);
    const auto& lines = panel.Log().Lines();
    ASSERT_EQ(lines.size(), 4u) << panel.Log().Text();
    EXPECT_EQ(lines[0], "place -353 " + std::to_string(place.top));
    EXPECT_THAT(lines[1], StartsWith("place " + std::to_string(GetSystemMetrics(SM_CXSCREEN) - 4)));
    EXPECT_EQ(lines[2], "timer on 500");
    EXPECT_EQ(lines[3], "topmost");
}

TEST(CloseRequestTest, BringsThePanelBackToWhereItWasClosed) {
    ClosingPanel panel(kHides);
    SetWindowPos(panel.Window().Handle(), nullptr, 77, 55, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE);
    // The close button of the docked strip must not save the strip's place.
    panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE);
    panel.Window().Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(1, 1));
    EXPECT_EQ(panel.Window().Rect().left, 77);
    EXPECT_EQ(panel.Window().Rect().top, 55);
}

TEST(CloseRequestTest, EndsTheProgramForTheCloseButtonWhenTheSettingSaysSo) {
    ClosingPanel panel(kEnds);
    panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE);
    EXPECT_TRUE(panel.Ended());
    EXPECT_TRUE(TakeQuitMessage());
    EXPECT_EQ(panel.Log().Count("place"), 0u);
}

TEST(CloseRequestTest, DeletesTheTrayIconAndThenWritesTheFourSettings) {
    ClosingPanel panel(kHides);
    panel.Window().Send(WM_CLOSE);
    EXPECT_THAT(EndOf(panel.Log()),
                ElementsAre("tray delete",
                            "write Settings Main 1,False,False,False,False,False,False,3,False,False,False",
                            "write Settings popdelay 250", "write Settings poptf True",
                            "write Settings clickshow True"));
    EXPECT_TRUE(TakeQuitMessage());
}

TEST(CloseRequestTest, TakesThePanelAwayBeforeItWaitsForAHeldFile) {
    for (const bool session : {false, true}) {
        ClosingPanel panel(kEnds);
        std::vector<std::string> steps;
        const auto show = WATCH_CALL(ShowWindow, [&](HWND window, int command) {
            if (testkit::Window(window).Class() == "QuonMain")
                steps.push_back("show " + std::to_string(command));
        });
        const auto pause = FAKE_CALL(Sleep, [&](DWORD) { steps.emplace_back("wait"); });
        const testkit::HeldFile held(panel.Folder().IniPath());
        panel.Window().Send(session ? WM_ENDSESSION : WM_CLOSE, session ? TRUE : 0);
        ASSERT_GE(steps.size(), 2u);
        EXPECT_EQ(steps[0], "show 0");
        EXPECT_EQ(steps[1], "wait");
    }
}

TEST(CloseRequestTest, LetsGoOfTheMainWindow) {
    ClosingPanel panel(kEnds);
    EXPECT_EQ(win::ModalOwner(), panel.Window().Handle());
    panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE);
    EXPECT_EQ(win::ModalOwner(), nullptr) << "a message would be owned by a window that is gone";
}

TEST(CloseRequestTest, WritesNothingButTheSettings) {
    ClosingPanel panel(kEnds);
    panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE);
    EXPECT_EQ(panel.Log().Count("write"), 4u);
}

TEST(CloseRequestTest, WritesTheSettingsAsTheyAreNow) {
    ClosingPanel panel(kEnds);
    config::Settings.CurrentTab = 4;
    config::Settings.PopDelay = 700;
    panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE);
    EXPECT_EQ(panel.Folder().IniValue("Settings", "Main"),
              "4,False,False,False,False,True,False,3,False,False,False");
    EXPECT_EQ(panel.Folder().IniValue("Settings", "popdelay"), "700");
}

TEST(CloseRequestTest, KeepsEveryChangeOfTheSettingsInMemoryUntilThen) {
    ClosingPanel panel(kHides);
    int command = 0;
    const auto track = FAKE_CALL(TrackPopupMenu, [&] { return command; });
    const auto choose = [&](int chosen) {
        command = chosen;
        panel.Window().Child(IDC_IMAGE_BUTTON + 2).SendClick();
    };
    const testkit::Window header = panel.Window().Child(IDC_TAB_HEADER + 5);
    testkit::ModalAnswers user({[](testkit::Window options) {
                                    options.Press(dialogs::frmSettings::chSet + 1);
                                    options.Press(dialogs::frmSettings::o1 + 4);
                                    options.Child(dialogs::frmSettings::Text1).SetText("900");
                                    options.Press(dialogs::frmSettings::ltBut1 + 1);
                                },
                                [](testkit::Window definition) {
                                    definition.Press(dialogs::frmTabPrep::Check1);
                                    definition.Press(dialogs::frmTabPrep::Command1 + 0);
                                }});
    choose(IDM_SETTINGS + 1);
    choose(IDM_SETTINGS + 3);
    header.SendClick();
    header.Send(WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
    EXPECT_EQ(user.Used(), 2u);
    EXPECT_EQ(panel.Log().Count("write Settings"), 0u) << panel.Log().Text();
    panel.Window().Send(WM_CLOSE);
    EXPECT_EQ(panel.Folder().IniValue("Settings", "Main"),
              "5,False,True,False,False,False,True,4,False,False,True");
    EXPECT_EQ(panel.Folder().IniValue("Settings", "popdelay"), "900");
}

TEST(CloseRequestTest, HidesAndThenEndsForAMessageFromOutside) {
    ClosingPanel panel(kHides);
    panel.Window().Send(WM_CLOSE);
    EXPECT_TRUE(panel.Ended());
    EXPECT_TRUE(InOrder(panel.Log(), {"place -353", "topmost", "tray delete"}));
}

TEST(CloseRequestTest, AgreesToTheEndOfTheSessionAndEndsOnceItIsCertain) {
    for (const char* settings : {kHides, kEnds}) {
        ClosingPanel panel(settings);
        EXPECT_EQ(panel.Window().Send(WM_QUERYENDSESSION), TRUE);
        panel.Window().Send(WM_ENDSESSION, FALSE);
        ASSERT_FALSE(panel.Ended());
        EXPECT_THAT(EndOf(panel.Log()), ElementsAre());
        panel.Window().Send(WM_ENDSESSION, TRUE);
        EXPECT_TRUE(panel.Ended());
        EXPECT_EQ(EndOf(panel.Log()).size(), 5u);
    }
}

TEST(CloseRequestTest, HidesAndThenEndsWhenTheSessionEnds) {
    ClosingPanel panel(kHides);
    panel.Window().Send(WM_ENDSESSION, TRUE);
    EXPECT_TRUE(
        InOrder(panel.Log(), {"place -353", "timer on", "topmost", "tray delete", "write Settings Main"}))
        << panel.Log().Text();
}

TEST(CloseRequestTest, EndsTheProgramForAltF4WithoutChangingTheSetting) {
    ClosingPanel panel(kHides);
    panel.PressKey(WM_SYSKEYDOWN, VK_F4, {VK_MENU});
    panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE);
    EXPECT_TRUE(panel.Ended());
    EXPECT_EQ(panel.Folder().IniValue("Settings", "Main"),
              "1,False,False,False,False,False,False,3,False,False,False");
}

TEST(CloseRequestTest, F4WithOtherModifiersDoesNotEndTheProgram) {
    for (const int other : {VK_SHIFT, VK_CONTROL}) {
        ClosingPanel panel(kHides);
        panel.PressKey(WM_SYSKEYDOWN, VK_F4, {VK_MENU, other});
        panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE);
        EXPECT_FALSE(panel.Ended());
    }
}

/// Two messages inside one another; `end` runs in the inner one. Gives their answers, the inner first.
std::vector<std::string> AnswersOfOpenMessages(const std::function<void()>& end) {
    std::vector<std::string> answers;
    const auto openAnother = [&](testkit::Window) {
        answers.push_back(dialogs::ShowMessage("inner", 2, "OK", "Cancel"));
    };
    testkit::ModalAnswers user({openAnother, [&](testkit::Window) { end(); }});
    answers.push_back(dialogs::ShowMessage("outer", 2, "Accept", "Cancel"));
    return answers;
}

TEST(CloseRequestTest, CancelsOpenDialogsFromTheInnermostOutAndThenEnds) {
    ClosingPanel panel(kEnds);
    EXPECT_THAT(AnswersOfOpenMessages([&] { panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE); }),
                ElementsAre("Cancel", "Cancel"));
    // The code that opened the dialogs has returned before the window goes.
    ASSERT_FALSE(panel.Ended());
    testkit::WaitFor("the panel ends", [&] { return panel.Ended(); });
    EXPECT_EQ(EndOf(panel.Log()).size(), 9u);
}

TEST(CloseRequestTest, SavesTheSettingsOnceWhenTheEndBeginsToWait) {
    ClosingPanel panel(kEnds);
    std::vector<std::string> begun;
    const auto track = FAKE_CALL(TrackPopupMenu, [&] {
        panel.Window().Send(WM_CLOSE);
        panel.Window().Send(WM_CLOSE);
        begun = EndOf(panel.Log());
        return 0;
    });
    panel.Window().Child(IDC_IMAGE_BUTTON + 2).SendClick();
    EXPECT_THAT(begun,
                ElementsAre(StartsWith("write Settings Main"), StartsWith("write Settings popdelay"),
                            StartsWith("write Settings poptf"), StartsWith("write Settings clickshow")));
    testkit::WaitFor("the panel ends", [&] { return panel.Ended(); });
}

TEST(CloseRequestTest, WaitsWithoutBusyWorkForWhatTakesItsTimeToGo) {
    constexpr ULONGLONG kWait = 300;     // milliseconds
    constexpr ULONGLONG kInterval = 50;  // milliseconds
    ClosingPanel panel(kEnds);
    ULONGLONG tries = 0;
    ULONGLONG took = 0;
    const auto end = FAKE_CALL(EndMenu, [&]() -> BOOL {
        ++tries;
        return TRUE;
    });
    const auto track = FAKE_CALL(TrackPopupMenu, [&] {
        const ULONGLONG start = GetTickCount64();
        panel.Window().Send(WM_CLOSE);
        testkit::WaitFor("some tries", [&] { return GetTickCount64() - start > kWait && tries > 1; });
        took = GetTickCount64() - start;
        return 0;
    });
    panel.Window().Child(IDC_IMAGE_BUTTON + 2).SendClick();
    EXPECT_LE(tries, took / kInterval + 2);
    testkit::WaitFor("the panel ends", [&] { return panel.Ended(); });
}

TEST(CloseRequestTest, AnswersTheQuestionOfALaunchAsItsUserWouldCancelIt) {
    PanelHarness panel(kEnds, "[Buttons]\r\n11=a|0\r\n[Cuts]\r\na=C:\\windows\r\n");
    panel.Load();
    int answer = 0;
    const auto shell = FAKE_CALL(ShellExecuteA, [&](HWND owner, LPCSTR, LPCSTR, LPCSTR, LPCSTR, INT) {
        panel.Window().Post(WM_CLOSE);
        answer = MessageBoxW(owner, L"Open this file?", L"Security", MB_YESNO);
        EXPECT_NE(panel.Panel().Handle(), nullptr) << "what has asked still works on the window";
        return reinterpret_cast<HINSTANCE>(INT_PTR{SE_ERR_ACCESSDENIED});
    });
    panel.Window().Child(IDC_BUTTON + 1).Send(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_EQ(answer, IDNO);
    testkit::WaitFor("the panel ends", [&] { return panel.Panel().Handle() == nullptr; });
}

TEST(CloseRequestTest, WaitsForNoDialogWhenTheSessionEnds) {
    for (const char* settings : {kHides, kEnds}) {
        ClosingPanel panel(settings);
        std::vector<std::string> end;
        AnswersOfOpenMessages([&] {
            panel.Window().Send(WM_ENDSESSION, TRUE);
            end = EndOf(panel.Log());
        });
        EXPECT_EQ(end.size(), 5u);
        win::ProcessPendingMessages();
        EXPECT_EQ(EndOf(panel.Log()).size(), 5u) << "it ended twice";
    }
}

TEST(CloseRequestTest, WaitsUntilTheHandlerThatItCameInHasReturned) {
    ClosingPanel panel(kEnds);
    bool within = true;
    const auto track = FAKE_CALL(TrackPopupMenu, [&] {
        panel.Window().Send(WM_CLOSE);
        within = panel.Ended();
        return 0;
    });
    panel.Window().Child(IDC_IMAGE_BUTTON + 2).SendClick();
    EXPECT_FALSE(within) << "the menu's owner went while the menu was open";
    testkit::WaitFor("the panel ends", [&] { return panel.Ended(); });
    EXPECT_EQ(EndOf(panel.Log()).size(), 9u);
    EXPECT_FALSE(win::IsEnding()) << "the next dialog would not open";
}

TEST(CloseRequestTest, OpensNothingMoreOnceItIsEnding) {
    ClosingPanel panel(kEnds);
    int menus = 0;
    std::string answer = "none";
    const auto track = FAKE_CALL(TrackPopupMenu, [&] {
        ++menus;
        panel.Window().Send(WM_CLOSE);
        answer = dialogs::ShowMessage("too late", 1, "OK");
        const win::MenuArray menu(IDM_TRAY, {{"late", {}}});
        EXPECT_EQ(win::TrackMenu(menu, {0, 0}, panel.Window().Handle()), 0);
        return 0;
    });
    panel.Window().Child(IDC_IMAGE_BUTTON + 2).SendClick();
    EXPECT_EQ(answer, "");
    EXPECT_EQ(menus, 1);
    testkit::WaitFor("the panel ends", [&] { return panel.Ended(); });
}

TEST(CloseRequestTest, SavesBeforeTheMessageOfTheSessionsEndReturnsAndGoesAfterwards) {
    ClosingPanel panel(kHides);
    size_t saved = 0;
    const auto track = FAKE_CALL(TrackPopupMenu, [&] {
        panel.Window().Send(WM_ENDSESSION, TRUE);
        saved = EndOf(panel.Log()).size();
        return 0;
    });
    panel.Window().Child(IDC_IMAGE_BUTTON + 2).SendClick();
    EXPECT_EQ(saved, 5u);
    testkit::WaitFor("the panel ends", [&] { return panel.Ended(); });
    EXPECT_EQ(EndOf(panel.Log()).size(), 5u);
}

}  // namespace
}  // namespace app
