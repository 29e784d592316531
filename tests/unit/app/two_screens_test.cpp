// What the panel does between two screens of different scales.

#include <tuple>

#include "config/settings.h"
#include "tests/unit/app/two_screens_fixture.h"
#include "win/geometry.h"
#include "win/scale.h"

namespace app {
namespace {

using testkit::RecordedCall;

/// The panel docks at the edge that the neighbour is at.
class TwoScreensTest : public TwoScreens, public ::testing::WithParamInterface<int> {
  protected:
    TwoScreensTest() : TwoScreens({.neighboursEdge = GetParam()}, GetParam()) {}
    static constexpr int kNeighboursDpi = Screens{}.neighboursDpi;
};

TEST_P(TwoScreensTest, ADockedPanelComesOutAsItWas) {
    BringOut();
    ExpectOut();
    Close();
    ExpectDocked();
    BringOut();
    ExpectOut();
    ExpectLaidOutFor(win::kPlainDpi);
    const RECT place = Place();
    EXPECT_NEAR((place.left + place.right) / 2, primary_.right / 2, 1);
    EXPECT_NEAR((place.top + place.bottom) / 2, primary_.bottom / 2, 1);
}

TEST_P(TwoScreensTest, APanelOfTheNeighbourGoesBackThere) {
    BringOut();
    const POINT there = OnNeighbour();
    MoveTo(there);
    ExpectLaidOutFor(kNeighboursDpi);
    EXPECT_EQ(Place().left, there.x);
    EXPECT_EQ(Place().top, there.y);
    Close();
    ExpectDocked();
    told_ = 0;
    BringOut();
    ExpectOut();
    ExpectLaidOutFor(kNeighboursDpi);
    // Places are stored in twips of the primary screen, 15 to a pixel.
    EXPECT_EQ(Place().left, there.x);
    EXPECT_EQ(Place().top, there.y);
    Close();
    ExpectDocked();
}

TEST_P(TwoScreensTest, WhatWasBegunOnTheNeighbourIsFinishedOnThePrimaryScreen) {
    BringOut();
    MoveTo(OnNeighbour());
    ExpectLaidOutFor(kNeighboursDpi);
    MoveTo({100, 100});
    ExpectLaidOutFor(win::kPlainDpi);
    EXPECT_EQ(Place().left, 100);
    EXPECT_EQ(Place().top, 100);
    Close();
    ExpectDocked();
}

TEST_P(TwoScreensTest, APanelWhoseScreenIsGoneFitsTheOneThatIsLeft) {
    BringOut();
    MoveTo(OnNeighbour());
    Close();
    neighbour_ = {};
    BringOut();
    ExpectOut();
    ExpectLaidOutFor(win::kPlainDpi);
    EXPECT_NEAR((Place().left + Place().right) / 2, primary_.right / 2, 1);
    EXPECT_NEAR((Place().top + Place().bottom) / 2, primary_.bottom / 2, 1);
}

INSTANTIATE_TEST_SUITE_P(Edges, TwoScreensTest,
                         ::testing::Values(kLeftEdge, kTopEdge, kRightEdge, kBottomEdge));

/// A primary screen of twice the neighbour's scale. The first number is the neighbour's edge.
class LargePrimaryScreenTest : public TwoScreens,
                               public ::testing::WithParamInterface<std::tuple<std::int32_t, std::int32_t>> {
  protected:
    LargePrimaryScreenTest()
        : TwoScreens({.primaryDpi = 192, .neighboursDpi = 96, .neighboursEdge = std::get<0>(GetParam())},
                     std::get<1>(GetParam())) {}
};

TEST_P(LargePrimaryScreenTest, TheStripOfAPanelThatWasOnTheNeighbourIsItsOwn) {
    const auto [neighbours, docks] = GetParam();
    BringOut();
    MoveTo(OnNeighbour());
    ExpectLaidOutFor(96);
    Close();
    ExpectDocked();
    ExpectLaidOutFor(neighbours == docks ? 96 : 192);
}

TEST_P(LargePrimaryScreenTest, TheStripIsItsOwnAtAnEdgeThatItIsMovedTo) {
    const auto [neighbours, docks] = GetParam();
    config::Settings.Edge = neighbours;
    BringOut();
    Close();
    ExpectLaidOutFor(96);
    config::Settings.Edge = docks;
    panel_.Window().Send(WM_DISPLAYCHANGE);
    ExpectDocked();
    ExpectLaidOutFor(neighbours == docks ? 96 : 192);
}

INSTANTIATE_TEST_SUITE_P(Edges, LargePrimaryScreenTest,
                         ::testing::Combine(::testing::Values(kLeftEdge, kTopEdge, kRightEdge, kBottomEdge),
                                            ::testing::Values(kLeftEdge, kTopEdge, kRightEdge, kBottomEdge)));

/// Beside the primary screen there is one of another scale.
class ScreensSideBySideTest : public TwoScreens, public ::testing::WithParamInterface<std::tuple<int, int>> {
  protected:
    ScreensSideBySideTest()
        : TwoScreens({.primaryDpi = std::get<0>(GetParam()), .neighboursDpi = std::get<1>(GetParam())},
                     kLeftEdge) {
        BringOut();
    }
};

TEST_P(ScreensSideBySideTest, APanelThatIsDraggedAcrossTheBorderChangesOnce) {
    const auto [here, there] = GetParam();
    const LONG start = (Place().left + Place().right) / 2;
    ExpectLaidOutFor(here);
    DragTo(neighbour_.left + 500);
    EXPECT_EQ(told_, 1);
    ExpectLaidOutFor(there);
    EXPECT_NEAR((Place().left + Place().right) / 2, neighbour_.left + 500, 1) << "below the pointer";
    DragTo(start);
    EXPECT_EQ(told_, 2);
    ExpectLaidOutFor(here);
    EXPECT_NEAR((Place().left + Place().right) / 2, start, 1);
}

TEST_P(ScreensSideBySideTest, APanelThatAnotherScaleReachesWhileItIsLaidOutFollowsItInTheEnd) {
    const auto [here, there] = GetParam();
    int drawn = 0;
    const RecordedCall redraw =
        FAKE_CALL(RedrawWindow, [&](HWND window, const RECT* part, HRGN region, UINT flags) -> WINBOOL {
            if (window == Panel() && ++drawn == 1) MoveTo(OnNeighbour());
            return ORIGINAL_CALL(RedrawWindow)(window, part, region, flags);
        });
    panel_.Window().Send(WM_SYSCOLORCHANGE);
    EXPECT_EQ(told_, 1);
    EXPECT_EQ(drawn, 2);
    ExpectLaidOutFor(there);
}

INSTANTIATE_TEST_SUITE_P(Scales, ScreensSideBySideTest,
                         ::testing::Values(std::tuple(96, 192), std::tuple(192, 96), std::tuple(96, 144),
                                           std::tuple(144, 120)));

/// Large text has room on the primary screen, but not on its neighbour.
class LessRoomTest : public TwoScreens, public ::testing::WithParamInterface<int> {
  protected:
    LessRoomTest()
        : TwoScreens(
              {.neighboursDpi = GetParam(), .text = 18, .neighboursTaskbar = kScreen.cy - 5 * GetParam()},
              kLeftEdge) {
        BringOut();
    }

