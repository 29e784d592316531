// A button's group and icon in a user's hands: the menu, the editor or the chooser, and what the button and
// Quon.ini show afterwards.

#include "tests/program/quon_test.h"

namespace testkit {
namespace {

using ::testing::ElementsAre;

constexpr int kGroupName = frmEditB_t1;
constexpr int kApply = frmEditB_c1 + 2;
constexpr int kAddUrl = frmEditB_c1 + 4;
constexpr int kDeleteItem = frmEditB_c1 + 5;
constexpr int kGroupList = frmEditB_pBasket;
constexpr int kFirstIcon = IcoChooser_p2 + 0;
constexpr int kLastIcon = IcoChooser_p2 + 5;
constexpr int kCross = IcoChooser_Image1;

class GroupAndIconTest : public QuonTest {
  protected:
    /// Opens a button's menu and chooses a command; gives the window that it opens.
    static Window Choose(QuonPanel& quon, int button, std::string_view command, const char* title) {
        quon.OpenButtonMenu(button).Choose(command);
        const Window window = quon.Program().WaitForWindow({.title = title});
        WaitFor("the window is in front", [&] { return window.IsForeground(); });
        EXPECT_FALSE(quon.Main().IsEnabled());
        return window;
    }
    static Window EditGroup(QuonPanel& quon, int button, std::string_view command) {
        const Window editor = Choose(quon, button, command, "Edit group");
        WaitFor("the name has the focus", [&] { return editor.Child(kGroupName).IsFocused(); });
        return editor;
    }
    static Window ChangeIcon(QuonPanel& quon, int button) {
        const Window chooser = Choose(quon, button, "Change icon", "Icon Chooser");
        WaitFor("an icon has the focus", [&] { return chooser.Child(kFirstIcon).IsFocused(); });
        return chooser;
    }
    static void ExpectGone(const QuonPanel& quon, Window window) {
        WaitUntilClosed(window);
        WaitFor("the panel takes input again", [&] { return quon.Main().IsEnabled(); });
    }
};

TEST_F(GroupAndIconTest, APickedIconIsOnTheFaceAndInTheFile) {
    QuonPanel quon = Start(QuonIni{}.AddShortcut("12", "Програм", QuonExe()));
    quon.LeaveAlone();
    const Picture before = CaptureWindow(quon.Button(2));
    const Window chooser = ChangeIcon(quon, 2);
    EXPECT_TRUE(chooser.IsTopmost());
    EXPECT_TRUE(chooser.FindChild(kLastIcon));
    EXPECT_FALSE(chooser.FindChild(kLastIcon + 1));
    keyboard::Press(VK_END);
    WaitFor("the last icon has the focus", [&] { return chooser.Child(kLastIcon).IsFocused(); });
    keyboard::Press(VK_RETURN);
    ExpectGone(quon, chooser);
    WaitForRecord("Buttons", "12", "Програм|5");
    quon.LeaveAlone();
    const Picture last = CaptureWindow(quon.Button(2));
    EXPECT_NE(last, before);
    const Window again = ChangeIcon(quon, 2);
    mouse::Click(again.Child(kFirstIcon));
    ExpectGone(quon, again);
    WaitForRecord("Buttons", "12", "Програм|0");
    quon.LeaveAlone();
    EXPECT_EQ(CaptureWindow(quon.Button(2)), before);
}

TEST_F(GroupAndIconTest, SmallStepsOfTheWheelAddUpInTheEditorOfAGroup) {
    QuonIni ini;
    std::string members = "C:\\";
    for (int member = 1; member < 50; ++member)
        members += "|C:\\";
    ini.AddShortcut("11", "Many", members);
    QuonPanel quon = Start(ini);
    const Window editor = EditGroup(quon, 1, "Edit group");
    mouse::MoveTo(editor.Child(frmEditB_pFrame).Centre());
    const auto scrolled = [&] { return editor.Child(frmEditB_Scr).Send(SBM_GETPOS); };
    for (int step = 0; step < 12; ++step) {
        EXPECT_EQ(scrolled(), 0);
        mouse::Turn(-10);
        quon.Program().WaitUntilIdle();
    }
    WaitFor("the list scrolls", [&] { return scrolled() == 60; });
    keyboard::Press(VK_ESCAPE);
    ExpectGone(quon, editor);
}

TEST_F(GroupAndIconTest, ThePanelTheCrossAndEscDismissTheChooser) {
    QuonPanel quon = Start(QuonIni{}.AddShortcut("12", "Програм", QuonExe()));
    const std::string before = folder_.IniBytes();
    const std::function<void(Window)> ways[] = {
        [&](Window) { mouse::Click(quon.Button(5).Centre()); },
        // Between the headers and the frame.
        [&](Window) { mouse::Click(quon.Main().ClientPoint(2, 2)); },
        [](Window chooser) { mouse::Click(chooser.Child(kCross)); },
        [](Window) { keyboard::Press(VK_ESCAPE); },
    };
    for (const auto& dismiss : ways) {
        const Window chooser = ChangeIcon(quon, 2);
        dismiss(chooser);
        ExpectGone(quon, chooser);
    }
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_EQ(quon.Button(5).Text(), "Empty");
}

TEST_F(GroupAndIconTest, AFileWithoutIconsShowsAnEmptyChooser) {
    const std::string script = folder_.MakeFile("празно.exe", "not a program");
    QuonPanel quon = Start(QuonIni{}.AddShortcut("12", "Ништа", script));
    const Window chooser = Choose(quon, 2, "Change icon", "Icon Chooser");
    EXPECT_FALSE(chooser.FindChild(kFirstIcon));
    mouse::Click(chooser.Child(kCross));
    ExpectGone(quon, chooser);
    EXPECT_EQ(folder_.IniValue("Buttons", "12"), "Ништа|0");
}

TEST_F(GroupAndIconTest, AFreeButtonGetsAGroupThatIsEditedAndRenamed) {
    QuonPanel quon = Start({});
    const Window editor = EditGroup(quon, 3, "Add group to button");
    keyboard::Type("Посао");
    for (const std::string page : {"a.test", "b.test"}) {
        mouse::Click(editor.Child(kAddUrl));
        MessageBoxWindow::Wait(quon.Id()).SetInput("http://" + page);
        MessageBoxWindow::Wait(quon.Id()).AnswerByKey(VK_RETURN);
    }
    mouse::Click(editor.Child(kApply));
    ExpectGone(quon, editor);
    quon.ExpectName(3, "Посао");
    EXPECT_EQ(folder_.IniValue("Buttons", "13"), "Посао|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "Посао"), "http://a.test|http://b.test");

    const Window again = EditGroup(quon, 3, "Edit group");
    EXPECT_TRUE(quon.IsOut());
    keyboard::Type("文 Ново");
    mouse::Click(again.Child(kGroupList).ClientPoint(60, 35));
    WaitFor("the second row is selected", [&] { return again.Child(kGroupList).Text() == "http://b.test"; });
    mouse::Click(again.Child(kDeleteItem));
    WaitFor("the row goes", [&] { return again.Child(kGroupList).Text() == "http://a.test"; });
    keyboard::Press(VK_ESCAPE);
    ExpectGone(quon, again);
    EXPECT_EQ(folder_.IniValue("Cuts", "Посао"), "http://a.test|http://b.test");

    const Window last = EditGroup(quon, 3, "Edit group");
    keyboard::Type("文 Ново\n");
    ExpectGone(quon, last);
    quon.ExpectName(3, "文 Ново");
    EXPECT_EQ(folder_.IniValue("Buttons", "13"), "文 Ново|0");
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), ElementsAre("文 Ново"));
    EXPECT_EQ(folder_.IniValue("Cuts", "文 Ново"), "http://a.test|http://b.test");
}

TEST_F(GroupAndIconTest, FreeButtonTakesTheGroupOfTheSecondButtonOnly) {
    QuonPanel quon = Start(QuonIni{}
                               .AddShortcut("11", "Први", folder_.MakeFile("a.txt"))
                               .AddShortcut("12", "Други", folder_.MakeFile("b.txt") + "|" + folder_.Path()));
    quon.OpenButtonMenu(2).Choose("Free button");
    quon.ExpectName(2, "Empty");
    WaitForRecord("Buttons", "12", "");
    WaitFor("the target goes too",
            [&] { return folder_.Ini().Keys("Cuts") == std::vector<std::string>{"Први"}; });
    quon.ExpectName(1, "Први");
}

}  // namespace
}  // namespace testkit
