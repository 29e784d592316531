// What the mouse does with a docked window.

#include "tests/unit/app/docking_fixture.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::CallLog;

TEST(HoverWaitsTest, RoundsTheHoverDelayToTheNearestWaitAndTiesToEven) {
    const std::vector<std::pair<std::int32_t, int>> cases{{500, 5}, {250, 2}, {350, 4}, {450, 4},
                                                          {549, 5}, {551, 6}, {50, 0},  {51, 1},
                                                          {0, 0},   {1, 0},   {150, 2}, {60000, 600}};
    for (const auto& [delay, waits] : cases)
        EXPECT_EQ(HoverWaits(delay), waits) << delay;
}

TEST(HoverWaitsTest, NamesTheWindowUnderTheMouseByAtMost99Characters) {
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

/// A docked window, and the mouse on its strip.
class DockedTest : public DockingTest {
  protected:
    /// A hover in whose every pause a message comes, which has this happen.
    void HoverWhile(std::int32_t delay, std::function<void()> event) {
        DockUnderTheMouse(delay);
        onSleep_ = [this] { PostMessageW(window_, WM_APP, 0, 0); };
        onEvent_ = std::move(event);
        dock_.OnHover();
    }
};

TEST_F(DockedTest, ComesOutAfterTheHoverDelay) {
    DockUnderTheMouse(300);
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), ElementsAre("Sleep 100", "Sleep 100", "Sleep 100", "place 350 300", kTopmost));
    EXPECT_FALSE(dock_.Hidden());
}

TEST_F(DockedTest, ComesOutWithoutAWaitForADelayThatRoundsToNone) {
    DockUnderTheMouse(50);
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), ElementsAre("place 350 300", kTopmost));
}

TEST_F(DockedTest, StaysDockedWhenTheMouseLeavesDuringTheWait) {
    DockUnderTheMouse(300);
    onSleep_ = [this] { underMouse_ = "Desktop"; };
    dock_.OnHover();
    EXPECT_TRUE(dock_.Hidden());
    EXPECT_THAT(log_.Lines(), ElementsAre("Sleep 100", "Sleep 100", "Sleep 100"));
}

TEST_F(DockedTest, LooksOnlyAtTheFirstFourCharacters) {
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

TEST_F(DockedTest, IgnoresAHoverThatIsSwitchedOff) {
    DockUnderTheMouse(100);
    config::Settings.PopOnHover = false;
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(DockedTest, IgnoresAHoverWhileItIsOut) {
    DockUnderTheMouse(100);
    dock_.ShowQuon(true, true);
    log_.Clear();
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(DockedTest, LetsEventsRunAfterEachWait) {
    HoverWhile(200, [this] { log_.Add("event"); });
    EXPECT_THAT(log_.Lines(),
                ElementsAre("Sleep 100", "event", "Sleep 100", "event", "place 350 300", kTopmost));
}

TEST_F(DockedTest, WaitsOnlyOnceForTheMovesDuringAWait) {
    HoverWhile(200, [this] { dock_.OnHover(); });
    EXPECT_EQ(log_.Count("Sleep"), 2u);
    EXPECT_EQ(log_.Count("place"), 1u);
    // The next hover waits again.
    DockUnderTheMouse(200);
    onSleep_ = nullptr;
    dock_.OnHover();
    EXPECT_EQ(log_.Count("Sleep"), 2u);
}

TEST_F(DockedTest, DoesNotComeOutTwiceWhenItWasShownDuringTheWait) {
    HoverWhile(100, [this] { dock_.ShowQuon(true, false); });
    EXPECT_EQ(log_.Count("place"), 1u);
}

TEST_F(DockedTest, StopsWaitingAsSoonAsItIsOutByOtherMeans) {
    HoverWhile(60000, [this] { dock_.ShowQuon(true, false); });
    EXPECT_EQ(log_.Count("Sleep"), 1u);
    EXPECT_FALSE(dock_.Hidden());
}

TEST_F(DockedTest, StopsWaitingWhenTheProgramEndsAndPassesTheEndOn) {
    DockUnderTheMouse(500);
    onSleep_ = [] { PostQuitMessage(7); };
    dock_.OnHover();
    EXPECT_THAT(log_.Lines(), ElementsAre("Sleep 100"));
    MSG message{};
    ASSERT_NE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE), 0);
    EXPECT_EQ(message.wParam, 7u);
}

TEST_F(DockedTest, StopsWaitingWhenTheWindowIsGone) {
    HoverWhile(500, [this] { DestroyWindow(window_); });
    EXPECT_THAT(log_.Lines(), ElementsAre("Sleep 100"));
}

TEST_F(DockedTest, ComesOutForAClickOnlyWhenDockedAndSwitchedOn) {
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

TEST_F(DockedTest, AHoverThatIsAbandonedBringsNothingOut) {
    HoverWhile(500, [this] { dock_.AbandonHover(); });
    EXPECT_THAT(log_.Lines(), ElementsAre("Sleep 100"));
    EXPECT_TRUE(dock_.Hidden());
}

}  // namespace
}  // namespace app
