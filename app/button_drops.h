#pragma once

#include <windows.h>

#include <array>
#include <utility>
#include <vector>

#include "app/button_panel.h"
#include "app/drop_target.h"
#include "app/panel_state.h"

namespace app {

/// Drops on the nine buttons. A drop is acted on by a posted message, so that the program it came from is
/// not held up by a question.
class ButtonDrops {
  public:
    ButtonDrops(PanelState& state, ButtonPanel& buttons) noexcept : state_(state), buttons_(buttons) {}

    /// Makes the buttons and the hover picture drop targets; `window` gets WM_QUON_DROP after a drop.
    void Attach(HWND window);

    /// Takes the registrations back, before the windows go.
    void Detach() noexcept;

    /// Acts on the drops that wait.
    void Act();

  private:
    PanelState& state_;
    ButtonPanel& buttons_;
    std::array<DropTarget, model::kButtonCount> targets_;
    DropTarget hoverTarget_;
    /// Where the data was dropped: the tab may have changed before it is acted on.
    std::vector<std::pair<model::ButtonPlace, sys::DroppedData>> waiting_;
};

}  // namespace app
