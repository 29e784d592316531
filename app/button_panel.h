#pragma once

#include <windows.h>

#include <array>
#include <functional>
#include <optional>

#include "app/panel_state.h"
#include "win/picture_box.h"
#include "win/retry_timer.h"
#include "win/window.h"

namespace app {

/// The area that holds the nine buttons; moves and presses between them go to the main window.
class ButtonContainer : public win::Window {
  public:
    /// Creates the area at its parent's scale; throws RuntimeError when Windows refuses.
    void CreateOn(HWND parent);

    /// Takes the place that it has at its parent's present scale.
    void Rescale();

    /// Time to look where the pointer is.
    std::function<void()> onPointerCheck;

    /// Starts, or restarts, calling onPointerCheck every 200 ms (SetTimer).
    void WatchPointer();

    /// Stops calling onPointerCheck (KillTimer).
    void LeavePointer();

    /// Reads again what could not be read.
    win::RetryTimer ReadAgain{2, 200};

    /// Stores again what could not be stored.
    win::RetryTimer StoreAgain{3, 500};

  protected:
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void OnTimer(UINT_PTR timer);
    void CutMargins(const win::Scale& scale);
};

/// The nine button pictures `pb1` in their container, and the hover picture over one of them.
class ButtonPanel {
  public:
    explicit ButtonPanel(PanelState& state) noexcept : state_(state) {}

    /// Creates the container with the nine buttons, and the hover picture, hidden.
    void CreateOn(HWND parent);

    /// Gives everything the window's present scale; the faces are to be drawn anew.
    void Rescale();

    /// The picture of a button, 1 to 9; throws SubscriptError for another index.
    win::PictureBox& Picture(int index);

    /// Makes a button the one of the nine that the Tab key stops at; the first until then.
    void StopAt(int index);

    /// The small picture in the corner of the hovered button.
    win::PictureBox& HoverPicture() noexcept { return hover_; }

    /// Reloads and repaints all nine buttons from the records of the shown tab. What could not be read is
    /// read again soon.
    void RefreshShownTab();

    /// Makes a button the hovered one and puts the hover picture onto it, until the pointer leaves the
    /// buttons.
    void Hover(int index);

    /// Hides the hover picture, unless it holds the mouse.
    void HideHover();

    /// Hides the hover picture unless it holds the mouse, or the pointer is on it or on a button that no
    /// other window covers.
    void HideHoverOutside();

    /// The button last under the mouse, 0 before the first.
    [[nodiscard]] int HoveredButton() const noexcept { return hovered_; }

    /// The button at a point of the screen.
    [[nodiscard]] std::optional<int> ButtonAt(POINT screen) const;

    /// The place of a button in the main window's client pixels.
    [[nodiscard]] RECT PlaceInWindow(int index) const;

    /// The place of a button in its container, in layout pixels.
    static RECT ButtonPlace(int index);

  private:
    void DrawHoverPicture();

    PanelState& state_;
    ButtonContainer container_;
    std::array<win::PictureBox, model::kButtonCount> pb1_;
    win::PictureBox hover_;
    int hovered_ = 0;
};

}  // namespace app
