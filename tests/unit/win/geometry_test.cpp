#include "win/geometry.h"

#include "tests/support/unit_test.h"

namespace win {
namespace {

TEST(GeometryTest, RoundsTwipsToTheNearestPixel) {
    struct Case {
        int twips;
        double perPixel;
        int pixels;
    };
    for (const Case& example : {Case{0, 15, 0},
                                {15, 15, 1},
                                {1320, 15, 88},
                                {7, 15, 0},
                                {8, 15, 1},
                                {22, 15, 1},
                                {23, 15, 2},
                                {-15, 15, -1},
                                {-7, 15, 0},
                                {-8, 15, -1},
                                {-1320, 15, -88},
                                {30, 12, 3},
                                {29, 12, 2},
                                {5, 1, 5},
                                // Twice the usual dots per inch.
                                {1320, 7.5, 176},
                                {-30, 7.5, -4},
                                {3, 7.5, 0},
                                {4, 7.5, 1}})
        EXPECT_EQ(ToPixels(example.twips, example.perPixel), example.pixels) << example.twips;
}

TEST(GeometryTest, CountsTheTwipsOfPixels) {
    EXPECT_EQ(ToTwips(88, 15), 1320);
    EXPECT_EQ(ToTwips(-2, 12), -24);
    for (int pixels = -50; pixels <= 50; ++pixels)
        for (const double perPixel : {15.0, 12.0, 10.0, 7.5, 1440.0 / 168})
            EXPECT_EQ(ToPixels(ToTwips(pixels, perPixel), perPixel), pixels) << perPixel;
}

TEST(GeometryTest, TakesTheTwipsPerPixelFromEachAxisOfTheScreen) {
    struct Case {
        int dpi;
        double twips;
    };
    for (const Case& example : {Case{96, 15}, {120, 12}, {144, 10}, {192, 7.5}, {1440, 1}, {0, 1440}}) {
        for (const int axis : {LOGPIXELSX, LOGPIXELSY}) {
            const testkit::RecordedCall caps =
                FAKE_CALL(GetDeviceCaps, [&](HDC, int index) { return index == axis ? example.dpi : 72; });
            const TwipsPerPixel twips = ScreenTwipsPerPixel();
            EXPECT_DOUBLE_EQ(axis == LOGPIXELSX ? twips.x : twips.y, example.twips) << example.dpi;
            EXPECT_DOUBLE_EQ(axis == LOGPIXELSX ? twips.y : twips.x, 20) << example.dpi;
        }
    }
}

TEST(GeometryTest, GivesTheScreenBack) {
    const testkit::RecordedCall get =
        FAKE_CALL(GetDC, [](HWND) { return reinterpret_cast<HDC>(INT_PTR{4711}); });
    int released = 0;
    const testkit::RecordedCall release = FAKE_CALL(ReleaseDC, [&](HWND window, HDC dc) {
        EXPECT_EQ(window, nullptr);
        EXPECT_EQ(dc, reinterpret_cast<HDC>(INT_PTR{4711}));
        ++released;
        return 1;
    });
    ScreenTwipsPerPixel();
    EXPECT_EQ(released, 1);
}

TEST(GeometryTest, MeasuresRectangles) {
    constexpr RECT kRect{-5, 10, 20, 40};
    EXPECT_EQ(Width(kRect), 25);
    EXPECT_EQ(Height(kRect), 30);
}

}  // namespace
}  // namespace win
