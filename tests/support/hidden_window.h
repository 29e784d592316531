// A top-level window that is never shown, to put the controls under test on.
//
//     HiddenWindow parent;
//     win::PictureBox box;                            // declared after its parent, so that it goes first
//     box.CreateOn(parent.Handle(), 201, {0, 0, 102, 90});
#pragma once

#include <windows.h>

#include "tests/support/text.h"

namespace testkit {

class HiddenWindow {
  public:
    HiddenWindow()
        : handle_(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 10, 10, 400, 400, nullptr, nullptr,
                                  GetModuleHandleW(nullptr), nullptr)) {
        if (handle_ == nullptr) ThrowWindowsError("CreateWindowEx");
    }
    ~HiddenWindow() { Destroy(); }
    HiddenWindow(const HiddenWindow&) = delete;
    HiddenWindow& operator=(const HiddenWindow&) = delete;

    HWND Handle() const { return handle_; }

    /// Destroys it, and all that stands on it, now.
    void Destroy() {
        if (handle_ != nullptr) DestroyWindow(handle_);
        handle_ = nullptr;
    }

  private:
    HWND handle_ = nullptr;
};

}  // namespace testkit
