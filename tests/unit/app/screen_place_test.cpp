#include "app/screen_place.h"

#include "tests/support/unit_test.h"

namespace app {
namespace {

constexpr RECT kArea{0, 0, 1024, 768};
constexpr int kCaption = 20;

bool Same(const RECT& one, const RECT& other) { return EqualRect(&one, &other) != FALSE; }

/// A window of 300 x 200 pixels at a place.
constexpr RECT WindowAt(LONG left, LONG top) { return {left, top, left + 300, top + 200}; }

struct Docking {
    std::int32_t edge;
    int left;
    int top;
};

// A window of 4800 x 5700 twips on a screen of 20480 x 11520 twips, 15 twips a pixel across, 12 down.
constexpr win::Twips kPanelSize{4800, 5700};
constexpr win::Twips kScreen{20480, 11520};
constexpr win::TwipsPerPixel kTwips{15, 12};

class DockedPositionTest : public ::testing::TestWithParam<Docking> {};

TEST_P(DockedPositionTest, LeavesAStripOfFourPixelsAtTheEdge) {
    const auto place = DockedPosition(GetParam().edge, kPanelSize, kScreen, kTwips);
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
        EXPECT_FALSE(DockedPosition(edge, kPanelSize, kScreen, kTwips)) << edge;
}

TEST(ScreenPlaceTest, CentresBySizesInTwips) {
    EXPECT_EQ(CentredPosition(kPanelSize, kScreen).x, 7840);
    EXPECT_EQ(CentredPosition(kPanelSize, kScreen).y, 2910);
    EXPECT_EQ(CentredPosition({400, 600}, {300, 400}).x, -50) << "a window wider than the screen";
    EXPECT_EQ(CentredPosition({400, 600}, {300, 400}).y, -100);
}

TEST(ScreenPlaceTest, TheStripIsWhatLiesOnTheScreenAtEachEdge) {
    EXPECT_TRUE(Same(StripOf(kLeftEdge, 300, 200), {296, 0, 300, 200}));
    EXPECT_TRUE(Same(StripOf(kTopEdge, 300, 200), {0, 196, 300, 200}));
    EXPECT_TRUE(Same(StripOf(kRightEdge, 300, 200), {0, 0, 4, 200}));
    EXPECT_TRUE(Same(StripOf(kBottomEdge, 300, 200), {0, 0, 300, 4}));
    EXPECT_TRUE(Same(StripOf(7, 300, 200), {0, 0, 300, 200}));
}

TEST(ScreenPlaceTest, ACaptionIsInReachWhereThereIsEnoughToDragItBy) {
    EXPECT_TRUE(CaptionInReach(WindowAt(100, 100), kCaption, kArea));
    // Across: 64 pixels of it, at either side.
    EXPECT_TRUE(CaptionInReach(WindowAt(-236, 100), kCaption, kArea));
    EXPECT_FALSE(CaptionInReach(WindowAt(-237, 100), kCaption, kArea));
    EXPECT_TRUE(CaptionInReach(WindowAt(960, 100), kCaption, kArea));
    EXPECT_FALSE(CaptionInReach(WindowAt(961, 100), kCaption, kArea));
    // Down: half of it.
    EXPECT_TRUE(CaptionInReach(WindowAt(100, -10), kCaption, kArea));
    EXPECT_FALSE(CaptionInReach(WindowAt(100, -11), kCaption, kArea));
    EXPECT_TRUE(CaptionInReach(WindowAt(100, 758), kCaption, kArea));
    EXPECT_FALSE(CaptionInReach(WindowAt(100, 759), kCaption, kArea));
    EXPECT_FALSE(CaptionInReach(WindowAt(2000, 2000), kCaption, kArea));
}

TEST(ScreenPlaceTest, WhatIsDraggedIsAsWideAtEveryScale) {
    constexpr win::Scale kDouble(192);
    EXPECT_TRUE(CaptionInReach(WindowAt(-172, 100), kCaption, kArea, kDouble));
    EXPECT_FALSE(CaptionInReach(WindowAt(-173, 100), kCaption, kArea, kDouble));
}

TEST(ScreenPlaceTest, ANarrowWindowNeedsNoMoreThanItsOwnWidth) {
    EXPECT_TRUE(CaptionInReach({0, 0, 40, 200}, kCaption, kArea));
    EXPECT_FALSE(CaptionInReach({-1, 0, 39, 200}, kCaption, kArea));
}

TEST(ScreenPlaceTest, AMonitorMayLieLeftOfThePrimaryOne) {
    constexpr RECT kLeft{-1280, 0, 0, 1024};
    EXPECT_TRUE(CaptionInReach(WindowAt(-900, 300), kCaption, kLeft));
    EXPECT_FALSE(CaptionInReach(WindowAt(-63, 300), kCaption, kLeft));
}

TEST(ScreenPlaceTest, IsPulledIntoAnAreaByTheShortestWay) {
    const auto pulled = [](const RECT& window, const RECT& area) {
        const POINT place = PulledInto(window, area);
        return std::pair(place.x, place.y);
    };
    EXPECT_EQ(pulled(WindowAt(900, 700), kArea), std::pair(724L, 568L));
    EXPECT_EQ(pulled(WindowAt(-50, -60), kArea), std::pair(0L, 0L));
    EXPECT_EQ(pulled(WindowAt(100, 700), kArea), std::pair(100L, 568L));
    EXPECT_EQ(pulled(WindowAt(10, 20), {50, 60, 150, 160}), std::pair(50L, 60L)) << "larger than the area";
}

/// A screen of 1024 x 768 with the taskbar at its top, and nothing else.
class MonitorTest : public ::testing::Test {
  protected:
    MonitorTest() {
        fakes_.push_back(FAKE_CALL(MonitorFromRect, [this](LPCRECT place, DWORD otherwise) -> HMONITOR {
            asked_ = *place;
            RECT common{};
            const bool there = IntersectRect(&common, place, &kArea) != FALSE;
            return there || otherwise == MONITOR_DEFAULTTONEAREST ? reinterpret_cast<HMONITOR>(1) : nullptr;
        }));
        fakes_.push_back(FAKE_CALL(GetMonitorInfoW, [this](HMONITOR, LPMONITORINFO info) {
            info->rcMonitor = kArea;
            info->rcWork = {0, 40, 1024, 768};
            return answers_;
        }));
    }

