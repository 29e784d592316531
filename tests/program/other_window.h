// A window of another program for the panel: the test's own. It is topmost, so that it can cover the docked
// panel, and the test has to handle its messages: WaitFor does.
#pragma once

#include <windows.h>

#include "tests/support/text.h"
#include "tests/support/window.h"

namespace testkit {

class OtherWindow {
  public:
    explicit OtherWindow(RECT place, const wchar_t* caption = L"Something else")
        // Without SS_NOTIFY the mouse would see through it.
        : handle_(CreateWindowExW(WS_EX_TOPMOST, L"STATIC", caption, WS_POPUP | WS_VISIBLE | SS_NOTIFY,
                                  place.left, place.top, place.right - place.left, place.bottom - place.top,
                                  nullptr, nullptr, nullptr, nullptr)) {
        if (!handle_) ThrowWindowsError("CreateWindowExW");
    }
    ~OtherWindow() { DestroyWindow(handle_); }
    OtherWindow(const OtherWindow&) = delete;
    OtherWindow& operator=(const OtherWindow&) = delete;

    /// Above all other topmost windows, without the focus.
    void Raise() const {
        SetWindowPos(handle_, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
    Window AsWindow() const { return Window(handle_); }

  private:
    HWND handle_;
};

}  // namespace testkit
