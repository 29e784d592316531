#pragma once

#include <windows.h>

#include <functional>
#include <string>

#include "app/button_panel.h"
#include "app/panel_state.h"
#include "app/tab_strip.h"

namespace app {

/// What is being moved: the source's place and a copy of its values, taken before the move began.
struct DragSource {
    model::ButtonPlace Place;
    std::string FilePath;
    std::string Naziv;
    std::string Switch;
};

/// True when two points of the screen are farther apart than a drag needs, in pixels (SM_CXDRAG, SM_CYDRAG).
bool IsDragDistance(POINT from, POINT to, SIZE distance) noexcept;

/// Moving a button by CTRL+SHIFT and the left mouse button, over the headers to another tab too. It begins
/// when the pointer has gone farther than the system's drag distance; until then the press may become a
/// click.
class ButtonDrag {
  public:
    ButtonDrag(PanelState& state, ButtonPanel& buttons, TabStrip& tabs) noexcept
        : state_(state), buttons_(buttons), tabs_(tabs) {}

    /// Gets ready to move the current button; does nothing on a free one.
    void Begin();

    /// True from a press that may become a move until that ends.
    [[nodiscard]] bool Ready() const noexcept { return stage_ != Stage::kNone; }

    /// True while a button is carried.
    [[nodiscard]] bool Active() const noexcept { return stage_ == Stage::kCarrying; }

    /// The pointer moves while the button is carried: entering a header shows its tab.
    void OnMove();

    /// The mouse button is released: the move ends on the button under the pointer, or nowhere. False when
    /// there was no move.
    bool Drop();

    /// Ends the move without a change.
    void Cancel() noexcept;

    /// Called with the place of the target button and what was carried there.
    std::function<void(const model::ButtonPlace&, const DragSource&)> onDrop;

  private:
    enum class Stage { kNone, kPressed, kCarrying };

    void TakeUp() noexcept;

    PanelState& state_;
    ButtonPanel& buttons_;
    TabStrip& tabs_;
    Stage stage_ = Stage::kNone;
    POINT start_{};
    int enteredHeader_ = 0;
    DragSource source_;
};

}  // namespace app
