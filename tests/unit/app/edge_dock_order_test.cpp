// Above which windows the docked panel and the one that is out are, and which one is in front.

#include "tests/support/other_program.h"
#include "tests/unit/app/docking_fixture.h"
#include "win/dialog.h"
#include "win/input_pause.h"
#include "win/shell_call.h"
#include "win/step_back.h"
#include "win/window.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

/// Above which windows the panel is.
class RaisingTest : public DockingTest {};

TEST_F(RaisingTest, StaysOnTopByTheTimerOnlyWhileDocked) {
    dock_.OnTimer();
    EXPECT_THAT(log_.Lines(), IsEmpty());
    Dock(kLeftEdge);
    dock_.OnTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre(kTopmost));
    dock_.ShowQuon(true, true);
    log_.Clear();
    dock_.OnTimer();
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(RaisingTest, IsToldToLeaveTheTopmostWindowsWithTheSameFlags) {
    win::SetTopmost(false, window_);
    EXPECT_THAT(log_.Lines(),
                ElementsAre("after " + std::to_string(SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE)));
}

TEST_F(RaisingTest, IsNotRaisedAboveAWindowOfTheSystemThatWaitsForAnAnswer) {
    {
        const win::InputPause pause;
        dock_.ShowQuon(true, true);
        Dock(kLeftEdge);
        dock_.ShowQuon(false, true);
        dock_.OnTimer();
        EXPECT_EQ(log_.Count("topmost"), 0u);
    }
    dock_.OnTimer();
    EXPECT_EQ(log_.Count("topmost"), 1u);
}

/// Another program's window is in front.
class QuestionTest : public RaisingTest {
  protected:
    QuestionTest() {
        fakes_.push_back(FAKE_CALL(GetForegroundWindow, [this] { return front_; }));
    }

    const testkit::HiddenWindow other_;
    HWND front_ = other_.Handle();
    std::wstring program_ = L"C:\\Windows\\System32\\OpenWith.exe";
    const testkit::RecordedCalls ofProgram_ = testkit::WindowOfProgram(other_.Handle(), program_);
};

const std::string kOwed = "timer 250";
const std::string kBehind = "after " + std::to_string(SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);

TEST_F(QuestionTest, OfAnotherProgramTheWindowMakesWayForAndReturnsAfterwards) {
    dock_.OnDeactivated();
    EXPECT_THAT(log_.Lines(), ElementsAre(kOwed)) << "nobody knows yet whose window comes";
    dock_.OnRaiseTimer();
    dock_.OnRaiseTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre(kOwed, kBehind));
    log_.Clear();
    program_ = L"C:\\Windows\\notepad.exe";
    dock_.OnRaiseTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre("no timer", kTopmost));
}

TEST_F(QuestionTest, OfAnotherProgramKeepsTheWindowBackUntilItIsAnswered) {
    dock_.ShowQuon(true, true);
    Dock(kLeftEdge);
    dock_.ShowQuon(false, true);
    dock_.OnTimer();
    dock_.OnRaiseTimer();
    EXPECT_EQ(log_.Count("topmost"), 0u);
    EXPECT_EQ(log_.Count("after"), 1u) << "a strip that was above it before";
    log_.Clear();
    front_ = window_;
    dock_.OnRaiseTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre("no timer", kTopmost));
}

TEST_F(QuestionTest, AboutWhatWasOpenedKeepsAPanelBackThatIsOutWhereverItIs) {
    bool open = true;
    fakes_.push_back(FAKE_CALL(IsWindowVisible, [&](HWND window) -> BOOL {
        return window == other_.Handle() ? open : ORIGINAL_CALL(IsWindowVisible)(window);
    }));
    fakes_.push_back(ANSWER_CALL(ShellExecuteA, reinterpret_cast<HINSTANCE>(33)));
    win::OpenInShell(nullptr, "a", nullptr, nullptr, SW_SHOWNORMAL);
    front_ = GetDesktopWindow();
    dock_.ShowQuon(true, true);
    dock_.OnRaiseTimer();
    EXPECT_EQ(log_.Count("topmost"), 0u);
    Dock(kLeftEdge);
    dock_.OnTimer();
    EXPECT_EQ(log_.Count("topmost"), 1u) << "the strip covers nothing";
    dock_.ShowQuon(true, true);
    log_.Clear();
    open = false;
    dock_.OnRaiseTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre("no timer", kTopmost));
}

TEST_F(QuestionTest, IsNoneInTheWindowOfAnyOtherProgram) {
    program_ = L"C:\\Tools\\NotOpenWith.exe";
    dock_.OnDeactivated();
    log_.Clear();
    dock_.OnRaiseTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre("no timer"));
}

TEST_F(QuestionTest, MayStillComeWhileNoWindowIsInFront) {
    front_ = nullptr;
    dock_.OnRaiseTimer();
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(QuestionTest, OfTheShellsWorkKeepsTheWindowBackToo) {
    front_ = window_;
    {
        const win::StepBack atWork(win::StepBack::When::kAtQuestion);
        dock_.ShowQuon(true, true);
        dock_.OnRaiseTimer();
        EXPECT_EQ(log_.Count("topmost"), 0u);
    }
    log_.Clear();
    dock_.OnRaiseTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre("no timer", kTopmost));
}

