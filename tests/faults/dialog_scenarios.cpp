#include <windows.h>

#include "app/button_commands.h"
#include "dialogs/define_tab.h"
#include "dialogs/edit_group.h"
#include "dialogs/edit_shortcut.h"
#include "dialogs/icon_chooser.h"
#include "dialogs/message_box.h"
#include "dialogs/options.h"
#include "dialogs/organize_shortcuts.h"
#include "model/text_shortcut.h"
#include "res/resource.h"
#include "tests/faults/scenarios.h"

namespace faults {
namespace {

using testkit::Window;

/// Opens one of the three menus of the image buttons and chooses from it.
void ChooseFrom(Stage& stage, int imageButton, int command) {
    stage.Choose(command);
    Stage::Click(stage.Child(IDC_IMAGE_BUTTON + imageButton));
    Stage::RunMessages();
}

Scenario Choice(const char* name, int imageButton, int command) {
    return {name, [=](Stage& stage) { ChooseFrom(stage, imageButton, command); }};
}

void Press(Window dialog, int id) { dialog.Press(id); }

Window Edit(Stage& stage) {
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    GetComboBoxInfo(stage.Child(IDC_SHORTCUTS).Handle(), &info);
    return Window(info.hwndItem);
}

/// A key in the edit field of the drop-down, as the message loop passes it.
void TypeKey(Stage& stage, WORD key) {
    const HWND edit = Edit(stage).Handle();
    if (edit == nullptr) return;
    if (stage.Harness().PressKey(WM_KEYDOWN, key, {}, edit)) return;
    if (key >= 'A') SendMessageW(edit, WM_CHAR, key, 0);
    stage.Harness().PressKey(WM_KEYUP, key, {}, edit);
}

Scenario Enter(const char* name, const char* text) {
    return {name, [text](Stage& stage) {
                stage.Child(IDC_SHORTCUTS).SetText(text);
                TypeKey(stage, VK_RETURN);
            }};
}

/// Presses a row of a list by its number, and the list's keys.
void WalkRows(Window dialog, int basket) {
    const Window list = dialog.Child(basket);
    Stage::Paint(list);
    for (const WPARAM key : {VK_END, VK_HOME, VK_DOWN, VK_UP})
        list.Send(WM_KEYDOWN, key);
    Stage::Paint(list);
}

void UseOptions(Window dialog) {
    for (const int option : {0, 3, 7})
        dialog.Send(WM_SETCURSOR,
                    reinterpret_cast<WPARAM>(dialog.Child(dialogs::frmSettings::chSet + option).Handle()),
                    MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    Press(dialog, dialogs::frmSettings::chSet + 8);
    Press(dialog, dialogs::frmSettings::chSet + 9);
    Press(dialog, dialogs::frmSettings::chSet + 9);
    Press(dialog, dialogs::frmSettings::chSet + 7);
    Press(dialog, dialogs::frmSettings::o1 + 3);
    dialog.Child(dialogs::frmSettings::Text1).SetText("250");
    Stage::Paint(dialog);
    Press(dialog, dialogs::frmSettings::ltBut1 + 1);
}

void UseGroupEditor(Window dialog) {
    WalkRows(dialog, dialogs::frmEditB::pBasket);
    Press(dialog, dialogs::frmEditB::c1 + 0);
    Press(dialog, dialogs::frmEditB::c1 + 1);
    Press(dialog, dialogs::frmEditB::c1 + 4);
    Press(dialog, dialogs::frmEditB::c1 + 5);
    dialog.Send(WM_MOUSEWHEEL, static_cast<WPARAM>(MAKELONG(0, -120)), 0);
    dialog.Child(dialogs::frmEditB::t1 + 0).SetText("Renamed pair");
    Press(dialog, dialogs::frmEditB::c1 + 2);
}

void UseShortcutEditor(Window dialog) {
    Press(dialog, dialogs::frmEdit::c1 + 1);
    Press(dialog, dialogs::frmEdit::c1 + 0);
    Stage::Paint(dialog.Child(dialogs::frmEdit::p1));
    dialog.Child(dialogs::frmEdit::t1 + 0).SetText("Renamed");
    Press(dialog, dialogs::frmEdit::c1 + 2);
}

void UseTabDefinition(Window dialog) {
    dialog.Send(WM_SETCURSOR, reinterpret_cast<WPARAM>(dialog.Child(dialogs::frmTabPrep::Check1).Handle()),
                MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    dialog.Child(dialogs::frmTabPrep::Text1 + 0).SetText("Work");
    dialog.Child(dialogs::frmTabPrep::Text1 + 1).SetText("What is done here");
    Press(dialog, dialogs::frmTabPrep::Command1 + 0);
}

/// The organiser with a command for the row of this number.
Scenario Organize(const char* name, int row, int command) {
    return {name, [=](Stage& stage) {
                stage.Use(dialogs::frmEdit::c1 + 2, &UseShortcutEditor);
                stage.Use(dialogs::frmEditB::c1 + 2, &UseGroupEditor);
                stage.Use(dialogs::frmCuts::Command1 + 2, [=](Window dialog) {
                    dialog.Send(WM_ACTIVATE, WA_ACTIVE);
                    WalkRows(dialog, dialogs::frmCuts::pBasket);
                    dialog.Send(WM_MOUSEWHEEL, static_cast<WPARAM>(MAKELONG(0, -120)), 0);
                    const Window list = dialog.Child(dialogs::frmCuts::pBasket);
                    list.Send(WM_KEYDOWN, VK_HOME);
                    for (int step = 0; step < row; ++step)
                        list.Send(WM_KEYDOWN, VK_DOWN);
                    Press(dialog, command);
                    Press(dialog, dialogs::frmCuts::Command1 + 2);
                });
                ChooseFrom(stage, 2, IDM_SETTINGS);
            }};
}

}  // namespace

std::vector<Scenario> ShortcutBoxScenarios() {
    return {{"completion",
             [](Stage& stage) {
                 Edit(stage).SetText("");
                 for (const WORD key : {WORD{'N'}, WORD{'O'}})
                     TypeKey(stage, key);
             }},
            Enter("open a shortcut", "Notes"),
            Enter("open a group by name", "Pair"),
            Enter("open a collected application", "Editor"),
            Enter("open what is not stored", "http://d.example/"),
            Enter("search", "?what"),
            {"Go",
             [](Stage& stage) {
                 stage.Child(IDC_SHORTCUTS).SetText("Site");
                 Stage::Click(stage.Child(IDC_IMAGE_BUTTON + 3));
             }},
            {"refresh the list", [](Stage& stage) {
                 stage.Child(IDC_SHORTCUTS).SetText(model::kRefreshItem);
                 stage.Panel().Send(WM_QUON_CHOSEN);
             }}};
}

std::vector<Scenario> DialogScenarios() {
    return {Choice("shell menu", 0, IDM_SHELL + 1),
            Choice("default browser", 1, IDM_PREDEFINED),
            Choice("mail client", 1, IDM_PREDEFINED + 1),
            Choice("new mail", 1, IDM_PREDEFINED + 2),
            Choice("control panel", 1, IDM_PREDEFINED + 4),
            Choice("uptime", 1, IDM_PREDEFINED + 5),
            Choice("extensive tooltips", 2, IDM_SETTINGS + 3),
            {"about",
             [](Stage& stage) {
                 stage.Use(dialogs::frmMsg::b2, [](Window box) {
                     if (!box.Child(dialogs::frmMsg::b2).IsVisible()) return box.Post(WM_COMMAND, IDCANCEL);
                     box.Send(WM_COMMAND, dialogs::frmMsg::SupportLink);
                     box.Send(WM_COMMAND, dialogs::frmMsg::WebLink);
                     Press(box, dialogs::frmMsg::b2);
                 });
                 ChooseFrom(stage, 2, IDM_SETTINGS + 5);
             }},
            {"options",
             [](Stage& stage) {
                 stage.Use(dialogs::frmSettings::ltBut1 + 1, &UseOptions);
                 ChooseFrom(stage, 2, IDM_SETTINGS + 1);
             }},
            Organize("organize: edit a shortcut", 0, dialogs::frmCuts::Command1 + 0),
            Organize("organize: edit a group", 2, dialogs::frmCuts::Command1 + 0),
            Organize("organize: delete a button's shortcut", 1, dialogs::frmCuts::Command1 + 1),
            Organize("organize: delete a shortcut", 4, dialogs::frmCuts::Command1 + 1),
            {"define a tab",
             [](Stage& stage) {
                 stage.Use(dialogs::frmTabPrep::Command1 + 0, &UseTabDefinition);
                 Stage::RightClick(stage.Child(IDC_TAB_HEADER + 1));
             }},
            {"edit a group",
             [](Stage& stage) {
                 stage.Use(dialogs::frmEditB::c1 + 2, &UseGroupEditor);
                 stage.Choose(IDM_BUTTON + app::kGroup);
                 Stage::RightClick(stage.Button(3));
             }},
            {"make a group",
             [](Stage& stage) {
                 stage.Use(dialogs::frmEditB::c1 + 2, &UseGroupEditor);
                 stage.Choose(IDM_BUTTON + app::kGroup);
                 Stage::RightClick(stage.Button(5));
             }},
            {"change the icon", [](Stage& stage) {
                 stage.Use(dialogs::IcoChooser::Image1, [](Window chooser) {
                     for (int icon = 0; icon < 3; ++icon)
                         Stage::Paint(chooser.FindChild(dialogs::IcoChooser::p2 + icon));
                     chooser.Send(WM_HSCROLL, SB_LINERIGHT);
                     Stage::Click(chooser.Child(dialogs::IcoChooser::p2));
                 });
                 stage.Choose(IDM_BUTTON + app::kChangeIcon);
                 Stage::RightClick(stage.Button(1));
             }}};
}

}  // namespace faults
