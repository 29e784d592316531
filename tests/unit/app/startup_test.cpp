#include "config/settings.h"
#include "model/launching.h"
#include "res/resource.h"
#include "tests/support/program_calls.h"
#include "tests/unit/app/panel_harness.h"
#include "win/dialog.h"
#include "win/errors.h"

namespace app {
namespace {

using ::testing::AnyOf, ::testing::Contains, ::testing::ElementsAreArray, ::testing::HasSubstr,
    ::testing::StartsWith;

std::vector<std::string> TabKeys() { return {"10", "20", "30", "40", "50", "60"}; }

std::string MainWith(std::string_view tab,
                     std::string_view fields = "False,False,False,False,False,False,0,False,False,False") {
    return "Main=" + std::string(tab) + "," + std::string(fields) + "\r\n";
}

/// The nine buttons of a tab bound to a page each, so that showing the tab frees nothing.
std::string FullTab(int tab) {
    std::string buttons = "[Buttons]\r\n";
    std::string cuts = "[Cuts]\r\n";
    for (int button = 1; button <= 9; ++button) {
        const std::string name = "n" + std::to_string(tab) + std::to_string(button);
        buttons += name.substr(1) + "=" + name + "|0\r\n";
        cuts += name + "=http://host/" + name + "\r\n";
    }
    return buttons + cuts;
}

TEST(LoadTest, RunsItsStepsInOrder) {
    PanelHarness panel(MainWith("3"), FullTab(3));
    panel.Load();
    std::vector<std::string> expected;
    for (const std::string& key : TabKeys())
        expected.push_back("read Buttons " + key);
    expected.insert(expected.end(), 9, "edge");
    for (int key = 10; key <= 69; ++key)
        expected.push_back("read Buttons " + std::to_string(key));
    expected.insert(expected.end(),
                    {"section Cuts", "drives", "associated temphtm.HTM there", "read Settings Main"});
    const std::vector<std::string> popUp{"read Settings poptf", "read Settings popdelay",
                                         "read Settings clickshow"};
    // Checked before buttons are freed in the file, and loaded after that.
    expected.insert(expected.end(), popUp.begin(), popUp.end());
    for (int button = 1; button <= 9; ++button) {
        const std::string name = "n3" + std::to_string(button);
        expected.insert(expected.end(), {"read Cuts " + name, "read Switch " + name});
    }
    for (int button = 1; button <= 9; ++button)
        expected.insert(expected.end(), {"associated browser.exe missing", "edge"});
    expected.insert(expected.end(), popUp.begin(), popUp.end());
    expected.insert(expected.end(), {"tray add", "list *.exe"});
    const std::vector<std::string> lines = panel.Log().Lines();
    ASSERT_GE(lines.size(), expected.size()) << panel.Log().Text();
    const std::vector<std::string> start(lines.begin(),
                                         lines.begin() + static_cast<std::ptrdiff_t>(expected.size()));
    EXPECT_THAT(start, ElementsAreArray(expected));
    const std::vector<std::string> end(lines.begin() + static_cast<std::ptrdiff_t>(expected.size()),
                                       lines.end());
    ASSERT_EQ(end.size(), 5u) << panel.Log().Text();
    EXPECT_THAT(end[0], StartsWith("place "));
    EXPECT_EQ(end[1], "topmost");
    EXPECT_EQ(end[2], "show");
    EXPECT_EQ(end[3], "find Shell_traywnd (null)");
    EXPECT_EQ(end[4], "read Settings hotkey");
}

TEST(LoadTest, TakesConfigurationAndHelpFromTheProgramFolder) {
    PanelHarness panel;
    config::IniPath = "C:\\other.ini";
    panel.Load();
    EXPECT_EQ(config::IniPath, panel.Folder().FullPath("Quon.ini"));
    testkit::CallLog log;
    const auto shell = STUB_CALL(log, ShellExecuteA, reinterpret_cast<HINSTANCE>(33));
    // The window's procedure may be reached from another process, and Windows then copies the record.
    HELPINFO info{};
    info.cbSize = sizeof info;
    panel.Window().Send(WM_HELP, 0, reinterpret_cast<LPARAM>(&info));
    EXPECT_THAT(log.Lines(),
                ElementsAreArray({"ShellExecuteA " + testkit::LoggedText(GetDesktopWindow()) + " (null) " +
                                  panel.Folder().FullPath("Manual.chm") + " (null) (null) 1"}));
}

TEST(LoadTest, LoadsFromANetworkShareWhereItMayWriteNoProbe) {
    PanelHarness panel(MainWith("2"), FullTab(2));
    const std::string share = "\\\\сервер\\share\\Quon";
    const auto program = testkit::ProgramLiesAt(share + "\\Quon.exe");
    // The share is the test's own folder.
    const std::string ini = panel.Folder().IniPath();
    const auto there = [&](LPCSTR file) {
        EXPECT_EQ(file, share + "\\Quon.ini");
        return ini.c_str();
    };
    testkit::RecordedCalls calls;
    calls.push_back(FAKE_CALL(GetPrivateProfileStringA, [&](LPCSTR section, LPCSTR key, LPCSTR otherwise,
                                                            LPSTR value, DWORD size, LPCSTR file) {
        return ORIGINAL_CALL(GetPrivateProfileStringA)(section, key, otherwise, value, size, there(file));
    }));
    calls.push_back(
        FAKE_CALL(GetPrivateProfileSectionA, [&](LPCSTR section, LPSTR text, DWORD size, LPCSTR file) {
            return ORIGINAL_CALL(GetPrivateProfileSectionA)(section, text, size, there(file));
        }));
    calls.push_back(
        FAKE_CALL(WritePrivateProfileStringA, [&](LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR file) {
            return ORIGINAL_CALL(WritePrivateProfileStringA)(section, key, value, there(file));
        }));
    calls.push_back(
        FAKE_CALL(CreateFileA, [&](LPCSTR file, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE) {
            EXPECT_THAT(file, AnyOf(share + "\\temphtm.HTM", share + "\\Quon.ini"));
            SetLastError(ERROR_ACCESS_DENIED);
            return INVALID_HANDLE_VALUE;
        }));
    panel.Load();
    EXPECT_EQ(config::IniPath, share + "\\Quon.ini");
    EXPECT_EQ(panel.Window().Child(IDC_BUTTON + 1).Text(), "n21");
    EXPECT_EQ(panel.Log().Count("tray add"), 1u);
    panel.Window().Send(WM_CLOSE);
    EXPECT_EQ(panel.Folder().IniValue("Settings", "popdelay"), "500");
}

TEST(LoadTest, PutsNothingBackThatAKilledRunHasLeft) {
    PanelHarness panel(MainWith("4"), FullTab(4));
    const std::string text = panel.Folder().IniBytes();
    panel.Folder().MakeFile("Quon.ini.unit-1", std::string(text.size(), '\0'));
    panel.Folder().MakeFile("Quon.ini.unit-2", MainWith("1"));
    panel.Folder().MakeFile("Quon.ini.before-write", "[Settings]\r\nMa");
    panel.Folder().MakeFile("Quon.ini.unit-mine", "kept");
    panel.Load();
    EXPECT_EQ(panel.Window().Child(IDC_BUTTON + 9).Text(), "n49");
    EXPECT_FALSE(panel.Folder().Exists("Quon.ini.unit-1"));
    EXPECT_FALSE(panel.Folder().Exists("Quon.ini.unit-2"));
    EXPECT_EQ(panel.Folder().ReadFile("Quon.ini.unit-mine"), "kept");
}

TEST(LoadTest, WaitsForAFileThatIsJustBeingSaved) {
    for (const char* before : {"", "[Buttons]\r\n10=|\r\n"}) {
        PanelHarness panel(kPlainSettings, "[Buttons]\r\n10=Work|mine\r\n");
        const std::string whole = panel.Folder().IniBytes();
        panel.Folder().WriteIniText(before);
        int pauses = 0;
        const auto pause = FAKE_CALL(Sleep, [&](DWORD) {
            if (++pauses == 3) panel.Folder().WriteIniText(whole);
        });
        panel.Load();
        EXPECT_EQ(panel.Window().Child(IDC_TAB_HEADER + 1).Text(), "Work");
        EXPECT_EQ(pauses, 3);
    }
}

TEST(LoadTest, LabelsTheHeadersFromTheTabRecords) {
    PanelHarness panel(MainWith("1"), "[Buttons]\r\n10=Посао|\r\n40=书籍|opis\r\n");
    panel.Load();
    EXPECT_EQ(panel.Window().Child(IDC_TAB_HEADER + 1).Text(), "Посао");
    EXPECT_EQ(panel.Window().Child(IDC_TAB_HEADER + 4).Text(), "书籍");
    EXPECT_EQ(panel.Window().Child(IDC_TAB_HEADER + 2).Text(), "");
}

TEST(LoadTest, ShowsTheButtonsOfTheStoredTab) {
    PanelHarness panel(MainWith("6"), FullTab(6));
    panel.Load();
    EXPECT_EQ(panel.Window().Child(IDC_BUTTON + 1).Text(), "n61");
    EXPECT_EQ(panel.Window().Child(IDC_BUTTON + 9).Text(), "n69");
}

TEST(LoadTest, ChecksTheEntryOfTheExtensiveTooltipsFromTheSetting) {
    for (const bool on : {false, true}) {
        const std::string word = on ? "True" : "False";
        PanelHarness panel(MainWith("1", "False,False,False,False,False," + word + ",0,False,False,False"));
        panel.Load();
        UINT state = 0;
        const auto track = FAKE_CALL(TrackPopupMenu, [&](HMENU menu, UINT, int, int, int, HWND, const RECT*) {
            state = GetMenuState(menu, 3, MF_BYPOSITION);
            return 0;
        });
        panel.Window().Child(IDC_IMAGE_BUTTON + 2).SendClick();
        EXPECT_EQ((state & MF_CHECKED) != 0, on);
    }
}

TEST(LoadTest, KeepsTheDefaultBrowserAndDeletesTheProbe) {
    PanelHarness panel;
    panel.Load();
    EXPECT_EQ(model::DefaultBrowserPath, "C:\\browser.exe");
    EXPECT_FALSE(panel.Folder().Exists("temphtm.HTM"));
}

TEST(LoadTest, FillsTheDropDownWithTheShortcuts) {
    PanelHarness panel(MainWith("1"),
                       "[Cuts]\r\nČačak=C:\\c\r\n文=C:\\w\r\n[Collected]\r\nTool=C:\\t.exe\r\n");
    panel.Load();
    EXPECT_EQ(panel.Window().Child(IDC_SHORTCUTS).Send(CB_GETCOUNT), 3);
}

TEST(LoadTest, FillsTheDropDownOnceMoreWhenCollectedApplicationsBelongToIt) {
    PanelHarness panel(MainWith("1", "False,False,False,False,False,False,0,False,True,False"),
                       "[Cuts]\r\nA=C:\\c\r\n[Collected]\r\nTool=C:\\t.exe\r\n");
    panel.Load();
    EXPECT_TRUE(InOrder(panel.Log(),
                        {"section Cuts", "read Settings Main", "find Shell_traywnd", "section Collected"}));
    EXPECT_EQ(panel.Window().Child(IDC_SHORTCUTS).Send(CB_GETCOUNT), 3);
}

TEST(LoadTest, LoadsThePopUpSettingsWithTheirDefaults) {
    PanelHarness plain;
    plain.Load();
    EXPECT_FALSE(config::Settings.PopOnHover);
    EXPECT_EQ(config::Settings.PopDelay, 500);
    EXPECT_FALSE(config::Settings.ClickShows);
}

TEST(LoadTest, GoesToItsEdgeWithoutTheTimerWhenItStartsGlued) {
    PanelHarness panel(MainWith("1", "False,True,False,False,False,False,4,False,False,False"));
    panel.Load();
    const int top = GetSystemMetrics(SM_CYSCREEN) - 4;
    EXPECT_EQ(panel.Window().Rect().top, top);
    EXPECT_TRUE(InOrder(panel.Log(),
                        {"tray add", "place", "timer off", "topmost", "show quietly", "find Shell_traywnd"}));
    EXPECT_EQ(panel.Log().Count("timer on 500"), 0u);
    EXPECT_EQ(panel.Window().Send(WM_NCHITTEST, 0, MAKELPARAM(0, top)), HTCLIENT);
}

TEST(LoadTest, StandsInTheMiddleOfTheScreenOtherwise) {
    PanelHarness panel(MainWith("1", "False,False,False,False,False,False,4,False,False,False"));
    panel.Load();
    const RECT place = panel.Window().Rect();
    EXPECT_NEAR(place.left, (GetSystemMetrics(SM_CXSCREEN) - (place.right - place.left)) / 2, 1);
    EXPECT_NEAR(place.top, (GetSystemMetrics(SM_CYSCREEN) - (place.bottom - place.top)) / 2, 1);
    EXPECT_EQ(panel.Log().Count("timer"), 0u);
}

TEST(LoadTest, HasTheTimerOnFromDesignTime) {
    PanelHarness panel;
    panel.Panel().CreateParts();
    EXPECT_THAT(panel.Log().Lines(), Contains("timer on 500"));
}

TEST(LoadTest, IsATopmostToolWindowNamedQuonWithACloseButton) {
    PanelHarness panel;
    panel.Load();
    const testkit::Window window = panel.Window();
    EXPECT_EQ(window.Text(), "Quon");
    EXPECT_NE(window.ExtendedStyle() & WS_EX_TOOLWINDOW, 0);
    EXPECT_TRUE(window.IsTopmost());
    EXPECT_NE(window.Style() & WS_SYSMENU, 0);
    EXPECT_EQ(window.Style() & WS_THICKFRAME, 0);
    EXPECT_LT(window.Rect().right - window.Rect().left, WM_LBUTTONUP)
        << "a real move must not look like the tray's";
}

/// The rename box is open only in a window that is visible; this one stands beside the screen.
struct KeyboardPanel : PanelHarness {
    KeyboardPanel() : PanelHarness(MainWith("1"), FullTab(1)) {
        Load();
        SetWindowPos(Window().Handle(), nullptr, -3000, 0, 0, 0,
                     SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_SHOWWINDOW);
        Log().Clear();
    }
};

bool IsShown(testkit::Window box) { return (box.Style() & WS_VISIBLE) != 0; }

TEST(PanelKeysTest, F2OpensTheRenameBoxAndEscapeAbandonsIt) {
    KeyboardPanel panel;
    const testkit::Window box = panel.Window().Child(IDC_RENAME);
    EXPECT_FALSE(IsShown(box));
    EXPECT_TRUE(panel.PressKey(WM_KEYDOWN, VK_F2));
    EXPECT_TRUE(IsShown(box));
    EXPECT_EQ(box.Text(), "n11");
    box.SetText("other");
    EXPECT_TRUE(panel.PressKey(WM_KEYDOWN, VK_ESCAPE));
    EXPECT_FALSE(IsShown(box));
    EXPECT_EQ(panel.Log().Count("write"), 0u);
}

TEST(PanelKeysTest, EnterAcceptsTheNewNameInTheRenameBoxAlone) {
    KeyboardPanel panel;
    const testkit::Window box = panel.Window().Child(IDC_RENAME);
    panel.PressKey(WM_KEYDOWN, VK_F2);
    box.SetText("other");
    SetFocus(panel.Window().Child(IDC_TAB_HEADER + 1).Handle());
    panel.PressKey(WM_KEYDOWN, VK_RETURN);
    EXPECT_EQ(panel.Folder().IniValue("Buttons", "11"), "n11|0");
    panel.PressKey(WM_KEYDOWN, VK_F2);
    SetFocus(box.Handle());
    box.SetText("other");
    EXPECT_TRUE(panel.PressKey(WM_KEYDOWN, VK_RETURN, {}, box.Handle()));
    EXPECT_EQ(panel.Folder().IniValue("Buttons", "11"), "other|0");
    EXPECT_FALSE(IsShown(box));
}

TEST(PanelKeysTest, HeldKeysOpenAndStoreNothingAgain) {
    constexpr LPARAM kRepeated = 0x40000001;
    KeyboardPanel panel;
    const testkit::Window box = panel.Window().Child(IDC_RENAME);
    const auto repeat = [&](WPARAM key, testkit::Window window) {
        MSG message{};
        message.hwnd = window.Handle();
        message.message = WM_KEYDOWN;
        message.wParam = key;
        message.lParam = kRepeated;
        return panel.Panel().PreTranslate(message);
    };
    EXPECT_TRUE(repeat(VK_F2, panel.Window()));
    EXPECT_FALSE(IsShown(box));
    panel.PressKey(WM_KEYDOWN, VK_F2);
    box.SetText("other");
    SetFocus(box.Handle());
    EXPECT_TRUE(repeat(VK_RETURN, box));
    EXPECT_TRUE(repeat(VK_ESCAPE, box));
    EXPECT_TRUE(IsShown(box));
    EXPECT_EQ(panel.Folder().IniValue("Buttons", "11"), "n11|0");
    const testkit::Window list = panel.Window().Child(IDC_SHORTCUTS);
    const testkit::Window edit = list.Descendants().front();
    list.SetText("text");
    for (const WPARAM key : {WPARAM{VK_RETURN}, WPARAM{VK_ESCAPE}, WPARAM{VK_F1}})
        EXPECT_TRUE(repeat(key, edit)) << key;
    EXPECT_EQ(list.Text(), "text");
}

TEST(PanelKeysTest, OtherKeysDoNothing) {
    KeyboardPanel panel;
    for (const int key : {VK_F3, VK_F4, VK_F5, VK_DELETE, VK_BACK, VK_ESCAPE, VK_HOME, int{'A'}})
        for (const UINT message : {WM_KEYDOWN, WM_KEYUP})
            panel.PressKey(message, static_cast<WORD>(key));
    panel.Window().Send(WM_SYSCOMMAND, SC_CLOSE);
    EXPECT_NE(panel.Panel().Handle(), nullptr) << "F4 alone is no request to end";
    EXPECT_EQ(panel.Log().Count("write"), 0u);
    EXPECT_FALSE(IsShown(panel.Window().Child(IDC_RENAME)));
}

int g_faults = 0;

LONG CALLBACK CountFault(EXCEPTION_POINTERS*) {
    ++g_faults;
    return EXCEPTION_CONTINUE_SEARCH;
}

struct BadIni {
    const char* name;
    std::string settings;
    std::string rest;
    const char* message;
};

class BadIniTest : public ::testing::TestWithParam<BadIni> {};

TEST_P(BadIniTest, EndsTheLoadWithoutATraceAndNamesWhatIsWrong) {
    PanelHarness panel(GetParam().settings, GetParam().rest);
    const std::string before = panel.Folder().IniBytes();
    try {
        panel.Load();
        FAIL() << "no error";
    } catch (const win::RuntimeError& error) {
        EXPECT_THAT(error.what(), HasSubstr(GetParam().message));
    }
    EXPECT_EQ(panel.Log().Count("tray"), 0u);
    EXPECT_EQ(panel.Log().Count("show"), 0u);
    g_faults = 0;
    void* const watch = AddVectoredExceptionHandler(1, &CountFault);
    panel.Release();
    RemoveVectoredExceptionHandler(watch);
    // Windows swallows what is raised in a window's procedure.
    EXPECT_EQ(g_faults, 0) << "a window's last message reached an object that was gone";
    EXPECT_FALSE(TakeQuitMessage()) << "the error report's own message loop would end at once";
    EXPECT_EQ(panel.Log().Count("tray"), 0u);
    EXPECT_EQ(panel.Log().Count("write"), 0u);
    EXPECT_EQ(panel.Folder().IniBytes(), before);
    EXPECT_FALSE(panel.Folder().Exists("temphtm.HTM"));
}

INSTANTIATE_TEST_SUITE_P(
    Load, BadIniTest,
    ::testing::Values(
        BadIni{"NoMain", "", "", "CurrentTab"}, BadIni{"EmptyMain", "Main=\r\n", "", "CurrentTab"},
        BadIni{"ShortMain", "Main=1,False,False\r\n", "", "HideAfterLaunch"},
        BadIni{"WrongBoolean", MainWith("1", "Да,False,False,False,False,False,0,False,False,False"), "",
               "Да"},
        BadIni{"TooLargeEdge",
               MainWith("1", "False,False,False,False,False,False,3000000000,False,False,False"), "",
               "3000000000"},
        BadIni{"TabZero", MainWith("0"), FullTab(1), "no tab 0"},
        BadIni{"TabSeven", MainWith("7"), FullTab(1), "no tab 7"},
        BadIni{"TabNegative", MainWith("-1"), "", "no tab -1"},
        BadIni{"TabRecordWithoutBar", MainWith("1"), "[Buttons]\r\n30=Посао\r\n", "Посао"},
        BadIni{"WrongPopUp", MainWith("1") + "poptf=maybe\r\n", "[Buttons]\r\n11=gone|0\r\n", "poptf"},
        BadIni{"TooLongDelay", MainWith("1") + "popdelay=99999999999\r\n", "", "popdelay"},
        BadIni{"WrongClickShow", MainWith("1") + "clickshow=maybe\r\n", "", "clickshow"}),
    [](const auto& test) { return test.param.name; });

TEST(PanelTimerTest, TriesTheTrayIconAgainUntilItIsThereAndNotAfterThat) {
    PanelHarness panel;
    int asked = 0;
    BOOL taken = FALSE;
    const auto notify = FAKE_CALL(Shell_NotifyIconA, [&](DWORD what, PNOTIFYICONDATAA) -> BOOL {
        if (what != NIM_MODIFY) ++asked;
        return taken;
    });
    panel.Load();
    EXPECT_EQ(panel.Log().Count("timer on 3000"), 1u);
    EXPECT_EQ(asked, 1);
    panel.Log().Clear();
    panel.Window().Send(WM_TIMER, kTrayTimer);
    EXPECT_EQ(panel.Log().Count("timer off"), 0u);
    taken = TRUE;
    panel.Window().Send(WM_TIMER, kTrayTimer);
    EXPECT_EQ(panel.Log().Count("timer off"), 1u);
    EXPECT_EQ(asked, 3);
}

TEST(PanelTimerTest, DoesNotTryAgainOnceTheTrayIconIsThere) {
    PanelHarness panel;
    panel.Load();
    EXPECT_EQ(panel.Log().Count("timer on 3000"), 0u);
}

TEST(PanelTimerTest, FollowsTheScreenAtOnceAndOnceMoreAWhileLater) {
    PanelHarness panel(MainWith("1", "False,True,False,False,False,False,4,False,False,False"));
    panel.Load();
    panel.Log().Clear();
    panel.Window().Send(WM_DISPLAYCHANGE, 32, MAKELPARAM(1024, 768));
    EXPECT_EQ(panel.Log().Count("place"), 1u);
    EXPECT_EQ(panel.Log().Count("timer on 1000"), 1u);
    panel.Window().Send(WM_TIMER, kScreenTimer);
    EXPECT_EQ(panel.Log().Count("place"), 2u);
    EXPECT_EQ(panel.Log().Count("timer off"), 1u);
    panel.Window().Send(WM_SETTINGCHANGE, SPI_SETWORKAREA);
    EXPECT_EQ(panel.Log().Count("place"), 3u);
    panel.Window().Send(WM_SETTINGCHANGE, SPI_SETDOUBLECLICKTIME);
    EXPECT_EQ(panel.Log().Count("place"), 3u) << "nothing has moved";
}

TEST(DockedKeysTest, OnlyAltF4AndF1GetThroughWhileNothingIsToBeSeen) {
    PanelHarness panel(MainWith("1", "False,True,False,False,False,False,4,False,False,False"));
    panel.Load();
    for (const int key : {VK_RETURN, VK_SPACE, VK_F2, VK_ESCAPE, VK_TAB, VK_F4, int{'A'}})
        EXPECT_TRUE(panel.PressKey(WM_KEYDOWN, static_cast<WORD>(key))) << key;
    EXPECT_TRUE(panel.PressKey(WM_CHAR, 'a'));
    EXPECT_TRUE(panel.PressKey(WM_SYSKEYDOWN, VK_SPACE, {VK_MENU}));
    EXPECT_TRUE(panel.PressKey(WM_SYSCHAR, ' ', {VK_MENU}));
    EXPECT_TRUE(panel.PressKey(WM_SYSKEYDOWN, VK_F4, {VK_MENU, VK_SHIFT}));
    int dispatched = 0;
    const auto dialog = FAKE_CALL(IsDialogMessageW, [&]() -> BOOL {
        ++dispatched;
        return FALSE;
    });
    EXPECT_FALSE(panel.PressKey(WM_KEYDOWN, VK_F1));
    EXPECT_FALSE(panel.PressKey(WM_SYSKEYDOWN, VK_F4, {VK_MENU}));
    EXPECT_EQ(dispatched, 2);
}

}  // namespace
}  // namespace app
