#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "app/button_panel.h"
#include "app/panel_state.h"
#include "app/tab_strip.h"

namespace app {

/// What is being moved: the source's key and a copy of its values, taken before the move began.
struct DragSource {
    std::string Key;
    std::string FilePath;
    std::string Naziv;
    std::string Switch;
};

/// Moving a button by CTRL+SHIFT and the left mouse button, over the headers to another tab too.
class ButtonDrag {
  public:
    ButtonDrag(PanelState& state, ButtonPanel& buttons, TabStrip& tabs) noexcept
        : state_(state), buttons_(buttons), tabs_(tabs) {}

    /// Starts moving the current button; nothing happens on a free one.
    void Begin();

    /// True while a button is carried.
    [[nodiscard]] bool Active() const noexcept { return active_; }

    /// The pointer moves while the button is carried: a header that it enters shows its tab.
    void OnMove();

    /// The mouse button is released: the move ends on the button under the pointer, or nowhere.
    void Drop();

    /// Ends the move without a change.
    void Cancel() noexcept;

    /// Gets the target button (1 to 9) and what was carried there.
    std::function<void(int, const DragSource&)> onDrop;

  private:
    PanelState& state_;
    ButtonPanel& buttons_;
    TabStrip& tabs_;
    bool active_ = false;
    int enteredHeader_ = 0;
    DragSource source_;
};

}  // namespace app
