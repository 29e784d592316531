#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>

namespace sys {
/// The mouse wheel for one window at a time.
inline namespace m_Wheel {

/// One turn of the wheel.
struct WheelTurn {
    std::int32_t Keys = 0;      ///< the mouse buttons and modifier keys that are held, as MK_ flags
    std::int32_t Rotation = 0;  ///< 120 a notch away from the user, -120 toward the user
    std::int32_t X = 0;         ///< the pointer's place on the screen
    std::int32_t Y = 0;

    bool operator==(const WheelTurn&) const = default;
};

/// What a WM_MOUSEWHEEL message says. Only the low 32 bits of each parameter count.
WheelTurn WheelTurnOf(WPARAM wParam, LPARAM lParam) noexcept;

/// Adds up what is turned in small steps, as touchpads and fine wheels do.
class WheelNotches {
  public:
    /// Takes a rotation (120 a notch) and the time of its message (GetMessageTime, milliseconds); returns how
    /// many notches it completes, negative toward the user. What is left over counts for the next one, unless
    /// that goes the other way or comes more than a second later.
    int Add(std::int32_t rotation, std::uint32_t time) noexcept;

  private:
    std::int32_t rest_ = 0;
    std::uint32_t lastTime_ = 0;
};

/// Calls `mouseWheel` for each turn of the wheel over a window, by putting WheelWndProc before the window's
/// own procedure. There is one hook at a time: that of another window ends.
void HookWheel(HWND window, std::function<void(const WheelTurn&)> mouseWheel);

/// Puts the window's own procedure back; harmless without a hook.
void UnhookWheel() noexcept;

/// The procedure of the hooked window: reports the wheel and passes every message on.
LRESULT CALLBACK WheelWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept;

}  // namespace m_Wheel
}  // namespace sys
