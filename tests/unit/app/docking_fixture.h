// A dock with a window that is never on the screen, on a screen of 1000 x 800 pixels. What it does to the
// window is recorded, one line a call.
#pragma once

#include "app/edge_dock.h"
#include "app/screen_place.h"
#include "config/settings.h"
#include "res/resource.h"
#include "tests/support/unit_test.h"

namespace app {

class DockingTest : public ::testing::Test {
  protected:
    DockingTest()
        : window_(CreateWindowExW(0, L"STATIC", L"Quon", WS_POPUP, 100, 200, 300, 200, nullptr, nullptr,
                                  nullptr, nullptr)) {
        config::Settings = {};
        dock_.Attach(window_);
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&DockingTest::Procedure));
        fakes_.push_back(FAKE_CALL(GetSystemMetrics, [](int index) {
            if (index == SM_CXSCREEN) return 1000;
            return index == SM_CYSCREEN ? 800 : ORIGINAL_CALL(GetSystemMetrics)(index);
        }));
        fakes_.push_back(
            WATCH_CALL(SetWindowPos, [this](HWND window, HWND after, int x, int y, int, int, UINT flags) {
                if (window == window_) {
                    if ((flags & SWP_NOMOVE) == 0)
                        log_.Add("place", x, y);
                    else
                        log_.Add(after == HWND_TOPMOST ? "topmost" : "after", flags);
                }
            }));
        fakes_.push_back(FAKE_CALL(SetTimer, [this](HWND, UINT_PTR, UINT interval, TIMERPROC) -> UINT_PTR {
            log_.Add("timer", interval);
            return 1;
        }));
        fakes_.push_back(FAKE_CALL(KillTimer, [this] {
            log_.Add("no timer");
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(GetWindowTextA, [this](HWND, LPSTR buffer, int size) {
            std::strncpy(buffer, underMouse_.c_str(), static_cast<size_t>(size));
            return static_cast<int>(underMouse_.size());
        }));
        fakes_.push_back(FAKE_CALL(Sleep, [this](DWORD time) {
            log_.Add("Sleep", time);
            if (onSleep_) onSleep_();
        }));
    }
    ~DockingTest() override {
        DestroyWindow(window_);
        config::Settings = {};
    }

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* self = reinterpret_cast<DockingTest*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_APP && self->onEvent_) self->onEvent_();
        if (message == WM_QUON_HAND_ON) self->dock_.HandOn();
        return DefWindowProcW(window, message, wParam, lParam);
    }

    void Dock(std::int32_t edge) {
        config::Settings.Edge = edge;
        dock_.ShowQuon(false, true);
        log_.Clear();
    }
    /// A docked panel, with the settings and the mouse that a hover needs.
    void DockUnderTheMouse(std::int32_t delay) {
        Dock(kLeftEdge);
        config::Settings.PopOnHover = true;
        config::Settings.PopDelay = delay;
        underMouse_ = "Quon";
    }
    RECT Place() const {
        RECT place{};
        GetWindowRect(window_, &place);
        return place;
    }

    testkit::CallLog log_;
    std::string underMouse_;
    std::function<void()> onSleep_;
    std::function<void()> onEvent_;
    EdgeDock dock_;
    HWND window_;
    testkit::RecordedCalls fakes_;
};

/// The line of a window that is put above all others.
inline const std::string kTopmost = "topmost " + std::to_string(SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);

}  // namespace app
