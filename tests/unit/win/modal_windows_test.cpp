#include "win/modal_windows.h"

#include "dialogs/define_tab.h"
#include "res/resource.h"
#include "tests/support/unit_test.h"
#include "win/dialog.h"
#include "win/input_pause.h"
#include "win/step_back.h"

namespace win {
namespace {

/// Cancels whatever is open, again and again, as long as it lives.
class Canceller {
  public:
    Canceller() : timer_(SetTimer(nullptr, 0, 50, &Canceller::Tick)) {}
    ~Canceller() { KillTimer(nullptr, timer_); }
    Canceller(const Canceller&) = delete;
    Canceller& operator=(const Canceller&) = delete;

  private:
    static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) { CancelModalWindows(); }
    UINT_PTR timer_;
};

/// A dialog that tells what waits for the user while it is open.
class ProbeDialog : public Dialog {
  public:
    using Dialog::ShowModal;
    HWND inside = nullptr;

  protected:
    bool OnInit() override {
        inside = WaitingWindow();
        return true;
    }
    bool OnCommand(int id, int) override {
        if (id == IDCANCEL) End(7);
        return true;
    }
};

class ModalWindowsDesktopTest : public ::testing::Test {};

TEST_F(ModalWindowsDesktopTest, AQuestionOfTheSystemsIsAnsweredAsItsUserWouldCancelIt) {
    const Canceller canceller;
    EXPECT_EQ(MessageBoxW(nullptr, L"?", L"?", MB_YESNO), IDNO);
    EXPECT_EQ(MessageBoxW(nullptr, L"?", L"?", MB_YESNOCANCEL), IDCANCEL);
    EXPECT_EQ(MessageBoxW(nullptr, L"?", L"?", MB_OKCANCEL), IDCANCEL);
    EXPECT_EQ(MessageBoxW(nullptr, L"?", L"?", MB_ABORTRETRYIGNORE), IDABORT);
    // Where nothing can be cancelled by a button, only the title bar's is left.
    MessageBoxW(nullptr, L"?", L"?", MB_OK);
}

TEST_F(ModalWindowsDesktopTest, AQuestionInFrontOfADialogGoesBeforeIt) {
    const testkit::HiddenWindow owner;
    class Asking : public ProbeDialog {
        bool OnCommand(int id, int notification) override {
            if (id != dialogs::frmTabPrep::Command1 + 0) return ProbeDialog::OnCommand(id, notification);
            answer = MessageBoxW(Handle(), L"?", L"?", MB_YESNO);
            openAfterwards = IsOpenDialog(Handle());
            return true;
        }
        bool OnInit() override {
            PostMessageW(Handle(), WM_COMMAND, dialogs::frmTabPrep::Command1 + 0, 0);
            return true;
        }

      public:
        int answer = 0;
        bool openAfterwards = false;
    } dialog;
    const Canceller canceller;
    EXPECT_EQ(dialog.ShowModal(owner.Handle(), IDD_DEFINE_TAB), 7);
    EXPECT_EQ(dialog.answer, IDNO);
    EXPECT_TRUE(dialog.openAfterwards);
}

TEST_F(ModalWindowsDesktopTest, AnOpenMenuIsClosed) {
    const testkit::HiddenWindow owner;
    const HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, 5, L"command");
    const Canceller canceller;
    EXPECT_EQ(TrackPopupMenu(menu, TPM_RETURNCMD, 0, 0, 0, owner.Handle(), nullptr), 0);
    DestroyMenu(menu);
}

/// The system's window that CancelWhatWaits has found and cancelled last.
HWND g_waiting = nullptr;

void CALLBACK CancelWhatWaits(HWND, UINT, UINT_PTR, DWORD) {
    g_waiting = OpenSystemWindow();
    if (g_waiting == nullptr) return;
    EXPECT_EQ(WaitingWindow(), g_waiting);
    CancelModalWindows();
}

