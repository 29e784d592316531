// The panel between two screens of different scales. Windows tells a window of another scale in the middle of
// the call that moves it, as soon as most of it lies on the other screen; a docked panel lies beyond its
// edge.

#include <shellscalingapi.h>

#include "app/screen_place.h"
#include "config/settings.h"
#include "res/resource.h"
#include "tests/unit/app/panel_harness.h"
#include "win/geometry.h"
#include "win/scale.h"

namespace app {
namespace {

constexpr int kNeighboursDpi = 144;

/// A screen of 150 % beyond one edge of the primary one, which has 100 %.
class TwoScreensTest : public ::testing::TestWithParam<int> {
  protected:
    TwoScreensTest() : width_(GetSystemMetrics(SM_CXSCREEN)), height_(GetSystemMetrics(SM_CYSCREEN)) {
        neighbour_ = {0, 0, width_, height_};
        OffsetRect(&neighbour_,
                   Edge() == kLeftEdge    ? -width_
                   : Edge() == kRightEdge ? width_
                                          : 0,
                   Edge() == kTopEdge      ? -height_
                   : Edge() == kBottomEdge ? height_
                                           : 0);
        calls_.push_back(
            FAKE_CALL(GetDpiForWindow, [this](HWND) -> UINT { return static_cast<UINT>(dpi_); }));
        calls_.push_back(
            FAKE_CALL(GetDpiForMonitor, [](HMONITOR, MONITOR_DPI_TYPE, UINT* across, UINT* down) {
                *across = *down = win::kPlainDpi;
                return HRESULT{S_OK};
            }));
        calls_.push_back(FAKE_CALL(
            AdjustWindowRectExForDpi,
            [](LPRECT rect, DWORD style, WINBOOL menu, DWORD extended, UINT) -> WINBOOL {
                return ORIGINAL_CALL(AdjustWindowRectExForDpi)(rect, style, menu, extended, win::kPlainDpi);
            }));
        calls_.push_back(FAKE_CALL(MonitorFromRect, [this](LPCRECT rect, DWORD otherwise) -> HMONITOR {
            const RECT primary{0, 0, width_, height_};
            RECT shared{};
            if (IsRectEmpty(&neighbour_) != 0 && otherwise == MONITOR_DEFAULTTONULL &&
                IntersectRect(&shared, rect, &primary) == FALSE)
                return nullptr;
            return IsOnNeighbour(*rect) ? kNeighbour : kPrimary;
        }));
        calls_.push_back(FAKE_CALL(GetMonitorInfoW, [this](HMONITOR monitor, LPMONITORINFO info) -> BOOL {
            info->rcMonitor = info->rcWork = monitor == kNeighbour ? neighbour_ : RECT{0, 0, width_, height_};
            return TRUE;
        }));
        panel_.Load();
        SetWindowSubclass(Panel(), &TwoScreensTest::Procedure, 1, reinterpret_cast<DWORD_PTR>(this));
        config::Settings.Edge = Edge();
    }
    ~TwoScreensTest() override { RemoveWindowSubclass(Panel(), &TwoScreensTest::Procedure, 1); }

    std::int32_t Edge() const { return GetParam(); }
    HWND Panel() const { return panel_.Window().Handle(); }
    RECT Place() const { return panel_.Window().Rect(); }

