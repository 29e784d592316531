// A window in which another program asks for the shell about what the panel has just opened; it lies behind
// others as long as no test says otherwise.
#pragma once

#include "tests/support/other_program.h"
#include "tests/support/unit_test.h"
#include "win/shell_call.h"

namespace app {

class ShellQuestion {
  public:
    ShellQuestion() {
        fakes_.push_back(FAKE_CALL(IsWindowVisible, [this](HWND window) -> BOOL {
            return window == Handle() ? open_ : ORIGINAL_CALL(IsWindowVisible)(window);
        }));
        fakes_.push_back(ANSWER_CALL(ShellExecuteA, reinterpret_cast<HINSTANCE>(33)));
        win::OpenInShell(nullptr, "a", nullptr, nullptr, SW_SHOWNORMAL);
    }

    HWND Handle() const { return window_.Handle(); }
    /// The user answers it.
    void Close() { open_ = FALSE; }

  private:
    const testkit::HiddenWindow window_;
    BOOL open_ = TRUE;
    const std::wstring program_ = L"C:\\OpenWith.exe";
    const testkit::RecordedCalls ofProgram_ = testkit::WindowOfProgram(Handle(), program_);
    testkit::RecordedCalls fakes_;
};

}  // namespace app