TEST_F(ModalWindowsDesktopTest, WhatWaitsForTheUserIsTheInnermost) {
    const testkit::HiddenWindow owner;
    SetMainWindow(owner.Handle());
    EXPECT_EQ(WaitingWindow(), owner.Handle());
    EXPECT_EQ(OpenSystemWindow(), nullptr);
    EXPECT_FALSE(InModalLoop());
    ProbeDialog dialog;
    {
        const Canceller canceller;
        dialog.ShowModal(owner.Handle(), IDD_DEFINE_TAB);
    }
    EXPECT_NE(dialog.inside, nullptr);
    EXPECT_NE(dialog.inside, owner.Handle());
    g_waiting = nullptr;
    const UINT_PTR timer = SetTimer(nullptr, 0, 50, &CancelWhatWaits);
    MessageBoxW(owner.Handle(), L"?", L"?", MB_OKCANCEL);
    KillTimer(nullptr, timer);
    EXPECT_NE(g_waiting, nullptr);
    SetMainWindow(nullptr);
}

TEST(ModalWindowsTest, NoDialogOpensWhileTheProgramEnds) {
    const testkit::HiddenWindow owner;
    SetEnding(true);
    EXPECT_TRUE(IsEnding());
    EXPECT_EQ(ProbeDialog().ShowModal(owner.Handle(), IDD_DEFINE_TAB), -1);
    SetEnding(false);
    EXPECT_FALSE(IsEnding());
}

