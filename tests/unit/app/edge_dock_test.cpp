#include "app/edge_dock.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shellapi.h>

#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/screen_place.h"
#include "config/settings.h"
#include "res/resource.h"
#include "tests/support/call_log.h"
#include "tests/support/hidden_window.h"
#include "tests/support/recorded_call.h"
#include "win/dialog.h"
#include "win/input_pause.h"
#include "win/window.h"

namespace app {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testkit::CallLog;

struct Docking {
    std::int32_t edge;
    int left;
    int top;
};

// A window of 4800 x 5700 twips on a screen of 20480 x 11520 twips, 15 twips a pixel across, 12 down.
constexpr win::Twips kWindow{4800, 5700};
constexpr win::Twips kScreen{20480, 11520};
constexpr win::TwipsPerPixel kTwips{15, 12};

class DockedPositionTest : public ::testing::TestWithParam<Docking> {};

TEST_P(DockedPositionTest, LeavesAStripOfFourPixelsAtTheEdge) {
    const auto place = DockedPosition(GetParam().edge, kWindow, kScreen, kTwips);
    ASSERT_TRUE(place);
    EXPECT_EQ(place->x, GetParam().left);
    EXPECT_EQ(place->y, GetParam().top);
}

INSTANTIATE_TEST_SUITE_P(Edges, DockedPositionTest,
                         ::testing::Values(Docking{1, -4800 + 60, 2910}, Docking{2, 7840, -5700 + 48},
                                           Docking{3, 20480 - 60, 2910}, Docking{4, 7840, 11520 - 48}));

TEST(DockedPositionTest, HalvesWhatIsOddTowardsZero) {
    // 1001 x 768 pixels of 15 twips, a window of 318 x 401: half a pixel is left over on both axes.
    constexpr win::Twips kOddWindow{318 * 15, 401 * 15};
    constexpr win::Twips kOddScreen{1001 * 15, 768 * 15};
    const auto pixels = [&](std::int32_t edge) {
        const win::Twips place = DockedPosition(edge, kOddWindow, kOddScreen, {15, 15}).value();
        return std::pair(win::ToPixels(place.x, 15), win::ToPixels(place.y, 15));
    };
    EXPECT_EQ(pixels(kLeftEdge), std::pair(4 - 318, 183));
    EXPECT_EQ(pixels(kTopEdge), std::pair(341, 4 - 401));
    EXPECT_EQ(pixels(kRightEdge), std::pair(1001 - 4, 183));
    EXPECT_EQ(pixels(kBottomEdge), std::pair(341, 768 - 4));
    // At 144 dots an inch a pixel is 10 twips.
    EXPECT_EQ(DockedPosition(kRightEdge, {3180, 4010}, {10010, 7680}, {10, 10})->x, 10010 - 40);
    EXPECT_EQ(DockedPosition(kRightEdge, {3180, 4010}, {10010, 7680}, {10, 10})->y, 1835);
}

TEST(DockedPositionTest, HasNoPlaceForANumberThatIsNoEdge) {
    for (const std::int32_t edge : {0, 5, -1, 2147483647})
        EXPECT_FALSE(DockedPosition(edge, kWindow, kScreen, kTwips)) << edge;
}

TEST(EdgeDockTest, CentresBySizesInTwips) {
    EXPECT_EQ(CentredPosition(kWindow, kScreen).x, 7840);
    EXPECT_EQ(CentredPosition(kWindow, kScreen).y, 2910);
    EXPECT_EQ(CentredPosition({400, 600}, {300, 400}).x, -50) << "a window wider than the screen";
    EXPECT_EQ(CentredPosition({400, 600}, {300, 400}).y, -100);
}

TEST(EdgeDockTest, RoundsTheHoverDelayToTheNearestWaitAndTiesToEven) {
    const std::vector<std::pair<std::int32_t, int>> cases{{500, 5}, {250, 2}, {350, 4}, {450, 4},
                                                          {549, 5}, {551, 6}, {50, 0},  {51, 1},
                                                          {0, 0},   {1, 0},   {150, 2}, {60000, 600}};
    for (const auto& [delay, waits] : cases)
        EXPECT_EQ(HoverWaits(delay), waits) << delay;
}

TEST(EdgeDockTest, NamesTheWindowUnderTheMouseByAtMost99Characters) {
    CallLog log;
    const HWND below = reinterpret_cast<HWND>(INT_PTR{0x1234});
    const auto cursor = FAKE_CALL(GetCursorPos, [](LPPOINT point) {
        *point = {31, 47};
        return TRUE;
    });
    const auto find = FAKE_CALL(WindowFromPoint, [&](POINT point) {
        log.Add("WindowFromPoint", point.x, point.y);
        return below;
    });
    const auto text = FAKE_CALL(GetWindowTextA, [&](HWND window, LPSTR buffer, int size) {
        log.Add("GetWindowTextA", window, size);
        std::memset(buffer, 'x', static_cast<size_t>(size) - 1);
        buffer[size - 1] = '\0';
        return size - 1;
    });
    EXPECT_EQ(WindowTextUnderMouse(), std::string(99, 'x'));
    EXPECT_THAT(log.Lines(), ElementsAre("WindowFromPoint 31 47", "GetWindowTextA 0x1234 100"));
}

/// A dock with a window that is never on the screen, on a screen of 1000 x 800 pixels.
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
        fakes_.push_back(FAKE_CALL(SetWindowPos,
                                   [this](HWND window, HWND after, int x, int y, int cx, int cy, UINT flags) {
                                       if (window == window_) {
                                           if ((flags & SWP_NOMOVE) == 0)
                                               log_.Add("place", x, y);
                                           else
                                               log_.Add(after == HWND_TOPMOST ? "topmost" : "after", flags);
                                       }
                                       return ORIGINAL_CALL(SetWindowPos)(window, after, x, y, cx, cy, flags);
                                   }));
        fakes_.push_back(FAKE_CALL(SetTimer, [this](HWND, UINT_PTR, UINT interval, TIMERPROC) -> UINT_PTR {
            log_.Add("timer", interval);
            return 1;
        }));
        fakes_.push_back(FAKE_CALL(KillTimer, [this](HWND, UINT_PTR) {
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

    CallLog log_;
    std::string underMouse_;
    std::function<void()> onSleep_;
    std::function<void()> onEvent_;
    EdgeDock dock_;
    HWND window_;
    testkit::RecordedCalls fakes_;
};

const std::string kTopmost = "topmost " + std::to_string(SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);

TEST_F(DockingTest, DocksAtEachEdgeInPixels) {
    const std::vector<std::pair<std::int32_t, std::string>> cases{
        {1, "place -296 300"}, {2, "place 350 -196"}, {3, "place 996 300"}, {4, "place 350 796"}};
    for (const auto& [edge, place] : cases) {
        config::Settings.Edge = edge;
        log_.Clear();
        dock_.ShowQuon(false, false);
        EXPECT_THAT(log_.Lines(), ElementsAre(place, "timer 500", kTopmost));
        EXPECT_TRUE(dock_.Hidden());
    }
}

TEST_F(DockingTest, StaysWhereItIsForANumberThatIsNoEdge) {
    config::Settings.Edge = 9;
    dock_.ShowQuon(false, false);
    EXPECT_THAT(log_.Lines(), ElementsAre("timer 500", kTopmost));
    EXPECT_TRUE(dock_.Hidden());
    EXPECT_EQ(Place().left, 100);
}

TEST_F(DockingTest, SwitchesTheTimerOffWhenAsked) {
    config::Settings.Edge = kTopEdge;
    dock_.ShowQuon(false, true);
    EXPECT_THAT(log_.Lines(), ElementsAre("place 350 -196", "no timer", kTopmost));
}

TEST_F(DockingTest, ComesOutInTheMiddleFirstAndLeavesTheTimerAlone) {
    Dock(kLeftEdge);
    for (const bool unTimer : {false, true}) {
        log_.Clear();
        dock_.ShowQuon(true, unTimer);
        EXPECT_THAT(log_.Lines(), ElementsAre("place 350 300", kTopmost));
        EXPECT_FALSE(dock_.Hidden());
    }
}

TEST_F(DockingTest, ComesOutWhereItWasSaved) {
    dock_.SavePosition();
    Dock(kLeftEdge);
    dock_.ShowQuon(true, true);
    EXPECT_THAT(log_.Lines(), ElementsAre("place 100 200", kTopmost));
}

TEST_F(DockingTest, ComesOutAtASavedPlaceLeftOfTheScreen) {
    SetWindowPos(window_, nullptr, -120, 30, 0, 0, SWP_NOSIZE);
    dock_.SavePosition();
    Dock(kRightEdge);
    dock_.ShowQuon(true, true);
    EXPECT_THAT(log_.Lines(), ElementsAre("place -120 30", kTopmost));
}

TEST_F(DockingTest, TreatsASavedLeftOfZeroAsNoSavedPlace) {
    SetWindowPos(window_, nullptr, 0, 50, 0, 0, SWP_NOSIZE);
    dock_.SavePosition();
    Dock(kLeftEdge);
    dock_.ShowQuon(true, true);
    EXPECT_THAT(log_.Lines(), ElementsAre("place 350 300", kTopmost));
}

TEST_F(DockingTest, DoesNotSaveThePlaceOfTheStrip) {
    Dock(kBottomEdge);
    dock_.SavePosition();
    dock_.ShowQuon(true, true);
    EXPECT_THAT(log_.Lines(), ElementsAre("place 350 300", kTopmost));
}

TEST_F(DockingTest, MovesAsideBy5300TwipsAtItsHeight) {
    dock_.MoveAside();
    EXPECT_THAT(log_.Lines(), ElementsAre("place -353 200"));
}

TEST_F(DockingTest, MovesAllOfAWindowAsideThatLargeTextHasMadeWider) {
    SetWindowPos(window_, nullptr, 0, 0, 700, 200, SWP_NOMOVE | SWP_NOZORDER);
    dock_.MoveAside();
    EXPECT_EQ(Place().left, -700);
}

TEST_F(DockingTest, FollowsTheEdgeSettingAtTheNextDocking) {
    Dock(kLeftEdge);
    config::Settings.Edge = kBottomEdge;
    EXPECT_EQ(Place().left, -296);
    dock_.ShowQuon(false, false);
    EXPECT_EQ(Place().top, 796);
}

TEST_F(DockingTest, StaysOnTopByTheTimerOnlyWhileDocked) {
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

TEST_F(DockingTest, ComesOutAfterTheHoverDelay) {
    DockUnderTheMouse(300);
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), ElementsAre("Sleep 100", "Sleep 100", "Sleep 100", "place 350 300", kTopmost));
    EXPECT_FALSE(dock_.Hidden());
}

TEST_F(DockingTest, ComesOutWithoutAWaitForADelayThatRoundsToNone) {
    DockUnderTheMouse(50);
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), ElementsAre("place 350 300", kTopmost));
}

