#include "win/front_watch.h"

namespace win {
namespace {

constexpr DWORD kFromOthers = WINEVENT_OUTOFCONTEXT | WINEVENT_SKIPOWNPROCESS;

}  // namespace

FrontWatch::FrontWatch(HWND window, UINT_PTR timer, UINT delay) noexcept
    : window_(window),
      timer_(timer),
      delay_(delay),
      front_(SetWinEventHook(EVENT_SYSTEM_FOREGROUND, EVENT_SYSTEM_FOREGROUND, nullptr, &FrontWatch::OnEvent,
                             0, 0, kFromOthers)) {
    current_ = this;
    Follow(GetForegroundWindow());
    Expect();
}

FrontWatch::~FrontWatch() { current_ = nullptr; }

void CALLBACK FrontWatch::OnEvent(HWINEVENTHOOK /*hook*/, DWORD event, HWND window, LONG object, LONG child,
                                  DWORD /*thread*/, DWORD /*time*/) noexcept {
    // An event may have been under way when the watch ended.
    if (current_ == nullptr || object != OBJID_WINDOW || child != CHILDID_SELF) return;
    if (event == EVENT_SYSTEM_FOREGROUND)
        current_->Follow(window);
    else if (window != GetForegroundWindow())
        return;
    current_->Expect();
}

void FrontWatch::Follow(HWND front) noexcept {
    place_.Reset();
    DWORD process = 0;
    const DWORD thread = GetWindowThreadProcessId(front, &process);
    if (thread == 0 || process == GetCurrentProcessId()) return;
    place_.Reset(SetWinEventHook(EVENT_OBJECT_LOCATIONCHANGE, EVENT_OBJECT_LOCATIONCHANGE, nullptr,
                                 &FrontWatch::OnEvent, process, thread, kFromOthers));
}

}  // namespace win