    /// As Show Quon and Close in the tray's menu, and the panel's own close button, do it.
    void BringOut() { panel_.Panel().ShowQuon(true, true); }
    void Close() { panel_.Window().Send(WM_SYSCOMMAND, SC_CLOSE); }
    /// As the user drags it.
    void MoveTo(POINT place) {
        SetWindowPos(Panel(), nullptr, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }

    void ExpectLaidOutFor(int dpi) const {
        const win::Scale scale(dpi, win::TextPercent());
        RECT client{};
        GetClientRect(Panel(), &client);
        EXPECT_EQ(client.right, scale(316));
        EXPECT_EQ(client.bottom, scale(363));
        const HWND button = GetDlgItem(GetDlgItem(Panel(), IDC_BUTTON_CONTAINER), IDC_BUTTON + 1);
        RECT place{};
        GetClientRect(button, &place);
        EXPECT_EQ(place.right, scale(102));
    }
    /// Nothing of the window is cut away, and it is not docked any more.
    void ExpectOut() const {
        RECT box{};
        EXPECT_EQ(GetWindowRgnBox(Panel(), &box), ERROR);
        EXPECT_EQ(SendMessageW(Panel(), WM_NCHITTEST, 0, MAKELPARAM(Place().left + 20, Place().top + 8)),
                  HTCAPTION);
    }
    /// Four pixels at the edge of the primary screen are all that can be seen.
    void ExpectDocked() const {
        RECT seen{};
        EXPECT_NE(GetWindowRgnBox(Panel(), &seen), ERROR);
        OffsetRect(&seen, Place().left, Place().top);
        const RECT primary{0, 0, width_, height_};
        RECT strip{};
        EXPECT_TRUE(IntersectRect(&strip, &seen, &primary));
        EXPECT_TRUE(EqualRect(&strip, &seen)) << "all of the strip is on the primary screen";
        const bool upright = Edge() == kLeftEdge || Edge() == kRightEdge;
        EXPECT_EQ(upright ? win::Width(strip) : win::Height(strip), 4);
        switch (Edge()) {
            case kLeftEdge: EXPECT_EQ(strip.left, 0); break;
            case kTopEdge: EXPECT_EQ(strip.top, 0); break;
            case kRightEdge: EXPECT_EQ(strip.right, width_); break;
            default: EXPECT_EQ(strip.bottom, height_); break;
        }
    }
    /// A place in the middle of the neighbour.
    POINT OnNeighbour() const {
        return {neighbour_.left + (width_ - win::Width(Place())) / 2, neighbour_.top + 40};
    }

    PanelHarness panel_;
    int width_;
    int height_;
    RECT neighbour_{};
    int told_ = 0;

  private:
    static inline const HMONITOR kPrimary = reinterpret_cast<HMONITOR>(1);
    static inline const HMONITOR kNeighbour = reinterpret_cast<HMONITOR>(2);

    bool IsOnNeighbour(const RECT& rect) const {
        return PtInRect(&neighbour_, {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2}) != 0;
    }

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                      DWORD_PTR data) {
        auto* self = reinterpret_cast<TwoScreensTest*>(data);
        const LRESULT answer = DefSubclassProc(window, message, wParam, lParam);
        if (message == WM_WINDOWPOSCHANGED) self->TellScale();
        return answer;
    }

    void TellScale() {
        RECT place = Place();
        const int dpi = IsOnNeighbour(place) ? kNeighboursDpi : win::kPlainDpi;
        if (dpi == dpi_) return;
        dpi_ = dpi;
        ++told_;
        SIZE size{};
        EXPECT_EQ(SendMessageW(Panel(), WM_GETDPISCALEDSIZE, static_cast<WPARAM>(dpi),
                               reinterpret_cast<LPARAM>(&size)),
                  TRUE);
        place.right = place.left + size.cx;
        place.bottom = place.top + size.cy;
        SendMessageW(Panel(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
    }

    int dpi_ = win::kPlainDpi;
    testkit::RecordedCalls calls_;
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
    EXPECT_NEAR((place.left + place.right) / 2, width_ / 2, 1);
    EXPECT_NEAR((place.top + place.bottom) / 2, height_ / 2, 1);
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
    EXPECT_NEAR((Place().left + Place().right) / 2, width_ / 2, 1);
    EXPECT_NEAR((Place().top + Place().bottom) / 2, height_ / 2, 1);
}

TEST_P(TwoScreensTest, ForetellsTheSizeThatItWillHave) {
    BringOut();
    SIZE size{};
    panel_.Window().Send(WM_GETDPISCALEDSIZE, kNeighboursDpi, reinterpret_cast<LPARAM>(&size));
    MoveTo(OnNeighbour());
    EXPECT_EQ(size.cx, win::Width(Place()));
    EXPECT_EQ(size.cy, win::Height(Place()));
}

INSTANTIATE_TEST_SUITE_P(Edges, TwoScreensTest,
                         ::testing::Values(kLeftEdge, kTopEdge, kRightEdge, kBottomEdge));

}  // namespace
}  // namespace app
