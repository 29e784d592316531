// Each dialog, opened from the panel as its user opens it, used and closed.

#include "app/button_commands.h"
#include "dialogs/define_tab.h"
#include "dialogs/edit_group.h"
#include "dialogs/edit_shortcut.h"
#include "dialogs/icon_chooser.h"
#include "dialogs/message_box.h"
#include "dialogs/options.h"
#include "dialogs/organize_shortcuts.h"
#include "res/resource.h"
#include "tests/leaks/panel_leak_test.h"

namespace leaks {
namespace {

using testkit::ModalAnswers, testkit::Window;

class DialogLeakTest : public PanelLeakTest {
  protected:
    DialogLeakTest() {
        fakes_.push_back(FAKE_CALL(TrackPopupMenu, [this] { return command_; }));
        // The key is opened for real, and left as it is.
        fakes_.push_back(ANSWER_CALL(RegSetValueExA, ERROR_SUCCESS));
        fakes_.push_back(ANSWER_CALL(RegDeleteValueA, ERROR_SUCCESS));
    }

    /// Chooses a command of the settings' menu and answers what opens.
    void Choose(int command, std::vector<Step> steps) {
        const ModalAnswers user(std::move(steps));
        command_ = IDM_SETTINGS + command;
        Click(Child(IDC_IMAGE_BUTTON + 2));
        Paint();
    }
    /// Chooses a command of a button's menu and answers what opens.
    void ChooseOnButton(int button, int command, std::vector<Step> steps) {
        const ModalAnswers user(std::move(steps));
        command_ = IDM_BUTTON + command;
        Button(button).Send(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
        Paint();
    }
    static void PointAt(Window dialog, int id) {
        dialog.Send(WM_SETCURSOR, reinterpret_cast<WPARAM>(dialog.Child(id).Handle()),
                    MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    }

    int command_ = 0;
};

TEST_F(DialogLeakTest, TheMessageBox) {
    bare_ = [this] { OpenBare({IDD_MESSAGE, IDD_MESSAGE}); };
    Repeat([] {
        const ModalAnswers user(
            {Press(dialogs::frmMsg::b1), [](Window box) { box.Send(WM_SYSCOMMAND, SC_CLOSE); }});
        for (int time = 0; time < 2; ++time)
            dialogs::ShowMessage("Go on?\nIt is a question.", 3, "OK", "No", "Cancel", true, "yes");
    });
}

TEST_F(DialogLeakTest, TheAboutBox) {
    bare_ = [this] { OpenBare({IDD_MESSAGE}); };
    Repeat([this] { Choose(5, {Press(dialogs::frmMsg::b2)}); });
}

TEST_F(DialogLeakTest, TheOptions) {
    bare_ = [this] { OpenBare({IDD_OPTIONS, IDD_OPTIONS}); };
    Repeat([this] {
        Choose(1, {[](Window dialog) {
                   for (const int option : {0, 3, 7, 1})
                       PointAt(dialog, dialogs::frmSettings::chSet + option);
                   dialog.Press(dialogs::frmSettings::ltBut1 + 1);
               }});
        Choose(1, {Press(dialogs::frmSettings::ltBut1 + 0)});
    });
}

TEST_F(DialogLeakTest, TheOrganiserAndBothEditors) {
    bare_ = [this] { OpenBare({IDD_ORGANIZE_SHORTCUTS, IDD_EDIT_SHORTCUT, IDD_EDIT_GROUP}); };
    Repeat([this] {
        Choose(0, {[](Window organiser) { organiser.PostPress(dialogs::frmCuts::Command1 + 0); },
                   [](Window editor) {
                       editor.Child(dialogs::frmEdit::t1 + 0).SetText("Other");
                       editor.Child(dialogs::frmEdit::t1 + 0).SetText("File");
                       const Window organiser = editor.Owner();
                       editor.Press(dialogs::frmEdit::c1 + 3);
                       organiser.Child(dialogs::frmCuts::pBasket).Post(WM_KEYDOWN, VK_DOWN);
                       organiser.Child(dialogs::frmCuts::pBasket).Post(WM_KEYDOWN, VK_DOWN);
                       organiser.PostPress(dialogs::frmCuts::Command1 + 0);
                   },
                   [](Window editor) {
                       const Window organiser = editor.Owner();
                       editor.Press(dialogs::frmEditB::c1 + 3);
                       organiser.PostPress(dialogs::frmCuts::Command1 + 2);
                   }});
    });
}

TEST_F(DialogLeakTest, EditingAGroupOfAButton) {
    bare_ = [this] { OpenBare({IDD_EDIT_GROUP}); };
    Repeat([this] {
        ChooseOnButton(2, app::kGroup, {[](Window editor) {
                           editor.Child(dialogs::frmEditB::pBasket).Send(WM_KEYDOWN, VK_END);
                           editor.PostPress(dialogs::frmEditB::c1 + 2);
                       }});
        ASSERT_EQ(Button(2).Text(), "Group");
    });
}

TEST_F(DialogLeakTest, DefiningATab) {
    bare_ = [this] { OpenBare({IDD_DEFINE_TAB}); };
    Repeat([this] {
        const ModalAnswers user({[](Window dialog) {
            PointAt(dialog, dialogs::frmTabPrep::Check1);
            dialog.Press(dialogs::frmTabPrep::Command1 + 0);
        }});
        Child(IDC_TAB_HEADER + 1).Send(WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
    });
}

TEST_F(DialogLeakTest, TheIconChooser) {
    bare_ = [this] { OpenBare({IDD_ICON_CHOOSER, IDD_ICON_CHOOSER}); };
    Repeat([this] {
        ChooseOnButton(1, app::kChangeIcon,
                       {[](Window chooser) { Click(chooser.Child(dialogs::IcoChooser::p2 + 2)); }});
        ChooseOnButton(1, app::kChangeIcon, {[](Window chooser) { chooser.Post(WM_COMMAND, IDCANCEL); }});
    });
}

TEST_F(DialogLeakTest, EditingASwitch) {
    bare_ = [this] { OpenBare({IDD_MESSAGE}); };
    Repeat([this] {
        const ModalAnswers user({Press(dialogs::frmMsg::b1)});
        DoubleClick(Button(5), {VK_MENU, VK_CONTROL});
    });
}

}  // namespace
}  // namespace leaks