    RECT asked_{};
    BOOL answers_ = TRUE;
    testkit::RecordedCalls fakes_;
};

TEST_F(MonitorTest, TheOneThatShowsMostOfTheCaptionIsAskedFor) {
    EXPECT_TRUE(IsInReach(WindowAt(100, 100)));
    const LONG caption = GetSystemMetrics(SM_CYSMCAPTION) + GetSystemMetrics(SM_CYFIXEDFRAME);
    EXPECT_TRUE(Same(asked_, {100, 100, 400, 100 + caption}));
    // What is left of the window shows no caption to drag it by.
    EXPECT_FALSE(IsInReach(WindowAt(100, -150)));
    EXPECT_FALSE(IsInReach(WindowAt(2000, 100)));
}

TEST_F(MonitorTest, WhatTheTaskbarCoversCountsOnlyWhereItIsSaid) {
    EXPECT_TRUE(IsInReach(WindowAt(100, 5)));
    EXPECT_FALSE(IsInReachBesideTaskbar(WindowAt(100, 5)));
    EXPECT_TRUE(IsInReachBesideTaskbar(WindowAt(100, 40)));
}

TEST_F(MonitorTest, ThePlaceInReachLiesBesideTheTaskbar) {
    EXPECT_EQ(PlaceInReach(WindowAt(100, 5)).y, 40);
    EXPECT_EQ(PlaceInReach(WindowAt(3000, 100)).x, 724);
}

TEST_F(MonitorTest, OneThatTellsNothingChangesNothing) {
    answers_ = FALSE;
    EXPECT_FALSE(IsInReach(WindowAt(100, 100)));
    EXPECT_EQ(PlaceInReach(WindowAt(3000, 100)).x, 3000);
}

}  // namespace
}  // namespace app
