#include "app/panel_menus.h"

#include "model/text_shortcut.h"
#include "tests/unit/app/panel_menus_fixture.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

class PanelMenusTest : public PanelMenusFixture {};

TEST_F(PanelMenusTest, HaveTheirCommandsInOrder) {
    EXPECT_THAT(Captions(menus_.mnuPreDef),
                ElementsAre("Launch default browser", "Launch default mail client", "Write new mail", "-",
                            "Launch Control Panel", "Shows Windows uptime"));
    EXPECT_THAT(Captions(menus_.mnuSettings),
                ElementsAre("Organize shortcuts", "Options", "-", "Extensive tooltips", "-", "About"));
    EXPECT_THAT(Captions(menus_.mnuShell), ElementsAre("My Computer"));
}

TEST_F(PanelMenusTest, NumberTheirCommandsFromTheirBases) {
    EXPECT_EQ(menus_.mnuPreDef.IndexOf(2000), 0);
    EXPECT_EQ(menus_.mnuShell.IndexOf(2200), 0);
    EXPECT_EQ(menus_.mnuSettings.IndexOf(2405), 5);
}

TEST_F(PanelMenusTest, OpenBelowTheirImageButtons) {
    for (const int button : {0, 1, 2}) {
        Choose(button, 0);
        EXPECT_EQ(at_.x, ImageButton(button).Rect().left);
        EXPECT_EQ(at_.y, ImageButton(button).Rect().bottom);
    }
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(PanelMenusTest, LaunchTheDefaultBrowser) {
    Choose(1, 2000);
    EXPECT_THAT(log_.Lines(), ElementsAre("open  C:\\прегледач.exe  C: 1", "Sleep 500"));
}

TEST_F(PanelMenusTest, LaunchTheDefaultMailClient) {
    const auto open = FAKE_CALL(RegOpenKeyExA, [this](HKEY, LPCSTR key, DWORD, REGSAM, PHKEY) -> LSTATUS {
        log_.Add("key", key);
        return ERROR_FILE_NOT_FOUND;
    });
    Choose(1, 2001);
    EXPECT_EQ(log_.Count("key Software\\Clients\\Mail"), 2u) << log_.Text();
    EXPECT_EQ(log_.Count("open"), 0u);
}

TEST_F(PanelMenusTest, WriteANewMail) {
    Choose(1, 2002);
    ASSERT_EQ(log_.Lines().size(), 1u);
    EXPECT_THAT(log_.Lines()[0], ::testing::MatchesRegex("open \\(null\\) mailto:.+@.+ \\(null\\) ..\\\\ 1"));
    EXPECT_THAT(log_.Lines()[0], ::testing::EndsWith(Root() + " 1"));
}

TEST_F(PanelMenusTest, LaunchTheControlPanel) {
    Choose(1, 2004);
    EXPECT_THAT(log_.Lines(), ElementsAre("start rundll32.exe url.dll,FileProtocolHandler control 1"));
}

TEST_F(PanelMenusTest, ShowTheUptimeAndNeverHideForIt) {
    const auto ticks = ANSWER_CALL(GetTickCount, 3723000);
    config::Settings.HideAfterLaunch = true;
    testkit::ModalAnswers user(
        {testkit::Note("Windows is running for: \r\n" + model::CTextShortcut::HowLong())});
    Choose(1, 2005);
    EXPECT_FALSE(dock_.Hidden());
    EXPECT_EQ(log_.Count("Sleep"), 0u);
}

TEST_F(PanelMenusTest, HideThePanelAfterAPredefinedCommandWhenTheSettingSaysSo) {
    for (const int command : {2000, 2001, 2002, 2004}) {
        config::Settings.HideAfterLaunch = false;
        dock_.ShowQuon(true, true);
        Choose(1, command);
        EXPECT_FALSE(dock_.Hidden()) << command;
        config::Settings.HideAfterLaunch = true;
        Choose(1, command);
        EXPECT_TRUE(dock_.Hidden()) << command;
        ASSERT_FALSE(log_.Lines().empty());
        EXPECT_EQ(log_.Lines().back(), "Sleep 200") << command;
    }
}

TEST_F(PanelMenusTest, HideThePanelOnlyAfterThePauseThatTheStartedProgramGets) {
    config::Settings.HideAfterLaunch = true;
    std::vector<bool> hidden;
    const auto sleep = FAKE_CALL(Sleep, [&](DWORD) { hidden.push_back(dock_.Hidden()); });
    Choose(1, 2004);
    EXPECT_THAT(hidden, ElementsAre(false));
    EXPECT_TRUE(dock_.Hidden());
}

TEST_F(PanelMenusTest, ExploreTheChosenPlaceAndStayOut) {
    config::Settings.HideAfterLaunch = true;
    Choose(0, 2200);
    EXPECT_THAT(log_.Lines(),
                ElementsAre("open explore ::{20D04FE0-3AEA-1069-A2D8-08002B30309D} (null) " + Root() + " 1"));
    Choose(0, 2201);
    EXPECT_THAT(log_.Lines(), ElementsAre("open explore C:\\ (null) " + Root() + " 1"));
    EXPECT_FALSE(dock_.Hidden());
}

TEST_F(PanelMenusTest, SayNothingAboutAPlaceThatIsGone) {
    const std::string gone = folder_.FullPath("нема");
    const auto location =
        FAKE_CALL(SHGetPathFromIDListEx, [&](LPCITEMIDLIST, LPWSTR path, DWORD, GPFIDL_FLAGS) -> BOOL {
            std::wcscpy(path, testkit::Wide(gone).c_str());
            return TRUE;
        });
    INT_PTR answer = 0;
    const auto shell = FAKE_CALL(
        ShellExecuteA, [&](HWND owner, LPCSTR verb, LPCSTR file, LPCSTR parameters, LPCSTR folder, INT show) {
            EXPECT_EQ(file, gone);
            const HINSTANCE done = ORIGINAL_CALL(ShellExecuteA)(owner, verb, file, parameters, folder, show);
            answer = reinterpret_cast<INT_PTR>(done);
            return done;
        });
    const auto box = STUB_CALL(log_, MessageBoxW, IDOK);
    const testkit::ModalAnswers none({});
    Choose(0, 0);
    int documents = 0;
    while (menus_.mnuShell[documents].caption != "My Documents")
        ++documents;
    Choose(0, 2200 + documents);
    EXPECT_GT(answer, 0);
    EXPECT_LT(answer, 33) << "the place is there";
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(PanelMenusTest, ListTheDrivesAnewAtEachOpening) {
    Choose(0, 0);
    const int before = menus_.mnuShell.Count();
    const auto drives = FAKE_CALL(GetLogicalDriveStringsA, [](DWORD, LPSTR roots) -> DWORD {
        std::copy_n("C:\\\0C:\\\0", 9, roots);
        return 8;
    });
    Choose(0, 0);
    EXPECT_EQ(menus_.mnuShell.Count(), before + 1);
}

TEST_F(PanelMenusTest, ToggleTheExtensiveTooltipsWithTheirCheckMark) {
    menus_.ShowTooltipSetting();
    EXPECT_FALSE(menus_.mnuSettings[3].checked);
    Choose(2, 2403);
    EXPECT_TRUE(config::Settings.ExtensiveTooltips);
    EXPECT_TRUE(menus_.mnuSettings[3].checked);
    Choose(2, 2403);
    EXPECT_FALSE(config::Settings.ExtensiveTooltips);
    EXPECT_FALSE(menus_.mnuSettings[3].checked);
}

TEST_F(PanelMenusTest, ToggleTheMarkAndLetTheSettingFollowIt) {
    menus_.ShowTooltipSetting();
    // The options may have stopped between the setting and its mark.
    config::Settings.ExtensiveTooltips = true;
    Choose(2, 2403);
    EXPECT_TRUE(menus_.mnuSettings[3].checked);
    EXPECT_TRUE(config::Settings.ExtensiveTooltips);
}

TEST_F(PanelMenusTest, OpenTheOrganiserWithThePanelDocked) {
    int opened = 0;
    dock_.ShowQuon(true, true);
    menus_.onOrganize = [&] {
        ++opened;
        EXPECT_TRUE(dock_.Hidden());
    };
    EXPECT_TRUE(menus_.mnuSettings[0].enabled);
    Choose(2, 2400);
    EXPECT_EQ(opened, 1);
}

TEST_F(PanelMenusTest, OpenTheOptions) {
    Choose(2, 2401);
    int opened = 0;
    menus_.onOptions = [&] { ++opened; };
    EXPECT_TRUE(menus_.mnuSettings[1].enabled);
    Choose(2, 2401);
    EXPECT_EQ(opened, 1);
    for (const int command : {0, 2400, 2402, 2404})
        Choose(2, command);
    EXPECT_EQ(opened, 1);
}

TEST_F(PanelMenusTest, CheckTheMarkFromTheSetting) {
    config::Settings.ExtensiveTooltips = true;
    menus_.ShowTooltipSetting();
    EXPECT_TRUE(menus_.mnuSettings[3].checked);
}

TEST_F(PanelMenusTest, ShowTheAboutBox) {
    testkit::ModalAnswers user({[](testkit::Window box) {
        EXPECT_EQ(box.Text(), "About Quon");
        box.Send(WM_CLOSE);
    }});
    Choose(2, 2405);
}

TEST_F(PanelMenusTest, StayOutAfterASetting) {
    config::Settings.HideAfterLaunch = true;
    Choose(2, 2401);
    Choose(2, 2403);
    EXPECT_FALSE(dock_.Hidden());
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(PanelMenusTest, OpenByEnterAndSpace) {
    for (const int key : {VK_RETURN, VK_SPACE}) {
        at_ = {-1, -1};
        ImageButton(1).Send(WM_KEYDOWN, static_cast<WPARAM>(key));
        EXPECT_EQ(at_.x, ImageButton(1).Rect().left);
        EXPECT_EQ(at_.y, ImageButton(1).Rect().bottom);
    }
}

TEST_F(PanelMenusTest, StandUnderImageButtonsThatAreFlatRaisedOrSunken) {
    const auto edge = FAKE_CALL(DrawEdge, [this](HDC, LPRECT, UINT kind, UINT) -> WINBOOL {
        log_.Add("edge", kind);
        return TRUE;
    });
    ImageButton(0).Send(WM_PAINT);
    ImageButton(0).Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    ImageButton(0).Send(WM_PAINT);
    ImageButton(0).Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    ImageButton(0).Send(WM_PAINT);
    ReleaseCapture();
    ImageButton(0).Send(WM_MOUSELEAVE);
    ImageButton(0).Send(WM_PAINT);
    EXPECT_THAT(log_.Lines(), ElementsAre("edge " + std::to_string(BDR_RAISEDINNER),
                                          "edge " + std::to_string(BDR_SUNKENOUTER)));
}

TEST_F(PanelMenusTest, HaveLightPicturesOnDarkGround) {
    std::vector<HICON> light;
    const auto make = FAKE_CALL(
        CreateIconFromResourceEx,
        [&](PBYTE bytes, DWORD length, WINBOOL icon, DWORD version, int width, int height, UINT flags) {
            light.push_back(
                ORIGINAL_CALL(CreateIconFromResourceEx)(bytes, length, icon, version, width, height, flags));
            return light.back();
        });
    std::vector<HICON> drawn;
    const auto draw =
        FAKE_CALL(DrawIconEx, [&](HDC, int, int, HICON icon, int width, int, UINT, HBRUSH, UINT) -> WINBOOL {
            EXPECT_EQ(width, 20);
            drawn.push_back(icon);
            return TRUE;
        });
    COLORREF ground = RGB(0x20, 0x20, 0x20);
    const auto color = FAKE_CALL(GetSysColor, [&](int index) -> DWORD {
        return index == COLOR_BTNFACE ? ground : ORIGINAL_CALL(GetSysColor)(index);
    });
    menus_.Rescale();
    EXPECT_EQ(light.size(), 4u);
    EXPECT_EQ(drawn, light);
    ground = RGB(0xF0, 0xF0, 0xF0);
    drawn.clear();
    menus_.Rescale();
    EXPECT_EQ(light.size(), 4u) << "the usual ones again";
    EXPECT_EQ(drawn.size(), 4u);
}

TEST_F(PanelMenusTest, MakeTheTipsThatThereAreAnewForAnotherScale) {
    ImageButton(1).Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    std::vector<std::pair<HWND, LONG>> tools;
    const auto note = [&](const auto* tool) { tools.emplace_back(tool->hwnd, tool->rect.right); };
    const auto send = FAKE_CALL(SendMessageA, [&](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == TTM_ADDTOOLA) note(reinterpret_cast<const TTTOOLINFOA*>(lParam));
        if (message == TTM_ADDTOOLW) note(reinterpret_cast<const TTTOOLINFOW*>(lParam));
        return ORIGINAL_CALL(SendMessageA)(window, message, wParam, lParam);
    });
    const auto dpi = FAKE_CALL(GetDpiForWindow, [](HWND) -> UINT { return 192; });
    menus_.Rescale();
    EXPECT_THAT(tools, ElementsAre(std::pair(ImageButton(1).Handle(), LONG{56})));
}

TEST_F(PanelMenusTest, WalkAlongTheirImageButtonsByTheArrows) {
    SetFocus(ImageButton(0).Handle());
    const auto press = [this](WPARAM key) {
        testkit::Window(GetFocus()).Send(WM_KEYDOWN, key);
        return GetDlgCtrlID(GetFocus()) - ImageButton(0).Id();
    };
    EXPECT_EQ(press(VK_RIGHT), 1);
    EXPECT_EQ(press(VK_UP), 1);
    EXPECT_EQ(press(VK_LEFT), 0);
    EXPECT_EQ(press(VK_LEFT), 3) << "from the first one to the last";
    EXPECT_EQ(press(VK_RIGHT), 0);
}

TEST_F(PanelMenusTest, KeepTheTipsAwayWhileTheyAreOpen) {
    ImageButton(0).Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    const auto tip = WATCH_CALL(SendMessageA, [this](HWND, UINT message, WPARAM wParam, LPARAM) {
        if (message == TTM_ACTIVATE) log_.Add("tip", wParam);
    });
    const auto track = FAKE_CALL(TrackPopupMenu, [this] {
        log_.Add("menu");
        return 0;
    });
    Choose(2, 0);
    EXPECT_THAT(log_.Lines(), ElementsAre("tip 0", "menu", "tip 1"));
}

TEST_F(PanelMenusTest, OpenWhatIsTypedByTheFourthButton) {
    int gone = 0;
    menus_.onGo = [&] { ++gone; };
    at_ = {-1, -1};
    Choose(3, 0);
    EXPECT_EQ(gone, 1);
    EXPECT_EQ(at_.x, -1);
}

}  // namespace
}  // namespace app
