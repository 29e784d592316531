// The docked panel on a real screen: what brings it out, what does not, and that it stays on top.

#include "tests/program/other_window.h"
#include "tests/program/quon_test.h"

namespace testkit {
namespace {

using std::chrono::milliseconds;

constexpr Edge kEdges[] = {Edge::kLeft, Edge::kTop, Edge::kRight, Edge::kBottom};

class EdgeTest : public DockedTest {
  protected:
    void DockAt(Edge edge) { ini_.edge = static_cast<int>(edge); }

    /// A pixel in the middle of what can be seen of the docked panel.
    static POINT Strip(const QuonPanel& quon) {
        const RECT place = quon.Main().Rect();
        return {std::clamp((place.left + place.right) / 2, 1L, GetSystemMetrics(SM_CXSCREEN) - 2L),
                std::clamp((place.top + place.bottom) / 2, 1L, GetSystemMetrics(SM_CYSCREEN) - 2L)};
    }
    static void ExpectInTheMiddle(const QuonPanel& quon) {
        const RECT place = quon.Main().Rect();
        EXPECT_EQ(place.left, (GetSystemMetrics(SM_CXSCREEN) - (place.right - place.left)) / 2);
        EXPECT_EQ(place.top, (GetSystemMetrics(SM_CYSCREEN) - (place.bottom - place.top)) / 2);
    }
    /// Docks a panel that is out.
    void Dock(const QuonPanel& quon) const {
        constexpr std::chrono::seconds kLongEnough{1};
        mouse::MoveTo(kAway);
        // Wine may hear late from the display that the pointer was on the strip: the panel comes out again.
        WaitFor("the panel docks", [&] {
            quon.Main().Post(WM_SYSCOMMAND, SC_CLOSE);
            return HappensWithin(kLongEnough, [&] { return quon.IsDockedAt(ItsEdge()); });
        });
    }
    /// How long the docked panel takes to come out for the pointer.
    static milliseconds TimeToComeOut(const QuonPanel& quon) {
        const auto start = std::chrono::steady_clock::now();
        mouse::MoveTo(Strip(quon));
        quon.WaitUntilOut();
        return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
    }
    /// Puts the pointer onto the strip and waits until the panel is waiting out the hover delay, when it
    /// answers only between two sleeps of 100 ms.
    static void BeginHoverWait(const QuonPanel& quon) {
        constexpr milliseconds kLongerThanAnyAnswer{50};
        constexpr int kInARow = 3;
        mouse::MoveTo(Strip(quon));
        int slow = 0;
        WaitFor("the wait begins", [&] {
            const auto start = std::chrono::steady_clock::now();
            quon.Main().Send(WM_NULL);
            slow = std::chrono::steady_clock::now() - start >= kLongerThanAnyAnswer ? slow + 1 : 0;
            return slow >= kInARow;
        });
    }
};

TEST_F(EdgeTest, TheWholeStripBelongsToThePanelItselfAtEveryEdge) {
    for (const Edge edge : kEdges) {
        DockAt(edge);
        QuonPanel quon = Start();
        ASSERT_TRUE(quon.IsDockedAt(edge)) << ini_.edge;
        const RECT place = quon.Main().Rect();
        const RECT screen{0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)};
        RECT strip{};
        ASSERT_TRUE(IntersectRect(&strip, &place, &screen));
        EXPECT_EQ(std::min(strip.right - strip.left, strip.bottom - strip.top), 4);
        RECT clip{};
        EXPECT_EQ(GetWindowRgnBox(quon.Main().Handle(), &clip), SIMPLEREGION);
        OffsetRect(&clip, place.left, place.top);
        EXPECT_TRUE(EqualRect(&clip, &strip)) << "a monitor beyond the edge shows more: " << ini_.edge;
        int foreign = 0;
        for (LONG y = strip.top; y < strip.bottom; ++y)
            for (LONG x = strip.left; x < strip.right; ++x)
                foreign += Window::At({x, y}) != quon.Main() ? 1 : 0;
        EXPECT_EQ(foreign, 0) << "pixels at edge " << ini_.edge << " belong to another window";
    }
}

TEST_F(EdgeTest, RestingOnTheStripBringsThePanelOutAfterTheDelayAtEveryEdge) {
    ini_.pop_on_hover = true;
    ini_.pop_delay = 600;
    for (const Edge edge : kEdges) {
        DockAt(edge);
        QuonPanel quon = Start();
        const auto start = std::chrono::steady_clock::now();
        mouse::MoveTo(Strip(quon));
        quon.WaitUntilOut();
        EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(600)) << ini_.edge;
        ExpectInTheMiddle(quon);
        // The pointer may leave the panel: nothing docks it by itself.
        mouse::MoveTo({5, 5});
        EXPECT_TRUE(HoldsThroughout(milliseconds(300), [&] { return quon.IsOut(); })) << ini_.edge;
        mouse::MoveTo(kAway);
    }
}

