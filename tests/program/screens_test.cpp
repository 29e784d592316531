// Screens that change, programs that are in front, and what the keyboard does with a panel that nobody sees.

#include "tests/program/other_window.h"
#include "tests/program/quon_test.h"
#include "tests/support/neighbour.h"
#include "tests/support/wine.h"

namespace testkit {
namespace {

using std::chrono::milliseconds;

/// The screen in another size, until it goes.
class ScreenSize {
  public:
    ScreenSize(DWORD width, DWORD height) {
        DEVMODEW mode{};
        mode.dmSize = sizeof mode;
        mode.dmFields = DM_PELSWIDTH | DM_PELSHEIGHT;
        mode.dmPelsWidth = width;
        mode.dmPelsHeight = height;
        EXPECT_EQ(ChangeDisplaySettingsW(&mode, 0), DISP_CHANGE_SUCCESSFUL);
        WaitFor("the screen changes",
                [&] { return GetSystemMetrics(SM_CXSCREEN) == static_cast<int>(width); });
    }
    ~ScreenSize() {
        ChangeDisplaySettingsW(nullptr, 0);
        HappensWithin(kPatience, [] { return GetSystemMetrics(SM_CXSCREEN) == 1024; });
        // Wine 10 hides the taskbar for a change of the screen and leaves it so.
        if (hadTaskbar_) ShowWindow(FindWindowW(kTaskbar, nullptr), SW_SHOWNA);
    }
    ScreenSize(const ScreenSize&) = delete;
    ScreenSize& operator=(const ScreenSize&) = delete;

