// The user's hands: real mouse and keyboard input, which arrives wherever the screen and the focus say,
// exactly as from the devices.
//
//     mouse::Click(panel.Child(IDC_BUTTON + 1));               // at the control's centre
//     mouse::Click(panel.ClientPoint(10, 20), {VK_CONTROL});   // with Ctrl held
//     mouse::Drag(from, to, {VK_CONTROL, VK_SHIFT});
//     keyboard::Chord({VK_MENU, VK_F4});
//     keyboard::Type("Текст 文");                               // into whatever has the focus
//
// Places are screen pixels. The calls return when the input is queued, not when a program has acted on it:
// wait for the result with WaitFor. Only one test at a time may use these (see the suites' RUN_SERIAL).
#pragma once

#include <windows.h>

#include <string_view>
#include <vector>

#include "tests/support/window.h"

namespace testkit {

using Keys = std::vector<WORD>;

/// Holds keys down as long as it lives: HeldKeys ctrl({VK_CONTROL});
class HeldKeys {
  public:
    explicit HeldKeys(const Keys& keys);
    ~HeldKeys();
    HeldKeys(const HeldKeys&) = delete;
    HeldKeys& operator=(const HeldKeys&) = delete;

  private:
    Keys keys_;
};

namespace mouse {

enum class Button { kLeft, kRight, kMiddle };

POINT Place();
/// Moves the pointer and checks that it has arrived.
void MoveTo(POINT place);
void Press(Button button = Button::kLeft);
void Release(Button button = Button::kLeft);

/// One click. Waits first where it would make a double click together with the press before.
void Click(POINT place, const Keys& held = {}, Button button = Button::kLeft);
void RightClick(POINT place, const Keys& held = {});
void DoubleClick(POINT place, const Keys& held = {});
/// The same at a window's centre. Throws when something else covers the place.
void Click(Window window, const Keys& held = {});
void RightClick(Window window, const Keys& held = {});
void DoubleClick(Window window, const Keys& held = {});

/// Moves in small steps, as a hand does; programs that follow a drag need the places between.
void Glide(POINT to);
/// Press, glide, release with the left button; waits as Click does.
void Drag(POINT from, POINT to, const Keys& held = {});
/// Puts the pointer back where MoveTo put it a moment ago, in case Wine has moved it. Every wait of the kit
/// does so.
void KeepAtGoal();
/// Turns the wheel; positive is away from the user.
void Wheel(int notches);
/// A turn of any size; 120 is a notch.
void Turn(int rotation);

}  // namespace mouse

namespace keyboard {

/// One key, pressed and let go: VK_RETURN, 'A'.
void Press(WORD key, int times = 1);
/// One key held down: it comes once and then `repeats` times more, as the keyboard repeats it; then let go.
void Hold(WORD key, int repeats);
/// Keys pressed in this order and let go in the opposite one: {VK_MENU, VK_F4}.
void Chord(const Keys& keys);
/// Text as keys where the keyboard layout has them, else as Unicode characters. "\n" is Enter.
void Type(std::string_view text);

}  // namespace keyboard
}  // namespace testkit
