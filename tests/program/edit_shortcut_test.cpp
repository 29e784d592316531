// The organiser and the editor of a single shortcut on the whole program, as a person goes through them, and
// what Quon.ini, the panel and the drop-down show afterwards.

#include "tests/program/quon_test.h"

namespace testkit {
namespace {

using ::testing::ElementsAre;

constexpr int kEdit = frmCuts_Command1 + 0;
constexpr int kDelete = frmCuts_Command1 + 1;
constexpr int kQuit = frmCuts_Command1 + 2;
constexpr int kFrame = frmCuts_pFrame;
constexpr int kList = frmCuts_pBasket;
constexpr int kBar = frmCuts_Scr;
constexpr int kName = frmEdit_t1 + 0;
constexpr int kFile = frmEdit_t1 + 1;
constexpr int kExists = frmEdit_l1 + 3;
constexpr int kApply = frmEdit_c1 + 2;
constexpr int kCancelEditing = frmEdit_c1 + 3;
constexpr int kRowStep = 51;  // pixels from one row of the list to the next

class EditShortcutDialogTest : public QuonTest {
  protected:
    static void WaitForName(Window organiser, const std::string& name) {
        WaitFor("the row \"" + name + "\" is selected",
                [&] { return organiser.Child(kList).Text() == name; });
    }
    /// Clicks a row of the list, while it is not scrolled.
    static void SelectRow(Window organiser, int row, const std::string& name) {
        const RECT list = organiser.Child(kFrame).ClientRect();
        mouse::Click({list.left + 100, list.top + row * kRowStep + kRowStep / 2});
        WaitForName(organiser, name);
    }
    static Window Edit(QuonPanel& quon, Window organiser) {
        mouse::Click(organiser.Child(kEdit));
        const Window editor = quon.Program().WaitForWindow({.title = "Edit shortcut"});
        WaitFor("the name has the focus", [&] { return editor.Child(kName).IsFocused(); });
        return editor;
    }
    static void TypeOver(Window editor, int id, const std::string& text) {
        mouse::Click(editor.Child(id).Centre());
        WaitFor("the box has the focus", [&] { return editor.Child(id).IsFocused(); });
        editor.Child(id).Send(EM_SETSEL, 0, -1);
        keyboard::Type(text);
        WaitFor("the text is typed", [&] { return editor.Child(id).Text() == text; });
    }
    static void Close(Window dialog, int button) {
        mouse::Click(dialog.Child(button).Centre());
        WaitUntilClosed(dialog);
    }
    static bool HasShortcut(const QuonPanel& quon, const std::string& name) {
        const std::wstring wide = Wide(name);
        const LRESULT found = quon.Shortcuts().Send(CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1),
                                                    reinterpret_cast<LPARAM>(wide.c_str()));
        return found != CB_ERR;
    }
};

TEST_F(EditShortcutDialogTest, AShortcutRenamedHereIsRenamedOnItsButtonWithItsSwitch) {
    const QuonIni ini = QuonIni{}
                            .AddShortcut("12", "First", folder_.MakeFile("first.txt"))
                            .AddShortcut("13", "Белешке", folder_.MakeFile("белешке.txt"), "/p=1")
                            .AddShortcut("21", "Other tab", folder_.MakeFile("other.txt"));
    const std::string newFile = folder_.MakeFile("новая 文.txt");
    QuonPanel quon = Start(ini);
    const Window organiser = quon.OpenOrganiser();
    SelectRow(organiser, 1, "Белешке");
    {
        const Window editor = Edit(quon, organiser);
        EXPECT_EQ(editor.Owner(), organiser);
        EXPECT_TRUE(editor.IsTopmost());
        EXPECT_EQ(editor.Child(kName).Text(), "Белешке");
        EXPECT_EQ(editor.Child(kFile).Text(), folder_.FullPath("белешке.txt"));
        EXPECT_TRUE(editor.Child(kExists).IsVisible()) << "its own name is taken";
        keyboard::Type("first");
        WaitFor("the name is typed", [&] { return editor.Child(kName).Text() == "first"; });
        EXPECT_TRUE(editor.Child(kExists).IsVisible()) << "another's in another case";
        keyboard::Press(VK_END);
        keyboard::Type(" Ђ文");
        WaitFor("the name is free", [&] { return !editor.Child(kExists).IsVisible(); });
        TypeOver(editor, kFile, newFile);
        CaptureScreen().SaveAs("edit-shortcut.bmp");
        Close(editor, kApply);
    }
    // The list shows it at its new place, the section's end.
    WaitForName(organiser, "Other tab");
    SelectRow(organiser, 2, "first Ђ文");
    EXPECT_EQ(folder_.IniValue("Buttons", "13"), "first Ђ文|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "first Ђ文"), newFile);
    EXPECT_EQ(folder_.IniValue("Switch", "first Ђ文"), "/p=1");
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), ElementsAre("First", "Other tab", "first Ђ文"));
    EXPECT_THAT(folder_.Ini().Keys("Switch"), ElementsAre("first Ђ文"));
    // A button that is not shown now.
    keyboard::Press(VK_UP);
    WaitForName(organiser, "Other tab");
    keyboard::Press(VK_RETURN);
    {
        const Window editor = quon.Program().WaitForWindow({.title = "Edit shortcut"});
        WaitFor("the name has the focus", [&] { return editor.Child(kName).IsFocused(); });
        keyboard::Type("Tab two");
        WaitFor("the name is typed", [&] { return editor.Child(kName).Text() == "Tab two"; });
        keyboard::Press(VK_RETURN);
        WaitUntilClosed(editor);
    }
    CaptureScreen().SaveAs("organise.bmp");
    Close(organiser, kQuit);
    quon.ExpectName(3, "first Ђ文");
    quon.ExpectName(2, "First");
    WaitFor("the drop-down follows", [&] { return HasShortcut(quon, "first Ђ文"); });
    EXPECT_TRUE(HasShortcut(quon, "Tab two"));
    EXPECT_FALSE(HasShortcut(quon, "Белешке"));
    EXPECT_TRUE(quon.IsDockedAt(Edge::kBottom));
    quon.Header(2).Post(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    quon.Header(2).Post(WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    quon.ExpectName(1, "Tab two");
    EXPECT_EQ(folder_.IniValue("Buttons", "21"), "Tab two|0");
}

TEST_F(EditShortcutDialogTest, CancelledEditorsAndQuestionsChangeNothing) {
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "One", folder_.MakeFile("one.txt")));
    const std::string before = folder_.IniBytes();
    const Window organiser = quon.OpenOrganiser();
    {
        const Window editor = Edit(quon, organiser);
        keyboard::Type("Two");
        WaitFor("the name is typed", [&] { return editor.Child(kName).Text() == "Two"; });
        Close(editor, kCancelEditing);
    }
    WaitForName(organiser, "One");
    {
        const Window editor = Edit(quon, organiser);
        TypeOver(editor, kFile, "x");
        keyboard::Press(VK_ESCAPE);
        WaitUntilClosed(editor);
    }
    mouse::Click(organiser.Child(kDelete).Centre());
    MessageBoxWindow::Wait(quon.Id()).ClickButton(1);
    mouse::Click(organiser.Child(kDelete).Centre());
    MessageBoxWindow::Wait(quon.Id()).AnswerByKey(VK_ESCAPE);
    EXPECT_EQ(organiser.Text(), "Organize shortcuts - 1 shortcuts found");
    Close(organiser, kQuit);
    EXPECT_EQ(folder_.IniBytes(), before);
    quon.ExpectName(1, "One");
    EXPECT_TRUE(HasShortcut(quon, "One"));
    EXPECT_FALSE(HasShortcut(quon, "Two"));
}

