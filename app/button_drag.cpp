#include "app/button_drag.h"

#include <windowsx.h>

#include <cstdlib>
#include <utility>

namespace app {
namespace {

/// Where the pointer was at the time of the handled message; on a busy machine it has moved on since.
POINT MessagePlace() noexcept {
    const DWORD place = GetMessagePos();
    return {GET_X_LPARAM(place), GET_Y_LPARAM(place)};
}

}  // namespace

bool IsDragDistance(POINT from, POINT to, SIZE distance) noexcept {
    return std::abs(to.x - from.x) > distance.cx || std::abs(to.y - from.y) > distance.cy;
}

void ButtonDrag::Begin() {
    const model::CButtonShortcut& button = state_.Current();
    if (button.IsFree()) return;
    source_ = {state_.CurrentPlace(), button.FilePath, button.Naziv, button.Switch};
    start_ = MessagePlace();
    stage_ = Stage::kPressed;
}

void ButtonDrag::TakeUp() noexcept {
    const SIZE distance{GetSystemMetrics(SM_CXDRAG), GetSystemMetrics(SM_CYDRAG)};
    if (stage_ != Stage::kPressed || !IsDragDistance(start_, MessagePlace(), distance)) return;
    stage_ = Stage::kCarrying;
    enteredHeader_ = 0;
}

void ButtonDrag::OnMove() {
    TakeUp();
    if (!Active()) return;
    SetCursor(LoadCursor(nullptr, IDC_SIZEALL));
    const int header = tabs_.HeaderAt(MessagePlace()).value_or(0);
    if (header == enteredHeader_) return;
    enteredHeader_ = header;
    if (header != 0) tabs_.b1_MouseUp(header, win::MouseButton::kLeft, 0, 0, 0);
}

bool ButtonDrag::Drop() {
    TakeUp();
    const bool carried = Active();
    Cancel();
    if (!carried) return false;
    const auto target = buttons_.ButtonAt(MessagePlace());
    if (target && onDrop) onDrop(PanelState::ShownPlace(*target), source_);
    return true;
}

void ButtonDrag::Cancel() noexcept {
    if (std::exchange(stage_, Stage::kNone) == Stage::kCarrying) SetCursor(LoadCursor(nullptr, IDC_ARROW));
}

}  // namespace app
