// The panel between two screens of different scales. Windows tells a window of another scale in the middle of
// the call that moves it, as soon as most of it lies on the other screen; a docked panel lies beyond its
// edge.
#pragma once

#include <shellscalingapi.h>

#include "app/screen_place.h"
#include "config/settings.h"
#include "res/resource.h"
#include "tests/support/unit_test.h"
#include "tests/unit/app/panel_harness.h"
#include "win/geometry.h"
#include "win/scale.h"
#include "win/text.h"

namespace app {

/// What two screens are like.
struct Screens {
    int primaryDpi = 96;
    int neighboursDpi = 144;
    std::int32_t neighboursEdge = kRightEdge;  ///< the edge of the primary screen that the neighbour is at
    LONG text = 12;                            ///< the height of the system's text at 96 dots per inch
    int neighboursTaskbar = 0;                 ///< how much of the neighbour's height the taskbar takes
};

/// The size of each of them.
constexpr SIZE kScreen{1600, 1000};

/// How far a rectangle is away from a point.
inline LONG Distance(const RECT& rect, POINT point) {
    return std::max(
        {rect.left - point.x, point.x - rect.right, rect.top - point.y, point.y - rect.bottom, 0L});
}

inline LONG SharedArea(const RECT& one, const RECT& other) {
    RECT shared{};
    return IntersectRect(&shared, &one, &other) == FALSE ? 0 : win::Width(shared) * win::Height(shared);
}

/// A screen beyond one edge of the primary one. Windows draws the panel's frame at the scale that it has
/// told.
class TwoScreens : public ::testing::Test {
  protected:
    TwoScreens(const Screens& screens, std::int32_t edge)
        : screens_(screens), neighbour_(primary_), dpi_(screens.primaryDpi) {
        const int across = win::Width(primary_);
        const int down = win::Height(primary_);
        switch (screens.neighboursEdge) {
            case kLeftEdge: OffsetRect(&neighbour_, -across, 0); break;
            case kTopEdge: OffsetRect(&neighbour_, 0, -down); break;
            case kRightEdge: OffsetRect(&neighbour_, across, 0); break;
            default: OffsetRect(&neighbour_, 0, down); break;
        }
        PlayScales();
        PlayScreens();
        win::ForgetTextSize();
        win::ForgetFonts();
        panel_.Load();
        SetWindowSubclass(Panel(), &TwoScreens::Procedure, 1, reinterpret_cast<DWORD_PTR>(this));
        DrawFrame();
        config::Settings.Edge = edge;
    }
    ~TwoScreens() override {
        RemoveWindowSubclass(Panel(), &TwoScreens::Procedure, 1);
        calls_.clear();
        win::ForgetTextSize();
        win::ForgetFonts();
    }

    HWND Panel() const { return panel_.Window().Handle(); }
    RECT Place() const { return panel_.Window().Rect(); }