TEST_F(EditShortcutDialogTest, DeletingWithoutAButtonAsksNothingAndTheDropDownFollows) {
    QuonIni ini = QuonIni{}.AddShortcut("11", "Kept", folder_.MakeFile("kept.txt"));
    ini.cuts.emplace_back("Слободна", "http://a.example/?x=y");
    QuonPanel quon = Start(ini);
    EXPECT_TRUE(HasShortcut(quon, "Слободна"));
    const Window organiser = quon.OpenOrganiser();
    SelectRow(organiser, 1, "Слободна");
    keyboard::Press(VK_DELETE);
    WaitFor("the list is read again",
            [&] { return organiser.Text() == "Organize shortcuts - 1 shortcuts found"; });
    EXPECT_FALSE(MessageBoxWindow::IsShown(quon.Id()));
    Close(organiser, kQuit);
    WaitFor("the drop-down follows", [&] { return !HasShortcut(quon, "Слободна"); });
    EXPECT_TRUE(HasShortcut(quon, "Kept"));
    quon.ExpectName(1, "Kept");
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), ElementsAre("Kept"));
}

TEST_F(EditShortcutDialogTest, TheWheelScrollsTheListAgainAfterAnEditor) {
    QuonIni ini;
    for (int index = 0; index < 30; ++index)
        ini.cuts.emplace_back("n" + std::to_string(index), "C:\\windows");
    QuonPanel quon = Start(ini);
    const Window organiser = quon.OpenOrganiser();
    const auto value = [&] { return static_cast<int>(organiser.Child(kBar).Send(SBM_GETPOS)); };
    Close(Edit(quon, organiser), kCancelEditing);
    WaitFor("the organiser is in front", [&] { return organiser.IsForeground(); });
    mouse::MoveTo(organiser.Child(kFrame).Centre());
    mouse::Wheel(-1);
    WaitFor("the list scrolls", [&] { return value() == 102; });
    Close(organiser, kQuit);
}

TEST_F(EditShortcutDialogTest, TheProgramEndsWhileTheEditorIsOpen) {
    QuonPanel quon = Start(QuonIni{}.AddShortcut("11", "One", folder_.MakeFile("one.txt")));
    const Window organiser = quon.OpenOrganiser();
    const Window editor = Edit(quon, organiser);
    keyboard::Type("Two");
    WaitFor("the name is typed", [&] { return editor.Child(kName).Text() == "Two"; });
    quon.Main().Post(WM_CLOSE);
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "One|0");
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), ElementsAre("One"));
}

}  // namespace
}  // namespace testkit
