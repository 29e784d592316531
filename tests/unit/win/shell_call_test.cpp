#include "win/shell_call.h"

#include "tests/support/other_program.h"
#include "tests/support/unit_test.h"
#include "win/process_start.h"
#include "win/step_back.h"

namespace {

using ::testing::ElementsAre;
using testkit::CallLog, testkit::RecordedCall, testkit::Window;

TEST(ShellCallTest, PassesWhatItIsGivenAndLetsAnyProgramComeForward) {
    CallLog log;
    const RecordedCall allow = LOG_CALL(log, AllowSetForegroundWindow);
    const RecordedCall place = LOG_CALL(log, SetWindowPos);
    const RecordedCall shell = FAKE_CALL(
        ShellExecuteA,
        [&](HWND owner, LPCSTR verb, LPCSTR file, LPCSTR parameters, LPCSTR folder, INT show) -> HINSTANCE {
            EXPECT_EQ(owner, GetDesktopWindow());
            log.Add("open", verb, file, parameters, folder, show);
            return reinterpret_cast<HINSTANCE>(31);
        });
    EXPECT_EQ(win::OpenInShell(nullptr, "C:\\а 文.txt", nullptr, "C:", 3), 31);
    EXPECT_EQ(win::OpenInShell("Open", "b", "", nullptr, 1), 31);
    EXPECT_THAT(log.Lines(),
                ElementsAre("AllowSetForegroundWindow 4294967295", "open (null) C:\\а 文.txt (null) C: 3",
                            "AllowSetForegroundWindow 4294967295", "open Open b  (null) 1"));
}

TEST(ShellCallTest, TheSystemIsAtWorkOnlyMeanwhile) {
    bool meanwhile = false;
    const RecordedCall shell = FAKE_CALL(ShellExecuteA, [&] {
        meanwhile = win::StepBack::Any();
        return reinterpret_cast<HINSTANCE>(33);
    });
    EXPECT_FALSE(win::StepBack::Any());
    win::OpenInShell(nullptr, "a", nullptr, nullptr, 1);
    EXPECT_TRUE(meanwhile);
    EXPECT_FALSE(win::StepBack::Any());
}

TEST(ShellCallTest, AStartedProgramDoesNotInheritThatDrivesAreQuiet) {
    const UINT process = SetErrorMode(SEM_NOGPFAULTERRORBOX);
    const DWORD thread = GetThreadErrorMode();
    win::KeepDriveErrorsQuiet();
    const UINT quiet = GetErrorMode();
    const RecordedCall shell = FAKE_CALL(ShellExecuteA, [] {
        EXPECT_EQ(GetErrorMode(), UINT{SEM_NOGPFAULTERRORBOX});
        return reinterpret_cast<HINSTANCE>(33);
    });
    win::OpenInShell(nullptr, "a", nullptr, nullptr, 1);
    EXPECT_EQ(GetErrorMode(), quiet);
    SetErrorMode(process);
    SetThreadErrorMode(thread, nullptr);
}

/// One visible window, of a program that asks for the shell, at a time that the test tells.
class LaunchQuestionTest : public testing::Test {
  protected:
    LaunchQuestionTest() {
        fakes_.push_back(FAKE_CALL(EnumWindows, [this](WNDENUMPROC call, LPARAM argument) -> BOOL {
            return !open_ || call(question_.Handle(), argument);
        }));
        fakes_.push_back(ANSWER_CALL(IsWindowVisible, TRUE));
        fakes_.push_back(ANSWER_CALL(ShellExecuteA, reinterpret_cast<HINSTANCE>(33)));
        fakes_.push_back(FAKE_CALL(GetTickCount64, [this] { return now_; }));
        // What an earlier test has opened is over.
        open_ = false;
        win::LaunchQuestion();
        open_ = true;
        now_ = 1000;
    }

