#pragma once

#include <windows.h>

#include "app/button_drag.h"
#include "app/button_menu.h"
#include "app/button_panel.h"
#include "app/button_tip.h"
#include "app/edge_dock.h"
#include "app/panel_state.h"
#include "win/picture_box.h"

namespace app {

/// What a double click does, by the modifier keys of the last press.
struct ButtonAction {
    enum Kind { kLaunch, kFreeButton, kEditSwitch };
    Kind kind = kLaunch;
    int showCommand = SW_SHOWNORMAL;
};

/// The action for a modifier mask; every combination that has none of its own launches normally.
ButtonAction ActionFor(win::ShiftState shift);

/// The mouse and the keyboard on the nine buttons.
class ButtonMouse {
  public:
    ButtonMouse(PanelState& state, ButtonPanel& buttons, ButtonDrag& drag, ButtonMenu& menu, ButtonTip& tip,
                EdgeDock& dock) noexcept
        : state_(state), buttons_(buttons), drag_(drag), menu_(menu), tip_(tip), dock_(dock) {}

    /// Takes the events of the buttons and of the hover picture.
    void Attach();

    /// Opens the button as its double click does, with the modifier keys held now.
    void OpenByKey(int index);

  private:
    void AttachTo(win::PictureBox& picture, int index);
    void AttachHoverPicture();
    void Select(int index);
    void Click(int index);
    void DoubleClick(int index);
    void MouseDown(int index, const win::PictureBox::Mouse& mouse);
    void MouseUp(const win::PictureBox::Mouse& mouse);
    void OpenMenu(POINT at);
    void MouseMove(int index);
    bool Key(int index, WPARAM key);
    void MoveFocus(int index, int columns, int rows);
    void FocusOn(int index);
    void RunAction();
    void Launch(int showCommand);
    void EditSwitch();
    bool AskSwitch(const std::string& name, const std::string& stored, std::string& shown);

    PanelState& state_;
    ButtonPanel& buttons_;
    ButtonDrag& drag_;
    ButtonMenu& menu_;
    ButtonTip& tip_;
    EdgeDock& dock_;
    win::ShiftState lastShift_ = 0;
    bool dragged_ = false;
};

}  // namespace app
