// What is done with tabs and buttons on the panel itself, and its whole life from load to close.

#include "app/tray_icon.h"
#include "res/resource.h"
#include "tests/leaks/panel_leak_test.h"

namespace leaks {
namespace {

class ButtonLeakTest : public PanelLeakTest {
  protected:
    /// Presses a key in the panel, or in a child of it.
    void Key(WORD key, HWND child = nullptr) { panel_.PressKey(WM_KEYDOWN, key, {}, child); }

    /// Opens the rename box on a button and stores a name.
    void Rename(int button, const std::string& name) {
        Hover(Button(button));
        Key(VK_F2);
        ASSERT_EQ(GetFocus(), Child(IDC_RENAME).Handle());
        Child(IDC_RENAME).SetText(name);
        Key(VK_RETURN, Child(IDC_RENAME).Handle());
        ASSERT_EQ(Button(button).Text(), name);
    }
};

TEST_F(ButtonLeakTest, SwitchingTabs) {
    Repeat(
        [this] {
            for (const int tab : {2, 3, 1})
                ShowTab(tab);
        },
        4);
}

TEST_F(ButtonLeakTest, HoveringOverButtonsAndTabs) {
    Repeat([this] {
        for (int index = 1; index <= 6; ++index) {
            Hover(Button(index));
            Hover(Child(IDC_HOVER_PICTURE));
            Hover(Child(IDC_TAB_HEADER + index));
        }
        for (int index = 0; index < 4; ++index)
            Hover(Child(IDC_IMAGE_BUTTON + index));
        Child(IDC_HOVER_PICTURE).Send(WM_MOUSELEAVE);
        Paint();
    });
}

TEST_F(ButtonLeakTest, Renaming) {
    Repeat([this] {
        Rename(1, "Renamed");
        Rename(1, "File");
        Hover(Button(2));
        Key(VK_F2);
        Key(VK_ESCAPE);
        Paint();
    });
}

TEST_F(ButtonLeakTest, FreeingAndMoving) {
    Repeat([this] {
        Drop(5 + 1, [this](testkit::DataObject& data) { data.OfferFiles({otherFile_}); });
        ASSERT_EQ(Button(7).Text(), "other file");
        const POINT from = Button(7).Centre();
        const POINT to = Button(8).Centre();
        POINT at = from;
        const auto message =
            FAKE_CALL(GetMessagePos, [&]() -> DWORD { return static_cast<DWORD>(MAKELONG(at.x, at.y)); });
        const auto pointer = FAKE_CALL(GetCursorPos, [&](LPPOINT point) {
            *point = at;
            return TRUE;
        });
        {
            const app::HeldModifierKeys keys({VK_CONTROL, VK_SHIFT});
            Button(7).Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
            at = to;
            Button(7).Send(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(5 + to.x - from.x, 5));
            Button(7).Send(WM_LBUTTONUP, 0, MAKELPARAM(5 + to.x - from.x, 5));
        }
        ASSERT_EQ(Button(8).Text(), "other file");
        DoubleClick(Button(8), {VK_CONTROL});
        ASSERT_EQ(Button(8).Text(), "Empty");
        Paint();
    });
}

TEST_F(ButtonLeakTest, Launching) {
    const auto start = FAKE_CALL(
        CreateProcessA,
        [](LPCSTR, LPSTR, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD, LPVOID, LPCSTR,
           LPSTARTUPINFOA, LPPROCESS_INFORMATION process) -> BOOL {
            process->hProcess = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, GetCurrentProcessId());
            process->hThread = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, GetCurrentProcessId());
            return TRUE;
        });
    Repeat([this] {
        for (int index = 1; index <= 5; ++index)
            DoubleClick(Button(index));
    });
}

TEST_F(ButtonLeakTest, DockingAndComingOut) {
    Repeat([this] {
        panel_.Panel().ShowQuon(false, false);
        Panel().Send(WM_TIMER, 1);
        Panel().Send(WM_LBUTTONDOWN, MK_LBUTTON, 0);
        panel_.Panel().ShowQuon(false, true);
        panel_.Panel().ShowQuon(true, true);
        panel_.Panel().EnableTimer(true);
        Paint();
    });
}

TEST_F(ButtonLeakTest, AddingAndRemovingTheTrayIcon) {
    const auto notify = WATCH_CALL(Shell_NotifyIconA, [this](DWORD what, PNOTIFYICONDATAA) {
        if (what == NIM_ADD) Calls().Take("tray icon");
        if (what == NIM_DELETE) Calls().Give("tray icon");
    });
    const HICON icon = LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_QUON));
    Repeat([&] {
        app::TrayIcon tray;
        tray.AddTrayIcon(Panel().Handle(), icon);
    });
}

TEST_F(ButtonLeakTest, LoadingAndClosingAWholePanel) {
    const auto show = FAKE_CALL(
        ShowWindow, [](HWND window, int command) { return ORIGINAL_CALL(ShowWindow)(window, command); });
    bare_ = [this] { OpenBarePanel(); };
    Repeat([this] {
        dropTargets_.clear();
        {
            const win::OleThread ole;
            app::Glavni panel;
            panel.CreateParts();
            panel.Load();
            SendMessageW(panel.Handle(), WM_CLOSE, 0, 0);
        }
        app::TakeQuitMessage();
    });
}

}  // namespace
}  // namespace leaks
