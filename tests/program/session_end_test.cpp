// The session ends while a window of the program waits for an answer: nothing holds it up, and no setting is
// lost.

#include <exception>

#include "dialogs/define_tab.h"
#include "dialogs/edit_shortcut.h"
#include "tests/program/quon_test.h"

namespace testkit {
namespace {

constexpr int kEdit = frmCuts_Command1 + 0;
constexpr int kDelete = frmCuts_Command1 + 1;
constexpr int kList = frmCuts_pBasket;
constexpr int kAddUrl = frmEditB_c1 + 4;

class SessionEndTest : public QuonTest {
  protected:
    /// Starts on the first tab, goes to the second, lets `open` bring up windows and ends the session.
    void EndAfter(const std::function<void(QuonPanel&)>& open) {
        QuonIni ini = QuonIni{.pop_delay = 700}
                          .AddShortcut("21", "Програм", QuonExe(), "/x")
                          .AddShortcut("22", "Group", QuonExe() + "|C:\\");
        QuonPanel quon = Start(ini);
        mouse::Click(quon.Header(2));
        quon.ExpectName(1, "Програм");
        open(quon);
        // Every window is asked, and any of them could refuse.
        for (const Window window : quon.Program().Windows({.visible_only = false}))
            EXPECT_TRUE(LetsTheSessionEnd(window)) << window.Describe();
        const std::string before = folder_.IniBytes();
        EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini.Main());
        quon.Main().Send(WM_ENDSESSION, TRUE);
        // The process may be ended from here on: all is saved, and nothing lies beside it.
        EXPECT_FALSE(HasSideFile(folder_));
        ini.current_tab = 2;
        EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini.Main());
        EXPECT_EQ(folder_.IniValue("Settings", "popdelay"), "700");
        for (const char* section : {"Buttons", "Cuts", "Switch"})
            EXPECT_EQ(folder_.Ini().Entries(section), IniText(before).Entries(section)) << section;
        EXPECT_EQ(quon.Program().WaitForExit(), 0u);
    }
    /// A window that goes before it is asked, such as that of the menu which led here, refuses nothing.
    static bool LetsTheSessionEnd(Window window) {
        try {
            return window.Send(WM_QUERYENDSESSION) == TRUE;
        } catch (const std::exception&) {
            return HappensWithin(kPatience, [&] { return !window.Exists(); });
        }
    }
    /// The organiser with this row selected.
    static Window OpenOrganiser(QuonPanel& quon, const std::string& name) {
        const Window organiser = quon.OpenOrganiser();
        for (const int key : {VK_HOME, VK_DOWN}) {
            if (organiser.Child(kList).Text() != name)
                organiser.Child(kList).Send(WM_KEYDOWN, static_cast<WPARAM>(key));
        }
        EXPECT_EQ(organiser.Child(kList).Text(), name);
        return organiser;
    }
};

TEST_F(SessionEndTest, PassesTheOptions) {
    EndAfter([](QuonPanel& quon) {
        quon.OpenSettingsMenu().Choose("Options");
        quon.Program().WaitForWindow({.title = "Quon settings"});
    });
}

TEST_F(SessionEndTest, PassesTheAboutBox) {
    EndAfter([](QuonPanel& quon) {
        quon.OpenSettingsMenu().Choose("About");
        quon.Program().WaitForWindow({.title = "About Quon"});
    });
}

TEST_F(SessionEndTest, PassesTheDefinitionOfATab) {
    EndAfter([](QuonPanel& quon) {
        mouse::RightClick(quon.Header(3));
        const Window dialog = quon.Program().WaitForWindow({.title = "Define tab"});
        keyboard::Type("half");
        WaitFor("the label is typed",
                [&] { return dialog.Child(dialogs::frmTabPrep::Text1 + 0).Text() == "half"; });
    });
}

TEST_F(SessionEndTest, PassesTheIconChooser) {
    EndAfter([](QuonPanel& quon) {
        quon.OpenButtonMenu(1).Choose("Change icon");
        quon.Program().WaitForWindow({.title = "Icon Chooser"});
    });
}

TEST_F(SessionEndTest, PassesTheGroupsEditorAndTheQuestionInFrontOfIt) {
    EndAfter([](QuonPanel& quon) {
        quon.OpenButtonMenu(2).Choose("Edit group");
        const Window editor = quon.Program().WaitForWindow({.title = "Edit group"});
        mouse::Click(editor.Child(kAddUrl));
        MessageBoxWindow::Wait(quon.Id());
    });
}

TEST_F(SessionEndTest, PassesTheOrganiserAndTheShortcutsEditor) {
    EndAfter([](QuonPanel& quon) {
        const Window organiser = OpenOrganiser(quon, "Програм");
        mouse::Click(organiser.Child(kEdit));
        const Window editor = quon.Program().WaitForWindow({.title = "Edit shortcut"});
        keyboard::Type("half");
        WaitFor("the name is typed", [&] { return editor.Child(dialogs::frmEdit::t1 + 0).Text() == "half"; });
    });
}

TEST_F(SessionEndTest, PassesTheOrganiserTheGroupsEditorAndItsQuestion) {
    EndAfter([](QuonPanel& quon) {
        const Window organiser = OpenOrganiser(quon, "Group");
        mouse::Click(organiser.Child(kEdit));
        const Window editor = quon.Program().WaitForWindow({.title = "Edit group"});
        mouse::Click(editor.Child(kAddUrl));
        MessageBoxWindow::Wait(quon.Id());
    });
}

TEST_F(SessionEndTest, PassesTheQuestionOfTheOrganiser) {
    EndAfter([](QuonPanel& quon) {
        const Window organiser = OpenOrganiser(quon, "Програм");
        mouse::Click(organiser.Child(kDelete));
        MessageBoxWindow::Wait(quon.Id());
    });
}

TEST_F(SessionEndTest, PassesARenaming) {
    EndAfter([](QuonPanel& quon) {
        mouse::MoveTo(quon.Button(1).Centre());
        WaitFor("the hover picture", [&] { return quon.HoverPicture().IsVisible(); });
        keyboard::Press(VK_F2);
        WaitFor("the rename box", [&] { return quon.RenameBox().IsVisible(); });
        keyboard::Type("half");
        WaitFor("the name is typed", [&] { return quon.RenameBox().Text() == "half"; });
    });
}

}  // namespace
}  // namespace testkit