    /// As Show Quon and Close in the tray's menu, and the panel's own close button, do it.
    void BringOut() { panel_.Panel().ShowQuon(true, true); }
    void Close() { panel_.Window().Send(WM_SYSCOMMAND, SC_CLOSE); }
    /// As the arrow keys with the Windows key do it.
    void MoveTo(POINT place) {
        SetWindowPos(Panel(), nullptr, place.x, place.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
    /// As the user drags it by the middle of its caption.
    void DragTo(LONG x) {
        pointer_ = POINT{(Place().left + Place().right) / 2, Place().top + 8};
        while (pointer_->x != x) {
            // What lies left and above of the pointer, which Windows keeps in the caption's middle.
            const POINT held{win::Width(Place()) / 2, pointer_->y - Place().top};
            pointer_->x += std::clamp(x - pointer_->x, -7L, 7L);
            MoveTo({pointer_->x - held.x, pointer_->y - held.y});
        }
        pointer_.reset();
        panel_.Window().Send(WM_EXITSIZEMOVE);
    }

    void ExpectLaidOutFor(const win::Scale& scale) const {
        RECT client{};
        GetClientRect(Panel(), &client);
        EXPECT_EQ(client.right, scale(316));
        EXPECT_EQ(client.bottom, scale(363));
        const HWND button = GetDlgItem(GetDlgItem(Panel(), IDC_BUTTON_CONTAINER), IDC_BUTTON + 1);
        RECT place{};
        GetClientRect(button, &place);
        EXPECT_EQ(place.right, scale(5 + 102) - scale(5));
    }
    void ExpectLaidOutFor(int dpi) const { ExpectLaidOutFor(win::Scale(dpi, win::TextPercent())); }
    /// Nothing of the window is cut away, and it is not docked any more.
    void ExpectOut() const {
        RECT box{};
        EXPECT_EQ(GetWindowRgnBox(Panel(), &box), ERROR);
        EXPECT_EQ(SendMessageW(Panel(), WM_NCHITTEST, 0, MAKELPARAM(Place().left + 20, Place().top + 8)),
                  HTCAPTION);
    }
    /// Four pixels at the edge of the primary screen are all that can be seen, or as many at its scale, and
    /// they belong to the panel itself.
    void ExpectDocked() const {
        RECT seen{};
        EXPECT_NE(GetWindowRgnBox(Panel(), &seen), ERROR);
        OffsetRect(&seen, Place().left, Place().top);
        RECT strip{};
        EXPECT_TRUE(IntersectRect(&strip, &seen, &primary_));
        EXPECT_TRUE(EqualRect(&strip, &seen)) << "all of the strip is on the primary screen";
        const std::int32_t edge = config::Settings.Edge;
        const bool upright = edge == kLeftEdge || edge == kRightEdge;
        EXPECT_EQ(upright ? win::Width(strip) : win::Height(strip), win::Scale(screens_.primaryDpi)(4));
        switch (edge) {
            case kLeftEdge: EXPECT_EQ(strip.left, 0); break;
            case kTopEdge: EXPECT_EQ(strip.top, 0); break;
            case kRightEdge: EXPECT_EQ(strip.right, primary_.right); break;
            default: EXPECT_EQ(strip.bottom, primary_.bottom); break;
        }
        ExpectNoChildIn(strip);
    }
    void ExpectNoChildIn(const RECT& strip) const {
        RECT client = panel_.Window().ClientRect();
        MapWindowPoints(Panel(), nullptr, reinterpret_cast<POINT*>(&client), 2);
        for (const testkit::Window child : panel_.Window().Descendants()) {
            // Its margins are cut away.
            if ((child.Style() & WS_VISIBLE) == 0 || child.Id() == IDC_BUTTON_CONTAINER) continue;
            const RECT place = child.Rect();
            RECT seen{};
            IntersectRect(&seen, &place, &client);
            EXPECT_EQ(SharedArea(seen, strip), 0) << child.Describe();
        }
    }
    /// A place in the middle of the neighbour.
    POINT OnNeighbour() const {
        return {neighbour_.left + (win::Width(neighbour_) - win::Width(Place())) / 2, neighbour_.top + 40};
    }
    /// The size that the panel has on the neighbour.
    SIZE Foretold() const {
        SIZE size{};
        EXPECT_EQ(panel_.Window().Send(WM_GETDPISCALEDSIZE, static_cast<WPARAM>(screens_.neighboursDpi),
                                       reinterpret_cast<LPARAM>(&size)),
                  TRUE);
        return size;
    }

    Screens screens_;
    PanelHarness panel_;
    const RECT primary_{0, 0, kScreen.cx, kScreen.cy};
    RECT neighbour_;
    std::optional<POINT> pointer_;  ///< while it drags the panel
    int told_ = 0;

  private:
    static inline const HMONITOR kPrimary = reinterpret_cast<HMONITOR>(1);
    static inline const HMONITOR kNeighbour = reinterpret_cast<HMONITOR>(2);

    void PlayScales() {
        calls_.push_back(
            FAKE_CALL(GetDpiForWindow, [this](HWND) -> UINT { return static_cast<UINT>(dpi_); }));
        calls_.push_back(
            FAKE_CALL(GetDpiForSystem, [this]() -> UINT { return static_cast<UINT>(screens_.primaryDpi); }));
        calls_.push_back(
            FAKE_CALL(GetDpiForMonitor,
                      [this](HMONITOR monitor, MONITOR_DPI_TYPE, UINT* across, UINT* down) -> HRESULT {
                          *across = *down = static_cast<UINT>(DpiOf(monitor));
                          return S_OK;
                      }));
        calls_.push_back(FAKE_CALL(
            AdjustWindowRectExForDpi,
            [](LPRECT rect, DWORD style, WINBOOL menu, DWORD extended, UINT dpi) -> WINBOOL {
                RECT frame{};
                ORIGINAL_CALL(AdjustWindowRectExForDpi)(&frame, style, menu, extended, win::kPlainDpi);
                const win::Scale scale(static_cast<int>(dpi));
                rect->left += scale(static_cast<int>(frame.left));
                rect->top += scale(static_cast<int>(frame.top));
                rect->right += scale(static_cast<int>(frame.right));
                rect->bottom += scale(static_cast<int>(frame.bottom));
                return TRUE;
            }));
        calls_.push_back(FAKE_CALL(
            SystemParametersInfoForDpi,
            [this](UINT what, UINT size, PVOID value, UINT flags, UINT dpi) -> WINBOOL {
                const WINBOOL done = ORIGINAL_CALL(SystemParametersInfoForDpi)(what, size, value, flags, dpi);
                if (what == SPI_GETNONCLIENTMETRICS)
                    static_cast<NONCLIENTMETRICSW*>(value)->lfMessageFont.lfHeight =
                        -MulDiv(screens_.text, static_cast<int>(dpi), win::kPlainDpi);
                return done;
            }));
    }

    void PlayScreens() {
        calls_.push_back(FAKE_CALL(GetSystemMetrics, [](int index) -> int {
            if (index == SM_CXSCREEN) return kScreen.cx;
            return index == SM_CYSCREEN ? kScreen.cy : ORIGINAL_CALL(GetSystemMetrics)(index);
        }));
        calls_.push_back(FAKE_CALL(MonitorFromRect, [this](LPCRECT rect, DWORD otherwise) -> HMONITOR {
            const bool beyond = SharedArea(*rect, primary_) + SharedArea(*rect, neighbour_) == 0;
            return beyond && otherwise == MONITOR_DEFAULTTONULL ? nullptr : MonitorOf(*rect);
        }));
        calls_.push_back(FAKE_CALL(MonitorFromWindow, [this](HWND window, DWORD) -> HMONITOR {
            return window == nullptr ? kPrimary : MonitorOf(testkit::Window(window).Rect());
        }));
        calls_.push_back(FAKE_CALL(MonitorFromPoint, [this](POINT point, DWORD) -> HMONITOR {
            return PtInRect(&neighbour_, point) != FALSE ? kNeighbour : kPrimary;
        }));
        calls_.push_back(FAKE_CALL(GetMonitorInfoW, [this](HMONITOR monitor, LPMONITORINFO info) -> BOOL {
            info->rcMonitor = info->rcWork = monitor == kNeighbour ? neighbour_ : primary_;
            if (monitor == kNeighbour) info->rcWork.bottom -= screens_.neighboursTaskbar;
            return TRUE;
        }));
        calls_.push_back(FAKE_CALL(GetCursorPos, [this](LPPOINT point) -> BOOL {
            if (!pointer_) return ORIGINAL_CALL(GetCursorPos)(point);
            *point = *pointer_;
            return TRUE;
        }));
    }

    int DpiOf(HMONITOR monitor) const {
        return monitor == kNeighbour ? screens_.neighboursDpi : screens_.primaryDpi;
    }

    /// The screen that most of a rectangle lies on, else the nearest one.
    HMONITOR MonitorOf(const RECT& rect) const {
        const LONG here = SharedArea(rect, primary_);
        const LONG there = SharedArea(rect, neighbour_);
        if (here != there) return there > here ? kNeighbour : kPrimary;
        if (here != 0 || IsRectEmpty(&neighbour_) != FALSE) return kPrimary;
        const POINT middle{(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
        return Distance(neighbour_, middle) < Distance(primary_, middle) ? kNeighbour : kPrimary;
    }

    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                      DWORD_PTR data) {
        auto* self = reinterpret_cast<TwoScreens*>(data);
        if (message == WM_NCCALCSIZE) {
            RECT frame{};
            win::AddFrame(frame, window);
            auto& place = *reinterpret_cast<RECT*>(lParam);
            place.left -= frame.left;
            place.top -= frame.top;
            place.right -= frame.right;
            place.bottom -= frame.bottom;
            return 0;
        }
        const LRESULT answer = DefSubclassProc(window, message, wParam, lParam);
        if (message == WM_WINDOWPOSCHANGED) self->TellScale();
        return answer;
    }

    void DrawFrame() {
        SetWindowPos(Panel(), nullptr, 0, 0, 0, 0,
                     SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    }

    void TellScale() {
        const RECT place = Place();
        const int dpi = DpiOf(MonitorOf(place));
        if (dpi == dpi_) return;
        SIZE size{};
        EXPECT_EQ(SendMessageW(Panel(), WM_GETDPISCALEDSIZE, static_cast<WPARAM>(dpi),
                               reinterpret_cast<LPARAM>(&size)),
                  TRUE);
        dpi_ = dpi;
        ++told_;
        DrawFrame();
        RECT suggested{place.left, place.top, 0, 0};
        // The pointer stays at the same part of the caption.
        if (pointer_) suggested.left = pointer_->x - (pointer_->x - place.left) * size.cx / win::Width(place);
        suggested.right = suggested.left + size.cx;
        suggested.bottom = suggested.top + size.cy;
        SendMessageW(Panel(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&suggested));
    }

    int dpi_;
    testkit::RecordedCalls calls_;
};

}  // namespace app