TEST_F(EdgeTest, LeavingTheStripBeforeTheDelayIsOverLeavesThePanelDocked) {
    ini_.pop_on_hover = true;
    ini_.pop_delay = 2000;
    QuonPanel quon = Start();
    mouse::MoveTo(Strip(quon));
    mouse::MoveTo(kAway);
    EXPECT_TRUE(HoldsThroughout(milliseconds(2600), [&] { return quon.IsDockedAt(ItsEdge()); }));
    // The next rest on the strip counts again.
    mouse::MoveTo(Strip(quon));
    quon.WaitUntilOut();
}

TEST_F(EdgeTest, WithoutADelayThePanelComesOutAtOnce) {
    ini_.pop_on_hover = true;
    ini_.pop_delay = 50;
    QuonPanel quon = Start();
    // A single wait would take 100 ms each time. A busy machine is too slow only now and then.
    EXPECT_TRUE(HappensWithin(kPatience, [&] {
        const bool at_once = TimeToComeOut(quon) < milliseconds(100);
        Dock(quon);
        return at_once;
    }));
}

TEST_F(EdgeTest, AClickOnTheStripBringsThePanelOutAtEveryEdgeWithEveryButton) {
    using mouse::Button;
    constexpr std::pair<Edge, Button> kClicks[] = {{Edge::kLeft, Button::kLeft},
                                                   {Edge::kTop, Button::kRight},
                                                   {Edge::kRight, Button::kMiddle},
                                                   {Edge::kBottom, Button::kLeft}};
    ini_.click_shows = true;
    for (const auto& [edge, button] : kClicks) {
        DockAt(edge);
        QuonPanel quon = Start();
        mouse::Click(Strip(quon), {}, button);
        quon.WaitUntilOut();
        ExpectInTheMiddle(quon);
        mouse::MoveTo(kAway);
    }
}

TEST_F(EdgeTest, WithBothTriggersOffOnlyTheTrayIconBringsThePanelOut) {
    ini_.pop_delay = 100;
    QuonPanel quon = Start();
    mouse::MoveTo(Strip(quon));
    mouse::Click(Strip(quon));
    mouse::Click(Strip(quon), {}, mouse::Button::kRight);
    EXPECT_TRUE(HoldsThroughout(milliseconds(700), [&] { return quon.IsDockedAt(ItsEdge()); }));
    quon.ClickTrayIcon();
    quon.WaitUntilOut();
    ExpectInTheMiddle(quon);
}

TEST_F(EdgeTest, TheTimerKeepsTheStripOnTopWithoutTakingTheFocus) {
    ini_.start_glued = false;
    QuonPanel quon = Start();
    mouse::Click(quon.CloseButtonPlace());
    quon.WaitUntilDockedAt(ItsEdge());
    mouse::MoveTo(kAway);
    const POINT strip = Strip(quon);
    const OtherWindow cover({strip.x - 20, strip.y - 20, strip.x + 20, strip.y + 20});
    const OtherWindow typing({100, 100, 300, 200});
    typing.AsWindow().Activate();
    for (int round = 0; round < 2; ++round) {
        // The timer's tick may come at once.
        WaitFor("the strip is covered", [&] {
            cover.Raise();
            return Window::At(strip) == cover.AsWindow();
        });
        WaitFor("the strip is on top again", [&] { return Window::At(strip) == quon.Main(); });
        EXPECT_TRUE(typing.AsWindow().IsForeground()) << "the panel has taken the focus";
    }
}

