// Where a docking and a coming out put the window, and what is to be seen of it.
#include "app/edge_dock.h"

#include "tests/unit/app/docking_fixture.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

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
    EXPECT_THAT(log_.Lines(), ElementsAre("place 350 -196", "no timer", kTopmost, "timer 1000"))
        << "the last is another timer, that of the window in front";
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
    const auto refuse = ANSWER_CALL(SetWindowRgn, 0);
    const auto remove = WATCH_CALL(DeleteObject, [&](HGDIOBJ) { ++deleted; });
    Dock(kLeftEdge);
    EXPECT_EQ(deleted, 1);
}

TEST_F(DockingTest, ASavedPlaceThatNoMonitorShowsCountsAsNone) {
    dock_.SavePosition();
    Dock(kLeftEdge);
    const auto gone = FAKE_CALL(MonitorFromRect, [] { return HMONITOR{}; });
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
    const auto minimised = ANSWER_CALL(IsIconic, TRUE);
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

}  // namespace
}  // namespace app