  private:
    static constexpr const wchar_t* kTaskbar = L"Shell_TrayWnd";
    bool hadTaskbar_ = IsWindowVisible(FindWindowW(kTaskbar, nullptr)) != FALSE;
};

constexpr char kOtherSizes[] =
    "A screen of Windows' need not have another size, and has its user's windows on it.";

class ScreensTest : public QuonTest {
  protected:
    static void Dock(const QuonPanel& quon, Edge edge) {
        quon.Main().Post(WM_SYSCOMMAND, SC_CLOSE);
        quon.WaitUntilDockedAt(edge);
    }
};

TEST_F(ScreensTest, ADockedPanelFollowsItsEdgeWhenTheScreenChanges) {
    ONLY_UNDER_WINE(kOtherSizes);
    QuonPanel quon =
        Start({.start_glued = true, .edge = static_cast<int>(Edge::kRight), .click_shows = true});
    ASSERT_TRUE(quon.IsDockedAt(Edge::kRight));
    {
        const ScreenSize small(640, 480);
        quon.WaitUntilDockedAt(Edge::kRight);
        // Not by the pointer: Wine 10 may draw it back to the smaller screen's corner again and again.
        quon.ClickTrayIcon();
        quon.WaitUntilOut();
        Dock(quon, Edge::kRight);
    }
    quon.WaitUntilDockedAt(Edge::kRight);
}

TEST_F(ScreensTest, APanelThatIsOutStaysInReach) {
    ONLY_UNDER_WINE(kOtherSizes);
    QuonPanel quon = Start({});
    SetWindowPos(quon.Main().Handle(), nullptr, 700, 500, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_ASYNCWINDOWPOS);
    WaitFor("the panel moves", [&] { return quon.Main().Rect().left == 700; });
    quon.Main().Send(WM_SETTINGCHANGE, SPI_SETWORKAREA);
    EXPECT_EQ(quon.Main().Rect().left, 700) << "a taskbar that hides nothing of the caption moves nothing";
    SetWindowPos(quon.Main().Handle(), nullptr, 2000, 100, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_ASYNCWINDOWPOS);
    WaitFor("the panel is out of reach", [&] { return quon.Main().Rect().left == 2000; });
    quon.Main().Send(WM_SETTINGCHANGE, SPI_SETWORKAREA);
    EXPECT_TRUE(quon.IsOut());
    const ScreenSize small(640, 480);
    WaitFor("its caption comes back", [&] {
        const RECT place = quon.Main().Rect();
        return place.left <= 640 - 64 && place.top >= 0 && place.top <= 480 - 20;
    });
}

TEST_F(ScreensTest, APlaceThatNoScreenShowsAnyMoreCountsAsNone) {
    ONLY_UNDER_WINE(kOtherSizes);
    QuonPanel quon = Start({.edge = static_cast<int>(Edge::kLeft)});
    SetWindowPos(quon.Main().Handle(), nullptr, 700, 400, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_ASYNCWINDOWPOS);
    WaitFor("the panel moves", [&] { return quon.Main().Rect().left == 700; });
    Dock(quon, Edge::kLeft);
    const ScreenSize small(640, 480);
    quon.WaitUntilDockedAt(Edge::kLeft);
    quon.ClickTrayIcon();
    quon.WaitUntilOut();
    const RECT place = quon.Main().Rect();
    EXPECT_EQ(place.left, (640 - (place.right - place.left)) / 2);
}

TEST_F(ScreensTest, APanelThatDocksInFrontHandsTheForegroundOn) {
    QuonPanel quon = Start({});
    const Neighbour neighbour(folder_, "behind.exe", "behind");
    quon.Main().Activate();
    Dock(quon, Edge::kBottom);
    WaitFor("the neighbour is in front", [&] { return neighbour.MainWindow().IsForeground(); });
    // A panel that was not in front takes the foreground from nobody.
    quon.ClickTrayIcon();
    WaitFor("the panel comes out to the front", [&] { return quon.IsOut() && quon.Main().IsForeground(); });
    const OtherWindow typing({100, 100, 300, 200});
    typing.AsWindow().Activate();
    WaitFor("the other window is in front", [&] { return typing.AsWindow().IsForeground(); });
    quon.Program().WaitUntilIdle();
    Dock(quon, Edge::kBottom);
    EXPECT_TRUE(typing.AsWindow().IsForeground());
}

TEST_F(ScreensTest, TheOrganiserThatDocksThePanelKeepsTheForeground) {
    QuonPanel quon = Start({});
    const Neighbour neighbour(folder_, "behind.exe", "behind");
    quon.Main().Activate();
    quon.OpenSettingsMenu().Choose("Organize shortcuts");
    const Window organiser =
        quon.Program().WaitForWindow({.title = "Organize shortcuts - 0 shortcuts found"});
    quon.WaitUntilDockedAt(Edge::kBottom);
    WaitFor("the organiser is in front", [&] { return organiser.IsForeground(); });
    quon.Program().WaitUntilIdle();
    EXPECT_TRUE(organiser.IsForeground());
    EXPECT_FALSE(neighbour.MainWindow().IsForeground());
    // The panel did not lose what it would have handed on: the next in line gets it in the end.
    organiser.Post(WM_COMMAND, IDCANCEL);
    WaitUntilClosed(organiser);
}

TEST_F(ScreensTest, ADockedPanelTakesNoKeysButAltF4) {
    const std::string target = folder_.CopyIn(TestTargetExe(), "target.exe");
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "Target", target));
    mouse::Click(quon.Button(1));
    WaitFor("the button has the focus", [&] { return quon.Button(1).IsFocused(); });
    Dock(quon, Edge::kBottom);
    quon.Main().Activate();
    keyboard::Press(VK_RETURN);
    keyboard::Press(VK_SPACE);
    keyboard::Press(VK_F2);
    keyboard::Type("target\n");
    quon.Program().WaitUntilIdle();
    EXPECT_FALSE(quon.RenameBox().IsVisible());
    EXPECT_EQ(quon.Shortcuts().Text(), "");
    EXPECT_TRUE(HoldsThroughout(milliseconds(500), [&] { return TargetLaunches(target).empty(); }));
    keyboard::Chord({VK_MENU, VK_F4});
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
}

TEST_F(ScreensTest, TheFirstShowIgnoresTheStateThatTheStarterAsksFor) {
    for (const int state : {SW_SHOWMINIMIZED, SW_SHOWMAXIMIZED, SW_HIDE, SW_SHOWMINNOACTIVE}) {
        QuonPanel quon = Start({}, {.show_state = state});
        EXPECT_TRUE(quon.IsOut()) << state;
        EXPECT_FALSE(quon.Main().IsMinimized()) << state;
        EXPECT_FALSE(quon.Main().IsMaximized()) << state;
        WaitFor("the panel is in front", [&] { return quon.Main().IsForeground(); });
    }
}