    /// The scale of the panel on the neighbour.
    win::Scale There() const {
        const RECT frame = Frame();
        const int room = win::Height(neighbour_) - screens_.neighboursTaskbar - win::Height(frame);
        return win::Scale(GetParam(), std::max(100, room * 100 * win::kPlainDpi / (363 * GetParam())));
    }

  private:
    static RECT Frame() {
        RECT frame{};
        win::AddFrame(frame, WS_POPUP | WS_CAPTION, WS_EX_TOOLWINDOW, GetParam());
        return frame;
    }
};

TEST_P(LessRoomTest, ForetellsTheSizeThatItWillHave) {
    ExpectLaidOutFor(win::Scale(96, 150));
    // Already there, or held there by the pointer.
    pointer_ = POINT{neighbour_.left + 10, neighbour_.top + 50};
    const SIZE before = Foretold();
    pointer_.reset();
    MoveTo(OnNeighbour());
    ExpectLaidOutFor(There());
    const SIZE after = Foretold();
    for (const SIZE& size : {before, after}) {
        EXPECT_EQ(size.cx, win::Width(Place()));
        EXPECT_EQ(size.cy, win::Height(Place()));
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, LessRoomTest, ::testing::Values(120, 144));

/// The same where both screens have one scale, so that Windows tells nothing.
class LessRoomAtOneScaleTest : public LessRoomTest {};

TEST_P(LessRoomAtOneScaleTest, APanelThatWasDraggedThereFitsWhenItIsLetGo) {
    ExpectLaidOutFor(win::Scale(96, 150));
    MoveTo({OnNeighbour().x, neighbour_.bottom - screens_.neighboursTaskbar - 200});
    ExpectLaidOutFor(win::Scale(96, 150));
    panel_.Window().Send(WM_EXITSIZEMOVE);
    EXPECT_EQ(told_, 0);
    ExpectLaidOutFor(There());
    EXPECT_LE(Place().bottom, neighbour_.bottom - screens_.neighboursTaskbar);
    EXPECT_GE(Place().top, neighbour_.top);
    const RECT place = Place();
    panel_.Window().Send(WM_EXITSIZEMOVE);
    EXPECT_EQ(Place().top, place.top);
}

INSTANTIATE_TEST_SUITE_P(Scales, LessRoomAtOneScaleTest, ::testing::Values(96));

}  // namespace
}  // namespace app
