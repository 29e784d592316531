// The parts of the panel on a window that is never shown, without the main window around them.
#pragma once

#include "app/button_drag.h"
#include "app/button_menu.h"
#include "app/button_mouse.h"
#include "app/button_panel.h"
#include "app/button_rename.h"
#include "app/button_tip.h"
#include "app/edge_dock.h"
#include "app/panel_state.h"
#include "app/tab_strip.h"
#include "config/settings.h"
#include "tests/unit/app/panel_harness.h"

namespace app {

class PanelParts : public ::testing::Test {
  protected:
    PanelParts() {
        config::Settings = {};
        fakes_.push_back(FAKE_CALL(FindExecutableA, [](LPCSTR, LPCSTR, LPSTR answer) {
            *answer = '\0';
            return reinterpret_cast<HINSTANCE>(31);
        }));
        fakes_.push_back(FAKE_CALL(GetCursorPos, [this](LPPOINT point) {
            *point = pointer_;
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(GetMessagePos, [this]() -> DWORD {
            return static_cast<DWORD>(MAKELONG(pointer_.x, pointer_.y));
        }));
        state_.RefillList = [this] { log_.Add("refill"); };
        buttons_.CreateOn(host_.Handle());
        tabs_.CreateOn(host_.Handle());
        rename_.CreateOn(host_.Handle());
        for (int index = 1; index <= model::kButtonCount; ++index)
            state_.Button(index).SetParentButton(&buttons_.Picture(index));
        for (int number = 1; number <= model::kTabCount; ++number)
            state_.Tab(number).SetParentTab(&tabs_.Header(number));
        dock_.Attach(host_.Handle());
        mouse_.Attach();
    }
    ~PanelParts() override { config::Settings = {}; }

    /// Replaces the configuration file and shows a tab of it.
    void Load(std::string_view ini, int tab = 1) {
        folder_.WriteIniText(ini);
        state_.Context.Records.LoadButtonRecords();
        tabs_.b1_MouseUp(tab, win::MouseButton::kLeft, 0, 0, 0);
        state_.Context.Select(1);
        state_.PopCount = 0;
        log_.Clear();
    }

    HWND Button(int index) { return buttons_.Picture(index).Handle(); }
    static void Press(HWND window, std::initializer_list<int> held = {}) {
        const HeldModifierKeys keys(held);
        SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(40, 40));
    }
    static void Release(HWND window) { SendMessageW(window, WM_LBUTTONUP, 0, MAKELPARAM(40, 40)); }
    /// The whole of a double click, with modifier keys held during the first press.
    static void DoubleClick(HWND window, std::initializer_list<int> held = {}) {
        Press(window, held);
        Release(window);
        SendMessageW(window, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(40, 40));
        Release(window);
    }
    /// A point of the screen inside a window.
    static POINT Inside(HWND window) {
        RECT place{};
        GetWindowRect(window, &place);
        return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
    }

    testkit::ProgramFolder folder_;
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    testkit::HiddenWindow host_;
    testkit::CallLog log_;
    POINT pointer_{-30000, -30000};
    testkit::RecordedCalls fakes_;
    PanelState state_;
    EdgeDock dock_;
    ButtonPanel buttons_{state_};
    TabStrip tabs_{state_, buttons_};
    ButtonDrag drag_{state_, buttons_, tabs_};
    ButtonMenu menu_{state_, dock_};
    ButtonTip tip_{state_};
    ButtonMouse mouse_{state_, buttons_, drag_, menu_, tip_, dock_};
    ButtonRename rename_{state_, buttons_};
};

}  // namespace app
