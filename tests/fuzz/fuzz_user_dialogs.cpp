// What the random user does in the dialogs that come up.

#include "dialogs/icon_chooser.h"
#include "model/storable_name.h"
#include "res/resource.h"
#include "sys/utility.h"
#include "tests/fuzz/fuzz_user.h"
#include "win/text.h"

namespace testkit {
namespace {

constexpr int kFirstAnswer = frmMsg_b1 + 0;
constexpr int kInput = frmMsg_Text1;
constexpr int kFirstOption = frmSettings_chSet + 0;
constexpr int kDelay = frmSettings_Text1;
constexpr int kFirstEdge = frmSettings_o1 + 1;
constexpr int kOptionsCancel = frmSettings_ltBut1 + 0;
constexpr int kOptionsAccept = frmSettings_ltBut1 + 1;
constexpr int kOrganizerEdit = frmCuts_Command1 + 0;
constexpr int kOrganizerDelete = frmCuts_Command1 + 1;
constexpr int kOrganizerQuit = frmCuts_Command1 + 2;
constexpr int kOrganizerRows = frmCuts_pBasket;
constexpr int kOrganizerScroll = frmCuts_Scr;
constexpr int kOrganizerNames = frmCuts_List1;
constexpr int kShortcutName = frmEdit_t1 + 0;
constexpr int kShortcutFile = frmEdit_t1 + 1;
constexpr int kShortcutApply = frmEdit_c1 + 2;
constexpr int kShortcutCancel = frmEdit_c1 + 3;
constexpr int kGroupName = frmEditB_t1;
constexpr int kGroupApply = frmEditB_c1 + 2;
constexpr int kGroupCancel = frmEditB_c1 + 3;
constexpr int kGroupAddUrl = frmEditB_c1 + 4;
constexpr int kGroupDeleteItem = frmEditB_c1 + 5;
constexpr int kGroupRows = frmEditB_pBasket;
constexpr int kTabLabel = frmTabPrep_Text1 + 0;
constexpr int kTabDescription = frmTabPrep_Text1 + 1;
constexpr int kTabCheck = frmTabPrep_Check1;
constexpr int kTabApply = frmTabPrep_Command1 + 0;
constexpr int kTabCancel = frmTabPrep_Command1 + 1;

void Click(Window dialog, int id) { dialog.Press(id); }

bool IsOpen(Window dialog) { return dialog.Exists() && dialog.IsVisible(); }

}  // namespace

std::string FuzzUser::Type(Window box) {
    win::SetText(box.Handle(), generator_.Typed());
    return win::WindowText(box.Handle());
}

void FuzzUser::TypeName(Window box) { named_.AddShortcut(model::StorableName(Type(box))); }

void FuzzUser::Finish(Window dialog, int accept, int cancel) {
    Click(dialog, dice_.Once(4) ? cancel : accept);
    if (IsOpen(dialog)) Click(dialog, cancel);
}

void FuzzUser::Answer(Window dialog) {
    if (dialog.FindChild(kFirstAnswer))
        AnswerMessage(dialog);
    else if (dialog.FindChild(kOrganizerQuit))
        UseOrganizer(dialog);
    else if (dialog.FindChild(kShortcutName))
        UseShortcutEditor(dialog);
    else if (dialog.FindChild(kGroupName))
        UseGroupEditor(dialog);
    else if (dialog.FindChild(kTabLabel))
        UseTabEditor(dialog);
    else if (dialog.FindChild(dialogs::IcoChooser::Image1))
        UseIconChooser(dialog);
    else if (dialog.FindChild(kOptionsAccept))
        UseOptionsDialog(dialog);
    else {
        ADD_FAILURE() << "unexpected: " << dialog.Describe();
        EndDialog(dialog.Handle(), 0);
    }
}

void FuzzUser::AnswerMessage(Window box) {
    const Window input = box.Child(kInput);
    if (input.IsVisible()) {
        // A group without a name that can be stored keeps the name that stands here at first.
        if (answersAreNames_) named_.AddShortcut(win::WindowText(input.Handle()));
        if (dice_.Once(2)) Type(input);
        const std::string typed = win::WindowText(input.Handle());
        for (const std::string& folder : {folder_, sys::PathPart(folder_, sys::kFolder)})
            for (const char* ending : {"", ".txt", ".exe", ".htm"})
                if (filesMayMove_) named_.AddShortcut(folder + "\\" + typed + ending);
        if (answersAreNames_) named_.AddShortcut(model::StorableName(win::WindowText(input.Handle())));
    }
    int buttons = 0;
    while (buttons < 3 && box.Child(kFirstAnswer + buttons).IsVisible())
        ++buttons;
    if (dice_.Once(8))
        box.Send(WM_SYSCOMMAND, SC_CLOSE);
    else
        Click(box, kFirstAnswer + static_cast<int>(dice_.Below(static_cast<std::size_t>(buttons))));
}

void FuzzUser::UseOrganizer(Window dialog) {
    const Window rows = dialog.Child(kOrganizerRows);
    for (std::size_t times = 1 + dice_.Below(2); times > 0; --times) {
        const LRESULT count = dialog.Child(kOrganizerNames).Send(LB_GETCOUNT);
        if (count == 0) break;
        rows.Send(WM_KEYDOWN, dice_.Once(2) ? VK_END : VK_NEXT);
        dialog.Send(WM_VSCROLL, MAKEWPARAM(dice_.Below(4), 0),
                    reinterpret_cast<LPARAM>(dialog.Child(kOrganizerScroll).Handle()));
        rows.Send(WM_LBUTTONDOWN, MK_LBUTTON,
                  MAKELPARAM(20, dice_.Below(static_cast<std::size_t>(rows.ClientRect().bottom))));
        UpdateWindow(rows.Handle());
        named_.AddShortcut(win::WindowText(rows.Handle()));
        Click(dialog, dice_.Once(2) ? kOrganizerDelete : kOrganizerEdit);
    }
    Click(dialog, kOrganizerQuit);
}

void FuzzUser::UseShortcutEditor(Window dialog) {
    // What cannot be stored in the name gives it another one, also where nothing is typed.
    named_.AddShortcut(model::StorableName(win::WindowText(dialog.Child(kShortcutName).Handle())));
    if (dice_.Once(2)) TypeName(dialog.Child(kShortcutName));
    if (dice_.Once(2)) Type(dialog.Child(kShortcutFile));
    Finish(dialog, kShortcutApply, kShortcutCancel);
}

void FuzzUser::UseGroupEditor(Window dialog) {
    const Window name = dialog.Child(kGroupName);
    named_.AddShortcut(model::StorableName(win::WindowText(name.Handle())));
    if (dice_.Once(2)) TypeName(name);
    if (dice_.Once(2)) Click(dialog, kGroupDeleteItem);
    if (dice_.Once(3)) Click(dialog, kGroupAddUrl);
    UpdateWindow(dialog.Child(kGroupRows).Handle());
    Finish(dialog, kGroupApply, kGroupCancel);
}

void FuzzUser::UseTabEditor(Window dialog) {
    Type(dialog.Child(kTabLabel));
    if (dice_.Once(2)) Type(dialog.Child(kTabDescription));
    if (dice_.Once(2)) Click(dialog, kTabCheck);
    Finish(dialog, kTabApply, kTabCancel);
}

void FuzzUser::UseOptionsDialog(Window dialog) {
    for (std::size_t times = dice_.Below(4); times > 0; --times)
        Click(dialog, kFirstOption + static_cast<int>(dice_.Below(10)));
    Click(dialog, kFirstEdge + static_cast<int>(dice_.Below(4)));
    if (dice_.Once(3)) {
        Type(dialog.Child(kDelay));
        mayFail_ = true;
    }
    Finish(dialog, kOptionsAccept, kOptionsCancel);
}

}  // namespace testkit
