#include "win/foreground.h"

#include <dwmapi.h>

#include <cwchar>

#include "tests/support/other_program.h"
#include "tests/support/unit_test.h"

namespace win {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

constexpr WindowTraits kOrdinary{.visible = true, .enabled = true};

TEST(ForegroundTest, AnOrdinaryWindowOfAnotherProgramCanTakeIt) { EXPECT_TRUE(CanTakeForeground(kOrdinary)); }

TEST(ForegroundTest, WhatTheUserDoesNotSeeAsAWindowCannotTakeIt) {
    for (bool WindowTraits::* trait : {&WindowTraits::visible, &WindowTraits::enabled}) {
        WindowTraits window = kOrdinary;
        window.*trait = false;
        EXPECT_FALSE(CanTakeForeground(window));
    }
    for (bool WindowTraits::* trait : {&WindowTraits::minimized, &WindowTraits::tool, &WindowTraits::cloaked,
                                       &WindowTraits::own, &WindowTraits::desktop, &WindowTraits::empty}) {
        WindowTraits window = kOrdinary;
        window.*trait = true;
        EXPECT_FALSE(CanTakeForeground(window));
    }
}

HWND Number(INT_PTR number) { return reinterpret_cast<HWND>(number); }
INT_PTR Number(HWND window) { return reinterpret_cast<INT_PTR>(window); }

/// Windows 1, 2, 3 ... behind one another, of another program unless a test says otherwise.
class WindowOrderTest : public ::testing::Test {
  protected:
    struct Fake {
        bool visible = true;
        bool enabled = true;
        bool minimized = false;
        LONG_PTR style = 0;
        DWORD cloaked = 0;
        bool own = false;
        const wchar_t* name = L"SomeWindow";
        RECT place{0, 0, 100, 100};
    };