TEST_F(DockingTest, StaysDockedWhenTheMouseLeavesDuringTheWait) {
    DockUnderTheMouse(300);
    onSleep_ = [this] { underMouse_ = "Desktop"; };
    dock_.OnHover();
    EXPECT_TRUE(dock_.Hidden());
    EXPECT_THAT(log_.Lines(), ElementsAre("Sleep 100", "Sleep 100", "Sleep 100"));
}

TEST_F(DockingTest, LooksOnlyAtTheFirstFourCharacters) {
    DockUnderTheMouse(0);
    underMouse_ = "Quon and more";
    dock_.OnHover();
    EXPECT_FALSE(dock_.Hidden());
    for (const char* other : {"quon", "Quo", "", " Quon", "Message from Quon"}) {
        DockUnderTheMouse(0);
        underMouse_ = other;
        dock_.OnHover();
        EXPECT_TRUE(dock_.Hidden()) << other;
    }
}

TEST_F(DockingTest, IgnoresAHoverThatIsSwitchedOff) {
    DockUnderTheMouse(100);
    config::Settings.PopOnHover = false;
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(DockingTest, IgnoresAHoverWhileItIsOut) {
    DockUnderTheMouse(100);
    dock_.ShowQuon(true, true);
    log_.Clear();
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(DockingTest, LetsEventsRunAfterEachWait) {
    DockUnderTheMouse(200);
    onSleep_ = [this] { PostMessageW(window_, WM_APP, 0, 0); };
    onEvent_ = [this] { log_.Add("event"); };
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(),
                ElementsAre("Sleep 100", "event", "Sleep 100", "event", "place 350 300", kTopmost));
}

TEST_F(DockingTest, WaitsOnlyOnceForTheMovesDuringAWait) {
    DockUnderTheMouse(200);
    onSleep_ = [this] { PostMessageW(window_, WM_APP, 0, 0); };
    onEvent_ = [this] { dock_.OnHover(); };
    dock_.OnHover();
    EXPECT_EQ(log_.Count("Sleep"), 2u);
    EXPECT_EQ(log_.Count("place"), 1u);
    // The next hover waits again.
    DockUnderTheMouse(200);
    onSleep_ = nullptr;
    dock_.OnHover();
    EXPECT_EQ(log_.Count("Sleep"), 2u);
}

TEST_F(DockingTest, DoesNotComeOutTwiceWhenItWasShownDuringTheWait) {
    DockUnderTheMouse(100);
    onSleep_ = [this] { PostMessageW(window_, WM_APP, 0, 0); };
    onEvent_ = [this] { dock_.ShowQuon(true, false); };
    dock_.OnHover();
    EXPECT_EQ(log_.Count("place"), 1u);
}

TEST_F(DockingTest, StopsWaitingAsSoonAsItIsOutByOtherMeans) {
    DockUnderTheMouse(60000);
    onSleep_ = [this] { PostMessageW(window_, WM_APP, 0, 0); };
    onEvent_ = [this] { dock_.ShowQuon(true, false); };
    dock_.OnHover();
    EXPECT_EQ(log_.Count("Sleep"), 1u);
    EXPECT_FALSE(dock_.Hidden());
}

TEST_F(DockingTest, StopsWaitingWhenTheProgramEndsAndPassesTheEndOn) {
    DockUnderTheMouse(500);
    onSleep_ = [] { PostQuitMessage(7); };
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), ElementsAre("Sleep 100"));
    MSG message{};
    ASSERT_NE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE), 0);
    EXPECT_EQ(message.wParam, 7u);
}

