#include <windows.h>

#include "app/button_commands.h"
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

void Press(Window dialog, int id) { dialog.Child(id).Send(BM_CLICK); }

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
        dialog.Send(WM_SETCURSOR, reinterpret_cast<WPARAM>(dialog.Child(IDC_OPTION + option).Handle()),
                    MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    Press(dialog, IDC_OPTION + 8);
    Press(dialog, IDC_OPTION + 9);
    Press(dialog, IDC_OPTION + 9);
    Press(dialog, IDC_OPTION + 7);
    Press(dialog, IDC_EDGE + 3);
    dialog.Child(IDC_POP_DELAY).SetText("250");
    Stage::Paint(dialog);
    Press(dialog, IDC_OPTIONS_ACCEPT);
}

void UseGroupEditor(Window dialog) {
    WalkRows(dialog, IDC_GROUP_BASKET);
    Press(dialog, IDC_GROUP_ADD_FILE);
    Press(dialog, IDC_GROUP_ADD_FOLDER);
    Press(dialog, IDC_GROUP_ADD_URL);
    Press(dialog, IDC_GROUP_DELETE_ITEM);
    dialog.Send(WM_MOUSEWHEEL, static_cast<WPARAM>(MAKELONG(0, -120)), 0);
    dialog.Child(IDC_GROUP_NAME).SetText("Renamed pair");
    Press(dialog, IDC_GROUP_APPLY);
}

void UseShortcutEditor(Window dialog) {
    Press(dialog, IDC_SHORTCUT_SELECT_FOLDER);
    Press(dialog, IDC_SHORTCUT_SELECT_FILE);
    Stage::Paint(dialog.Child(IDC_SHORTCUT_ICON));
    dialog.Child(IDC_SHORTCUT_NAME).SetText("Renamed");
    Press(dialog, IDC_SHORTCUT_APPLY);
}

void UseTabDefinition(Window dialog) {
    dialog.Send(WM_SETCURSOR, reinterpret_cast<WPARAM>(dialog.Child(IDC_TAB_SHOW_DESCRIPTION).Handle()),
                MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    dialog.Child(IDC_TAB_LABEL).SetText("Work");
    dialog.Child(IDC_TAB_DESCRIPTION).SetText("What is done here");
    Press(dialog, IDC_TAB_APPLY);
}

/// The organiser with a command for the row of this number.
Scenario Organize(const char* name, int row, int command) {
    return {name, [=](Stage& stage) {
                stage.Use(IDC_SHORTCUT_APPLY, &UseShortcutEditor);
                stage.Use(IDC_GROUP_APPLY, &UseGroupEditor);
                stage.Use(IDC_ORGANIZE_QUIT, [=](Window dialog) {
                    dialog.Send(WM_ACTIVATE, WA_ACTIVE);
                    WalkRows(dialog, IDC_ORGANIZE_BASKET);
                    dialog.Send(WM_MOUSEWHEEL, static_cast<WPARAM>(MAKELONG(0, -120)), 0);
                    const Window list = dialog.Child(IDC_ORGANIZE_BASKET);
                    list.Send(WM_KEYDOWN, VK_HOME);
                    for (int step = 0; step < row; ++step)
                        list.Send(WM_KEYDOWN, VK_DOWN);
                    Press(dialog, command);
                    Press(dialog, IDC_ORGANIZE_QUIT);
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
                 stage.Use(IDC_ABOUT_CLOSE, [](Window box) {
                     if (!box.Child(IDC_ABOUT_CLOSE).IsVisible()) return box.Post(WM_COMMAND, IDCANCEL);
                     box.Send(WM_COMMAND, IDC_ABOUT_SUPPORT);
                     box.Send(WM_COMMAND, IDC_ABOUT_WEB);
                     Press(box, IDC_ABOUT_CLOSE);
                 });
                 ChooseFrom(stage, 2, IDM_SETTINGS + 5);
             }},
            {"options",
             [](Stage& stage) {
                 stage.Use(IDC_OPTIONS_ACCEPT, &UseOptions);
                 ChooseFrom(stage, 2, IDM_SETTINGS + 1);
             }},
            Organize("organize: edit a shortcut", 0, IDC_ORGANIZE_EDIT),
            Organize("organize: edit a group", 2, IDC_ORGANIZE_EDIT),
            Organize("organize: delete a button's shortcut", 1, IDC_ORGANIZE_DELETE),
            Organize("organize: delete a shortcut", 4, IDC_ORGANIZE_DELETE),
            {"define a tab",
             [](Stage& stage) {
                 stage.Use(IDC_TAB_APPLY, &UseTabDefinition);
                 Stage::RightClick(stage.Child(IDC_TAB_HEADER + 1));
             }},
            {"edit a group",
             [](Stage& stage) {
                 stage.Use(IDC_GROUP_APPLY, &UseGroupEditor);
                 stage.Choose(IDM_BUTTON + app::kGroup);
                 Stage::RightClick(stage.Button(3));
             }},
            {"make a group",
             [](Stage& stage) {
                 stage.Use(IDC_GROUP_APPLY, &UseGroupEditor);
                 stage.Choose(IDM_BUTTON + app::kGroup);
                 Stage::RightClick(stage.Button(5));
             }},
            {"change the icon", [](Stage& stage) {
                 stage.Use(IDC_CHOOSER_CLOSE, [](Window chooser) {
                     for (int icon = 0; icon < 3; ++icon)
                         Stage::Paint(chooser.FindChild(IDC_CHOOSER_ICON + icon));
                     chooser.Send(WM_HSCROLL, SB_LINERIGHT);
                     Stage::Click(chooser.Child(IDC_CHOOSER_ICON));
                 });
                 stage.Choose(IDM_BUTTON + app::kChangeIcon);
                 Stage::RightClick(stage.Button(1));
             }}};
}

}  // namespace faults