TEST_F(ScreensTest, TheTrayIconMakesAPanelNormalThatAnotherProgramHasMinimisedOrMaximised) {
    QuonPanel quon = Start({});
    const RECT place = quon.Main().Rect();
    for (const int state : {SW_MINIMIZE, SW_MAXIMIZE}) {
        ShowWindowAsync(quon.Main().Handle(), state);
        WaitFor("the state", [&] { return quon.Main().IsMinimized() || quon.Main().IsMaximized(); });
        quon.ClickTrayIcon();
        WaitFor("the panel is normal", [&] {
            const RECT now = quon.Main().Rect();
            return !quon.Main().IsMinimized() && !quon.Main().IsMaximized() && EqualRect(&now, &place);
        });
        EXPECT_TRUE(quon.IsOut());
    }
}

TEST_F(ScreensTest, TheTrayIconBringsAnOpenPickerToTheFrontAndNotThePanel) {
    QuonPanel quon = Start({});
    quon.OpenButtonMenu(1).Choose("Add file to button");
    const Window picker = quon.Program().WaitForWindow({.title = "Select file"});
    const OtherWindow elsewhere({600, 300, 700, 400});
    elsewhere.AsWindow().Activate();
    quon.ClickTrayIcon();
    WaitFor("the picker is in front", [&] { return picker.IsForeground(); });
    quon.Program().WaitUntilIdle();
    EXPECT_FALSE(quon.Main().IsTopmost());
    EXPECT_FALSE(quon.Main().IsEnabled());
    picker.Post(WM_COMMAND, IDCANCEL);
    WaitFor("the panel is topmost again", [&] { return quon.Main().IsTopmost() && quon.Main().IsEnabled(); });
}

TEST_F(ScreensTest, ThePanelMakesWayForAQuestionThatTheShellAsksInAProgramOfItsOwn) {
    QuonPanel quon = Start({});
    quon.Main().Activate();
    ASSERT_TRUE(quon.Main().IsTopmost());
    {
        const Neighbour question(folder_, "OpenWith.exe", "How do you want to open this file?");
        question.MainWindow().Activate();
        WaitFor("the panel makes way", [&] { return !quon.Main().IsTopmost(); });
        // Not raised over it by what would bring the panel out otherwise.
        quon.Main().Post(WM_SYSCOMMAND, SC_CLOSE);
        quon.WaitUntilDockedAt(Edge::kBottom);
        EXPECT_TRUE(HoldsThroughout(milliseconds(700), [&] { return !quon.Main().IsTopmost(); }));
    }
    WaitFor("the panel is topmost again", [&] { return quon.Main().IsTopmost(); });
}

TEST_F(ScreensTest, TheTrayIconAndTheHotKeyBringTheShellsQuestionAboutALaunchForward) {
    // Opened by name, what the shell would ask with in its own time.
    const std::string asking = folder_.CopyIn(TestTargetExe(), "OpenWith.exe");
    const QuonIni ini = QuonIni{}.AddShortcut("11", "Strange file", asking);
    std::string text = ini.Text();
    text.insert(text.find("Main="), "hotkey=1610\r\n");
    folder_.WriteIniText(text);
    QuonPanel quon(folder_);
    quon.OpenButton(1);
    RunningProgram asker = RunningProgram::Attach(WaitForTargetLaunches(asking, 1).front().process_id);
    const Window question = asker.WaitForWindow({.title = ""});
    const OtherWindow elsewhere({600, 300, 700, 400});
    const std::function<void()> requests[] = {[&] { quon.ClickTrayIcon(); },
                                              [] { keyboard::Chord({VK_CONTROL, VK_MENU, 'J'}); }};
    for (const auto& request : requests) {
        elsewhere.AsWindow().Activate();
        WaitFor("the other window is in front", [&] { return elsewhere.AsWindow().IsForeground(); });
        request();
        WaitFor("the question is in front", [&] { return question.IsForeground(); });
        WaitFor("the panel makes way", [&] { return !quon.Main().IsTopmost(); });
        EXPECT_TRUE(HoldsThroughout(milliseconds(700),
                                    [&] { return question.IsForeground() && !quon.Main().IsTopmost(); }));
    }
    asker.Terminate();
    WaitFor("the panel is topmost again", [&] { return quon.Main().IsTopmost(); });
    EXPECT_TRUE(quon.IsOut());
}

}  // namespace
}  // namespace testkit