TEST_F(EdgeTest, StartedAtItsEdgeThePanelDoesNotRiseByItself) {
    QuonPanel quon = Start();
    const POINT strip = Strip(quon);
    const OtherWindow cover({strip.x - 20, strip.y - 20, strip.x + 20, strip.y + 20});
    cover.Raise();
    EXPECT_TRUE(HoldsThroughout(milliseconds(1300), [&] { return Window::At(strip) == cover.AsWindow(); }));
}

TEST_F(EdgeTest, ADockedPanelThatIsClosedAgainForgetsNothing) {
    ini_.start_glued = false;
    QuonPanel quon = Start();
    SetWindowPos(quon.Main().Handle(), nullptr, 37, 61, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_ASYNCWINDOWPOS);
    WaitFor("the panel moves", [&] { return quon.Main().Rect().left == 37; });
    for (int round = 0; round < 2; ++round) {
        quon.Main().Post(WM_SYSCOMMAND, SC_CLOSE);
        quon.WaitUntilDockedAt(ItsEdge());
        quon.Program().WaitUntilIdle();
    }
    quon.ClickTrayIcon();
    quon.WaitUntilOut();
    EXPECT_EQ(quon.Main().Rect().left, 37);
    EXPECT_EQ(quon.Main().Rect().top, 61);
}

TEST_F(EdgeTest, EndingWhileTheHoverIsWaitedOutIsSurvived) {
    ini_.pop_on_hover = true;
    ini_.pop_delay = 60000;
    ini_.close_button_closes = true;
    for (const UINT message : {UINT{WM_CLOSE}, UINT{WM_SYSCOMMAND}}) {
        QuonPanel quon = Start();
        BeginHoverWait(quon);
        quon.Main().Post(message, SC_CLOSE);
        EXPECT_EQ(quon.Program().WaitForExit(), 0u);
        EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini_.Main()) << "the settings were not saved whole";
        mouse::MoveTo(kAway);
    }
}

TEST_F(EdgeTest, AltF4EndsTheProgramWhileTheHoverIsWaitedOutWhateverTheSettingSays) {
    ini_.pop_on_hover = true;
    ini_.pop_delay = 60000;
    QuonPanel quon = Start();
    quon.Main().Activate();
    BeginHoverWait(quon);
    keyboard::Chord({VK_MENU, VK_F4});
    EXPECT_EQ(quon.Program().WaitForExit(), 0u);
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), ini_.Main());
}

TEST_F(EdgeTest, ALongWaitSurvivesFurtherMovesAndClicks) {
    ini_.pop_on_hover = true;
    ini_.click_shows = true;
    ini_.pop_delay = 60000;
    QuonPanel quon = Start();
    const POINT strip = Strip(quon);
    BeginHoverWait(quon);
    for (LONG step = 1; step <= 20; ++step)
        mouse::MoveTo({strip.x + step, strip.y});
    mouse::Click(strip);
    quon.WaitUntilOut();
}

TEST_F(EdgeTest, ALongWaitIsOverAsSoonAsThePanelIsOut) {
    constexpr milliseconds kAtOnce{50};
    constexpr int kInARow = 20;
    ini_.pop_on_hover = true;
    ini_.pop_delay = 600000;
    QuonPanel quon = Start();
    BeginHoverWait(quon);
    quon.ClickTrayIcon();
    quon.WaitUntilOut();
    // Between two sleeps there is time for a few answers, but not for so many.
    int quick = 0;
    WaitFor("the panel answers at once", [&] {
        const auto start = std::chrono::steady_clock::now();
        quon.Main().Send(WM_NULL);
        quick = std::chrono::steady_clock::now() - start < kAtOnce ? quick + 1 : 0;
        return quick >= kInARow;
    });
}

}  // namespace
}  // namespace testkit
