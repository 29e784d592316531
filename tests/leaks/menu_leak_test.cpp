// Each menu of the program, opened for real and closed by keys, and what some of their commands do.

#include "app/button_commands.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "sys/process_list.h"
#include "tests/leaks/panel_leak_test.h"
#include "tests/support/pickers.h"

namespace leaks {
namespace {

using testkit::ModalAnswers, testkit::Window;

class MenuLeakTest : public PanelLeakTest {
  protected:
    /// The only window there is, taken for another program's: what else is open on the desktop must not
    /// count.
    MenuLeakTest() {
        SetWindowTextW(other_.Handle(), L"a program");
        fakes_.push_back(FAKE_CALL(GetTopWindow, [this](HWND parent) {
            return parent == nullptr ? other_.Handle() : ORIGINAL_CALL(GetTopWindow)(parent);
        }));
        fakes_.push_back(FAKE_CALL(GetWindow, [this](HWND window, UINT which) -> HWND {
            if (window == other_.Handle() && which == GW_HWNDNEXT) return nullptr;
            return ORIGINAL_CALL(GetWindow)(window, which);
        }));
        fakes_.push_back(ANSWER_CALL(GetCurrentProcessId, 4));
        fakes_.push_back(FAKE_CALL(IsWindowVisible, [this](HWND window) -> BOOL {
            return window == other_.Handle() || ORIGINAL_CALL(IsWindowVisible)(window);
        }));
        fakes_.push_back(FAKE_CALL(TrackPopupMenu, [this](HMENU menu, UINT flags, int x, int y, int reserved,
                                                          HWND owner, const RECT* place) {
            ++opened_;
            items_ = GetMenuItemCount(menu);
            chosen_ = ORIGINAL_CALL(TrackPopupMenu)(menu, flags, x, y, reserved, owner, place);
            return chosen_;
        }));
    }

    void OpenButtonMenu(int button) {
        PressInMenu({VK_DOWN, VK_UP, VK_UP, VK_ESCAPE});
        Button(button).Send(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    }

    testkit::HiddenWindow other_;
    int opened_ = 0;
    int items_ = 0;
    int chosen_ = 0;
};

TEST_F(MenuLeakTest, MenusOfTheImageButtons) {
    Repeat([this] {
        for (int index = 0; index < 3; ++index) {
            PressInMenu({VK_DOWN, VK_DOWN, VK_ESCAPE});
            Click(Child(IDC_IMAGE_BUTTON + index));
        }
        Paint();
    });
    EXPECT_EQ(opened_ % 3, 0);
    EXPECT_GT(opened_, 0);
    EXPECT_EQ(chosen_, 0);
}

TEST_F(MenuLeakTest, MenusOfButtons) {
    Repeat([this] {
        // A single shortcut, a group, a free one.
        for (const int button : {1, 2, 9})
            OpenButtonMenu(button);
        Paint();
    });
    EXPECT_EQ(items_, 13);
}

TEST_F(MenuLeakTest, SubmenusOfAButtonsMenu) {
    testkit::AnswerPickers(fakes_, [](testkit::Picker) { return std::string(); });
    Repeat([this] {
        // The programs that run, before the last three items: the first of them is assigned.
        PressInMenu(4, VK_UP);
        PressInMenu({VK_RIGHT, VK_RETURN});
        Button(9).Send(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
        ASSERT_EQ(chosen_, IDM_ACTIVE);
        ASSERT_EQ(Button(9).Text(), "quon_leak_tests");
        DoubleClick(Button(9), {VK_CONTROL});
        PressInMenu(3, VK_UP);
        PressInMenu({VK_RIGHT, VK_RETURN});
        Button(1).Send(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
        ASSERT_EQ(chosen_, IDM_FILE_OPERATIONS);
    });
}

TEST_F(MenuLeakTest, TheTrayIconsMenu) {
    fakes_.push_back(FAKE_CALL(GetWindowTextA, [](HWND, LPSTR text, int) {
        std::strcpy(text, "Notification");
        return 12;
    }));
    fakes_.push_back(ANSWER_CALL(SetForegroundWindow, TRUE));
    Repeat([this] {
        PressInMenu({VK_DOWN, VK_ESCAPE});
        Panel().Send(WM_MOUSEMOVE, 1, WM_RBUTTONUP);
        PressInMenu({VK_DOWN, VK_RETURN});
        Panel().Send(WM_MOUSEMOVE, 1, WM_RBUTTONUP);
        ASSERT_EQ(chosen_, IDM_TRAY);
    });
}

TEST_F(MenuLeakTest, TheListOfTheDropDown) {
    const Window box = Child(IDC_SHORTCUTS);
    Repeat([&] {
        box.Send(CB_SHOWDROPDOWN, TRUE);
        Paint();
        box.Send(CB_SHOWDROPDOWN, FALSE);
    });
}

TEST_F(MenuLeakTest, TheListOfProcesses) {
    bool old = false;
    fakes_.push_back(FAKE_CALL(GetVersionExA, [&](LPOSVERSIONINFOA version) {
        const BOOL answer = ORIGINAL_CALL(GetVersionExA)(version);
        if (old) version->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
        return answer;
    }));
    Repeat([&] {
        for (const bool toolhelp : {false, true}) {
            old = toolhelp;
            win::MenuArray menu(IDM_ACTIVE, {{"Item1", {}}});
            sys::clsProcesi programs(menu, true, 0);
            programs.Refresh();
            ASSERT_EQ(programs.MenuCount(), 1);
        }
    });
}

TEST_F(MenuLeakTest, AssigningFileOperationsAndProperties) {
    testkit::AnswerPickers(fakes_, [this](testkit::Picker) { return targets_.Path(); });
    fakes_.push_back(ANSWER_CALL(SHFileOperationA, 0));
    fakes_.push_back(FAKE_CALL(ShellExecuteExA, [](SHELLEXECUTEINFOA* record) {
        record->hProcess = OpenProcess(PROCESS_QUERY_INFORMATION, FALSE, GetProcessId(GetCurrentProcess()));
        return TRUE;
    }));
    int command = 0;
    fakes_.push_back(FAKE_CALL(TrackPopupMenu, [&] { return command; }));
    const auto choose = [&](int button, int chosen) {
        command = chosen;
        Button(button).Send(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    };
    bare_ = [this] { OpenBare({IDD_MESSAGE}); };
    Repeat([&] {
        choose(1, IDM_BUTTON + app::kProperties);
        const ModalAnswers user({Press(dialogs::frmMsg::b1)});
        choose(1, IDM_FILE_OPERATIONS + app::kCopyTo);
        choose(8, IDM_BUTTON + app::kAddFolder);
        ASSERT_NE(Button(8).Text(), "Empty");
        choose(8, IDM_BUTTON + app::kFree);
        ASSERT_EQ(Button(8).Text(), "Empty");
        choose(9, IDM_ACTIVE);
        ASSERT_EQ(Button(9).Text(), "quon_leak_tests");
        choose(9, IDM_BUTTON + app::kFree);
    });
}

}  // namespace
}  // namespace leaks
