#pragma once

#include <windows.h>

#include <oleacc.h>

#include <functional>
#include <optional>
#include <string>

#include "win/handles.h"
#include "win/scale.h"
#include "win/window.h"

namespace win {

/// Modifier keys as a mask: 1 SHIFT, 2 CTRL, 4 ALT, summed.
using ShiftState = int;
constexpr ShiftState kShift = 1;    ///< a SHIFT key
constexpr ShiftState kControl = 2;  ///< a CTRL key
constexpr ShiftState kAlt = 4;      ///< an ALT key

/// The modifier keys that are held while the current message is handled (GetKeyState).
ShiftState HeldModifiers() noexcept;

/// Marks the box with the focus from now on; until a key is used, the marks would only be noise.
void ShowFocusMarks() noexcept;

/// The mouse button that an event is about; the left one for a move.
enum class MouseButton { kLeft, kRight };

/// A child window with a persistent picture: what is drawn on its device context stays until it is cleared.
/// The window text is its meaning, for screen readers and automation; it is not drawn.
class PictureBox : public Window {
  public:
    /// One mouse event; the point is in client pixels.
    struct Mouse {
        MouseButton button = MouseButton::kLeft;
        ShiftState shift = 0;
        POINT at{};
    };

    PictureBox() = default;
    PictureBox(const PictureBox&) = delete;
    PictureBox& operator=(const PictureBox&) = delete;
    PictureBox(PictureBox&&) = delete;
    PictureBox& operator=(PictureBox&&) = delete;
    ~PictureBox() override;

    // Events; an empty one is ignored.

    /// The left button was pressed and let go inside the box; not for the second press of a double click.
    std::function<void()> onClick;
    /// The left button was pressed for the second time (WM_LBUTTONDBLCLK).
    std::function<void()> onDoubleClick;
    /// A button was pressed; not for the second press of a double click.
    std::function<void(const Mouse&)> onMouseDown;
    /// A button was let go, the left one wherever the pointer is by then; comes before onClick.
    std::function<void(const Mouse&)> onMouseUp;
    /// The pointer moved over the box, or anywhere while the left button is held.
    std::function<void(const Mouse&)> onMouseMove;
    /// The pointer left the box (WM_MOUSELEAVE).
    std::function<void()> onMouseLeave;
    /// Called with a virtual-key code, once for a held Enter or Space; true means that the key was used.
    std::function<bool(WPARAM)> onKeyDown;
    /// The box has got the focus of the keyboard.
    std::function<void()> onFocus;
    /// The box has lost the focus of the keyboard.
    std::function<void()> onFocusLost;
    /// The mouse was taken away while the left button was held.
    std::function<void()> onCaptureLost;
    /// Draws over the picture each time it is painted, without changing it.
    std::function<void(HDC, RECT)> onOverlay;
    /// Called for a WM_CONTEXTMENU that comes from the keyboard.
    std::function<void()> onContextKey;

    /// Creates the box on `parent`, in the parent's client pixels and at its scale. With `tabStop` it is a
    /// stop of the Tab key and takes the focus when it is pressed.
    void CreateOn(HWND parent, int id, RECT place, bool tabStop = true);

    /// Creates a box without a picture of its own: it shows only the background and what onOverlay draws. For
    /// boxes in great numbers.
    void CreateBareOn(HWND parent, int id, RECT place, bool tabStop);

    /// Makes the box a stop of the Tab key, or none: of several boxes that the arrow keys walk over, one is.
    void SetTabStop(bool stop) noexcept;

    /// The device context of the picture.
    [[nodiscard]] HDC Dc() const noexcept { return dc_.Get(); }

    /// Puts the box elsewhere and gives it the scale that its parent has by now. The picture is a new, empty
    /// one: what was drawn has to be drawn again.
    void Rescale(RECT place);

    /// The scale that the box was made at.
    [[nodiscard]] const Scale& PictureScale() const noexcept { return scale_; }

    /// The width of the picture in layout pixels, whatever its scale.
    [[nodiscard]] int ScaleWidth() const noexcept { return scale_.ToLayout(size_.cx); }

    /// The height of the picture in layout pixels.
    [[nodiscard]] int ScaleHeight() const noexcept { return scale_.ToLayout(size_.cy); }

    /// The colour that Clear fills with; the system's button face unless set.
    void SetBackColor(COLORREF color) noexcept { backColor_ = color; }

    /// Fills the picture with the background colour.
    void Clear();

    /// Shows the picture as it is now (InvalidateRect).
    void Refresh() noexcept;

    /// 1 marks the box (the header of the shown tab), 0 does not; onOverlay draws the difference.
    void SetFrame(int frame);

    /// The value that SetFrame was given last; 0 at first.
    [[nodiscard]] int Frame() const noexcept { return frame_; }

    /// True while the pointer is over the box.
    [[nodiscard]] bool Hovered() const noexcept { return hovered_; }

    /// True while the left button that was pressed on the box is held.
    [[nodiscard]] bool Pressed() const noexcept { return pressed_; }

    /// Sets the meaning of the box if it differs.
    void SetMeaning(const std::string& text);

    /// What screen readers are told when one asks: what the box is (ROLE_SYSTEM_), a push button unless set,
    /// and what it is called as long as its meaning is empty. A page tab is selected while it is marked.
    void SetAccessible(long role, std::string nameWithoutMeaning = {});

  protected:
    std::optional<LRESULT> OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void MakePicture();
    void TellScreenReader();
    void ForgetScreenReader() noexcept;
    [[nodiscard]] std::optional<LRESULT> OnKey(UINT message, WPARAM key, LPARAM lParam) const;
    void OnPaint();
    void OnMouseMoved(const Mouse& mouse);
    void OnLeftDown(const Mouse& mouse);
    void OnLeftUp(const Mouse& mouse);
    void OnCaptureChanged();
    [[nodiscard]] bool Contains(POINT point) const;
    [[nodiscard]] COLORREF BackColor() const noexcept;

    // In this order: a bitmap can be deleted only after the device context that holds it.
    Bitmap bitmap_;
    MemoryDc dc_;
    SIZE size_{};
    Scale scale_;
    std::optional<COLORREF> backColor_;
    int frame_ = 0;
    long role_ = ROLE_SYSTEM_PUSHBUTTON;
    std::string nameWithoutMeaning_;
    bool told_ = false;
    bool takesFocus_ = false;
    bool hovered_ = false;
    bool pressed_ = false;
};

}  // namespace win
