#include "app/button_drag.h"

#include <windowsx.h>

namespace app {
namespace {

/// Where the pointer was at the message that is handled; on a busy machine it has gone on since.
POINT MessagePlace() noexcept {
    const DWORD place = GetMessagePos();
    return {GET_X_LPARAM(place), GET_Y_LPARAM(place)};
}

}  // namespace

void ButtonDrag::Begin() {
    const model::CButtonShortcut& button = state_.Current();
    if (button.IsFree()) return;
    source_ = {state_.Context.CurrentButtonKey, button.FilePath, button.Naziv, button.Switch};
    active_ = true;
    enteredHeader_ = 0;
    SetCursor(LoadCursor(nullptr, IDC_SIZEALL));
}

void ButtonDrag::OnMove() {
    if (!active_) return;
    SetCursor(LoadCursor(nullptr, IDC_SIZEALL));
    const int header = tabs_.HeaderAt(MessagePlace()).value_or(0);
    if (header == enteredHeader_) return;
    enteredHeader_ = header;
    if (header != 0) tabs_.b1_MouseUp(header, win::MouseButton::kLeft, 0, 0, 0);
}

void ButtonDrag::Drop() {
    if (!active_) return;
    Cancel();
    const auto target = buttons_.ButtonAt(MessagePlace());
    if (target && onDrop) onDrop(*target, source_);
}

void ButtonDrag::Cancel() noexcept {
    active_ = false;
    SetCursor(LoadCursor(nullptr, IDC_ARROW));
}

}  // namespace app
