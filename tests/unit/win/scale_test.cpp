#include "win/scale.h"

#include <shellscalingapi.h>

#include "tests/support/unit_test.h"

namespace win {
namespace {

TEST(ScaleTest, ChangesNothingAtTheUsualScale) {
    constexpr Scale kScale;
    for (int length = -400; length <= 400; ++length) {
        EXPECT_EQ(kScale(length), length);
        EXPECT_EQ(kScale.ToLayout(length), length);
        EXPECT_EQ(kScale.FromTwips(15 * length), length);
        EXPECT_EQ(kScale.ToTwips(length), 15 * length);
    }
}

TEST(ScaleTest, RoundsToTheNearestPixel) {
    EXPECT_EQ(Scale(192)(51), 102);
    EXPECT_EQ(Scale(144)(51), 77);  // 76.5
    EXPECT_EQ(Scale(120)(51), 64);  // 63.75
    EXPECT_EQ(Scale(120)(-51), -64);
    EXPECT_EQ(Scale(168)(4), 7);
    EXPECT_EQ(Scale(96, 150)(102), 153);
    EXPECT_EQ(Scale(192, 125)(4), 10);
}

TEST(ScaleTest, LeavesNoLengthWithoutAPixel) {
    EXPECT_EQ(Scale(24)(1), 1);
    EXPECT_EQ(Scale(24)(-1), -1);
    EXPECT_EQ(Scale(24)(0), 0);
}

TEST(ScaleTest, KeepsTogetherWhatTouches) {
    for (const int dpi : {96, 120, 144, 168, 192, 216}) {
        const Scale scale(dpi);
        for (int column = 0; column < 6; ++column) {
            const RECT left = scale(RECT{5 + 51 * column, 0, 5 + 51 * (column + 1), 24});
            const RECT right = scale(RECT{5 + 51 * (column + 1), 0, 5 + 51 * (column + 2), 24});
            EXPECT_EQ(left.right, right.left) << dpi;
        }
    }
}

TEST(ScaleTest, CountsFifteenTwipsToALayoutPixel) {
    EXPECT_EQ(Scale(192).FromTwips(1365), 182);
    EXPECT_EQ(Scale(192).FromTwips(45), 6);
    EXPECT_EQ(Scale(144).FromTwips(250), 25);
    EXPECT_EQ(Scale(192).ToTwips(182), 1365);
    EXPECT_EQ(Scale(192).ToTwips(1), 8);  // 7.5
}

TEST(ScaleTest, GoesBackToTheLayout) {
    for (const int dpi : {96, 120, 144, 168, 192, 216, 288})
        for (int length = 0; length <= 400; ++length)
            EXPECT_EQ(Scale(dpi).ToLayout(Scale(dpi)(length)), length) << dpi;
}

TEST(ScaleTest, IsThatOfTheWindowsScreenAndOfTheText) {
    const HWND window = GetDesktopWindow();
    HWND asked = nullptr;
    const testkit::RecordedCall dpi = FAKE_CALL(GetDpiForWindow, [&](HWND of) -> UINT {
        asked = of;
        return 144;
    });
    const testkit::RecordedCall system = ANSWER_CALL(GetDpiForSystem, 120);
    EXPECT_EQ(Scale::Of(window), Scale(144, TextPercent()));
    EXPECT_EQ(asked, window);
    EXPECT_EQ(Scale::Of(nullptr), Scale(120, TextPercent()));
}

TEST(ScaleTest, IsTheUsualOneForAWindowThatIsGone) {
    const testkit::RecordedCall dpi = ANSWER_CALL(GetDpiForWindow, 0);
    EXPECT_EQ(Scale::Of(GetDesktopWindow()).Dpi(), kPlainDpi);
}

TEST(ScaleTest, FollowsTheHeightOfTheMessageFont) {
    struct Case {
        LONG height;
        int percent;
    };
    for (const Case& example :
         {Case{-12, 100}, {-11, 100}, {-15, 125}, {-18, 150}, {-24, 200}, {-27, 225}, {-60, 225}, {0, 100}}) {
        const testkit::RecordedCall ask = FAKE_CALL(
            SystemParametersInfoForDpi, [&](UINT what, UINT, PVOID record, UINT, UINT dpi) -> WINBOOL {
                EXPECT_EQ(what, SPI_GETNONCLIENTMETRICS);
                EXPECT_EQ(dpi, static_cast<UINT>(kPlainDpi));
                static_cast<NONCLIENTMETRICSW*>(record)->lfMessageFont.lfHeight = example.height;
                return TRUE;
            });
        ForgetTextSize();
        EXPECT_EQ(TextPercent(), example.percent) << example.height;
    }
    ForgetTextSize();
    int asked = 0;
    const testkit::RecordedCall refuse = FAKE_CALL(SystemParametersInfoForDpi, [&]() -> WINBOOL {
        ++asked;
        return FALSE;
    });
    EXPECT_EQ(TextPercent(), 100);
    EXPECT_EQ(TextPercent(), 100);
    EXPECT_EQ(asked, 1);
    ForgetTextSize();
}

TEST(ScaleTest, AddsTheFrameOfTheScale) {
    UINT asked = 0;
    const testkit::RecordedCall adjust =
        FAKE_CALL(AdjustWindowRectExForDpi,
                  [&](LPRECT rect, DWORD style, WINBOOL menu, DWORD extended, UINT dpi) -> WINBOOL {
                      EXPECT_EQ(style, WS_CAPTION);
                      EXPECT_EQ(menu, FALSE);
                      EXPECT_EQ(extended, WS_EX_TOOLWINDOW);
                      asked = dpi;
                      InflateRect(rect, 3, 3);
                      return TRUE;
                  });
    RECT rect{0, 0, 10, 10};
    AddFrame(rect, WS_CAPTION, WS_EX_TOOLWINDOW, 144);
    EXPECT_EQ(asked, 144U);
    EXPECT_EQ(rect.right, 13);
    EXPECT_EQ(rect.left, -3);
}

TEST(ScaleTest, HasNoMoreOfTheTextsSizeThanTheScreenHasRoomFor) {
    const HWND window = GetDesktopWindow();
    int dots = 144;
    LONG text = -27;
    int looked = 0;
    const testkit::RecordedCall dpi =
        FAKE_CALL(GetDpiForWindow, [&](HWND) { return static_cast<UINT>(dots); });
    const testkit::RecordedCall metrics =
        FAKE_CALL(SystemParametersInfoForDpi, [&](UINT, UINT, PVOID record, UINT, UINT asked) -> WINBOOL {
            static_cast<NONCLIENTMETRICSW*>(record)->lfMessageFont.lfHeight =
                MulDiv(text, static_cast<int>(asked), kPlainDpi);
            return TRUE;
        });
    const testkit::RecordedCall frame =
        FAKE_CALL(AdjustWindowRectExForDpi, [](LPRECT rect, DWORD, WINBOOL, DWORD, UINT) -> WINBOOL {
            rect->top -= 40;
            return TRUE;
        });
    const testkit::RecordedCall monitor =
        FAKE_CALL(GetMonitorInfoW, [&](HMONITOR, LPMONITORINFO info) -> BOOL {
            ++looked;
            info->rcMonitor = {0, 0, 1366, 768};
            info->rcWork = {0, 40, 1366, 768};
            return TRUE;
        });
    FitTextTo(0);
    ForgetTextSize();
    EXPECT_EQ(Scale::Of(window), Scale(144, 225));
    FitTextTo(363);
    // 688 pixels for 363 x 1.5.
    EXPECT_EQ(Scale::Of(window), Scale(144, 126));
    EXPECT_LE(Scale::Of(window)(363), 688);
    EXPECT_EQ(Scale::On(nullptr, 144), Scale(144, 126)) << "also of a screen that no window is on";
    dots = 96;
    EXPECT_EQ(Scale::Of(window), Scale(96, 189));
    dots = 192;
    EXPECT_EQ(Scale::Of(window), Scale(192, 100)) << "never smaller than usual";
    text = -12;
    ForgetTextSize();
    looked = 0;
    EXPECT_EQ(Scale::Of(window), Scale(192, 100));
    EXPECT_EQ(Scale::On(nullptr, 192), Scale(192, 100));
    EXPECT_EQ(looked, 0) << "text of the usual size asks nothing more";
    FitTextTo(0);
    ForgetTextSize();
}

TEST(ScaleTest, TellsThePrimaryScreensScaleAsItIsNow) {
    const testkit::RecordedCall monitor =
        FAKE_CALL(GetDpiForMonitor, [](HMONITOR, MONITOR_DPI_TYPE, UINT* across, UINT* down) {
            *across = *down = 168;
            return HRESULT{S_OK};
        });
    const testkit::RecordedCall system = FAKE_CALL(GetDpiForSystem, []() -> UINT { return 120; });
    EXPECT_EQ(PrimaryDpi(), 168);
    const testkit::RecordedCall refused = FAKE_CALL(
        GetDpiForMonitor, [](HMONITOR, MONITOR_DPI_TYPE, UINT*, UINT*) { return HRESULT{E_INVALIDARG}; });
    EXPECT_EQ(PrimaryDpi(), 120);
}

}  // namespace
}  // namespace win
