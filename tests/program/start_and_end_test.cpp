// The program from its start to its end: one instance a folder, the ways to close it, what is saved.

#include "tests/program/quon_test.h"
#include "tests/support/agent.h"

namespace testkit {
namespace {

using ::testing::AnyOf, ::testing::SizeIs;

/// Whether the notification area has the icon of this window.
bool HasTrayIcon(HWND window) {
    NOTIFYICONDATAW record = {};
    record.cbSize = NOTIFYICONDATAW_V1_SIZE;
    record.hWnd = window;
    record.uID = 1;
    return Shell_NotifyIconW(NIM_MODIFY, &record) != FALSE;
}

class StartAndEndTest : public QuonTest {
  protected:
    /// The name that a program in this folder is known by, without the session.
    std::wstring InstanceName() const {
        std::wstring path = Wide(folder_.Path());
        CharUpperBuffW(path.data(), static_cast<DWORD>(path.size()));
        return L"Quon-" + std::to_wstring(std::hash<std::wstring>()(path));
    }
    std::string Setting(const std::string& key) const {
        return folder_.IniValue("Settings", key).value_or("(no such key)");
    }
};

TEST_F(StartAndEndTest, TheFirstStartShowsThePanelInTheMiddleOfTheScreen) {
    QuonPanel quon = Start({});
    const Window panel = quon.Main();
    EXPECT_EQ(panel.Text(), "Quon");
    EXPECT_TRUE(panel.IsTopmost());
    EXPECT_NE(panel.ExtendedStyle() & WS_EX_TOOLWINDOW, 0) << "it would have a taskbar button";
    EXPECT_EQ(panel.Style() & (WS_THICKFRAME | WS_MINIMIZEBOX | WS_MAXIMIZEBOX), 0) << "its size is fixed";
    EXPECT_EQ(panel.Style() & WS_SYSMENU, WS_SYSMENU);
    const RECT place = panel.Rect();
    EXPECT_EQ(place.left, (GetSystemMetrics(SM_CXSCREEN) - (place.right - place.left)) / 2);
    EXPECT_EQ(place.top, (GetSystemMetrics(SM_CYSCREEN) - (place.bottom - place.top)) / 2);
    EXPECT_LT(place.right - place.left, 512) << "a mouse move over it could be taken for the tray's";
    EXPECT_TRUE(HasTrayIcon(panel.Handle()));
    EXPECT_FALSE(folder_.Exists("temphtm.HTM"));
    quon.WaitUntilPainted();
    CaptureScreen().SaveAs("first-start.bmp");
}

TEST_F(StartAndEndTest, ADriveWithoutADiskBringsNoComplaintInAnyThread) {
    constexpr unsigned kQuiet = SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX;
    QuonPanel quon = Start({});
    const UINT modes = agent::ErrorModes(quon.Main());
    EXPECT_EQ(LOWORD(modes), kQuiet);
    // Beside the starter's, which Windows hands down and Wine does not.
    EXPECT_THAT(HIWORD(modes), AnyOf(kQuiet, kQuiet | GetErrorMode()));
}

TEST_F(StartAndEndTest, ASecondStartEndsAtOnceAndSilently) {
    const QuonIni ini{.start_glued = true};
    QuonPanel quon = Start(ini);
    const std::string before = folder_.IniBytes();
    EXPECT_EQ(RunToExit(folder_.FullPath("Quon.exe")), 0u);
    EXPECT_EQ(RunToExit(folder_.FullPath("Quon.exe"), {.arguments = "anything", .work_folder = "C:\\"}), 0u);
    EXPECT_TRUE(quon.IsDockedAt(Edge::kBottom)) << "the first instance is not brought forward";
    EXPECT_THAT(quon.Program().Windows(), SizeIs(1));
    EXPECT_THAT(FindTopWindows({.class_name = "QuonMain"}), SizeIs(1));
    EXPECT_EQ(folder_.IniBytes(), before);
    // Another folder is another program.
    const ProgramFolder other("quon-other");
    other.WriteIniText(QuonIni{.current_tab = 2}.Text());
    QuonPanel neighbour(other);
    EXPECT_TRUE(quon.Program().IsRunning());
    EXPECT_EQ(neighbour.Program().CloseAndWait(), 0u);
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(other.IniValue("Settings", "Main"), QuonIni{.current_tab = 2}.Main());
    EXPECT_EQ(Setting("Main"), ini.Main());
    // And once the first has gone there is room again.
    QuonPanel again(folder_);
    EXPECT_TRUE(again.Program().IsRunning());
}

TEST_F(StartAndEndTest, TheInstanceIsNamedInItsSessionAlone) {
    QuonPanel quon = Start({});
    EXPECT_NE(OwnedHandle(OpenMutexW(SYNCHRONIZE, FALSE, (L"Local\\" + InstanceName()).c_str())), nullptr);
    EXPECT_EQ(OwnedHandle(OpenMutexW(SYNCHRONIZE, FALSE, (L"Global\\" + InstanceName()).c_str())), nullptr);
}

TEST_F(StartAndEndTest, AStartEndsSilentlyWhenItCannotOpenTheInstanceThatRuns) {
    folder_.WriteIniText(QuonIni().Text());
    folder_.CopyIn(QuonExe());
    const OwnedHandle held(CreateEventW(nullptr, FALSE, FALSE, (L"Local\\" + InstanceName()).c_str()));
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(RunToExit(folder_.FullPath("Quon.exe")), 0u);
    EXPECT_EQ(folder_.IniBytes(), QuonIni().Text());
    EXPECT_FALSE(FindTopWindow({.class_name = "QuonMain"}));
}

TEST_F(StartAndEndTest, TheCloseButtonHidesAndAltF4EndsWithTheSettingAsItWas) {
    const QuonIni ini{.edge = static_cast<int>(Edge::kLeft), .click_shows = true};
    QuonPanel quon = Start(ini);
    const RECT out = quon.Main().Rect();
    SetWindowPos(quon.Main().Handle(), nullptr, out.left + 41, out.top - 23, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_ASYNCWINDOWPOS);
    WaitFor("the panel moves", [&] { return quon.Main().Rect().left == out.left + 41; });
    mouse::Click(quon.CloseButtonPlace());
    quon.WaitUntilDockedAt(Edge::kLeft);
    EXPECT_TRUE(quon.Program().IsRunning());
    // A closed panel comes back where it was closed.
    mouse::Click(POINT{1, 384});
    quon.WaitUntilOut();
    EXPECT_EQ(quon.Main().Rect().left, out.left + 41);
    EXPECT_EQ(quon.Main().Rect().top, out.top - 23);
    // The system menu's "Close" is the same request.
    quon.Main().Post(WM_SYSCOMMAND, SC_CLOSE);
    quon.WaitUntilDockedAt(Edge::kLeft);
    mouse::Click(POINT{1, 384});
    quon.WaitUntilOut();
    mouse::Click(quon.Button(1));
    keyboard::Chord({VK_MENU, VK_F4});
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
    EXPECT_EQ(Setting("Main"), ini.Main());
}

TEST_F(StartAndEndTest, TheCloseButtonEndsTheProgramWhenTheSettingSaysSo) {
    QuonPanel quon = Start({.close_button_closes = true,
                            .edge = static_cast<int>(Edge::kTop),
                            .pop_on_hover = true,
                            .pop_delay = 250});
    const HWND panel = quon.Main().Handle();
    mouse::Click(quon.CloseButtonPlace());
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
    EXPECT_FALSE(HasTrayIcon(panel));
    EXPECT_EQ(Setting("Main"), "1,False,False,False,True,True,False,2,False,False,False");
    EXPECT_EQ(Setting("popdelay"), "250");
    EXPECT_EQ(Setting("poptf"), "True");
    EXPECT_EQ(Setting("clickshow"), "False");
}

TEST_F(StartAndEndTest, SettingsAreSavedInTheirOwnForm) {
    // Every field the other way round than in the tests above, some spelt as other programs would.
    folder_.WriteIniText(
        "; kept\r\n[Settings]\r\nMain= 5 , true,1,TRUE,0,-1,True,3x,1,0,tRuE,further\r\npoptf=1\r\n"
        "popdelay=abc\r\nclickshow=true\r\nOther=kept\r\n");
    QuonPanel quon(folder_);
    EXPECT_TRUE(quon.IsDockedAt(Edge::kRight));
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(Setting("Main"), "5,True,True,True,False,True,True,3,True,False,True");
    EXPECT_EQ(Setting("popdelay"), "500");
    EXPECT_EQ(Setting("poptf"), "True");
    EXPECT_EQ(Setting("clickshow"), "True");
    EXPECT_EQ(Setting("Other"), "kept");
}

TEST_F(StartAndEndTest, TheTabThatWasShownIsShownAgain) {
    QuonIni ini = QuonIni{}.AddShortcut("31", "Third", folder_.Path());
    ini.buttons.emplace_back("30", "Work|");
    QuonPanel quon = Start(ini);
    quon.ExpectName(1, "Empty");
    EXPECT_EQ(quon.Header(3).Text(), "Work");
    mouse::Click(quon.Header(3));
    quon.ExpectName(1, "Third");
    EXPECT_EQ(Setting("Main"), ini.Main());
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    ini.current_tab = 3;
    EXPECT_EQ(Setting("Main"), ini.Main());
    QuonPanel again(folder_);
    again.ExpectName(1, "Third");
}

TEST_F(StartAndEndTest, StartGluedShowsOnlyTheStrip) {
    for (const Edge edge : {Edge::kLeft, Edge::kTop, Edge::kRight, Edge::kBottom}) {
        const QuonIni ini{.start_glued = true, .edge = static_cast<int>(edge)};
        const Window before = Window::Foreground();
        QuonPanel quon = Start(ini);
        EXPECT_TRUE(quon.IsDockedAt(edge)) << ini.edge;
        EXPECT_TRUE(quon.Main().IsTopmost());
        EXPECT_EQ(Window::Foreground(), before) << "a docked panel takes the focus";
        const RECT place = quon.Main().Rect();
        const POINT strip = {std::clamp((place.left + place.right) / 2, 1L, 1022L),
                             std::clamp((place.top + place.bottom) / 2, 1L, 766L)};
        EXPECT_EQ(Window::At(strip), quon.Main());
        if (edge == Edge::kBottom) CaptureScreen().SaveAs("docked-at-the-bottom.bmp");
    }
}

TEST_F(StartAndEndTest, ANumberThatIsNoEdgeLeavesThePanelWhereItIs) {
    const QuonIni ini{.start_glued = true, .edge = 7};
    QuonPanel quon = Start(ini);
    EXPECT_TRUE(quon.IsOut());
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(Setting("Main"), ini.Main());
}

TEST_F(StartAndEndTest, ACloseFromOutsideEndsTheProgramWhateverTheSettingSays) {
    QuonPanel quon = Start({});
    const HWND panel = quon.Main().Handle();
    quon.Main().Post(WM_CLOSE);
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
    EXPECT_FALSE(HasTrayIcon(panel));
    EXPECT_EQ(Setting("Main"), QuonIni().Main());
}

TEST_F(StartAndEndTest, TheEndOfTheSessionSavesAndEnds) {
    QuonPanel quon = Start({});
    mouse::Click(quon.Header(6));
    quon.Settle();
    const std::string before = folder_.IniBytes();
    EXPECT_EQ(quon.Main().Send(WM_QUERYENDSESSION), TRUE);
    // Somebody else may still refuse: nothing has happened so far.
    quon.Main().Send(WM_ENDSESSION, FALSE);
    quon.Settle();
    EXPECT_TRUE(quon.Program().IsRunning());
    EXPECT_TRUE(quon.IsOut());
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(quon.Main().Send(WM_QUERYENDSESSION), TRUE);
    quon.Main().Send(WM_ENDSESSION, TRUE);
    // Windows may end the process as soon as the message returns: everything is saved by then.
    EXPECT_EQ(Setting("Main"), QuonIni{.current_tab = 6}.Main());
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
}

TEST_F(StartAndEndTest, TheEndOfTheSessionPassesAnOpenMessageBox) {
    const QuonIni ini = QuonIni{.current_tab = 4}.AddShortcut("41", "Editor", folder_.FullPath("Quon.exe"));
    QuonPanel quon = Start(ini);
    quon.OpenButton(1, {VK_MENU, VK_CONTROL});
    MessageBoxWindow::Wait(quon.Id());
    EXPECT_EQ(quon.Main().Send(WM_QUERYENDSESSION), TRUE);
    quon.Main().Send(WM_ENDSESSION, TRUE);
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
    EXPECT_EQ(Setting("Main"), ini.Main());
    EXPECT_EQ(folder_.Ini().Entries("Switch").size(), 0u);
}

TEST_F(StartAndEndTest, AProgramThatIsKilledHasSavedNothing) {
    QuonPanel quon = Start({});
    mouse::Click(quon.Header(2));
    quon.Settle();
    quon.Program().Terminate();
    EXPECT_EQ(Setting("Main"), QuonIni().Main());
}

}  // namespace
}  // namespace testkit
