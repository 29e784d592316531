// The organiser and the editors it opens on the whole program: by mouse, wheel and keyboard, and what
// Quon.ini, the panel and the drop-down show afterwards.

#include "dialogs/edit_group.h"
#include "dialogs/organize_shortcuts.h"
#include "tests/program/quon_test.h"

namespace testkit {
namespace {

using ::testing::Contains, ::testing::ElementsAre, ::testing::Not;

constexpr int kEdit = frmCuts_Command1 + 0;
constexpr int kDelete = frmCuts_Command1 + 1;
constexpr int kQuit = frmCuts_Command1 + 2;
constexpr int kList = frmCuts_pBasket;
constexpr int kBar = frmCuts_Scr;

class OrganizerTest : public QuonTest {
  protected:
    QuonPanel StartWithAHundred() const {
        QuonIni ini;
        for (int index = 0; index < 100; ++index)
            ini.cuts.emplace_back("n" + std::to_string(index), "C:\\windows");
        return Start(ini);
    }
    /// With the pointer on the list.
    static Window OpenUnderThePointer(QuonPanel& quon) {
        const Window organiser = Open(quon, 100);
        mouse::MoveTo(organiser.Child(dialogs::frmCuts::pFrame).Centre());
        return organiser;
    }
    static Window Open(QuonPanel& quon, int shortcuts) {
        const Window organiser = quon.OpenOrganiser();
        EXPECT_EQ(organiser.Text(), "Organize shortcuts - " + std::to_string(shortcuts) + " shortcuts found");
        return organiser;
    }
    static void WaitForName(Window organiser, const std::string& name) {
        WaitFor("the row is selected", [&] { return organiser.Child(kList).Text() == name; });
    }
    static void Leave(Window organiser) {
        mouse::Click(organiser.Child(kQuit));
        WaitUntilClosed(organiser);
    }
    static int BarValue(Window organiser) { return static_cast<int>(organiser.Child(kBar).Send(SBM_GETPOS)); }
};

TEST_F(OrganizerTest, AShortcutDeletedHereFreesItsButton) {
    QuonPanel quon = Start(QuonIni{}
                               .AddShortcut("13", "Белешке", folder_.MakeFile("белешке.txt"))
                               .AddShortcut("12", "Other", folder_.MakeFile("other.txt")));
    quon.ExpectName(3, "Белешке");
    EXPECT_EQ(quon.Shortcuts().Send(CB_GETCOUNT), 3);
    const Window organiser = Open(quon, 2);
    EXPECT_TRUE(quon.IsDockedAt(Edge::kBottom));
    EXPECT_TRUE(organiser.IsTopmost());
    WaitForName(organiser, "Белешке");
    mouse::Click(organiser.Child(kDelete));
    const MessageBoxWindow box = MessageBoxWindow::Wait(quon.Id());
    EXPECT_EQ(box.Text(),
              "You have this shortcut on the button too (Tab 1, button 3).\nPlease confirm deletion.");
    box.ClickButton(0);
    WaitForName(organiser, "Other");
    Leave(organiser);
    quon.ExpectName(3, "Empty");
    quon.ExpectName(2, "Other");
    WaitFor("the drop-down follows", [&] { return quon.Shortcuts().Send(CB_GETCOUNT) == 2; });
    EXPECT_EQ(folder_.IniValue("Buttons", "13"), "");
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), ElementsAre("Other"));
}

TEST_F(OrganizerTest, AGroupRenamedHereIsRenamedOnItsButton) {
    QuonIni ini;
    const std::string members = folder_.MakeFile("a.txt") + "|" + folder_.MakeFile("文件.txt");
    ini.AddShortcut("11", "Work", members);
    QuonPanel quon = Start(ini);
    const Window organiser = Open(quon, 1);
    mouse::Click(organiser.Child(kEdit));
    const Window editor = quon.Program().WaitForWindow({.title = "Edit group"});
    WaitFor("the name has the focus", [&] { return editor.Child(dialogs::frmEditB::t1 + 0).IsFocused(); });
    EXPECT_TRUE(editor.Child(dialogs::frmEditB::l1 + 3).IsVisible());
    keyboard::Type("Play");
    WaitFor("the name is free", [&] { return !editor.Child(dialogs::frmEditB::l1 + 3).IsVisible(); });
    keyboard::Press(VK_RETURN);
    WaitForName(organiser, "Play");
    quon.ExpectName(1, "Play");
    EXPECT_TRUE(organiser.Exists()) << "the panel does not wait for the organiser's end";
    Leave(organiser);
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Play|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "Play"), members);
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), Not(Contains("Work")));
}

TEST_F(OrganizerTest, TheRealWheelScrollsTheList) {
    QuonPanel quon = StartWithAHundred();
    const Window organiser = OpenUnderThePointer(quon);
    mouse::Wheel(-1);
    WaitFor("the list scrolls", [&] { return BarValue(organiser) == 102; });
    mouse::Wheel(1);
    WaitFor("the list scrolls back", [&] { return BarValue(organiser) == 0; });
    keyboard::Press(VK_END);
    WaitForName(organiser, "n99");
    EXPECT_GT(BarValue(organiser), 4000);
    keyboard::Press(VK_ESCAPE);
    WaitUntilClosed(organiser);
}

TEST_F(OrganizerTest, SmallStepsOfTheWheelAddUp) {
    QuonPanel quon = StartWithAHundred();
    const Window organiser = OpenUnderThePointer(quon);
    for (int step = 0; step < 12; ++step)
        mouse::Turn(-10);
    WaitFor("the list scrolls", [&] { return BarValue(organiser) == 102; });
    quon.Program().WaitUntilIdle();
    EXPECT_EQ(BarValue(organiser), 102);
    Leave(organiser);
}

TEST_F(OrganizerTest, AHeldDeleteKeyDeletesOneShortcut) {
    QuonIni ini;
    for (const char* name : {"First", "Second", "Third"})
        ini.cuts.emplace_back(name, "C:\\windows");
    QuonPanel quon = Start(ini);
    const Window organiser = Open(quon, 3);
    // A few: each of them is a chance for Wine to take the key for one that was let go.
    keyboard::Hold(VK_DELETE, 4);
    WaitForName(organiser, "Second");
    quon.Program().WaitUntilIdle();
    EXPECT_EQ(organiser.Child(dialogs::frmCuts::pBasket).Text(), "Second");
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), ElementsAre("Second", "Third"));
    // The delete command's button, pressed by a held Enter.
    keyboard::Chord({VK_SHIFT, VK_TAB});
    mouse::MoveTo(organiser.Child(dialogs::frmCuts::Command1 + 1).Centre());
    for (int tab = 0; tab < 6 && !organiser.Child(dialogs::frmCuts::Command1 + 1).IsFocused(); ++tab) {
        keyboard::Press(VK_TAB);
        quon.Program().WaitUntilIdle();
    }
    ASSERT_TRUE(organiser.Child(dialogs::frmCuts::Command1 + 1).IsFocused());
    keyboard::Hold(VK_RETURN, 4);
    WaitForName(organiser, "Third");
    quon.Program().WaitUntilIdle();
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), ElementsAre("Third"));
    Leave(organiser);
}

}  // namespace
}  // namespace testkit
