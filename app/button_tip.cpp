#include "app/button_tip.h"

#include <windows.h>

#include <shlwapi.h>

#include "config/settings.h"
#include "sys/utility.h"
#include "win/text.h"

namespace app {
namespace {

TipText FreeButtonTip() {
    return {"You can...",
            "1. Drop file, link or URL to create shortcut,\n"
            "2. Right-click the button and choose file for it,\n"
            "3. Right-click the button to chose a file from active processes, or\n"
            "4. Right-click the button and paste copied file or URL from clipboard."};
}

TipText ModifierTip() {
    return {"Special button commands:",
            "CTRL + click frees the button.\n"
            "SHIFT + click opens file in maximized window.\n"
            "ALT + click opens file minimized.\n"
            "ALT + CTRL + click lets you enter switch for the assigned file,\n"
            "CTRL + SHIFT + drag lets you change button's place, even to different tab."};
}

std::string GroupText(const std::string& members) {
    std::string text = "Group consists of:";
    int number = 0;
    for (const std::string& member : win::Split(members, '|'))
        text += "\r\n" + std::to_string(++number) + ". " + member;
    return text;
}

std::string TargetText(const model::CButtonShortcut& button) {
    const std::string& path = button.FilePath;
    std::string file =
        "Path: " + path + "\nFile size: " + button.FileSize + "\nLast modified: " + button.FILETIME;
    // A hover must not wait for a server that is known to be silent.
    if (!button.Answers()) return file;
    if (sys::PathPart(path, sys::kIsFolder) == "yes") return "Folder\n" + path;
    if (PathFileExistsA(path.c_str()) == 0 && sys::IsUrl(path)) return "URL: " + path;
    return file;
}

}  // namespace

TipText ButtonTipText(const model::CButtonShortcut& button, win::ShiftState shift) {
    if (button.IsFree()) return FreeButtonTip();
    if (shift != 0) return ModifierTip();
    return {button.Naziv, button.Group ? GroupText(button.FilePath) : TargetText(button)};
}

void ButtonTip::OnHoverPictureMove(HWND hoverPicture, int index) {
    if (!config::Settings.ExtensiveTooltips) {
        // A tip from before the setting was switched off would come up over any button.
        tip_.reset();
        state_.TipButton = 0;
        return;
    }
    if (index == 0 || index == state_.TipButton) return;
    state_.TipButton = index;
    model::CButtonShortcut& button = state_.Button(index);
    const TipText content = ButtonTipText(button, win::HeldModifiers());
    button.Ttip = content.text;
    // One tip at a time: every tip listens to the same picture.
    tip_ = std::make_unique<sys::clsToolTip>();
    tip_->SetTitle(content.title);
    tip_->SetTipText(content.text);
    tip_->SetParentControl(hoverPicture);
    tip_->Create();
}

}  // namespace app
