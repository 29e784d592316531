#include "win/shell_call.h"

#include <shellapi.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>
#include <vector>

#include "win/window.h"

namespace win {
namespace {

/// While it lives, this thread's topmost windows step back as soon as a new window becomes active: a question
/// of the shell has no window of ours as its owner and would lie behind them.
class StepBack {
  public:
    StepBack()
        : outer_(std::exchange(current_, this)),
          hook_(SetWindowsHookExW(WH_CBT, &StepBack::OnHook, nullptr, GetCurrentThreadId())) {
        EnumThreadWindows(GetCurrentThreadId(), &StepBack::Collect, reinterpret_cast<LPARAM>(&windows_));
    }
    StepBack(const StepBack&) = delete;
    StepBack& operator=(const StepBack&) = delete;
    StepBack(StepBack&&) = delete;
    StepBack& operator=(StepBack&&) = delete;
    ~StepBack() {
        if (hook_ != nullptr) UnhookWindowsHookEx(hook_);
        current_ = outer_;
        // From the back to the front, because the last one that is made topmost stands above the others.
        std::for_each(lowered_.rbegin(), lowered_.rend(), [](HWND window) {
            if (IsWindow(window) != 0) SetTopmost(true, window);
        });
    }

  private:
    static BOOL CALLBACK Collect(HWND window, LPARAM windows) noexcept {
        try {
            reinterpret_cast<std::vector<HWND>*>(windows)->push_back(window);
            return TRUE;
        } catch (const std::exception&) {
            return FALSE;
        }
    }

    static LRESULT CALLBACK OnHook(int code, WPARAM wParam, LPARAM lParam) noexcept {
        if (code == HCBT_ACTIVATE && current_ != nullptr) {
            // NOLINTNEXTLINE(performance-no-int-to-ptr): Windows passes the window in a number's place.
            current_->OnActivate(reinterpret_cast<HWND>(wParam));
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    void OnActivate(HWND window) noexcept {
        if (std::find(windows_.begin(), windows_.end(), window) != windows_.end() || !lowered_.empty())
            return;
        try {
            std::copy_if(windows_.begin(), windows_.end(), std::back_inserter(lowered_), [](HWND own) {
                return IsWindowVisible(own) != 0 &&
                       (GetWindowLongPtrW(own, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0;
            });
        } catch (const std::exception&) {
            return;
        }
        for (HWND own : lowered_)
            SetTopmost(false, own);
    }

    static inline StepBack* current_ = nullptr;

    StepBack* outer_;
    HHOOK hook_;
    /// Frontmost first.
    std::vector<HWND> windows_;
    std::vector<HWND> lowered_;
};

}  // namespace

INT_PTR OpenInShell(const char* verb, const char* file, const char* parameters, const char* folder,
                    int showCommand) {
    const StepBack stepBack;
    // Some targets are shown by a program that is running already and has no right of its own to come
    // forward.
    AllowSetForegroundWindow(ASFW_ANY);
    return reinterpret_cast<INT_PTR>(
        ShellExecuteA(GetDesktopWindow(), verb, file, parameters, folder, showCommand));
}

}  // namespace win
