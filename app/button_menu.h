#pragma once

#include <windows.h>

#include "app/button_commands.h"
#include "app/edge_dock.h"
#include "app/panel_state.h"
#include "win/menu_array.h"

namespace app {

/// The menu of a button `mnuButton` with its submenus `mnuButAct` and `mnuButB`.
class ButtonMenu {
  public:
    ButtonMenu(PanelState& state, EdgeDock& dock);

    /// Takes the main window, which owns the popup.
    void Attach(HWND owner) noexcept {
        owner_ = owner;
        commands_.Attach(owner);
    }

    /// Prepares the menu for a button of the shown tab and lists the running programs, which may take a
    /// second for each that hangs.
    void Prepare(const model::ButtonPlace& place);

    /// Prepares the menu for a button of the shown tab, shows it at a point of the screen and runs the chosen
    /// command on that button.
    void PopUp(const model::ButtonPlace& place, POINT at);

    /// Frees a button of the shown tab; its target and its switch go with it. A free button is left
    /// untouched.
    void FreeButton(const model::ButtonPlace& place) { commands_.Free(place); }

    win::MenuArray mnuButton;
    win::MenuArray mnuButAct;
    win::MenuArray mnuButB;

    /// The entry that opens the menu of a button.
    win::MenuItem mnuButtonParent = win::MenuParent("Button", mnuButton);

  private:
    void ListActivePrograms();
    void Run(int command, const model::ButtonPlace& place);

    PanelState& state_;
    ButtonCommands commands_;
    HWND owner_ = nullptr;
};

}  // namespace app