    const testkit::HiddenWindow question_;
    const std::wstring program_ = L"C:\\OpenWith.exe";
    const testkit::RecordedCalls ofProgram_ = testkit::WindowOfProgram(question_.Handle(), program_);
    bool open_ = true;
    ULONGLONG now_ = ~ULONGLONG{0} / 2;
    testkit::RecordedCalls fakes_;
};

TEST_F(LaunchQuestionTest, IsNoneBeforeSomethingHasBeenOpened) {
    EXPECT_EQ(win::LaunchQuestion(), nullptr);
    win::OpenInShell(nullptr, "a", nullptr, nullptr, 1);
    EXPECT_EQ(win::LaunchQuestion(), question_.Handle());
}

TEST_F(LaunchQuestionTest, MayComeUpForHalfAMinuteAndStaysAsLongAsItIsOpen) {
    win::OpenInShell(nullptr, "a", nullptr, nullptr, 1);
    open_ = false;
    now_ += 30000;
    EXPECT_EQ(win::LaunchQuestion(), nullptr);
    open_ = true;
    now_ += 3600000;
    EXPECT_EQ(win::LaunchQuestion(), question_.Handle());
    open_ = false;
    EXPECT_EQ(win::LaunchQuestion(), nullptr);
    open_ = true;
    EXPECT_EQ(win::LaunchQuestion(), nullptr) << "it has to do with something else";
}

TEST(ShellCallTest, LeavesNoHookBehind) {
    HHOOK set = nullptr;
    HHOOK removed = nullptr;
    const RecordedCall shell = ANSWER_CALL(ShellExecuteA, reinterpret_cast<HINSTANCE>(33));
    const RecordedCall hook =
        FAKE_CALL(SetWindowsHookExW, [&](int kind, HOOKPROC call, HINSTANCE module, DWORD id) {
            EXPECT_EQ(id, GetCurrentThreadId());
            return set = ORIGINAL_CALL(SetWindowsHookExW)(kind, call, module, id);
        });
    const RecordedCall unhook = WATCH_CALL(UnhookWindowsHookEx, [&](HHOOK handle) { removed = handle; });
    win::OpenInShell(nullptr, "a", nullptr, nullptr, 1);
    EXPECT_NE(set, nullptr);
    EXPECT_EQ(removed, set);
}

/// A panel and a strip above all other windows, and a plain window.
class ShellCallDesktopTest : public testing::Test {
  protected:
    ShellCallDesktopTest() { SetActiveWindow(panel_); }
    ~ShellCallDesktopTest() override {
        for (HWND window : {plain_, below_, panel_})
            DestroyWindow(window);
    }

    static HWND MakeWindow(DWORD extended) {
        HWND window = CreateWindowExW(extended, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 300, 200, 400, 300,
                                      nullptr, nullptr, nullptr, nullptr);
        SetWindowPos(window, (extended & WS_EX_TOPMOST) != 0 ? HWND_TOPMOST : HWND_TOP, 0, 0, 0, 0,
                     SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
        return window;
    }

    static bool IsAbove(HWND upper, HWND lower) {
        for (HWND window = upper; window != nullptr; window = GetWindow(window, GW_HWNDNEXT))
            if (window == lower) return true;
        return false;
    }

    HWND plain_ = MakeWindow(0);
    HWND below_ = MakeWindow(WS_EX_TOPMOST);
    HWND panel_ = MakeWindow(WS_EX_TOPMOST);
};

TEST_F(ShellCallDesktopTest, AQuestionOfTheShellComesUpBeforeTheWindows) {
    const testkit::ModalAnswers user({[&](Window question) {
        EXPECT_FALSE(Window(panel_).IsTopmost());
        EXPECT_FALSE(Window(below_).IsTopmost());
        EXPECT_TRUE(IsAbove(question.Handle(), panel_));
        EXPECT_TRUE(IsAbove(question.Handle(), below_));
        question.Press(IDOK);
    }});
    const RecordedCall shell = FAKE_CALL(ShellExecuteA, [](HWND owner, LPCSTR, LPCSTR, LPCSTR, LPCSTR, INT) {
        MessageBoxW(owner, L"This file came from another computer.", L"Security", MB_OKCANCEL);
        return reinterpret_cast<HINSTANCE>(33);
    });
    win::OpenInShell(nullptr, "a", nullptr, nullptr, 1);
    EXPECT_EQ(user.Used(), 1u);
    EXPECT_TRUE(Window(panel_).IsTopmost());
    EXPECT_TRUE(Window(below_).IsTopmost());
    EXPECT_TRUE(IsAbove(panel_, below_));
    EXPECT_FALSE(Window(plain_).IsTopmost());
}

TEST_F(ShellCallDesktopTest, AWindowThatGoesDuringTheQuestionDoesNoHarm) {
    const testkit::ModalAnswers user({[&](Window question) {
        DestroyWindow(below_);
        question.Press(IDOK);
    }});
    const RecordedCall shell = FAKE_CALL(ShellExecuteA, [](HWND owner, LPCSTR, LPCSTR, LPCSTR, LPCSTR, INT) {
        MessageBoxW(owner, L"?", L"?", MB_OK);
        return reinterpret_cast<HINSTANCE>(33);
    });
    win::OpenInShell(nullptr, "a", nullptr, nullptr, 1);
    EXPECT_TRUE(Window(panel_).IsTopmost());
}

}  // namespace
