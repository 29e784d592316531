// What the random user does in the dialogs that come up.
#include <windows.h>

#include <gtest/gtest.h>

#include "model/storable_name.h"
#include "tests/fuzz/fuzz_user.h"
#include "win/text.h"

namespace testkit {
namespace {

constexpr int kFirstAnswer = 310;
constexpr int kInput = 320;
constexpr int kFirstOption = 400;
constexpr int kDelay = 420;
constexpr int kFirstEdge = 431;
constexpr int kOptionsCancel = 440;
constexpr int kOptionsAccept = 441;
constexpr int kOrganizerEdit = 500;
constexpr int kOrganizerDelete = 501;
constexpr int kOrganizerQuit = 502;
constexpr int kOrganizerRows = 511;
constexpr int kOrganizerScroll = 512;
constexpr int kOrganizerNames = 514;
constexpr int kShortcutName = 600;
constexpr int kShortcutFile = 601;
constexpr int kShortcutApply = 622;
constexpr int kShortcutCancel = 623;
constexpr int kGroupName = 700;
constexpr int kGroupApply = 722;
constexpr int kGroupCancel = 723;
constexpr int kGroupAddUrl = 724;
constexpr int kGroupDeleteItem = 725;
constexpr int kGroupRows = 731;
constexpr int kTabLabel = 810;
constexpr int kTabDescription = 811;
constexpr int kTabCheck = 820;
constexpr int kTabApply = 830;
constexpr int kTabCancel = 831;

void Click(Window dialog, int id) { dialog.Child(id).Send(BM_CLICK); }

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
        if (dice_.Once(2)) Type(input);
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
