// What the random user does with files and addresses: drops, pastes and picks them, and has the panel move,
// rename and delete them.

#include "app/button_commands.h"
#include "config/settings.h"
#include "dialogs/icon_chooser.h"
#include "model/storable_name.h"
#include "sys/shell_link.h"
#include "sys/utility.h"
#include "tests/fuzz/fuzz_user.h"
#include "win/text.h"
#include "win/window.h"

namespace testkit {

std::string FuzzUser::AnyTarget() {
    static constexpr std::array kAddresses{"http://a.example/?x=y", "https://b.example/p|q.htm",
                                           "mailto:someone@c.example", "no target"};
    if (dice_.Once(4)) return dice_.OneOf(kAddresses);
    return dice_.OneOf(targets_);
}

void FuzzUser::NameTarget(const std::string& target) {
    named_.AddShortcut(model::NameForTarget(target));
    named_.AddShortcut(model::NameForTarget(win::Before(sys::ReadLinkTarget(target), '|')));
    for (const sys::PathPartCode part : {sys::kBareName, sys::kFileName})
        named_.AddShortcut(model::StorableName(sys::PathPart(target, part)));
}

void FuzzUser::NameAddition(int index, const std::string& target) {
    named_.buttons.insert(std::to_string(config::Settings.CurrentTab) + std::to_string(index));
    answersAreNames_ = true;
    NameTarget(target);
}

/// Offers a target as a text or as the first of some files.
void FuzzUser::Offer(DataObject& data, const std::string& target) {
    if (target.find(":\\") == std::string::npos || dice_.Once(4))
        data.OfferText(target + (dice_.Once(2) ? "\r\nmore" : ""));
    else
        data.OfferFiles({target, dice_.OneOf(targets_)});
}

void FuzzUser::DropOnAButton() {
    const int index = AnyButton();
    const std::string target = AnyTarget();
    NameAddition(index, target);
    DataObject data;
    Offer(data, target);
    desktop_.Drop(Button(index), data);
    // The tab may change before the drop is acted on.
    if (dice_.Once(3)) SwitchTab();
    win::ProcessPendingMessages();
}

void FuzzUser::DropOnTheList() {
    const std::string target = AnyTarget();
    NameTarget(target);
    DataObject data;
    Offer(data, target);
    desktop_.Drop(panel_.Window().Child(IDC_SHORTCUTS), data);
    win::ProcessPendingMessages();
}

void FuzzUser::Paste() {
    const int index = AnyButton();
    const std::string target = AnyTarget();
    NameAddition(index, target);
    DataObject data;
    const bool asText = target.find(":\\") == std::string::npos || dice_.Once(2);
    if (asText) {
        data.OfferText(target);
    } else {
        const std::string& second = dice_.OneOf(targets_);
        // A link that leads nowhere is left out.
        NameTarget(second);
        data.OfferFiles({target, second});
    }
    desktop_.Copy(asText ? CF_UNICODETEXT : CF_HDROP, data);
    Choose(index, IDM_BUTTON + app::kPaste);
}

void FuzzUser::Pick() {
    const int index = AnyButton();
    const std::string target = dice_.Once(5) ? std::string() : dice_.OneOf(targets_);
    NameAddition(index, target);
    desktop_.Pick(target);
    Choose(index, IDM_BUTTON + (dice_.Once(2) ? app::kAddFile : app::kAddFolder));
}

void FuzzUser::OperateOnAFile() {
    static constexpr std::array kOperations{app::kCopyTo, app::kMoveTo, app::kRename, app::kRecycle,
                                            app::kDelete};
    const int index = AnyUsedButton();
    NameButton(index);
    desktop_.Pick(dice_.Once(5) ? std::string() : folder_);
    filesMayMove_ = true;
    // A file's new path becomes a shortcut.
    for (const std::string& target : targets_)
        named_.AddShortcut(folder_ + "\\" + sys::PathPart(target, sys::kFileName));
    Choose(index, IDM_FILE_OPERATIONS + dice_.OneOf(kOperations));
}

void FuzzUser::ChangeIcon() {
    const int index = AnyUsedButton();
    named_.buttons.insert(std::to_string(config::Settings.CurrentTab) + std::to_string(index));
    Choose(index, IDM_BUTTON + app::kChangeIcon);
}

void FuzzUser::UseIconChooser(Window dialog) {
    const Window icon = dialog.FindChild(dialogs::IcoChooser::p2 + static_cast<int>(dice_.Below(3)));
    if (icon && !dice_.Once(3)) {
        icon.Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
        if (icon.Exists()) icon.Send(WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
    }
    if (dialog.Exists()) dialog.Post(WM_COMMAND, IDCANCEL);
}

void FuzzUser::PressKeys() {
    static constexpr std::array kKeys{VK_LEFT,   VK_RIGHT, VK_UP, VK_DOWN, VK_TAB,
                                      VK_ESCAPE, VK_F2,    0x41,  VK_SPACE};
    for (std::size_t times = 1 + dice_.Below(6); times > 0; --times) {
        const WORD key = static_cast<WORD>(dice_.OneOf(kKeys));
        const HWND focus = GetFocus();
        if (focus == nullptr || panel_.PressKey(WM_KEYDOWN, key, {}, focus)) continue;
        SendMessageW(focus, WM_KEYDOWN, key, 0);
        SendMessageW(focus, WM_KEYUP, key, 0);
    }
    panel_.PressKey(WM_KEYDOWN, VK_ESCAPE);
}

void FuzzUser::DockAndComeOut() {
    panel_.Panel().ShowQuon(false, dice_.Once(2));
    panel_.Window().Send(WM_TIMER, 1);
    panel_.Panel().ShowQuon(true, dice_.Once(2));
}

}  // namespace testkit
