#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "app/button_panel.h"
#include "app/panel_state.h"

namespace app {

/// Renaming a button in place with the edit box `t1`.
class ButtonRename {
  public:
    ButtonRename(PanelState& state, ButtonPanel& buttons) noexcept : state_(state), buttons_(buttons) {}

    /// Creates the box, hidden.
    void CreateOn(HWND parent);

    /// Gives the box the font of the window's present scale; one that is open stays so, over its button.
    void Rescale();

    /// Shows the box over the current button with its name; does nothing on a free button.
    void Begin();

    /// Gives the button the typed name; an empty box does nothing, and the box stays when it cannot be
    /// stored.
    void Accept();

    /// Hides the box without renaming.
    void Abandon();

    /// True while the box is shown.
    [[nodiscard]] bool IsOpen() const { return IsWindowVisible(t1_) != 0; }

    /// The edit box itself.
    [[nodiscard]] HWND Box() const noexcept { return t1_; }

    /// The window of the button that the box was opened for.
    [[nodiscard]] HWND Button() const { return buttons_.Picture(place_.slot).Handle(); }

  private:
    void PlaceBox();
    [[nodiscard]] win::Scale BoxScale() const { return win::Scale::Of(GetParent(t1_)); }

    PanelState& state_;
    ButtonPanel& buttons_;
    HWND t1_ = nullptr;
    HWND label_ = nullptr;
    // The button that the box belongs to, wherever the mouse goes meanwhile.
    model::ButtonPlace place_;
};

/// Moves the shortcut of a shown button to another name: its target, its switch and the records of all
/// buttons that carry it. Repaints them and fills the drop-down anew. A name of which nothing can be stored
/// changes nothing. False when the change could not be stored; everything is as it was then.
bool RenameButton(PanelState& state, const model::ButtonPlace& place, const std::string& name);

}  // namespace app
