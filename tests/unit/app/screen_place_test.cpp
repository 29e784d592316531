#include "app/screen_place.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "tests/support/recorded_call.h"

namespace app {
namespace {

constexpr RECT kArea{0, 0, 1024, 768};
constexpr int kCaption = 20;

bool Same(const RECT& one, const RECT& other) { return EqualRect(&one, &other) != FALSE; }

/// A window of 300 x 200 pixels at a place.
constexpr RECT WindowAt(LONG left, LONG top) { return {left, top, left + 300, top + 200}; }

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
