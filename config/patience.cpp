#include "config/patience.h"

#include <windows.h>

#include <algorithm>
#include <utility>

namespace config {
namespace {

constexpr DWORD kPause = 20;      // milliseconds, as are the others
constexpr DWORD kPatience = 200;  // with the work itself still too short to be felt as a freeze
constexpr ULONGLONG kForgetting = 500;

DWORD g_patience = kPatience;
ULONGLONG g_waited = 0;
ULONGLONG g_lastAsked = 0;
bool g_never = false;

}  // namespace

bool IsHeldError(DWORD error) noexcept {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
}

bool WaitForHeldFile() noexcept {
    if (g_never) return false;
    const ULONGLONG begin = GetTickCount64();
    if (begin - g_lastAsked > kForgetting) g_waited = 0;
    g_lastAsked = begin;
    if (g_waited >= g_patience) return false;
    Sleep(kPause);
    g_lastAsked = GetTickCount64();
    // A pause can take longer than asked for, by up to a step of the clock.
    g_waited += std::max<ULONGLONG>(kPause, g_lastAsked - begin);
    return true;
}

void ForgetWaiting() noexcept {
    if (!g_never) g_waited = 0;
}

NoPatience::NoPatience() noexcept : former_(std::exchange(g_never, true)) {}

NoPatience::~NoPatience() { g_never = former_; }

LongPatience::LongPatience(DWORD milliseconds) noexcept
    : former_(std::exchange(g_patience, std::max(milliseconds, g_patience))) {}

LongPatience::~LongPatience() { g_patience = former_; }

}  // namespace config
