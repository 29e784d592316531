#include "config/patience.h"

#include <windows.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "config/ini.h"
#include "win/window.h"

namespace config {
namespace {

constexpr DWORD kPause = 20;            // milliseconds, as are the others
constexpr DWORD kPatience = 200;        // with the work itself still too short to be felt as a freeze
constexpr ULONGLONG kMostInARow = 260;  // of several holds; the last pause goes beyond it
constexpr ULONGLONG kForgetting = 500;

DWORD g_patience = kPatience;
ULONGLONG g_waited = 0;

/// What has been waited since messages ran last, for one file.
struct Row {
    LONG message = 0;  ///< the time of the message that is being handled
    size_t file = 0;
    ULONGLONG waited = 0;
};
Row g_row;

ULONGLONG g_lastAsked = 0;
/// Up to this depth of handlers nothing is waited for; those that come in between wait.
int g_hurriedDepth = -1;

void ForgetOtherRows(ULONGLONG now) noexcept {
    const LONG message = GetMessageTime();
    const size_t file = std::hash<std::string>()(IniPath);
    if (now - g_lastAsked > kForgetting || message != g_row.message || file != g_row.file)
        g_row = {message, file, 0};
}

bool IsHurried() noexcept { return win::HandlerDepth() <= g_hurriedDepth; }

}  // namespace

bool IsHeldError(DWORD error) noexcept {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

bool WaitForHeldFile() noexcept {
    if (IsHurried()) return false;
    const ULONGLONG begin = GetTickCount64();
    if (begin - g_lastAsked > kForgetting) g_waited = 0;
    ForgetOtherRows(begin);
    g_lastAsked = begin;
    const bool isUsual = g_patience == kPatience;
    if (g_waited >= g_patience || (isUsual && g_row.waited >= kMostInARow)) return false;
    Sleep(kPause);
    g_lastAsked = GetTickCount64();
    // A pause can take longer than asked for, by up to a step of the clock.
    const ULONGLONG paused = std::max<ULONGLONG>(kPause, g_lastAsked - begin);
    g_waited += paused;
    if (isUsual) g_row.waited += paused;
    return true;
}

void ForgetWaiting() noexcept {
    if (!IsHurried()) g_waited = 0;
}

NoPatience::NoPatience() noexcept : former_(std::exchange(g_hurriedDepth, win::HandlerDepth())) {}

NoPatience::~NoPatience() { g_hurriedDepth = former_; }

LongPatience::LongPatience(DWORD milliseconds) noexcept
    : former_(std::exchange(g_patience, std::max(milliseconds, g_patience))) {}

LongPatience::~LongPatience() { g_patience = former_; }

}  // namespace config
