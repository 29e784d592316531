#pragma once

#include <windows.h>

#include <array>
#include <functional>
#include <optional>

#include "app/button_panel.h"
#include "app/panel_state.h"
#include "win/picture_box.h"

namespace app {

/// The six tab headers `b1` and the switching of tabs.
class TabStrip {
  public:
    TabStrip(PanelState& state, ButtonPanel& buttons) noexcept : state_(state), buttons_(buttons) {}

    /// Creates the six headers, flat and without a label.
    void CreateOn(HWND parent);

    /// Gives the headers the window's present scale; their labels are to be drawn anew.
    void Rescale();

    /// The header of a tab, 1 to 6; throws SubscriptError for another index.
    win::PictureBox& Header(int index);

    /// A mouse button is released on a header: the left one shows the tab, the right one opens its
    /// definition.
    void b1_MouseUp(int index, win::MouseButton button, win::ShiftState shift, float x, float y);

    /// The header at a point of the screen.
    [[nodiscard]] std::optional<int> HeaderAt(POINT screen) const;

    /// Called to define the tab with this number; may be empty.
    std::function<void(int)> onDefineTab;

  private:
    void ShowTab(int index);
    void OnHover(int index);
    bool OnKey(int index, WPARAM key);
    void FocusOn(int index);
    /// Makes this header the one that the Tab key stops at.
    void StopAt(int index);

    PanelState& state_;
    ButtonPanel& buttons_;
    std::array<win::PictureBox, model::kTabCount> b1_;
    int hovered_ = 0;
};

}  // namespace app
