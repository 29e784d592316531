// The docked strip and a program that fills the screen, with the tick of the timer and without it.

#include "tests/unit/app/docking_fixture.h"

namespace app {
namespace {

using ::testing::Contains, ::testing::ElementsAre, ::testing::IsEmpty, ::testing::Not;

const std::string kBehind = "after " + std::to_string(SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);

/// Another program's window is in front, which may fill the screen.
class FullScreenDockTest : public DockingTest {
  protected:
    FullScreenDockTest() {
        fakes_.push_back(FAKE_CALL(SHQueryUserNotificationState, [this](auto* answer) {
            *answer = state_;
            return S_OK;
        }));
        fakes_.push_back(FAKE_CALL(GetForegroundWindow, [this] { return front_; }));
        fakes_.push_back(FAKE_CALL(GetWindowThreadProcessId, [this](HWND window, LPDWORD process) -> DWORD {
            *process = window == window_ ? GetCurrentProcessId() : kProcess;
            return window == window_ ? GetCurrentThreadId() : kThread;
        }));
        fakes_.push_back(FAKE_CALL(GetWindowRect, [this](HWND window, LPRECT rect) -> BOOL {
            if (window != game_.Handle()) return ORIGINAL_CALL(GetWindowRect)(window, rect);
            *rect = covers_ ? RECT{0, 0, 1000, 800} : RECT{};
            return TRUE;
        }));
        fakes_.push_back(
            FAKE_CALL(SetWinEventHook, [this](DWORD first, DWORD last, HMODULE, WINEVENTPROC call,
                                              DWORD process, DWORD thread, DWORD flags) {
                EXPECT_EQ(first, last);
                EXPECT_EQ(flags, DWORD{WINEVENT_OUTOFCONTEXT | WINEVENT_SKIPOWNPROCESS});
                if (first == EVENT_OBJECT_LOCATIONCHANGE) {
                    EXPECT_EQ(process, kProcess) << "every move of the mouse would come here";
                    EXPECT_EQ(thread, kThread);
                }
                hooks_[++lastHook_] = {first, call};
                return Hook(lastHook_);
            }));
        fakes_.push_back(FAKE_CALL(UnhookWinEvent, [this](HWINEVENTHOOK hook) -> BOOL {
            EXPECT_EQ(hooks_.erase(reinterpret_cast<INT_PTR>(hook)), 1u);
            return TRUE;
        }));
    }
    ~FullScreenDockTest() override {
        dock_.ShowQuon(true, true);
        EXPECT_THAT(hooks_, IsEmpty());
    }

    static HWINEVENTHOOK Hook(INT_PTR number) { return reinterpret_cast<HWINEVENTHOOK>(number); }
    /// What Windows tells all that asked for it.
    void Happens(DWORD event, HWND window, LONG object = OBJID_WINDOW, LONG child = CHILDID_SELF) {
        const auto hooks = hooks_;
        for (const auto& [number, hook] : hooks)
            if (hook.event == event) hook.call(Hook(number), event, window, object, child, kThread, 0);
    }
    /// Docks without the tick; the first look at what is in front is over.
    void DockWithoutTick() {
        dock_.EnableTimer(true);
        Dock(kLeftEdge);
        dock_.OnFrontTimer();
        log_.Clear();
    }

    static constexpr DWORD kProcess = 1;
    static constexpr DWORD kThread = 7;
    struct Asked {
        DWORD event;
        WINEVENTPROC call;
    };
    std::map<INT_PTR, Asked> hooks_;
    INT_PTR lastHook_ = 0;
    const testkit::HiddenWindow game_;
    HWND front_ = game_.Handle();
    bool covers_ = true;
    QUERY_USER_NOTIFICATION_STATE state_ = QUNS_ACCEPTS_NOTIFICATIONS;
};

TEST_F(FullScreenDockTest, TheTickPutsTheStripBehindItOnceAndBackOnTopAfterwards) {
    Dock(kLeftEdge);
    state_ = QUNS_BUSY;
    log_.Clear();
    dock_.OnTimer();
    dock_.OnTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre(kBehind));
    log_.Clear();
    state_ = QUNS_ACCEPTS_NOTIFICATIONS;
    dock_.OnTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre(kTopmost));
    log_.Clear();
    state_ = QUNS_RUNNING_D3D_FULL_SCREEN;
    dock_.OnTimer();
    EXPECT_EQ(log_.Count("after"), 1u) << "the next one again";
    for (const bool out : {true, false}) {
        if (out) dock_.ShowQuon(true, true);
        dock_.ShowQuon(false, true);
        log_.Clear();
        dock_.OnTimer();
        EXPECT_EQ(log_.Count("after"), 1u) << "the panel was raised above it";
    }
    dock_.ShowQuon(false, true);
    covers_ = false;
    dock_.OnTimer();
    log_.Clear();
    covers_ = true;
    dock_.OnTimer();
    EXPECT_EQ(log_.Count("after"), 1u) << "it had not been put behind it yet";
}