    WindowOrderTest() {
        fakes_.push_back(FAKE_CALL(GetWindow, [this](HWND window, UINT which) -> HWND {
            EXPECT_EQ(which, UINT{GW_HWNDNEXT});
            const INT_PTR next = Number(window) + 1;
            return windows_.contains(next) ? Number(next) : nullptr;
        }));
        fakes_.push_back(
            FAKE_CALL(IsWindowVisible, [this](HWND window) -> BOOL { return Of(window).visible; }));
        fakes_.push_back(
            FAKE_CALL(IsWindowEnabled, [this](HWND window) -> BOOL { return Of(window).enabled; }));
        fakes_.push_back(FAKE_CALL(IsIconic, [this](HWND window) -> BOOL { return Of(window).minimized; }));
        fakes_.push_back(FAKE_CALL(GetWindowLongPtrW, [this](HWND window, int) { return Of(window).style; }));
        fakes_.push_back(
            FAKE_CALL(DwmGetWindowAttribute, [this](HWND window, DWORD attribute, PVOID value, DWORD) {
                EXPECT_EQ(attribute, DWORD{DWMWA_CLOAKED});
                *static_cast<DWORD*>(value) = Of(window).cloaked;
                return S_OK;
            }));
        fakes_.push_back(FAKE_CALL(GetWindowThreadProcessId, [this](HWND window, LPDWORD process) -> DWORD {
            *process = Of(window).own ? GetCurrentProcessId() : 1;
            return 1;
        }));
        fakes_.push_back(FAKE_CALL(GetClassNameW, [this](HWND window, LPWSTR name, int size) {
            std::wcsncpy(name, Of(window).name, static_cast<size_t>(size));
            return static_cast<int>(std::wcslen(name));
        }));
        fakes_.push_back(FAKE_CALL(GetWindowRect, [this](HWND window, LPRECT place) -> BOOL {
            *place = Of(window).place;
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(GetForegroundWindow, [this] { return Number(front_); }));
        fakes_.push_back(FAKE_CALL(AllowSetForegroundWindow, [this](DWORD process) -> BOOL {
            log_.Add("allow", process == ASFW_ANY ? "any" : "one");
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(SetForegroundWindow, [this](HWND window) -> BOOL {
            log_.Add("foreground", Number(window));
            return TRUE;
        }));
        fakes_.push_back(
            FAKE_CALL(SetWindowPos, [this](HWND window, HWND after, int, int, int, int, UINT flags) -> BOOL {
                log_.Add("place", Number(window), "behind", Number(after), flags);
                return TRUE;
            }));
    }
    Fake& Of(HWND window) { return windows_[Number(window)]; }

    std::map<INT_PTR, Fake> windows_{{1, {}}};
    INT_PTR front_ = 1;
    testkit::CallLog log_;
    testkit::RecordedCalls fakes_;
};

TEST_F(WindowOrderTest, TheNextWindowThatCanTakesTheForeground) {
    windows_[2] = {.visible = false};
    windows_[3] = {.enabled = false};
    windows_[4] = {.minimized = true};
    windows_[5] = {.style = WS_EX_TOOLWINDOW};
    windows_[6] = {.style = WS_EX_NOACTIVATE};
    windows_[7] = {.cloaked = 2};
    windows_[8] = {.own = true};
    windows_[9] = {.name = L"Progman"};
    windows_[10] = {.name = L"Shell_TrayWnd"};
    windows_[11] = {.place = {5, 5, 5, 40}};
    windows_[12] = {.style = WS_EX_TOPMOST};
    windows_[13] = {};
    HandOnForeground(Number(1));
    // A program that was started just now may still take it.
    EXPECT_THAT(log_.Lines(), ElementsAre("allow any", "foreground 12"));
}

TEST_F(WindowOrderTest, WithoutAnotherWindowEverythingStays) {
    windows_[2] = {.name = L"WorkerW"};
    HandOnForeground(Number(1));
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(WindowOrderTest, AWindowGoesBehindTheOneInFrontThatCoversIt) {
    windows_[9] = {};
    EXPECT_TRUE(PutBehindForeground(Number(9), {96, 0, 100, 100}));
    EXPECT_THAT(log_.Lines(),
                ElementsAre("place 9 behind 1 " + std::to_string(SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE)));
}

TEST_F(WindowOrderTest, AWindowStaysBeforeOneThatDoesNotCoverItOrIsNoProgram) {
    windows_[9] = {};
    EXPECT_FALSE(PutBehindForeground(Number(9), {96, 0, 101, 100}));
    EXPECT_FALSE(PutBehindForeground(Number(9), {200, 0, 204, 100}));
    windows_[1].own = true;
    EXPECT_FALSE(PutBehindForeground(Number(9), {96, 0, 100, 100}));
    windows_[1] = {.name = L"Progman"};
    EXPECT_FALSE(PutBehindForeground(Number(9), {96, 0, 100, 100}));
    front_ = 0;
    EXPECT_FALSE(PutBehindForeground(Number(9), {96, 0, 100, 100}));
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(WindowOrderTest, TheFrontmostQuestionThatTheUserCanAnswerIsTheShells) {
    fakes_.push_back(FAKE_CALL(EnumWindows, [this](WNDENUMPROC call, LPARAM argument) -> BOOL {
        return std::all_of(windows_.begin(), windows_.end(),
                           [&](const auto& window) { return call(Number(window.first), argument) != FALSE; });
    }));
    std::wstring program = L"C:\\Windows\\System32\\OpenWith.exe";
    const testkit::RecordedCalls runs = testkit::OtherProcessRuns(program);
    windows_[1] = {.visible = false};
    windows_[2] = {.enabled = false};
    windows_[3] = {.minimized = true};
    windows_[4] = {.cloaked = 2};
    windows_[5] = {.own = true};
    windows_[6] = {.place = {5, 5, 5, 40}};
    EXPECT_EQ(ShownShellQuestion(), nullptr);
    windows_[7] = {.style = WS_EX_TOOLWINDOW};
    windows_[8] = {};
    EXPECT_EQ(ShownShellQuestion(), Number(7)) << "it may have no taskbar button";
    program = L"C:\\Windows\\notepad.exe";
    EXPECT_EQ(ShownShellQuestion(), nullptr);
}

/// Whether a window of another program at this path asks for the shell.
bool AsksFrom(const std::wstring& path, DWORD process = 1) {
    const auto owner = FAKE_CALL(GetWindowThreadProcessId, [process](HWND, LPDWORD id) -> DWORD {
        *id = process;
        return 1;
    });
    const auto open = FAKE_CALL(OpenProcess, [](DWORD access, BOOL inherit, DWORD) -> HANDLE {
        EXPECT_EQ(access, DWORD{PROCESS_QUERY_LIMITED_INFORMATION});
        return ORIGINAL_CALL(OpenProcess)(access, inherit, GetCurrentProcessId());
    });
    const auto name = FAKE_CALL(QueryFullProcessImageNameW, [&](HANDLE, DWORD, LPWSTR text, PDWORD size) {
        if (path.size() >= *size) return FALSE;
        *size = static_cast<DWORD>(path.copy(text, *size));
        return TRUE;
    });
    return AsksForShell(Number(1));
}

TEST(ShellQuestionTest, IsKnownByTheNameOfItsProgram) {
    EXPECT_TRUE(AsksFrom(L"C:\\Windows\\System32\\OpenWith.exe"));
    EXPECT_TRUE(AsksFrom(L"c:\\windows\\system32\\openwith.EXE"));
    EXPECT_TRUE(AsksFrom(L"C:\\Windows\\System32\\smartscreen.exe"));
    EXPECT_FALSE(AsksFrom(L"C:\\Windows\\System32\\NotOpenWith.exe"));
    EXPECT_FALSE(AsksFrom(L"C:\\OpenWith.exe\\notepad.exe"));
    EXPECT_FALSE(AsksFrom(L"C:\\" + std::wstring(300, L'a') + L"\\OpenWith.exe")) << "none of the system's";
    EXPECT_FALSE(AsksFrom(L"C:\\OpenWith.exe", GetCurrentProcessId())) << "its own";
    EXPECT_FALSE(AsksForShell(nullptr));
    const auto refused = ANSWER_CALL(OpenProcess, nullptr);
    EXPECT_FALSE(AsksForShell(GetDesktopWindow())) << "a program that does not tell";
}

TEST(FullScreenTest, IsKnownByWhatTheShellSaysOfTheUser) {
    const auto told = [](QUERY_USER_NOTIFICATION_STATE state, HRESULT result = S_OK) {
        const auto query =
            FAKE_CALL(SHQueryUserNotificationState, [&](QUERY_USER_NOTIFICATION_STATE* answer) {
                *answer = state;
                return result;
            });
        return FullScreenProgramInFront();
    };
    EXPECT_TRUE(told(QUNS_BUSY));
    EXPECT_TRUE(told(QUNS_RUNNING_D3D_FULL_SCREEN));
    EXPECT_FALSE(told(QUNS_ACCEPTS_NOTIFICATIONS));
    EXPECT_FALSE(told(QUNS_NOT_PRESENT));
    EXPECT_FALSE(told(QUNS_BUSY, E_FAIL));
}

TEST_F(WindowOrderTest, PresentationSettingsAloneAreNoFullScreenProgram) {
    const auto query = FAKE_CALL(SHQueryUserNotificationState, [](QUERY_USER_NOTIFICATION_STATE* answer) {
        *answer = QUNS_PRESENTATION_MODE;
        return S_OK;
    });
    const auto monitor = FAKE_CALL(MonitorFromWindow, [] { return reinterpret_cast<HMONITOR>(INT_PTR{5}); });
    const auto extent = FAKE_CALL(GetMonitorInfoW, [](HMONITOR, LPMONITORINFO info) -> BOOL {
        info->rcMonitor = {0, 0, 100, 100};
        return TRUE;
    });
    EXPECT_TRUE(FullScreenProgramInFront());
    windows_[1].place = {0, 0, 100, 90};
    EXPECT_FALSE(FullScreenProgramInFront()) << "the taskbar is to be seen";
    windows_[1] = {.name = L"Progman"};
    EXPECT_FALSE(FullScreenProgramInFront());
    windows_[1] = {.own = true};
    EXPECT_FALSE(FullScreenProgramInFront());
    front_ = 0;
    EXPECT_FALSE(FullScreenProgramInFront());
}

}  // namespace
}  // namespace win
