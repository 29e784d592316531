#pragma once

#include "app/shortcut_box.h"
#include "config/settings.h"
#include "res/resource.h"
#include "tests/support/program_calls.h"
#include "tests/unit/app/panel_harness.h"

namespace app {

/// The drop-down on a window of its own. What it opens is recorded, not opened.
class ShortcutBoxFixture : public ::testing::Test {
  protected:
    ShortcutBoxFixture() {
        config::Settings = {};
        folder_.WriteIniText("[Cuts]\r\nПлан=C:\\план.txt\r\n");
        fakes_.push_back(FAKE_CALL(ShellExecuteA, [this](HWND, LPCSTR, LPCSTR file, LPCSTR, LPCSTR, INT) {
            log_.Add("open", file);
            return reinterpret_cast<HINSTANCE>(33);
        }));
        fakes_.push_back(testkit::LogStarts(log_));
        fakes_.push_back(FAKE_CALL(Sleep, [](DWORD) {}));
        fakes_.push_back(WATCH_CALL(SetWindowPos, [this](HWND window, HWND after, int, int, int, int, UINT) {
            if (window == host_.Handle() && after == HWND_TOPMOST) log_.Add("topmost");
        }));
        fakes_.push_back(WATCH_CALL(SetTimer, [this](HWND window, UINT_PTR, UINT interval, TIMERPROC) {
            if (window == host_.Handle()) log_.Add("timer", interval);
        }));
        dock_.Attach(host_.Handle());
        box_.CreateOn(host_.Handle());
        state_.RefillList = [this] { box_.Refill(); };
        box_.Refill();
    }
    ~ShortcutBoxFixture() override {
        box_.Detach();
        config::Settings = {};
    }

    HWND Edit() { return box_.List().Edit(); }
    std::string Text() { return box_.List().Text(); }

    /// The selected part of the text between "[" and "]", the caret where nothing is selected as "|".
    std::string Shown() {
        std::wstring text = testkit::Wide(Text());
        DWORD start = 0;
        DWORD end = 0;
        SendMessageW(Edit(), EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
        if (start == end) return testkit::Utf8(text.insert(start, L"|"));
        return testkit::Utf8(text.insert(end, L"]").insert(start, L"["));
    }

    /// Gives the box a key message of its edit field; true when it was used.
    bool Key(UINT message, WPARAM key) {
        MSG pressed{};
        pressed.hwnd = Edit();
        pressed.message = message;
        pressed.wParam = key;
        if (box_.PreTranslate(pressed)) return true;
        SendMessageW(Edit(), message, key, 0);
        return false;
    }

    /// Types a text, all of it selected, and presses a key in the edit field; true when the key was used.
    bool Press(const std::string& text, WPARAM key) {
        box_.List().SetText(text);
        SendMessageW(Edit(), EM_SETSEL, 0, -1);
        return Key(WM_KEYDOWN, key);
    }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::HiddenWindow host_;
    testkit::CallLog log_;
    testkit::RecordedCalls fakes_;
    PanelState state_;
    EdgeDock dock_;
    ShortcutBox box_{state_, dock_};
};

}  // namespace app