TEST_F(FullScreenDockTest, WithoutTheTickTheStripGoesBehindOneThatComesToTheFrontAndBackAfterwards) {
    DockWithoutTick();
    state_ = QUNS_BUSY;
    Happens(EVENT_SYSTEM_FOREGROUND, game_.Handle());
    EXPECT_THAT(log_.Lines(), ElementsAre("timer 1000")) << "the shell does not know yet";
    log_.Clear();
    dock_.OnFrontTimer();
    dock_.OnFrontTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre("no timer", kBehind, "no timer"));
    log_.Clear();
    state_ = QUNS_ACCEPTS_NOTIFICATIONS;
    Happens(EVENT_SYSTEM_FOREGROUND, GetDesktopWindow());
    dock_.OnFrontTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre("timer 1000", "no timer", kTopmost));
    log_.Clear();
    dock_.OnFrontTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre("no timer")) << "without the tick it does not rise by itself";
}

TEST_F(FullScreenDockTest, WithoutTheTickTheStripGoesBehindOneThatGrowsInFront) {
    DockWithoutTick();
    state_ = QUNS_BUSY;
    Happens(EVENT_OBJECT_LOCATIONCHANGE, game_.Handle());
    EXPECT_THAT(log_.Lines(), ElementsAre("timer 1000"));
    dock_.OnFrontTimer();
    EXPECT_EQ(log_.Count("after"), 1u);
}

TEST_F(FullScreenDockTest, WhatElseMovesInTheProgramInFrontIsOfNoInterest) {
    DockWithoutTick();
    Happens(EVENT_OBJECT_LOCATIONCHANGE, window_);
    Happens(EVENT_OBJECT_LOCATIONCHANGE, game_.Handle(), OBJID_CARET);
    Happens(EVENT_OBJECT_LOCATIONCHANGE, game_.Handle(), OBJID_WINDOW, 3);
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(FullScreenDockTest, StartedInFrontOfTheStripItIsSeenToo) {
    dock_.EnableTimer(true);
    state_ = QUNS_BUSY;
    config::Settings.Edge = kLeftEdge;
    dock_.ShowQuon(false, true);
    EXPECT_THAT(log_.Lines(), Contains("timer 1000"));
    dock_.OnFrontTimer();
    EXPECT_EQ(log_.Count("after"), 1u);
}

TEST_F(FullScreenDockTest, NothingIsWatchedWhileTheTickRunsOrThePanelIsOut) {
    dock_.EnableTimer(false);
    EXPECT_THAT(hooks_, IsEmpty()) << "not docked yet";
    config::Settings.Edge = kLeftEdge;
    dock_.ShowQuon(false, false);
    EXPECT_THAT(hooks_, IsEmpty());
    EXPECT_THAT(log_.Lines(), Not(Contains("timer 1000")));
    dock_.EnableTimer(false);
    EXPECT_EQ(hooks_.size(), 2u);
    dock_.EnableTimer(true);
    EXPECT_THAT(hooks_, IsEmpty());
    DockWithoutTick();
    EXPECT_EQ(hooks_.size(), 2u);
    dock_.ShowQuon(true, true);
    EXPECT_THAT(hooks_, IsEmpty());
    state_ = QUNS_BUSY;
    log_.Clear();
    dock_.OnFrontTimer();
    EXPECT_EQ(log_.Count("after"), 0u) << "a timer that was under way";
}

TEST_F(FullScreenDockTest, OfThisProgramsOwnWindowsNoneIsFollowed) {
    front_ = window_;
    DockWithoutTick();
    ASSERT_EQ(hooks_.size(), 1u);
    EXPECT_EQ(hooks_.begin()->second.event, DWORD{EVENT_SYSTEM_FOREGROUND});
    Happens(EVENT_SYSTEM_FOREGROUND, game_.Handle());
    EXPECT_EQ(hooks_.size(), 2u);
}

}  // namespace
}  // namespace app
