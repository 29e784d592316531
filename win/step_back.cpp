#include "win/step_back.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include "win/window.h"

namespace win {
namespace {

bool StaysAboveOthers(HWND window) noexcept {
    return IsWindowVisible(window) != 0 && (GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
}

}  // namespace

StepBack::StepBack(When when) : outer_(current_), windows_(ThreadWindows()) {
    if (when == When::kAtOnce)
        Step();
    else
        hook_.Reset(SetWindowsHookExW(WH_CBT, &StepBack::OnHook, nullptr, GetCurrentThreadId()));
    current_ = this;
}

StepBack::~StepBack() {
    current_ = outer_;
    // From the back to the front: the last one that is made topmost stands above the others.
    std::for_each(lowered_.rbegin(), lowered_.rend(), [](HWND window) {
        if (IsWindow(window) != 0) SetTopmost(true, window);
    });
}

LRESULT CALLBACK StepBack::OnHook(int code, WPARAM wParam, LPARAM lParam) noexcept {
    if (code == HCBT_ACTIVATE && current_ != nullptr) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): Windows passes the window in a number's place.
        current_->OnActivate(reinterpret_cast<HWND>(wParam));
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void StepBack::OnActivate(HWND window) noexcept {
    if (std::find(windows_.begin(), windows_.end(), window) != windows_.end() || !lowered_.empty()) return;
    try {
        Step();
    } catch (const std::exception&) {
        // The question lies behind them then, and can be brought forward by its taskbar button.
        return;
    }
}

void StepBack::Step() {
    std::copy_if(windows_.begin(), windows_.end(), std::back_inserter(lowered_), &StaysAboveOthers);
    for (HWND window : lowered_)
        SetTopmost(false, window);
}

}  // namespace win
