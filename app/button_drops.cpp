#include "app/button_drops.h"

#include "app/add_to_button.h"
#include "res/resource.h"

namespace app {

void ButtonDrops::Attach(HWND window) {
    for (int index = 1; index <= model::kButtonCount; ++index) {
        targets_.at(static_cast<size_t>(index) - 1)
            .Register(buttons_.Picture(index).Handle(), [this, window, index](const sys::DroppedData& data) {
                waiting_.emplace_back(PanelState::ShownPlace(index), data);
                PostMessageW(window, WM_QUON_DROP, 0, 0);
            });
    }
    hoverTarget_.Register(buttons_.HoverPicture().Handle(), [this, window](const sys::DroppedData& data) {
        waiting_.emplace_back(PanelState::ShownPlace(buttons_.HoveredButton()), data);
        PostMessageW(window, WM_QUON_DROP, 0, 0);
    });
}

void ButtonDrops::Detach() noexcept {
    for (DropTarget& target : targets_)
        target.Revoke();
    hoverTarget_.Revoke();
}

void ButtonDrops::Act() {
    // Taken out first, because the questions let further drops come in.
    for (const auto& [place, data] : std::exchange(waiting_, {}))
        DropOnButton(state_, place, data);
}

}  // namespace app
