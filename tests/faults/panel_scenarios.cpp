#include "app/button_commands.h"
#include "config/settings.h"
#include "dialogs/define_tab.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/faults/scenarios.h"

namespace faults {
namespace {

using testkit::DataObject, testkit::RecordedCall, testkit::Window;

constexpr int kUsedButton = 1;
constexpr int kLinkButton = 2;
constexpr int kGroupButton = 3;
constexpr int kSwitchButton = 4;
constexpr int kFreeButton = 5;

void Command(Stage& stage, int button, int command) {
    stage.Choose(command);
    Stage::RightClick(stage.Button(button));
    Stage::RunMessages();
}

Scenario CommandOn(const char* name, int button, int command) {
    return {name, [=](Stage& stage) { Command(stage, button, command); }};
}

/// Types a name into the box that asks for one, and takes it.
void TypeInto(Stage& stage, const char* text, int answer) {
    stage.Use(dialogs::frmMsg::Text1, [text, answer](Window box) {
        const Window input = box.Child(dialogs::frmMsg::Text1);
        if (input.IsVisible()) input.SetText(text);
        box.Press(input.IsVisible() ? answer : dialogs::frmMsg::b1);
    });
}

}  // namespace

std::vector<Scenario> StartAndEndScenarios() {
    return {{"start and end",
             [](Stage& stage) {
                 if (stage.Load()) stage.End();
             },
             true},
            {"end of the session",
             [](Stage& stage) {
                 stage.Panel().Send(WM_QUERYENDSESSION);
                 stage.Panel().Send(WM_ENDSESSION, TRUE);
             }},
            {"close button", [](Stage& stage) { stage.Panel().Send(WM_SYSCOMMAND, SC_CLOSE); }},
            {"close with a dialog open", [](Stage& stage) {
                 stage.Use(dialogs::frmTabPrep::Text1 + 0,
                           [&stage](Window) { stage.Panel().Send(WM_CLOSE); });
                 Stage::RightClick(stage.Child(IDC_TAB_HEADER + 1));
                 Stage::RunMessages();
             }}};
}

std::vector<Scenario> ButtonScenarios() {
    return {{"tabs",
             [](Stage& stage) {
                 for (const int tab : {2, 6, 1}) {
                     Stage::Click(stage.Child(IDC_TAB_HEADER + tab));
                     Stage::Paint(stage.Child(IDC_TAB_HEADER + tab));
                 }
                 for (int button = 1; button <= 9; ++button)
                     Stage::Paint(stage.Button(button));
                 Stage::Paint(stage.Panel());
                 Stage::RunMessages();
             }},
            {"tips",
             [](Stage& stage) {
                 for (int button = 1; button <= 5; ++button) {
                     Stage::Hover(stage.Button(button));
                     Stage::Hover(stage.Child(IDC_HOVER_PICTURE));
                     stage.Button(button).Send(WM_MOUSELEAVE);
                 }
                 for (const int tab : {1, 2, 3})
                     Stage::Hover(stage.Child(IDC_TAB_HEADER + tab));
                 for (int button = 0; button < 4; ++button)
                     Stage::Hover(stage.Child(IDC_IMAGE_BUTTON + button));
             }},
            {"open a file", [](Stage& stage) { Stage::DoubleClick(stage.Button(kUsedButton)); }},
            {"open a link", [](Stage& stage) { Stage::DoubleClick(stage.Button(kLinkButton)); }},
            {"open a group", [](Stage& stage) { Stage::DoubleClick(stage.Button(kGroupButton)); }},
            {"open with a switch", [](Stage& stage) { Stage::DoubleClick(stage.Button(kSwitchButton)); }},
            {"rename",
             [](Stage& stage) {
                 Stage::Click(stage.Button(kSwitchButton));
                 stage.Harness().PressKey(WM_KEYDOWN, VK_F2);
                 stage.Child(IDC_RENAME).SetText("New name");
                 SetFocus(stage.Child(IDC_RENAME).Handle());
                 stage.Harness().PressKey(WM_KEYDOWN, VK_RETURN, {}, stage.Child(IDC_RENAME).Handle());
             }},
            {"edit a switch",
             [](Stage& stage) {
                 TypeInto(stage, "/new", dialogs::frmMsg::b1 + 2);
                 const app::HeldModifierKeys held({VK_CONTROL, VK_MENU});
                 Stage::DoubleClick(stage.Button(kUsedButton));
             }},
            {"move to another button",
             [](Stage& stage) {
                 POINT place = stage.Button(kSwitchButton).Centre();
                 const RecordedCall pointer =
                     FAKE_CALL(GetMessagePos, [&] { return static_cast<DWORD>(MAKELONG(place.x, place.y)); });
                 const app::HeldModifierKeys held({VK_SHIFT, VK_CONTROL});
                 const Window source = stage.Button(kSwitchButton);
                 source.Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
                 place = stage.Button(kFreeButton).Centre();
                 source.Send(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(90, 90));
                 source.Send(WM_LBUTTONUP, 0, MAKELPARAM(90, 90));
             }},
            {"move to another tab", [](Stage& stage) {
                 POINT place = stage.Child(IDC_TAB_HEADER + 2).Centre();
                 const RecordedCall pointer =
                     FAKE_CALL(GetMessagePos, [&] { return static_cast<DWORD>(MAKELONG(place.x, place.y)); });
                 const app::HeldModifierKeys held({VK_SHIFT, VK_CONTROL});
                 const Window source = stage.Button(kSwitchButton);
                 source.Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
                 source.Send(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(90, 90));
                 place = stage.Button(kFreeButton).Centre();
                 source.Send(WM_LBUTTONUP, 0, MAKELPARAM(90, 90));
             }}};
}

std::vector<Scenario> CommandScenarios() {
    return {CommandOn("add file", kFreeButton, IDM_BUTTON + app::kAddFile),
            CommandOn("add folder", kFreeButton, IDM_BUTTON + app::kAddFolder),
            CommandOn("replace by file", kUsedButton, IDM_BUTTON + app::kAddFile),
            CommandOn("free", kSwitchButton, IDM_BUTTON + app::kFree),
            CommandOn("properties", kUsedButton, IDM_BUTTON + app::kProperties),
            CommandOn("find target", kUsedButton, IDM_BUTTON + app::kFindTarget),
            CommandOn("assign from active", kFreeButton, IDM_ACTIVE),
            CommandOn("copy file", kUsedButton, IDM_FILE_OPERATIONS + app::kCopyTo),
            CommandOn("move file", kUsedButton, IDM_FILE_OPERATIONS + app::kMoveTo),
            CommandOn("recycle file", kUsedButton, IDM_FILE_OPERATIONS + app::kRecycle),
            CommandOn("delete file", kUsedButton, IDM_FILE_OPERATIONS + app::kDelete),
            {"rename file",
             [](Stage& stage) {
                 TypeInto(stage, "other.txt", dialogs::frmMsg::b1);
                 Command(stage, kUsedButton, IDM_FILE_OPERATIONS + app::kRename);
             }},
            {"paste a link",
             [](Stage& stage) {
                 DataObject object;
                 object.OfferText("http://b.example/page");
                 stage.PutOnClipboard(CF_UNICODETEXT, object);
                 Command(stage, kFreeButton, IDM_BUTTON + app::kPaste);
             }},
            {"paste files", [](Stage& stage) {
                 DataObject object;
                 object.OfferFiles({stage.File("notes.txt"), stage.File("tool.exe")});
                 stage.PutOnClipboard(CF_HDROP, object);
                 Command(stage, kFreeButton, IDM_BUTTON + app::kPaste);
             }}};
}

std::vector<Scenario> DropScenarios() {
    return {{"drop a file",
             [](Stage& stage) {
                 DataObject object;
                 object.OfferFiles({stage.File("tool.exe")});
                 stage.Drop(stage.Button(kFreeButton).Handle(), object);
             }},
            {"drop a shell link",
             [](Stage& stage) {
                 DataObject object;
                 object.OfferFiles({stage.Link()});
                 stage.Drop(stage.Button(kFreeButton).Handle(), object);
             }},
            {"drop a link to make a group",
             [](Stage& stage) {
                 DataObject object;
                 object.OfferText("http://c.example/\r\nmore");
                 TypeInto(stage, "Both", dialogs::frmMsg::b1);
                 stage.Drop(stage.Button(kLinkButton).Handle(), object);
             }},
            {"drop nonsense",
             [](Stage& stage) {
                 DataObject object;
                 object.OfferText("no target at all");
                 stage.Drop(stage.Button(kFreeButton).Handle(), object);
             }},
            {"drop on the drop-down", [](Stage& stage) {
                 DataObject object;
                 object.OfferFiles({stage.Link()});
                 stage.Drop(stage.Child(IDC_SHORTCUTS).Handle(), object);
             }}};
}

std::vector<Scenario> WindowScenarios() {
    const auto trayClick = [](Stage& stage, WPARAM message) {
        stage.Panel().Send(WM_MOUSEMOVE, 1, static_cast<LPARAM>(message));
        Stage::RunMessages();
    };
    const auto overTray = [] {
        return FAKE_CALL(GetWindowTextA, [](HWND, LPSTR text, int) {
            std::copy_n("Notification Area", 18, text);
            return 17;
        });
    };
    return {{"tray click", [=](Stage& stage) { trayClick(stage, WM_LBUTTONUP); }},
            {"tray menu",
             [=](Stage& stage) {
                 const RecordedCall tray = overTray();
                 stage.Choose(IDM_TRAY);
                 trayClick(stage, WM_RBUTTONUP);
             }},
            {"close by the tray menu",
             [=](Stage& stage) {
                 const RecordedCall tray = overTray();
                 stage.Choose(IDM_TRAY + 2);
                 trayClick(stage, WM_RBUTTONUP);
             }},
            {"dock and come out", [](Stage& stage) {
                 const RecordedCall caption = FAKE_CALL(GetWindowTextA, [](HWND, LPSTR text, int) {
                     std::copy_n("Quon", 5, text);
                     return 4;
                 });
                 for (const int edge : {1, 2, 3, 4}) {
                     config::Settings.Edge = edge;
                     stage.Harness().Panel().ShowQuon(false, false);
                     stage.Panel().Send(WM_TIMER, 1);
                     if (edge % 2 == 0)
                         stage.Panel().Send(WM_MOUSEMOVE, 0, MAKELPARAM(50, 2));
                     else
                         stage.Panel().Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(50, 2));
                 }
             }}};
}

}  // namespace faults