TEST_F(DockingTest, StopsWaitingWhenTheWindowIsGone) {
    DockUnderTheMouse(500);
    onSleep_ = [this] { PostMessageW(window_, WM_APP, 0, 0); };
    onEvent_ = [this] { DestroyWindow(window_); };
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), ElementsAre("Sleep 100"));
}

TEST_F(DockingTest, ComesOutForAClickOnlyWhenDockedAndSwitchedOn) {
    Dock(kLeftEdge);
    dock_.OnPress();
    EXPECT_TRUE(dock_.Hidden());
    config::Settings.ClickShows = true;
    dock_.OnPress();
    EXPECT_FALSE(dock_.Hidden());
    EXPECT_THAT(log_.Lines(), ElementsAre("place 350 300", kTopmost));
    log_.Clear();
    dock_.OnPress();
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(DockingTest, IsToldToLeaveTheTopmostWindowsWithTheSameFlags) {
    win::SetTopmost(false, window_);
    EXPECT_THAT(log_.Lines(),
                ElementsAre("after " + std::to_string(SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE)));
}

/// What a window is clipped to, in its own pixels; empty for a window that is not.
RECT ClipOf(HWND window) {
    RECT box{};
    return GetWindowRgnBox(window, &box) == ERROR ? RECT{} : box;
}

TEST_F(DockingTest, OnlyTheStripIsThereWhileItIsDockedAndAllOfItAfterwards) {
    const std::vector<std::pair<std::int32_t, RECT>> cases{{kLeftEdge, {296, 0, 300, 200}},
                                                           {kTopEdge, {0, 196, 300, 200}},
                                                           {kRightEdge, {0, 0, 4, 200}},
                                                           {kBottomEdge, {0, 0, 300, 4}}};
    for (const auto& [edge, strip] : cases) {
        Dock(edge);
        const RECT clip = ClipOf(window_);
        EXPECT_TRUE(EqualRect(&clip, &strip)) << edge;
        EXPECT_TRUE(dock_.OutOfSight());
        dock_.ShowQuon(true, true);
        const RECT none = ClipOf(window_);
        EXPECT_TRUE(IsRectEmpty(&none)) << edge;
        EXPECT_FALSE(dock_.OutOfSight());
    }
}

TEST_F(DockingTest, AllOfItIsThereForANumberThatIsNoEdge) {
    Dock(9);
    const RECT none = ClipOf(window_);
    EXPECT_TRUE(IsRectEmpty(&none));
    EXPECT_FALSE(dock_.OutOfSight());
}

TEST_F(DockingTest, ARegionThatTheWindowDoesNotTakeIsGivenBack) {
    int deleted = 0;
    const auto refuse = FAKE_CALL(SetWindowRgn, [](HWND, HRGN, BOOL) { return 0; });
    const auto remove = FAKE_CALL(DeleteObject, [&](HGDIOBJ object) {
        ++deleted;
        return ORIGINAL_CALL(DeleteObject)(object);
    });
    Dock(kLeftEdge);
    EXPECT_EQ(deleted, 1);
}

TEST_F(DockingTest, ASavedPlaceThatNoMonitorShowsCountsAsNone) {
    dock_.SavePosition();
    Dock(kLeftEdge);
    const auto gone = FAKE_CALL(MonitorFromRect, [](LPCRECT, DWORD) { return HMONITOR{}; });
    dock_.ShowQuon(true, true);
    EXPECT_THAT(log_.Lines(), ElementsAre("place 350 300", kTopmost));
}

TEST_F(DockingTest, DocksAnewWhenTheScreenHasChanged) {
    Dock(kRightEdge);
    const auto narrower = FAKE_CALL(GetSystemMetrics, [](int index) {
        return index == SM_CXSCREEN ? 640 : index == SM_CYSCREEN ? 480 : 0;
    });
    dock_.FollowScreen();
    EXPECT_THAT(log_.Lines(), ElementsAre("place 636 140"));
    EXPECT_TRUE(dock_.Hidden());
}

TEST_F(DockingTest, ComesBackIntoReachWhenTheScreenHasChangedAndStaysOtherwise) {
    dock_.ShowQuon(true, true);
    log_.Clear();
    dock_.FollowScreen();
    EXPECT_THAT(log_.Lines(), IsEmpty());
    SetWindowPos(window_, nullptr, 5000, 5000, 0, 0, SWP_NOSIZE);
    log_.Clear();
    dock_.FollowScreen();
    ASSERT_EQ(log_.Count("place"), 1u);
    RECT screen{0, 0, ORIGINAL_CALL(GetSystemMetrics)(SM_CXSCREEN),
                ORIGINAL_CALL(GetSystemMetrics)(SM_CYSCREEN)};
    const RECT place = Place();
    RECT common{};
    IntersectRect(&common, &place, &screen);
    EXPECT_TRUE(EqualRect(&common, &place)) << "all of it is to be seen";
}

TEST_F(DockingTest, AMinimisedWindowIsLeftAloneWhenTheScreenChanges) {
    Dock(kRightEdge);
    const auto minimised = FAKE_CALL(IsIconic, [](HWND) { return TRUE; });
    dock_.FollowScreen();
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(DockingTest, MakesAMinimisedOrMaximisedWindowNormalFirst) {
    BOOL minimised = FALSE;
    BOOL maximised = FALSE;
    const auto iconic = FAKE_CALL(IsIconic, [&](HWND) { return minimised; });
    const auto zoomed = FAKE_CALL(IsZoomed, [&](HWND) { return maximised; });
    const auto show = FAKE_CALL(ShowWindow, [&](HWND window, int state) -> BOOL {
        EXPECT_EQ(window, window_);
        log_.Add("state", state);
        return TRUE;
    });
    dock_.ShowQuon(true, true);
    EXPECT_EQ(log_.Count("state"), 0u);
    for (const bool out : {true, false}) {
        for (BOOL* state : {&minimised, &maximised}) {
            minimised = maximised = FALSE;
            *state = TRUE;
            log_.Clear();
            dock_.ShowQuon(out, true);
            ASSERT_FALSE(log_.Lines().empty());
            EXPECT_EQ(log_.Lines().front(), "state " + std::to_string(SW_SHOWNOACTIVATE));
        }
    }
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

    inline static const HWND kNext = reinterpret_cast<HWND>(INT_PTR{0x77});
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

TEST_F(DockingTest, GoesBehindAProgramThatFillsTheScreenOnceAndComesBackAfterwards) {
    Dock(kLeftEdge);
    QUERY_USER_NOTIFICATION_STATE state = QUNS_BUSY;
    const auto query = FAKE_CALL(SHQueryUserNotificationState, [&](QUERY_USER_NOTIFICATION_STATE* answer) {
        *answer = state;
        return S_OK;
    });
    const testkit::HiddenWindow game;
    bool covers = true;
    const auto foreground = FAKE_CALL(GetForegroundWindow, [&] { return game.Handle(); });
    const auto owner = FAKE_CALL(GetWindowThreadProcessId, [](HWND, LPDWORD process) -> DWORD {
        *process = 1;
        return 1;
    });
    const auto place = FAKE_CALL(GetWindowRect, [&](HWND window, LPRECT rect) -> BOOL {
        if (window != game.Handle()) return ORIGINAL_CALL(GetWindowRect)(window, rect);
        *rect = covers ? RECT{0, 0, 1000, 800} : RECT{};
        return TRUE;
    });
    dock_.OnTimer();
    dock_.OnTimer();
    EXPECT_THAT(log_.Lines(),
                ElementsAre("after " + std::to_string(SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE)));
    log_.Clear();
    state = QUNS_ACCEPTS_NOTIFICATIONS;
    dock_.OnTimer();
    EXPECT_THAT(log_.Lines(), ElementsAre(kTopmost));
    log_.Clear();
    state = QUNS_RUNNING_D3D_FULL_SCREEN;
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
    covers = false;
    dock_.OnTimer();
    log_.Clear();
    covers = true;
    dock_.OnTimer();
    EXPECT_EQ(log_.Count("after"), 1u) << "it had not been put behind it yet";
}

TEST_F(DockingTest, IsNotRaisedAboveAWindowOfTheSystemThatWaitsForAnAnswer) {
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

TEST_F(DockingTest, AHoverThatIsAbandonedBringsNothingOut) {
    DockUnderTheMouse(500);
    onSleep_ = [this] { PostMessageW(window_, WM_APP, 0, 0); };
    onEvent_ = [this] { dock_.AbandonHover(); };
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), ElementsAre("Sleep 100"));
    EXPECT_TRUE(dock_.Hidden());
}

}  // namespace
}  // namespace app
