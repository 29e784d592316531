// A window in which another program asks for the shell about what the panel has just opened; it lies behind
// others as long as no test says otherwise.
#pragma once

#include <windows.h>

#include <shellapi.h>

#include <string_view>

#include "tests/support/hidden_window.h"
#include "tests/support/recorded_call.h"
#include "win/shell_call.h"

namespace app {

class ShellQuestion {
  public:
    ShellQuestion() {
        fakes_.push_back(FAKE_CALL(IsWindowVisible, [this](HWND window) -> BOOL {
            return window == Handle() ? open_ : ORIGINAL_CALL(IsWindowVisible)(window);
        }));
        fakes_.push_back(FAKE_CALL(GetWindowThreadProcessId, [this](HWND window, LPDWORD process) -> DWORD {
            if (window != Handle()) return ORIGINAL_CALL(GetWindowThreadProcessId)(window, process);
            if (process != nullptr) *process = kProcess;
            return kProcess;
        }));
        fakes_.push_back(FAKE_CALL(OpenProcess, [](DWORD access, BOOL inherit, DWORD process) {
            return process == kProcess ? ORIGINAL_CALL(OpenProcess)(access, inherit, GetCurrentProcessId())
                                       : nullptr;
        }));
        fakes_.push_back(FAKE_CALL(QueryFullProcessImageNameW, [](HANDLE, DWORD, LPWSTR name, PDWORD size) {
            *size = static_cast<DWORD>(std::wstring_view(L"C:\\OpenWith.exe").copy(name, *size));
            return TRUE;
        }));
        fakes_.push_back(ANSWER_CALL(ShellExecuteA, reinterpret_cast<HINSTANCE>(33)));
        win::OpenInShell(nullptr, "a", nullptr, nullptr, SW_SHOWNORMAL);
    }

    HWND Handle() const { return window_.Handle(); }
    /// The user answers it.
    void Close() { open_ = FALSE; }

  private:
    static constexpr DWORD kProcess = 1;
    const testkit::HiddenWindow window_;
    BOOL open_ = TRUE;
    testkit::RecordedCalls fakes_;
};

}  // namespace app
