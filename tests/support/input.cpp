#include "tests/support/input.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string>

#include "tests/support/text.h"
#include "tests/support/wait.h"
#include "tests/support/wine.h"
#include "tests/support/x_keyboard.h"

namespace testkit {
namespace {

void Send(std::vector<INPUT> inputs) {
    const auto count = static_cast<UINT>(inputs.size());
    if (SendInput(count, inputs.data(), sizeof(INPUT)) != count) ThrowWindowsError("SendInput");
}

INPUT MouseInput(DWORD flags, LONG x = 0, LONG y = 0, DWORD data = 0) {
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dx = x;
    input.mi.dy = y;
    input.mi.mouseData = data;
    input.mi.dwFlags = flags;
    return input;
}

bool IsExtendedKey(WORD key) {
    constexpr WORD kExtended[] = {VK_LEFT,  VK_RIGHT, VK_UP,       VK_DOWN,   VK_HOME,   VK_END,
                                  VK_PRIOR, VK_NEXT,  VK_INSERT,   VK_DELETE, VK_APPS,   VK_LWIN,
                                  VK_RWIN,  VK_RMENU, VK_RCONTROL, VK_DIVIDE, VK_NUMLOCK};
    return std::find(std::begin(kExtended), std::end(kExtended), key) != std::end(kExtended);
}

INPUT KeyInput(WORD key, bool up) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = (up ? KEYEVENTF_KEYUP : 0) | (IsExtendedKey(key) ? KEYEVENTF_EXTENDEDKEY : 0);
    return input;
}

INPUT CharacterInput(wchar_t unit, bool up) {
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = unit;
    input.ki.dwFlags = KEYEVENTF_UNICODE | (up ? KEYEVENTF_KEYUP : 0);
    return input;
}

/// The absolute mouse scale runs from 0 to 65535 over the screen; this is the middle of a pixel on it.
LONG OnMouseScale(LONG pixel, int screen_size) {
    return ((2 * pixel + 1) * 32768 + screen_size / 2) / screen_size;
}

/// While another process of Wine's looks for the screens anew, there is none for a moment.
int ScreenSize(int metric) {
    int size = 0;
    WaitFor("a screen", [&] { return (size = GetSystemMetrics(metric)) > 0; });
    return size;
}

bool SamePlace(POINT one, POINT other) { return one.x == other.x && one.y == other.y; }

// Wine moves the pointer of its X display too. The display's echo of that waits in the program below the
// pointer until the program wakes up, and then sets the pointer back to where it was when the echo was made.
// So a test's pointer has a goal, and is put there again when an echo has moved it.
struct PointerGoal {
    POINT place = {};
    ULONGLONG since = 0;
};
PointerGoal goal;
/// An echo comes soon or not at all; later on the pointer may be moved by a program on purpose.
constexpr ULONGLONG kEchoTimeMs = 3000;

/// The keys of all HeldKeys that live.
Keys& KeysHeldNow() {
    static Keys keys;
    return keys;
}

/// Sends input together with the keys that are held. Wine believes Ctrl, Shift and Alt released whenever its
/// X display says so, and the display has never seen them pressed; the program below the pointer passes that
/// on when it wakes up. So they are pressed again before all other input, in one piece with it, and after it:
/// as long as input waits behind it, a program sees the keys as they were sent.
void SendWithHeldKeys(const std::vector<INPUT>& inputs) {
    std::vector<INPUT> keys;
    if (RunsUnderWine() || inputs.empty())
        for (const WORD key : KeysHeldNow())
            keys.push_back(KeyInput(key, false));
    std::vector<INPUT> all = keys;
    all.insert(all.end(), inputs.begin(), inputs.end());
    if (!inputs.empty()) all.insert(all.end(), keys.begin(), keys.end());
    Send(std::move(all));
}

/// Mouse input at a place; move and button in one piece, so that nothing can come in between.
void SendMouse(DWORD flags, POINT place, DWORD data = 0) {
    SendWithHeldKeys({MouseInput(MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | flags,
                                 OnMouseScale(place.x, ScreenSize(SM_CXSCREEN)),
                                 OnMouseScale(place.y, ScreenSize(SM_CYSCREEN)), data)});
}

bool HasGoal() { return goal.since != 0 && GetTickCount64() - goal.since < kEchoTimeMs; }

POINT AimedAt() { return HasGoal() ? goal.place : mouse::Place(); }

/// Has the window's thread go through its message loop.
void WakeUp(Window window) {
    constexpr UINT kPatienceMs = 1000;
    // The first answer comes before the thread has looked at anything else, the second one after.
    for (int round = 0; round < 2; ++round) {
        DWORD_PTR answer = 0;
        SendMessageTimeoutW(window.Handle(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, kPatienceMs, &answer);
    }
}

/// The press that another one makes a double click with, whatever the pointer does between the two.
struct PressMemory {
    POINT place = {};
    ULONGLONG time = 0;
    mouse::Button button = mouse::Button::kLeft;
};
PressMemory last_press;

void WaitUntilNoDoubleClick(POINT place, mouse::Button button) {
    if (button != last_press.button ||
        std::labs(place.x - last_press.place.x) > GetSystemMetrics(SM_CXDOUBLECLK) ||
        std::labs(place.y - last_press.place.y) > GetSystemMetrics(SM_CYDOUBLECLK)) {
        return;
    }
    const ULONGLONG end = last_press.time + GetDoubleClickTime() + 50;
    WaitFor("the double click time to pass", [&] { return GetTickCount64() > end; });
}

void Click(mouse::Button button) {
    mouse::Press(button);
    mouse::Release(button);
}

POINT UncoveredCentre(Window window) {
    const POINT centre = window.Centre();
    const Window there = Window::At(centre);
    if (there != window && !there.IsDescendantOf(window)) {
        throw std::runtime_error("cannot reach " + window.Describe() +
                                 " with the mouse: " + there.Describe() + " is in front of it");
    }
    return centre;
}

}  // namespace

HeldKeys::HeldKeys(const Keys& keys) : keys_(keys) {
    PressInXServer(keys_, [] { WakeUp(Window(GetForegroundWindow())); });
    BringKeyStatesUpToDate();
    KeysHeldNow().insert(KeysHeldNow().end(), keys_.begin(), keys_.end());
    SendWithHeldKeys({});
}

HeldKeys::~HeldKeys() {
    std::reverse(keys_.begin(), keys_.end());
    for (const WORD key : keys_) {
        KeysHeldNow().pop_back();
        if (IsKeyOfXServer(key)) continue;
        INPUT input = KeyInput(key, true);
        SendInput(1, &input, sizeof input);
    }
    try {
        LetGoInXServer(keys_);
    } catch (const std::exception& error) {
        ADD_FAILURE() << error.what();
    }
}

namespace mouse {

POINT Place() {
    POINT place = {};
    GetCursorPos(&place);
    return place;
}

void MoveTo(POINT place) {
    const Window left_behind = Window::At(Place());
    goal = {place, GetTickCount64()};
    if (!RunsUnderWine()) SendMouse(MOUSEEVENTF_MOVE, place);
    WaitFor("the pointer to arrive at " + std::to_string(place.x) + ", " + std::to_string(place.y), [&] {
        if (!RunsUnderWine()) return SamePlace(Place(), place);
        // Let the echoes come out, then move again, which makes no further echo.
        SendMouse(MOUSEEVENTF_MOVE, place);
        RestAMoment();
        for (const Window window : {left_behind, Window(GetDesktopWindow()), Window::At(place)})
            WakeUp(window);
        SendMouse(MOUSEEVENTF_MOVE, place);
        WakeUp(Window::At(place));
        return SamePlace(Place(), place);
    });
}

void Press(Button button) {
    constexpr DWORD kFlags[] = {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_MIDDLEDOWN};
    const POINT place = AimedAt();
    SendMouse(kFlags[static_cast<int>(button)], place);
    last_press = {place, GetTickCount64(), button};
}

void Release(Button button) {
    constexpr DWORD kFlags[] = {MOUSEEVENTF_LEFTUP, MOUSEEVENTF_RIGHTUP, MOUSEEVENTF_MIDDLEUP};
    SendMouse(kFlags[static_cast<int>(button)], AimedAt());
}

void Click(POINT place, const Keys& held, Button button) {
    MoveTo(place);
    WaitUntilNoDoubleClick(place, button);
    const HeldKeys keys(held);
    testkit::Click(button);
}

void RightClick(POINT place, const Keys& held) { Click(place, held, Button::kRight); }

void DoubleClick(POINT place, const Keys& held) {
    MoveTo(place);
    WaitUntilNoDoubleClick(place, Button::kLeft);
    const HeldKeys keys(held);
    testkit::Click(Button::kLeft);
    testkit::Click(Button::kLeft);
}

void Click(Window window, const Keys& held) { Click(UncoveredCentre(window), held); }
void RightClick(Window window, const Keys& held) { RightClick(UncoveredCentre(window), held); }
void DoubleClick(Window window, const Keys& held) { DoubleClick(UncoveredCentre(window), held); }

void Glide(POINT to) {
    constexpr LONG kStep = 12;
    const POINT from = Place();
    const LONG distance = std::max(std::labs(to.x - from.x), std::labs(to.y - from.y));
    const LONG steps = std::max(2L, distance / kStep);
    for (LONG step = 1; step <= steps; ++step) {
        MoveTo({from.x + (to.x - from.x) * step / steps, from.y + (to.y - from.y) * step / steps});
        RestAMoment();
    }
}

void Drag(POINT from, POINT to, const Keys& held) {
    MoveTo(from);
    WaitUntilNoDoubleClick(from, Button::kLeft);
    const HeldKeys keys(held);
    Press();
    Glide(to);
    Release();
}

void KeepAtGoal() {
    if (HasGoal() && !SamePlace(Place(), goal.place)) SendMouse(MOUSEEVENTF_MOVE, goal.place);
}

void Wheel(int notches) { Turn(notches * WHEEL_DELTA); }

void Turn(int rotation) { Send({MouseInput(MOUSEEVENTF_WHEEL, 0, 0, static_cast<DWORD>(rotation))}); }

}  // namespace mouse

namespace keyboard {

void Press(WORD key, int times) {
    for (int i = 0; i < times; ++i)
        SendWithHeldKeys({KeyInput(key, false), KeyInput(key, true)});
}

void Hold(WORD key, int repeats) {
    SendWithHeldKeys({KeyInput(key, false)});
    // Wine forgets held keys when the foreground changes; the next repeat would be a press.
    for (int i = 0; i < repeats && GetAsyncKeyState(key) < 0; ++i)
        SendWithHeldKeys({KeyInput(key, false)});
    SendWithHeldKeys({KeyInput(key, true)});
}

void Chord(const Keys& keys) { const HeldKeys held(keys); }

void Type(std::string_view text) {
    for (const wchar_t unit : Wide(text)) {
        if (unit == L'\n') {
            Press(VK_RETURN);
            continue;
        }
        const SHORT key = VkKeyScanW(unit);
        // The high byte holds the modifiers: 1 is Shift, anything more is not worth pressing.
        if (key == -1 || HIBYTE(key) > 1) {
            Send({CharacterInput(unit, false), CharacterInput(unit, true)});
            continue;
        }
        const HeldKeys shift(HIBYTE(key) == 1 ? Keys{VK_SHIFT} : Keys{});
        Press(LOBYTE(key));
    }
}

}  // namespace keyboard
}  // namespace testkit