TEST(ModalWindowsTest, AButtonThatCannotBePressedCancelsNothing) {
    const testkit::HiddenWindow owner;
    EXPECT_EQ(CancellingButton(owner.Handle()), nullptr);
    const auto add = [&](int id, DWORD style) {
        return CreateWindowExW(0, L"BUTTON", L"", WS_CHILD | style, 0, 0, 9, 9, owner.Handle(),
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    };
    const auto visible = FAKE_CALL(IsWindowVisible, [](HWND window) -> BOOL {
        return (GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0;
    });
    add(IDOK, WS_VISIBLE);
    add(IDYES, WS_VISIBLE);
    EXPECT_EQ(CancellingButton(owner.Handle()), nullptr) << "neither is a cancellation";
    add(IDCANCEL, 0);
    add(IDABORT, WS_VISIBLE);
    EXPECT_EQ(GetDlgCtrlID(CancellingButton(owner.Handle())), IDABORT);
    const HWND no = add(IDNO, WS_VISIBLE);
    EXPECT_EQ(GetDlgCtrlID(CancellingButton(owner.Handle())), IDNO);
    EnableWindow(no, FALSE);
    EXPECT_EQ(GetDlgCtrlID(CancellingButton(owner.Handle())), IDABORT);
}

/// A window of the class that the system's dialogs have, which counts as visible with all that is in it.
class SystemWindowTest : public ::testing::Test {
  protected:
    SystemWindowTest()
        : window_(
              CreateWindowExW(0, L"#32770", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr)),
          visible_(FAKE_CALL(IsWindowVisible,
                             [this](HWND window) -> BOOL {
                                 return window == window_ || IsChild(window_, window) != 0 ||
                                        ORIGINAL_CALL(IsWindowVisible)(window);
                             })),
          post_(FAKE_CALL(PostMessageW, [this](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
              posted_.push_back({window, message, wParam, lParam});
              return TRUE;
          })) {}
    ~SystemWindowTest() override { DestroyWindow(window_); }

    static HWND Child(HWND parent, const wchar_t* name, int id) {
        return CreateWindowExW(0, name, L"", WS_CHILD, 0, 0, 9, 9, parent,
                               reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), nullptr, nullptr);
    }
    struct Posted {
        HWND window;
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
        bool operator==(const Posted&) const = default;
    };

    HWND window_;
    std::vector<Posted> posted_;
    testkit::RecordedCall visible_;
    testkit::RecordedCall post_;
};

TEST_F(SystemWindowTest, AButtonThatLiesDeeperIsPressedWhereItLies) {
    const HWND inner = Child(Child(window_, L"STATIC", 1), L"STATIC", IDCANCEL);
    Child(inner, L"BUTTON", IDYES);
    const HWND no = Child(inner, L"BUTTON", IDNO);
    EXPECT_EQ(CancellingButton(window_), no);
    const HWND cancel = Child(inner, L"BUTTON", IDCANCEL);
    EXPECT_EQ(CancellingButton(window_), cancel);
    CancelModalWindows();
    ASSERT_FALSE(posted_.empty());
    EXPECT_EQ(posted_.front(), (Posted{inner, WM_COMMAND, IDCANCEL, reinterpret_cast<LPARAM>(cancel)}));
}

TEST_F(SystemWindowTest, OneWithoutButtonsIsAskedToPressItsOwnAndToClose) {
    CancelModalWindows();
    EXPECT_EQ(posted_, (std::vector<Posted>{{window_, TDM_CLICK_BUTTON, IDCANCEL, 0},
                                            {window_, TDM_CLICK_BUTTON, IDNO, 0},
                                            {window_, WM_CLOSE, 0, 0}}));
}

TEST_F(SystemWindowTest, OneOfAnotherThreadIsWaitedForOnlyWhileTheSystemWorksForThisProgram) {
    const testkit::HiddenWindow owner;
    SetMainWindow(owner.Handle());
    const auto thread = FAKE_CALL(GetWindowThreadProcessId, [&](HWND window, LPDWORD process) -> DWORD {
        const DWORD its = ORIGINAL_CALL(GetWindowThreadProcessId)(window, process);
        return window == window_ ? its + 1 : its;
    });
    EXPECT_EQ(WaitingWindow(), owner.Handle()) << "a sheet of properties waits for nobody";
    EXPECT_EQ(ShellQuestion(), nullptr);
    EXPECT_FALSE(SystemAsks());
    {
        const InputPause pause;
        EnableWindow(window_, TRUE);
        EXPECT_EQ(WaitingWindow(), window_);
    }
    {
        const StepBack atWork(StepBack::When::kAtQuestion);
        EXPECT_EQ(WaitingWindow(), window_);
        EXPECT_EQ(ShellQuestion(), window_);
    }
    SetMainWindow(nullptr);
}

TEST_F(SystemWindowTest, OneOfThisThreadIsNoQuestionOfTheShellsButIsAsked) {
    EXPECT_EQ(ShellQuestion(), nullptr);
    EXPECT_TRUE(SystemAsks());
    DestroyWindow(window_);
    EXPECT_FALSE(SystemAsks());
    const StepBack atWork(StepBack::When::kAtQuestion);
    EXPECT_TRUE(SystemAsks()) << "the question may be about to come";
}

TEST_F(SystemWindowTest, TheProgressOfAFileOperationIsClosedByItsTitleBar) {
    WNDCLASSW record{};
    record.lpfnWndProc = DefWindowProcW;
    record.lpszClassName = L"OperationStatusWindow";
    record.hInstance = GetModuleHandleW(nullptr);
    RegisterClassW(&record);
    DestroyWindow(window_);
    window_ = CreateWindowExW(0, record.lpszClassName, L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr,
                              record.hInstance, nullptr);
    EXPECT_EQ(OpenSystemWindow(), window_);
    CancelModalWindows();
    EXPECT_EQ(posted_, (std::vector<Posted>{{window_, WM_CLOSE, 0, 0}}));
}

TEST(ModalWindowsTest, AnEndIsThatOfTheMainWindowThatWasNamed) {
    const testkit::HiddenWindow next;
    SetEnding(true);
    SetMainWindow(next.Handle());
    EXPECT_FALSE(IsEnding());
    SetEnding(true);
    SetMainWindow(nullptr);
    EXPECT_FALSE(IsEnding()) << "the next dialog would not open";
}

}  // namespace
}  // namespace win
