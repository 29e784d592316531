// What the panel shows: tabs, faces, tips, its menus; and that showing it costs nothing in the long run.

#include "dialogs/message_box.h"
#include "tests/program/quon_test.h"
#include "tests/support/gdi_table.h"
#include "version.h"

namespace testkit {
namespace {

using ::testing::ElementsAre, ::testing::HasSubstr, ::testing::StartsWith;

constexpr COLORREF kShownTabMark = RGB(0x17, 0x78, 0x8A);

class PanelTest : public QuonTest {
  protected:
    static bool IsMarkedAsShown(Window header) { return CaptureWindow(header).At(25, 1) == kShownTabMark; }
};

bool IsBlank(const Picture& picture, RECT part) { return picture.Part(part).ColourCount() == 1; }

TEST_F(PanelTest, AClickOnAHeaderShowsItsTab) {
    QuonPanel quon = Start(QuonIni{.buttons = {{"10", "Работа|"}, {"60", "日本語|with | in it"}}}
                               .AddShortcut("11", "First", folder_.Path())
                               .AddShortcut("61", "Sixth", folder_.Path()));
    quon.WaitUntilPainted();
    EXPECT_EQ(quon.Header(1).Text(), "Работа");
    EXPECT_EQ(quon.Header(2).Text(), "");
    EXPECT_EQ(quon.Header(6).Text(), "日本語");
    EXPECT_TRUE(IsMarkedAsShown(quon.Header(1)));
    EXPECT_FALSE(IsMarkedAsShown(quon.Header(6)));
    mouse::Click(quon.Header(6));
    quon.ExpectName(1, "Sixth");
    WaitFor("the mark moves", [&] { return IsMarkedAsShown(quon.Header(6)); });
    WaitFor("the old mark goes", [&] { return !IsMarkedAsShown(quon.Header(1)); });
    CaptureScreen().SaveAs("sixth-tab.bmp");
    // A click on the header of the shown tab repaints it too.
    mouse::Click(quon.Header(6));
    mouse::MoveTo(quon.Button(1).Centre());
    WaitFor("the hover picture", [&] { return quon.HoverPicture().IsVisible(); });
    mouse::Click(quon.Header(1));
    quon.ExpectName(1, "First");
    WaitFor("the hover picture hides", [&] { return !quon.HoverPicture().IsVisible(); });
}

TEST_F(PanelTest, AFaceShowsIconCaptionMarkAndEdge) {
    const std::string target = folder_.CopyIn(TestTargetExe(), "target.exe");
    QuonPanel quon = Start(QuonIni{}
                               .AddShortcut("11", "Short", target)
                               .AddShortcut("12", "A name much too long for one line", target)
                               .AddShortcut("13", "Group", target + "|" + folder_.Path())
                               .AddShortcut("14", "Switched", target, "/x"));
    quon.ExpectName(4, "Switched");
    quon.LeaveAlone();
    CaptureScreen().SaveAs("faces.bmp");
    const RECT icon = {35, 8, 67, 40};
    const RECT upper_line = {4, 44, 98, 55};
    const RECT lower_line = {4, 58, 98, 70};
    const RECT mark = {4, 3, 34, 16};
    const auto face = [&](int button) { return CaptureWindow(quon.Button(button)); };
    for (const int button : {1, 2, 3, 4}) {
        EXPECT_FALSE(IsBlank(face(button), icon)) << button;
        EXPECT_FALSE(IsBlank(face(button), lower_line)) << button;
        EXPECT_EQ(IsBlank(face(button), upper_line), button != 2) << button;
        EXPECT_EQ(IsBlank(face(button), mark), button <= 2) << button;
        EXPECT_TRUE(IsBlank(face(button), {70, 3, 98, 43})) << button;
    }
    EXPECT_NE(face(3).Part(mark), face(4).Part(mark));
    // A free button has its word where the caption would be, and nothing else.
    quon.ExpectName(9, "Empty");
    EXPECT_TRUE(IsBlank(face(9), {3, 3, 99, 56}));
    EXPECT_FALSE(IsBlank(face(9), lower_line));
    for (const int button : {1, 9}) {
        const Picture edge = face(button);
        ASSERT_EQ(edge.Width(), 102);
        ASSERT_EQ(edge.Height(), 90);
        EXPECT_EQ(edge.At(0, 30), GetSysColor(COLOR_3DLIGHT));
        EXPECT_EQ(edge.At(1, 30), GetSysColor(COLOR_3DDKSHADOW));
        EXPECT_EQ(edge.At(101, 30), GetSysColor(COLOR_3DDKSHADOW));
        EXPECT_EQ(edge.At(100, 30), GetSysColor(COLOR_3DLIGHT));
        EXPECT_EQ(edge.At(30, 0), GetSysColor(COLOR_3DLIGHT));
        EXPECT_EQ(edge.At(30, 89), GetSysColor(COLOR_3DDKSHADOW));
    }
}

TEST_F(PanelTest, TheTipOfATabListsItsButtons) {
    const std::string target = folder_.MakeFile("Упутство.txt", "text");
    QuonPanel quon = Start(QuonIni{.extensive_tooltips = true, .buttons = {{"20", "Алати|Description"}}}
                               .AddShortcut("22", "Manual", target)
                               .AddShortcut("25", "Both 文", target + "|" + folder_.Path()));
    const ToolTipWatch tips(quon.Main());
    Hover(quon.Header(2));
    const ToolTipText tip = tips.Wait();
    EXPECT_EQ(tip.title, "Алати");
    EXPECT_EQ(tip.text, "2. " + target + "\n5. Group: Both 文");
    EXPECT_EQ(tip.icon, 0u);
    CaptureScreen().SaveAs("tab-tip.bmp");
}

TEST_F(PanelTest, EachImageButtonGetsItsTipWhenThePointerComes) {
    constexpr std::pair<const char*, const char*> kTips[] = {
        {"Folders and drives", "Opens a folder or a drive."},
        {"Predefined commands", "Starts the browser, mail and more."},
        {"Settings", "Shortcuts, options and tooltips."},
        {"Open shortcut", "Opens what is chosen or typed beside it."}};
    QuonPanel quon = Start({});
    const ToolTipWatch tips(quon.Main());
    for (int index = 0; index < 4; ++index) {
        Hover(quon.ImageButton(index));
        WaitFor(kTips[index].first, [&] { return tips.Wait().title == kTips[index].first; });
        EXPECT_EQ(tips.Wait().text, kTips[index].second);
        EXPECT_EQ(quon.ImageButton(index).Text(), kTips[index].first) << "what a screen reader says";
    }
}

TEST_F(PanelTest, TheTipOfATabIsItsDescriptionWhenTheSettingSaysSo) {
    QuonPanel quon = Start({.extensive_tooltips = true,
                            .tab_descriptions = true,
                            .buttons = {{"20", "Label|Опис | with a bar"}}});
    const ToolTipWatch tips(quon.Main());
    Hover(quon.Header(2));
    EXPECT_EQ(tips.Wait().text, "Опис | with a bar");
    Hover(quon.Header(3));
    WaitFor("the next tab's tip", [&] { return tips.Wait().text == "Right-click to define tab"; });
}

TEST_F(PanelTest, TheMarkGoesWhenThePointerLeftWhileAMenuWasOpen) {
    const QuonPanel quon = Start({});
    mouse::MoveTo(quon.Button(5).Centre());
    WaitFor("the hover picture", [&] { return quon.HoverPicture().IsVisible(); });
    const PopupMenu menu = quon.OpenButtonMenu(5);
    mouse::MoveTo({5, 400});
    menu.Dismiss();
    WaitFor("the hover picture hides", [&] { return !quon.HoverPicture().IsVisible(); });
}

TEST_F(PanelTest, TheHoverPictureTellsAboutItsButton) {
    const std::string target = folder_.MakeFile("Упутство.txt", std::string(2000, 'x'));
    QuonPanel quon = Start(QuonIni{.extensive_tooltips = true}
                               .AddShortcut("11", "Manual", target)
                               .AddShortcut("12", "Both", target + "|" + folder_.Path())
                               .AddShortcut("14", "Page", "http://host.example/путь")
                               .AddShortcut("15", "Folder", folder_.Path()));
    quon.Main().Activate();
    const ToolTipWatch tips(quon.Main());
    const auto tip_of = [&](int button, const Keys& held = {}) {
        const Window face = quon.Button(button);
        mouse::MoveTo(face.Centre());
        WaitFor("the hover picture is on the button", [&] {
            const RECT picture = quon.HoverPicture().Rect();
            return quon.HoverPicture().IsVisible() && picture.left == face.Rect().left + 3 &&
                   picture.top == face.Rect().top + 3;
        });
        Hover(quon.HoverPicture(), held);
        return tips.Wait();
    };
    const ToolTipText single = tip_of(1);
    EXPECT_EQ(single.title, "Manual");
    EXPECT_THAT(single.text, StartsWith("Path: " + target + "\nFile size: "));
    EXPECT_THAT(single.text, HasSubstr("\nLast modified: "));
    CaptureScreen().SaveAs("button-tip.bmp");
    const ToolTipText group = tip_of(2);
    EXPECT_EQ(group.title, "Both");
    EXPECT_EQ(group.text, "Group consists of:\r\n1. " + target + "\r\n2. " + folder_.Path());
    const ToolTipText free = tip_of(3);
    EXPECT_EQ(free.title, "You can...");
    EXPECT_EQ(free.text,
              "1. Drop file, link or URL to create shortcut,\n"
              "2. Right-click the button and choose file for it,\n"
              "3. Right-click the button to chose a file from active processes, or\n"
              "4. Right-click the button and paste copied file or URL from clipboard.");
    const ToolTipText page = tip_of(4);
    EXPECT_EQ(page.title, "Page");
    EXPECT_EQ(page.text, "URL: http://host.example/путь");
    const ToolTipText folder = tip_of(5);
    EXPECT_EQ(folder.title, "Folder");
    EXPECT_EQ(folder.text, "Folder\n" + folder_.Path());
    for (const int key : {VK_SHIFT, VK_CONTROL, VK_MENU}) {
        const ToolTipText commands = tip_of(key == VK_CONTROL ? 2 : 1, {static_cast<WORD>(key)});
        EXPECT_EQ(commands.title, "Special button commands:");
        EXPECT_EQ(commands.text,
                  "CTRL + click frees the button.\n"
                  "SHIFT + click opens file in maximized window.\n"
                  "ALT + click opens file minimized.\n"
                  "ALT + CTRL + click lets you enter switch for the assigned file,\n"
                  "CTRL + SHIFT + drag lets you change button's place, even to different tab.");
    }
}

TEST_F(PanelTest, TheSettingsMenuSwitchesTheTipsAndShowsAbout) {
    QuonPanel quon = Start({});
    {
        const PopupMenu menu = quon.OpenSettingsMenu();
        EXPECT_THAT(menu.Captions(),
                    ElementsAre("Organize shortcuts", "Options", "-", "Extensive tooltips", "-", "About"));
        EXPECT_FALSE(menu.Item("Extensive tooltips").checked);
        menu.Choose("Extensive tooltips");
    }
    {
        const PopupMenu menu = quon.OpenSettingsMenu();
        EXPECT_TRUE(menu.Item("Extensive tooltips").checked);
        CaptureScreen().SaveAs("settings-menu.bmp");
        menu.Choose("About");
    }
    const Window about = quon.Program().WaitForWindow({.title = "About Quon"});
    EXPECT_EQ(about.Child(dialogs::frmMsg::VersionLabel).Text(), "version " QUON_VERSION);
    EXPECT_EQ(about.Child(dialogs::frmMsg::SupportLink).Text(), "Tech support, contact");
    EXPECT_EQ(about.Child(dialogs::frmMsg::WebLink).Text(), "Visit web site");
    EXPECT_EQ(about.Child(dialogs::frmMsg::b2).Text(), "Close");
    EXPECT_EQ(about.Owner(), quon.Main());
    EXPECT_TRUE(about.IsTopmost());
    CaptureScreen().SaveAs("about.bmp");
    // Clicked by its place: seen from outside, the transparent frame around it lies in front.
    mouse::Click(about.Child(dialogs::frmMsg::b2).Centre());
    WaitFor("About closes", [&] { return !about.IsVisible(); });
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), QuonIni().Main()) << "saved before the program ends";
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), QuonIni{.extensive_tooltips = true}.Main());
}

