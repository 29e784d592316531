#include "app/button_mouse.h"

#include <string>

#include "app/panel_layout.h"
#include "config/ini.h"
#include "config/settings.h"
#include "dialogs/message_box.h"
#include "model/launching.h"

namespace app {
ButtonAction ActionFor(win::ShiftState shift) {
    switch (shift) {
        case win::kShift: return {ButtonAction::kLaunch, SW_SHOWMAXIMIZED};
        case win::kControl: return {ButtonAction::kFreeButton, SW_SHOWNORMAL};
        case win::kAlt: return {ButtonAction::kLaunch, SW_MINIMIZE};
        case win::kAlt + win::kControl: return {ButtonAction::kEditSwitch, SW_SHOWNORMAL};
        default: return {};
    }
}

void ButtonMouse::Attach() {
    for (int index = 1; index <= model::kButtonCount; ++index)
        AttachTo(buttons_.Picture(index), index);
    AttachHoverPicture();
}

void ButtonMouse::AttachTo(win::PictureBox& picture, int index) {
    picture.onClick = [this, index] { Click(index); };
    picture.onDoubleClick = [this, index] {
        if (!config::Settings.SingleClickOpen) DoubleClick(index);
    };
    picture.onMouseDown = [this, index](const win::PictureBox::Mouse& mouse) { MouseDown(index, mouse); };
    picture.onMouseUp = [this](const win::PictureBox::Mouse& mouse) { MouseUp(mouse); };
    picture.onMouseMove = [this, index](const win::PictureBox::Mouse&) { MouseMove(index); };
    picture.onMouseLeave = [this] { buttons_.HideHoverOutside(); };
    picture.onCaptureLost = [this] { drag_.Cancel(); };
    picture.onKeyDown = [this, index](WPARAM key) { return Key(index, key); };
    picture.onFocus = [this, index] {
        Select(index);
        buttons_.StopAt(index);
    };
    picture.onContextKey = [this, &picture, index] {
        RECT place{};
        GetWindowRect(picture.Handle(), &place);
        Select(index);
        OpenMenu({(place.left + place.right) / 2, (place.top + place.bottom) / 2});
    };
    picture.onOverlay = [&picture](HDC dc, RECT all) {
        if (picture.Pressed()) DrawEdge(dc, &all, EDGE_SUNKEN, BF_RECT);
    };
}

void ButtonMouse::AttachHoverPicture() {
    // The mark covers a corner of its button, so what is done to it is meant for the button.
    win::PictureBox& hover = buttons_.HoverPicture();
    hover.onMouseMove = [this, &hover](const win::PictureBox::Mouse&) {
        drag_.OnMove();
        tip_.OnHoverPictureMove(hover.Handle(), buttons_.HoveredButton());
    };
    hover.onMouseLeave = [this] { buttons_.HideHoverOutside(); };
    hover.onMouseDown = [this](const win::PictureBox::Mouse& mouse) {
        MouseDown(buttons_.HoveredButton(), mouse);
    };
    hover.onMouseUp = [this](const win::PictureBox::Mouse& mouse) { MouseUp(mouse); };
    hover.onClick = [this] { Click(buttons_.HoveredButton()); };
    hover.onDoubleClick = [this] {
        if (!config::Settings.SingleClickOpen) DoubleClick(buttons_.HoveredButton());
    };
    hover.onCaptureLost = [this] { drag_.Cancel(); };
}

void ButtonMouse::Select(int index) { state_.Context.Select(index); }

void ButtonMouse::Click(int index) {
    Select(index);
    if (config::Settings.SingleClickOpen && !dragged_) DoubleClick(index);
}

void ButtonMouse::MouseDown(int index, const win::PictureBox::Mouse& mouse) {
    Select(index);
    lastShift_ = mouse.shift;
    dragged_ = false;
    if (mouse.button == win::MouseButton::kRight) {
        OpenMenu(win::PointerPlace());
    } else if (mouse.shift == win::kShift + win::kControl) {
        drag_.Begin();
    }
}

void ButtonMouse::MouseUp(const win::PictureBox::Mouse& mouse) {
    if (mouse.button == win::MouseButton::kLeft) dragged_ = drag_.Drop();
}

void ButtonMouse::OpenMenu(POINT at) {
    menu_.PopUp(state_.CurrentPlace(), at);
    // No message tells that the pointer leaves while a menu is open.
    buttons_.HideHoverOutside();
}

void ButtonMouse::MouseMove(int index) {
    drag_.OnMove();
    if (drag_.Active()) return;
    Select(index);
    buttons_.Hover(index);
}

void ButtonMouse::DoubleClick(int index) {
    Select(index);
    if (state_.Current().FilePath.empty()) return;
    RunAction();
}

void ButtonMouse::RunAction() {
    const ButtonAction action = ActionFor(lastShift_);
    switch (action.kind) {
        case ButtonAction::kFreeButton: menu_.FreeButton(state_.CurrentPlace()); return;
        case ButtonAction::kEditSwitch: EditSwitch(); return;
        case ButtonAction::kLaunch: Launch(action.showCommand); return;
    }
}

void ButtonMouse::Launch(int showCommand) {
    const model::CButtonShortcut& button = state_.Current();
    if (!button.IsFree()) {
        // Copies: a switch is appended to the target, and messages that run meanwhile may change the button.
        std::string target = button.FilePath;
        const std::string commandSwitch = button.Switch;
        model::LaunchTarget(target, button.Group, showCommand, commandSwitch);
        if (config::Settings.HideAfterLaunch) dock_.ShowQuon(false, false);
    }
    lastShift_ = 0;
}

void ButtonMouse::EditSwitch() {
    const model::ButtonPlace place = state_.CurrentPlace();
    const model::CButtonShortcut& button = state_.Current();
    if (button.Group) {
        dialogs::ShowNote("Sorry, can not add switch to group button.");
        return;
    }
    const std::string name = button.Naziv;
    std::string shown = button.Switch;
    const std::string stored = shown;
    while (!AskSwitch(name, stored, shown))
        dialogs::ShowNote("Couldn't perform the operation, sorry.");
    state_.RefreshNamed({name}, place);
}

/// Asks for the switch of a shortcut, starting with the shown one. False when the answer could not be stored;
/// what was typed is shown from then on.
bool ButtonMouse::AskSwitch(const std::string& name, const std::string& stored, std::string& shown) {
    const std::string answer = dialogs::ShowMessage("Please enter command switch for this file:", 3, "Cancel",
                                                    "Delete", "OK", true, shown, config::kLongestValue);
    if (answer.empty() || answer == "Cancel") return true;
    if (answer == "Delete") return state_.Store().RemoveSwitch(name);
    // The file may hold more of it than was read.
    if (answer == stored) return true;
    shown = answer;
    return state_.Store().PutSwitch(name, answer);
}

void ButtonMouse::OpenByKey(int index) {
    lastShift_ = win::HeldModifiers();
    DoubleClick(index);
}

bool ButtonMouse::Key(int index, WPARAM key) {
    switch (key) {
        case VK_LEFT: MoveFocus(index, -1, 0); return true;
        case VK_RIGHT: MoveFocus(index, 1, 0); return true;
        case VK_UP: MoveFocus(index, 0, -1); return true;
        case VK_DOWN: MoveFocus(index, 0, 1); return true;
        case VK_HOME: FocusOn(1); return true;
        case VK_END: FocusOn(model::kButtonCount); return true;
        case VK_RETURN:
        case VK_SPACE: OpenByKey(index); return true;
        default: return false;
    }
}

void ButtonMouse::MoveFocus(int index, int columns, int rows) {
    const int column = (index - 1) % layout::kColumns + columns;
    const int row = (index - 1) / layout::kColumns + rows;
    if (column < 0 || column >= layout::kColumns || row < 0 || row >= layout::kRows) return;
    FocusOn(row * layout::kColumns + column + 1);
}

void ButtonMouse::FocusOn(int index) { SetFocus(buttons_.Picture(index).Handle()); }

}  // namespace app