/// A docking in front of another program's window, which is next to get the foreground.
class HandOnTest : public DockingTest {
  protected:
    HandOnTest() {
        fakes_.push_back(FAKE_CALL(GetForegroundWindow, [this] { return front_; }));
        fakes_.push_back(
            FAKE_CALL(GetWindow, [this](HWND window, UINT) { return window == window_ ? kNext : nullptr; }));
        fakes_.push_back(FAKE_CALL(IsWindowVisible, [this](HWND window) -> BOOL {
            return window == kNext || window == system_ || ORIGINAL_CALL(IsWindowVisible)(window);
        }));
        fakes_.push_back(FAKE_CALL(IsWindowEnabled, [](HWND window) -> BOOL {
            return window == kNext || ORIGINAL_CALL(IsWindowEnabled)(window);
        }));
        fakes_.push_back(FAKE_CALL(GetWindowThreadProcessId, [](HWND window, LPDWORD process) -> DWORD {
            if (window != kNext) return ORIGINAL_CALL(GetWindowThreadProcessId)(window, process);
            *process = 1;
            return 1;
        }));
        fakes_.push_back(FAKE_CALL(GetWindowRect, [](HWND window, LPRECT rect) -> BOOL {
            if (window != kNext) return ORIGINAL_CALL(GetWindowRect)(window, rect);
            *rect = {0, 0, 9, 9};
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(GetGUIThreadInfo, [this](DWORD, PGUITHREADINFO state) -> BOOL {
            state->flags = flags_;
            return TRUE;
        }));
        fakes_.push_back(FAKE_CALL(SetForegroundWindow, [this](HWND window) -> BOOL {
            EXPECT_EQ(window, kNext);
            log_.Add("foreground");
            return TRUE;
        }));
        config::Settings.Edge = kLeftEdge;
        front_ = window_;
    }
    /// How often the foreground has been handed on once the messages are handled.
    size_t HandedOn() {
        win::ProcessPendingMessages();
        return log_.Count("foreground");
    }

    // Higher than any window's number: Windows would answer what is not faked for that window.
    inline static const HWND kNext = reinterpret_cast<HWND>(INT_PTR{0xFFF1});
    HWND front_ = nullptr;
    HWND system_ = nullptr;
    DWORD flags_ = 0;
};

TEST_F(HandOnTest, HappensOnceWhatDockedThePanelHasReturned) {
    dock_.ShowQuon(false, true);
    EXPECT_EQ(log_.Count("foreground"), 0u) << "a dialog could not come to the front any more";
    EXPECT_EQ(HandedOn(), 1u);
}

TEST_F(HandOnTest, HappensOnlyForAPanelInFrontThatGoesOutOfSight) {
    front_ = kNext;
    dock_.ShowQuon(false, true);
    front_ = window_;
    EXPECT_EQ(HandedOn(), 0u) << "it was not in front";
    dock_.ShowQuon(true, true);
    config::Settings.Edge = 0;
    dock_.ShowQuon(false, true);
    EXPECT_EQ(HandedOn(), 0u) << "it is still to be seen";
}

TEST_F(HandOnTest, DoesNotHappenWhenThePanelCameOutOrLostTheForegroundMeanwhile) {
    dock_.ShowQuon(false, true);
    dock_.ShowQuon(true, true);
    EXPECT_EQ(HandedOn(), 0u);
    dock_.ShowQuon(false, true);
    front_ = kNext;
    EXPECT_EQ(HandedOn(), 0u);
}

TEST_F(HandOnTest, DoesNotHappenWhileSomethingWaitsForTheUser) {
    dock_.ShowQuon(false, true);
    flags_ = GUI_POPUPMENUMODE;
    EXPECT_EQ(HandedOn(), 0u) << "a menu";
    flags_ = 0;
    dock_.ShowQuon(false, true);
    {
        const win::InputPause pause;
        front_ = window_;
        EXPECT_EQ(HandedOn(), 0u) << "the system's work";
    }
    log_.Clear();
    dock_.ShowQuon(false, true);
    system_ = CreateWindowExW(0, L"#32770", L"", WS_POPUP, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(HandedOn(), 0u) << "a question of the system's";
    DestroyWindow(system_);
    dock_.ShowQuon(false, true);
    EXPECT_EQ(HandedOn(), 1u);
}

/// Opens over the docked panel and lets the waiting messages be handled.
class OpeningDialog : public win::Dialog {
  public:
    using Dialog::ShowModal;

  protected:
    bool OnInit() override {
        win::ProcessPendingMessages();
        End(1);
        return true;
    }
    bool OnCommand(int, int) override { return true; }
};

TEST_F(HandOnTest, DoesNotHappenWhenADialogOpensRightAfterTheDocking) {
    dock_.ShowQuon(false, true);
    EXPECT_EQ(OpeningDialog().ShowModal(window_, IDD_DEFINE_TAB), 1);
    EXPECT_EQ(log_.Count("foreground"), 0u);
}

}  // namespace
}  // namespace app
