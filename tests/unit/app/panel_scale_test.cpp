// The panel on another scale than the usual one, and while the scale, the text's size or the colours change.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <shellscalingapi.h>

#include <vector>

#include "config/settings.h"
#include "res/resource.h"
#include "tests/support/recorded_call.h"
#include "tests/support/window.h"
#include "tests/unit/app/panel_harness.h"
#include "win/colors.h"
#include "win/geometry.h"
#include "win/scale.h"
#include "win/text.h"

namespace app {
namespace {

using ::testing::Contains;
using ::testing::Not;
using testkit::RecordedCall;

RECT ClientPlace(HWND child, HWND parent) {
    RECT place{};
    GetWindowRect(child, &place);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

class PanelScaleTest : public ::testing::Test {
  protected:
    ~PanelScaleTest() override {
        win::ForgetTextSize();
        win::ForgetColors();
    }

    void SetDpi(UINT dpi) {
        calls_.push_back(FAKE_CALL(GetDpiForWindow, [dpi](HWND) -> UINT { return dpi; }));
        calls_.push_back(
            FAKE_CALL(GetDpiForMonitor, [dpi](HMONITOR, MONITOR_DPI_TYPE, UINT* across, UINT* down) {
                *across = *down = dpi;
                return HRESULT{S_OK};
            }));
        calls_.push_back(FAKE_CALL(GetDpiForSystem, [dpi]() -> UINT { return dpi; }));
        // The frames here are those of the desktop that the test runs on.
        calls_.push_back(FAKE_CALL(
            AdjustWindowRectExForDpi,
            [](LPRECT rect, DWORD style, WINBOOL menu, DWORD extended, UINT) -> WINBOOL {
                return ORIGINAL_CALL(AdjustWindowRectExForDpi)(rect, style, menu, extended, win::kPlainDpi);
            }));
    }

    /// Everything at its place of the layout, scaled.
    void ExpectLayout(const win::Scale& scale) {
        const HWND panel = panel_.Panel().Handle();
        RECT client{};
        GetClientRect(panel, &client);
        EXPECT_EQ(client.right, scale(316));
        EXPECT_EQ(client.bottom, scale(363));
        const RECT container = ClientPlace(GetDlgItem(panel, IDC_BUTTON_CONTAINER), panel);
        EXPECT_EQ(container.top, scale(88));
        const HWND button = GetDlgItem(GetDlgItem(panel, IDC_BUTTON_CONTAINER), IDC_BUTTON + 5);
        const RECT place = ClientPlace(button, GetParent(button));
        EXPECT_EQ(place.left, scale(5 + 102));
        EXPECT_EQ(place.top, scale(90));
        EXPECT_EQ(place.right, scale(5 + 2 * 102));
        EXPECT_EQ(place.bottom, scale(180));
        const RECT header = ClientPlace(GetDlgItem(panel, IDC_TAB_HEADER + 6), panel);
        EXPECT_EQ(header.left, scale(5 + 5 * 51));
        EXPECT_EQ(header.bottom, scale(87));
        const RECT image = ClientPlace(GetDlgItem(panel, IDC_IMAGE_BUTTON + 2), panel);
        EXPECT_EQ(image.right, scale(5 + 60 + 28));
        const RECT list = ClientPlace(GetDlgItem(panel, IDC_SHORTCUTS), panel);
        EXPECT_EQ(list.left, scale(5));
        const RECT go = ClientPlace(GetDlgItem(panel, IDC_IMAGE_BUTTON + 3), panel);
        EXPECT_EQ(list.top, go.top);
        EXPECT_EQ(list.bottom, go.bottom) << "the closed list is as high as the button beside it";
        for (const int id : {IDC_SHORTCUTS, IDC_RENAME})
            EXPECT_EQ(SendMessageW(GetDlgItem(panel, id), WM_GETFONT, 0, 0),
                      reinterpret_cast<LRESULT>(win::MessageFont(scale)));
    }

    PanelHarness panel_{"Main=1,False,True,False,False,False,False,3,False,False,False\r\n"};
    testkit::RecordedCalls calls_;
};

TEST_F(PanelScaleTest, IsLaidOutAtTheScaleOfItsScreen) {
    SetDpi(144);
    panel_.Load();
    ExpectLayout(win::Scale(144, win::TextPercent()));
}

TEST_F(PanelScaleTest, FollowsAChangeOfTheScale) {
    panel_.Load();
    ExpectLayout(win::Scale(96, win::TextPercent()));
    SetDpi(192);
    RECT place{200, 100, 900, 900};
    panel_.Window().Send(WM_DPICHANGED, MAKEWPARAM(192, 192), reinterpret_cast<LPARAM>(&place));
    ExpectLayout(win::Scale(192, win::TextPercent()));
}

TEST_F(PanelScaleTest, DocksAnewWithAStripOfTheScale) {
    panel_.Load();
    const int screen = GetSystemMetrics(SM_CXSCREEN);
    EXPECT_EQ(panel_.Window().Rect().left, screen - 4);
    SetDpi(192);
    RECT place{200, 100, 900, 900};
    panel_.Window().Send(WM_DPICHANGED, MAKEWPARAM(192, 192), reinterpret_cast<LPARAM>(&place));
    EXPECT_EQ(panel_.Window().Rect().left, screen - 8);
}

TEST_F(PanelScaleTest, KeepsTheFacesThatItHad) {
    panel_.Load();
    panel_.Log().Clear();
    SetDpi(144);
    RECT place{200, 100, 900, 900};
    panel_.Window().Send(WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&place));
    EXPECT_EQ(panel_.Log().Count("write"), 0u) << "drawing a face stores nothing";
    const HWND button = GetDlgItem(GetDlgItem(panel_.Panel().Handle(), IDC_BUTTON_CONTAINER), IDC_BUTTON + 1);
    EXPECT_EQ(win::WindowText(button), "Empty");
}

TEST_F(PanelScaleTest, GrowsWithTheSizeOfTheSystemsText) {
    panel_.Load();
    {
        const RecordedCall larger = FAKE_CALL(
            SystemParametersInfoForDpi, [](UINT what, UINT size, PVOID value, UINT flags, UINT dpi) {
                const WINBOOL done = ORIGINAL_CALL(SystemParametersInfoForDpi)(what, size, value, flags, dpi);
                if (what == SPI_GETNONCLIENTMETRICS)
                    static_cast<NONCLIENTMETRICSW*>(value)->lfMessageFont.lfHeight =
                        -MulDiv(18, static_cast<int>(dpi), 96);
                return done;
            });
        panel_.Window().Send(WM_SETTINGCHANGE, 0, 0);
        ExpectLayout(win::Scale(96, 150));
    }
    panel_.Window().Send(WM_SETTINGCHANGE, 0, 0);
    ExpectLayout(win::Scale(96, win::TextPercent()));
}

TEST_F(PanelScaleTest, DrawsInTheThemesColoursWhenOneIsSwitchedOn) {
    panel_.Load();
    const RecordedCall contrast =
        FAKE_CALL(SystemParametersInfoW, [](UINT what, UINT size, PVOID value, UINT flags) -> WINBOOL {
            if (what != SPI_GETHIGHCONTRAST)
                return ORIGINAL_CALL(SystemParametersInfoW)(what, size, value, flags);
            static_cast<HIGHCONTRASTW*>(value)->dwFlags = HCF_HIGHCONTRASTON;
            return TRUE;
        });
    constexpr COLORREF kText = RGB(1, 2, 3);
    const RecordedCall system = FAKE_CALL(GetSysColor, [](int index) -> DWORD {
        return index == COLOR_BTNTEXT ? kText : ORIGINAL_CALL(GetSysColor)(index);
    });
    std::vector<COLORREF> used;
    const RecordedCall color = WATCH_CALL(SetTextColor, [&](HDC, COLORREF text) { used.push_back(text); });
    panel_.Window().Send(WM_SETTINGCHANGE, SPI_SETHIGHCONTRAST, 0);
    EXPECT_THAT(used, Contains(kText));
    EXPECT_THAT(used, Not(Contains(win::PlainColor(win::Color::kLabel))));
}

}  // namespace
}  // namespace app