TEST_F(PanelTest, SwitchingTabsCostsNothingInTheLongRun) {
    QuonPanel quon =
        Start(QuonIni{}.AddShortcut("21", "Name", folder_.CopyIn(TestTargetExe(), "target.exe")));
    const LPARAM middle = MAKELPARAM(20, 10);
    const auto rounds = [&](int count) {
        for (int round = 0; round < count; ++round) {
            for (const int tab : {2, 1}) {
                quon.Header(tab).Send(WM_LBUTTONDOWN, MK_LBUTTON, middle);
                quon.Header(tab).Send(WM_LBUTTONUP, 0, middle);
            }
        }
    };
    // All that is made once, tips among it, is there before anything is counted.
    for (int twice = 0; twice < 2; ++twice) {
        rounds(5);
        quon.ExpectName(1, "Empty");
        quon.Settle();
        quon.LeaveAlone();
    }
    quon.Settle();
    const bool drawingCounts = CanCountDrawingObjects();
    const std::size_t drawing = drawingCounts ? quon.Program().GdiObjectCount() : 0;
    const std::size_t windows = quon.Program().UserObjectCount();
    const std::size_t memory = quon.Program().WorkingSet();
    constexpr int kRounds = 20;
    constexpr std::size_t kLostByEach = 16 * 1024;
    rounds(kRounds);
    quon.Settle();
    // What painting uses at the moment of counting is given back; what is lost at each switch adds up.
    EXPECT_TRUE(HappensWithin(kPatience,
                              [&] { return !drawingCounts || quon.Program().GdiObjectCount() <= drawing; }))
        << "more than " << drawing;
    EXPECT_EQ(quon.Program().UserObjectCount(), windows);
    EXPECT_LT(quon.Program().WorkingSet(), memory + kRounds * kLostByEach);
}

}  // namespace
}  // namespace testkit
