#pragma once

#include <memory>
#include <string>

#include "app/panel_state.h"
#include "sys/tooltip.h"
#include "win/picture_box.h"

namespace app {

/// A tip's title and text.
struct TipText {
    std::string title;
    std::string text;
};

/// The tip of a button while these modifier keys are held.
TipText ButtonTipText(const model::CButtonShortcut& button, win::ShiftState shift);

/// The tip of the hovered button; its parent control is the hover picture.
class ButtonTip {
  public:
    explicit ButtonTip(PanelState& state) noexcept : state_(state) {}

    /// The mouse moves over the hover picture on button `index`: builds the tip when it is another button
    /// than before and extensive tooltips are on.
    void OnHoverPictureMove(HWND hoverPicture, int index);

  private:
    PanelState& state_;
    std::unique_ptr<sys::clsToolTip> tip_;
};

}  // namespace app
