#include "tests/support/x_keyboard.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>

#include "tests/support/text.h"
#include "tests/support/wait.h"
#include "tests/support/wine.h"

namespace testkit {
namespace {

/// The first version of Wine that lets keys go which its X server does not see pressed.
constexpr int kFirstVersion = 9;

/// Whether X has pressed a key for this program yet.
bool has_pressed = false;

bool LetsSentKeysGo() {
    static const bool answer = WineVersion() >= kFirstVersion && std::getenv("DISPLAY") != nullptr;
    return answer;
}

const wchar_t* NameInX(WORD key) {
    switch (key) {
        case VK_CONTROL: return L"ctrl";
        case VK_SHIFT: return L"shift";
        case VK_MENU: return L"alt";
        default: return nullptr;
    }
}

bool IsDown(WORD key) { return GetAsyncKeyState(key) < 0; }

/// A program of Linux' has no handle to wait for: its effect is what tells that it has run. What Wine writes
/// into `process` means nothing; closed as handles, it would be the handles of others.
void RunXdotool(const std::wstring& arguments) {
    constexpr wchar_t kProgram[] = L"\\\\?\\unix\\usr\\bin\\xdotool";
    std::wstring command = L"xdotool" + arguments;
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(kProgram, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start,
                       &process) == 0)
        ThrowWindowsError("CreateProcessW");
}

std::vector<WORD> KeysOfXServer(const std::vector<WORD>& keys) {
    std::vector<WORD> ours;
    std::copy_if(keys.begin(), keys.end(), std::back_inserter(ours), &IsKeyOfXServer);
    return ours;
}

/// Sends the keys with xdotool's command for one.
void Send(const std::vector<WORD>& keys, const wchar_t* command) {
    std::wstring arguments;
    for (const WORD key : keys)
        arguments += command + std::wstring(NameInX(key));
    RunXdotool(arguments);
}

}  // namespace

bool IsKeyOfXServer(WORD key) { return LetsSentKeysGo() && NameInX(key) != nullptr; }

void PressInXServer(const std::vector<WORD>& keys, const std::function<void()>& wakeUp) {
    const std::vector<WORD> sent = KeysOfXServer(keys);
    if (sent.empty()) return;
    has_pressed = true;
    WaitFor("keys to stay down", [&] {
        Send(sent, L" keydown ");
        WaitFor("keys to go down", [&] { return std::all_of(sent.begin(), sent.end(), &IsDown); });
        // A program that has just come to the front may still be told which keys were down before.
        wakeUp();
        if (std::all_of(sent.begin(), sent.end(), &IsDown)) return true;
        LetGoInXServer(sent);
        return false;
    });
}

void LetGoInXServer(const std::vector<WORD>& keys) {
    const std::vector<WORD> sent = KeysOfXServer(keys);
    if (sent.empty()) return;
    Send(sent, L" keyup ");
    WaitFor("keys to go up", [&] { return std::none_of(sent.begin(), sent.end(), &IsDown); });
}

void BringKeyStatesUpToDate() {
    if (!has_pressed) return;
    const DWORD thread = GetWindowThreadProcessId(GetForegroundWindow(), nullptr);
    if (thread == 0 || thread == GetCurrentThreadId()) return;
    if (AttachThreadInput(GetCurrentThreadId(), thread, TRUE) != 0)
        AttachThreadInput(GetCurrentThreadId(), thread, FALSE);
}

void LetModifiersGo() {
    const std::vector<WORD> modifiers{VK_CONTROL, VK_SHIFT, VK_MENU};
    if (std::any_of(modifiers.begin(), modifiers.end(), &IsDown)) LetGoInXServer(modifiers);
}

}  // namespace testkit
