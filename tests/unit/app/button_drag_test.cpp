#include "app/button_drag.h"

#include <gmock/gmock.h>

#include "tests/unit/app/panel_parts.h"

namespace app {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

class ButtonDragTest : public PanelParts {
  protected:
    ButtonDragTest() {
        Load(
            "[Buttons]\r\n11=Име|0\r\n31=C|0\r\n[Cuts]\r\nИме=http://a/\r\nC=http://c/\r\n[Switch]\r\nИме=/"
            "x\r\n");
        drag_.onDrop = [this](const model::ButtonPlace& target, const DragSource& source) {
            log_.Add("drop", target.Key(), source.Place.Key(), source.FilePath, source.Naziv, source.Switch);
        };
        before_ = folder_.IniBytes();
    }

    void Start() { Press(Button(1), {VK_CONTROL, VK_SHIFT}); }
    void MoveTo(HWND window) {
        pointer_ = Inside(window);
        SendMessageW(Button(1), WM_MOUSEMOVE, MK_LBUTTON, 0);
    }
    void ReleaseAt(HWND window) {
        MoveTo(window);
        Release(Button(1));
    }
    HWND Header(int index) { return tabs_.Header(index).Handle(); }

    std::string before_;
};

TEST_F(ButtonDragTest, StartsOnlyWithCtrlShiftAndTheLeftButton) {
    for (const std::initializer_list<int> held :
         {std::initializer_list<int>{}, {VK_CONTROL}, {VK_SHIFT}, {VK_CONTROL, VK_SHIFT, VK_MENU}}) {
        Press(Button(1), held);
        EXPECT_FALSE(drag_.Ready());
        Release(Button(1));
    }
    Start();
    EXPECT_TRUE(drag_.Ready());
}

TEST_F(ButtonDragTest, BeginsBeyondTheSystemsDragDistance) {
    const LONG across = GetSystemMetrics(SM_CXDRAG);
    const LONG down = GetSystemMetrics(SM_CYDRAG);
    for (const POINT beyond : {POINT{across + 1, 0}, {-across - 1, 0}, {0, down + 1}, {0, -down - 1}}) {
        const POINT start{pointer_};
        Start();
        for (const POINT within : {POINT{0, 0}, {across, down}, {-across, -down}}) {
            pointer_ = {start.x + within.x, start.y + within.y};
            SendMessageW(Button(1), WM_MOUSEMOVE, MK_LBUTTON, 0);
            EXPECT_FALSE(drag_.Active());
        }
        pointer_ = {start.x + beyond.x, start.y + beyond.y};
        SendMessageW(Button(1), WM_MOUSEMOVE, MK_LBUTTON, 0);
        EXPECT_TRUE(drag_.Active());
        // It is a move even when it ends where it began.
        pointer_ = start;
        SendMessageW(Button(1), WM_MOUSEMOVE, MK_LBUTTON, 0);
        EXPECT_TRUE(drag_.Active());
        Release(Button(1));
        EXPECT_FALSE(drag_.Ready());
    }
}

TEST_F(ButtonDragTest, APressAndReleaseOnOnePlaceMovesNothing) {
    pointer_ = Inside(Button(1));
    Start();
    Release(Button(1));
    EXPECT_FALSE(drag_.Ready());
    EXPECT_THAT(log_.Lines(), IsEmpty());
    EXPECT_EQ(folder_.IniBytes(), before_);
}

TEST_F(ButtonDragTest, APressAndReleaseOnOnePlaceIsAClick) {
    config::Settings.SingleClickOpen = true;
    const auto shell = FAKE_CALL(ShellExecuteA, [this](HWND, LPCSTR, LPCSTR file, LPCSTR, LPCSTR, INT show) {
        log_.Add("open", file, show);
        return reinterpret_cast<HINSTANCE>(33);
    });
    state_.Button(1).Switch.clear();
    pointer_ = Inside(Button(1));
    Start();
    Release(Button(1));
    EXPECT_NE(log_.Count("open http://a/ 1"), 0u) << log_.Text();
}

TEST_F(ButtonDragTest, TheRightButtonLetGoDropsNothing) {
    Start();
    MoveTo(Button(5));
    SendMessageW(Button(1), WM_RBUTTONUP, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_THAT(log_.Lines(), IsEmpty());
    EXPECT_TRUE(drag_.Active());
    ReleaseAt(Button(5));
    EXPECT_EQ(log_.Count("drop 15"), 1u);
}

TEST_F(ButtonDragTest, LeavesTheRightButtonToTheMenuWhateverIsHeld) {
    const auto track = FAKE_CALL(TrackPopupMenu, [this] {
        log_.Add("menu");
        return 0;
    });
    const HeldModifierKeys keys({VK_CONTROL, VK_SHIFT});
    SendMessageW(Button(1), WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    EXPECT_FALSE(drag_.Active());
    EXPECT_THAT(log_.Lines(), ElementsAre("menu"));
}

TEST_F(ButtonDragTest, DoesNotStartOnAFreeButton) {
    Press(Button(2), {VK_CONTROL, VK_SHIFT});
    EXPECT_FALSE(drag_.Ready());
}

TEST_F(ButtonDragTest, HandsOverACopyOfWhatTheSourceHeld) {
    Start();
    state_.Button(1).FilePath = "changed";
    state_.Button(1).Naziv = "changed";
    state_.Button(1).Switch = "changed";
    ReleaseAt(Button(5));
    EXPECT_THAT(log_.Lines(), ElementsAre("drop 15 11 http://a/ Име /x"));
    EXPECT_FALSE(drag_.Active());
}

TEST_F(ButtonDragTest, DropsOnItselfToo) {
    Start();
    ReleaseAt(Button(1));
    EXPECT_THAT(log_.Lines(), ElementsAre("drop 11 11 http://a/ Име /x"));
}

TEST_F(ButtonDragTest, ShowsATabOnceWhenThePointerEntersItsHeader) {
    Start();
    MoveTo(Header(3));
    EXPECT_EQ(config::Settings.CurrentTab, 3);
    EXPECT_EQ(testkit::Window(Button(1)).Text(), "C");
    EXPECT_EQ(state_.PopCount, 10);
    // Further moves on the header repaint nothing.
    state_.PopCount = 0;
    MoveTo(Header(3));
    EXPECT_EQ(state_.PopCount, 0);
    // Entering it again shows it again.
    MoveTo(Button(4));
    MoveTo(Header(3));
    EXPECT_EQ(state_.PopCount, 10);
    ReleaseAt(Button(2));
    EXPECT_THAT(log_.Lines(), ElementsAre("drop 32 11 http://a/ Име /x"));
}

TEST_F(ButtonDragTest, ShowsTheTabOfTheSameHeaderInTheNextMoveToo) {
    Start();
    ReleaseAt(Header(3));
    tabs_.b1_MouseUp(1, win::MouseButton::kLeft, 0, 0, 0);
    pointer_ = Inside(Button(1));
    Start();
    MoveTo(Header(3));
    EXPECT_EQ(config::Settings.CurrentTab, 3);
}

TEST_F(ButtonDragTest, ChangesNothingWhenDroppedElsewhere) {
    Start();
    pointer_ = {-20000, -20000};
    Release(Button(1));
    EXPECT_THAT(log_.Lines(), IsEmpty());
    EXPECT_FALSE(drag_.Active());
    EXPECT_EQ(folder_.IniBytes(), before_);
}

TEST_F(ButtonDragTest, ChangesNothingWhenTheMouseIsTakenAway) {
    Start();
    MoveTo(Button(4));
    ASSERT_TRUE(drag_.Active());
    ReleaseCapture();
    EXPECT_FALSE(drag_.Ready());
    ReleaseAt(Button(5));
    EXPECT_THAT(log_.Lines(), IsEmpty());
    EXPECT_EQ(folder_.IniBytes(), before_);
}

TEST_F(ButtonDragTest, DoesNotMakeAnotherButtonTheCurrentOneOnItsWay) {
    Start();
    MoveTo(Button(5));
    pointer_ = Inside(Button(6));
    SendMessageW(Button(6), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(5, 5));
    EXPECT_EQ(state_.Context.CurrentButtonIndex, 1);
}

TEST_F(ButtonDragTest, AMoveIsNoClick) {
    config::Settings.SingleClickOpen = true;
    int opened = 0;
    const auto shell = FAKE_CALL(ShellExecuteA, [&] {
        ++opened;
        return reinterpret_cast<HINSTANCE>(33);
    });
    state_.Button(1).Switch.clear();
    Start();
    pointer_ = Inside(Button(1));
    Release(Button(1));
    EXPECT_EQ(opened, 0);
    Press(Button(1));
    Release(Button(1));
    EXPECT_NE(opened, 0) << "the next click is one again";
}

}  // namespace
}  // namespace app
