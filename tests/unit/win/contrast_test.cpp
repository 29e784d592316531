// Whether every text can be read on its ground, in the ordinary colours and in the contrast themes of
// Windows.

#include <cmath>

#include "tests/support/contrast_theme.h"
#include "tests/support/unit_test.h"
#include "win/colors.h"

namespace win {
namespace {

/// How bright a colour is, 0 to 1, weighed as the eye does (WCAG's relative luminance).
double Luminance(COLORREF color) {
    const auto linear = [](BYTE channel) {
        const double value = channel / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(GetRValue(color)) + 0.7152 * linear(GetGValue(color)) +
           0.0722 * linear(GetBValue(color));
}

/// The contrast of two colours, 1 to 21, whichever of them is the text.
double Contrast(COLORREF one, COLORREF other) {
    const double brighter = std::max(Luminance(one), Luminance(other));
    const double darker = std::min(Luminance(one), Luminance(other));
    return (brighter + 0.05) / (darker + 0.05);
}

TEST(ContrastTest, IsThatOfTheKnownPairs) {
    EXPECT_NEAR(Contrast(RGB(0, 0, 0), RGB(255, 255, 255)), 21, 0.005);
    EXPECT_NEAR(Contrast(RGB(255, 255, 255), RGB(0, 0, 0)), 21, 0.005);
    EXPECT_NEAR(Contrast(RGB(0x76, 0x76, 0x76), RGB(255, 255, 255)), 4.54, 0.005);
    EXPECT_NEAR(Contrast(RGB(255, 0, 0), RGB(255, 255, 255)), 4, 0.005);
    EXPECT_NEAR(Contrast(RGB(1, 2, 3), RGB(1, 2, 3)), 1, 0.005);
}

struct Theme {
    /// Of the colours that a theme brings, in the order of kElements; those of tips may be missing.
    Theme(const char* theme, bool isContrast, const std::vector<COLORREF>& published)
        : name(theme), contrast(isContrast) {
        for (std::size_t at = 0; at < published.size(); ++at)
            colors[kElements.at(at)] = published[at];
    }

    static constexpr std::array kElements{COLOR_WINDOW,   COLOR_WINDOWTEXT, COLOR_BTNFACE,
                                          COLOR_BTNTEXT,  COLOR_HIGHLIGHT,  COLOR_HIGHLIGHTTEXT,
                                          COLOR_HOTLIGHT, COLOR_INFOBK,     COLOR_INFOTEXT};
    const char* name;
    bool contrast;
    std::map<int, COLORREF> colors;
};

/// The colours that Windows 10 and 11 bring, as far as the program's texts and their grounds go and the
/// colours are published; those of tips are not for the last four, which are Windows 11's.
const std::vector<Theme>& Themes() {
    constexpr COLORREF kBlack = RGB(0, 0, 0);
    constexpr COLORREF kWhite = RGB(255, 255, 255);
    constexpr COLORREF kYellow = RGB(255, 255, 0);
    constexpr COLORREF kGreen = RGB(0, 255, 0);
    static const std::vector<Theme> themes{
        {"ordinary",
         false,
         {kWhite, kBlack, RGB(240, 240, 240), kBlack, RGB(0, 120, 215), kWhite, RGB(0, 102, 204),
          RGB(255, 255, 225), kBlack}},
        {"High Contrast #1",
         true,
         {kBlack, kYellow, kBlack, kYellow, RGB(0, 128, 0), kWhite, RGB(128, 128, 255), kBlack, kYellow}},
        {"High Contrast #2",
         true,
         {kBlack, kGreen, kBlack, kGreen, RGB(0, 0, 255), kWhite, RGB(128, 128, 255), kBlack, kGreen}},
        {"High Contrast Black",
         true,
         {kBlack, kWhite, kBlack, kWhite, RGB(26, 235, 255), kBlack, kYellow, kBlack, kWhite}},
        {"High Contrast White",
         true,
         {kWhite, kBlack, kWhite, kBlack, RGB(55, 0, 110), kWhite, RGB(0, 0, 159), kWhite, kBlack}},
        {"Aquatic",
         true,
         {RGB(0x20, 0x20, 0x20), kWhite, RGB(0x20, 0x20, 0x20), kWhite, RGB(0x8E, 0xE3, 0xF0),
          RGB(0x26, 0x3B, 0x50), RGB(0x75, 0xE9, 0xFC)}},
        {"Desert",
         true,
         {RGB(0xFF, 0xFA, 0xEF), RGB(0x3D, 0x3D, 0x3D), RGB(0xFF, 0xFA, 0xEF), RGB(0x20, 0x20, 0x20),
          RGB(0x90, 0x39, 0x09), RGB(0xFF, 0xF5, 0xE3), RGB(0x1C, 0x5E, 0x75)}},
        {"Dusk",
         true,
         {RGB(0x2D, 0x32, 0x36), kWhite, RGB(0x2D, 0x32, 0x36), RGB(0xB6, 0xF6, 0xF0), RGB(0xA1, 0xBF, 0xDE),
          RGB(0x21, 0x2D, 0x3B), RGB(0x70, 0xEB, 0xDE)}},
        {"Night sky",
         true,
         {kBlack, kWhite, kBlack, RGB(0xFF, 0xEE, 0x32), RGB(0xD6, 0xB4, 0xFD), RGB(0x2B, 0x2B, 0x2B),
          RGB(0x80, 0x80, 0xFF)}}};
    return themes;
}

/// A theme as long as it lives.
class ScopedTheme {
  public:
    explicit ScopedTheme(const Theme& theme)
        : colors_(FAKE_CALL(GetSysColor, [&theme](int index) -> DWORD { return theme.colors.at(index); })),
          contrast_(testkit::ContrastThemeIs(theme.contrast)) {
        ForgetColors();
    }
    ~ScopedTheme() { ForgetColors(); }
    ScopedTheme(const ScopedTheme&) = delete;
    ScopedTheme& operator=(const ScopedTheme&) = delete;

  private:
    testkit::RecordedCall colors_;
    testkit::RecordedCall contrast_;
};

/// A text or its ground: one of the program's colours, or one of the system's.
class Paint {
  public:
    Paint(Color color) : color_(color) {}             // NOLINT(google-explicit-constructor)
    Paint(int systemColor) : system_(systemColor) {}  // NOLINT(google-explicit-constructor)
    bool IsWindows() const { return !color_; }
    COLORREF Now() const { return color_ ? ColorOf(*color_) : GetSysColor(system_); }

  private:
    std::optional<Color> color_;
    int system_ = 0;
};

struct Pair {
    const char* what;
    Paint text;
    Paint ground;
};

/// All texts that the program draws in colours of its own, or on grounds of its own.
const std::vector<Pair>& Pairs() {
    static const std::vector<Pair> pairs{
        {"the name in the panel's head", Color::kLabel, COLOR_BTNFACE},
        {"a tab's label", Color::kLabel, COLOR_BTNFACE},
        {"a button's name and mark", COLOR_BTNTEXT, COLOR_BTNFACE},
        {"a link", Color::kLink, COLOR_BTNFACE},
        {"a label", COLOR_BTNTEXT, COLOR_BTNFACE},
        {"a row's name", COLOR_WINDOWTEXT, Color::kEvenRow},
        {"an odd row's name", COLOR_WINDOWTEXT, Color::kOddRow},
        {"a row's target", Color::kRemark, Color::kEvenRow},
        {"an odd row's target", Color::kRemark, Color::kOddRow},
        {"the selected row", COLOR_HIGHLIGHTTEXT, COLOR_HIGHLIGHT},
        {"a free name", Color::kFree, COLOR_WINDOW},
        {"a free name in the colour of its row", Color::kFree, Color::kOddRow},
        {"a target in the colour of its row", COLOR_WINDOWTEXT, Color::kOddRow},
    };
    return pairs;
}

constexpr double kReadable = 4.5;
/// Windows' own highlight falls short of it by a thousandth.
constexpr double kReadableOfWindows = 4.495;

TEST(ContrastTest, EveryTextCanBeReadInEveryTheme) {
    for (const Theme& theme : Themes()) {
        const ScopedTheme scoped(theme);
        for (const Pair& pair : Pairs())
            EXPECT_GE(Contrast(pair.text.Now(), pair.ground.Now()),
                      pair.text.IsWindows() && pair.ground.IsWindows() ? kReadableOfWindows : kReadable)
                << theme.name << ": " << pair.what;
    }
}

TEST(ContrastTest, TheSelectedRowOfAListWithoutTheFocusCanBeRead) {
    for (const Theme& theme : Themes()) {
        const ScopedTheme scoped(theme);
        // Under a contrast theme its bar is the highlight, so its texts are those of the highlight.
        const std::vector<COLORREF> texts =
            theme.contrast ? std::vector<COLORREF>{GetSysColor(COLOR_HIGHLIGHTTEXT)}
                           : std::vector<COLORREF>{GetSysColor(COLOR_WINDOWTEXT), ColorOf(Color::kRemark)};
        for (const COLORREF text : texts)
            EXPECT_GE(Contrast(text, ColorOf(Color::kQuietBar)), kReadable) << theme.name;
    }
}

TEST(ContrastTest, TipsCanBeReadWithTheSystemsTextOnTheirGround) {
    for (const Theme& theme : Themes()) {
        if (!theme.colors.contains(COLOR_INFOBK)) continue;
        const ScopedTheme scoped(theme);
        EXPECT_GE(Contrast(GetSysColor(COLOR_INFOTEXT), ColorOf(Color::kTipGround)), kReadable) << theme.name;
    }
}

/// The red of a name that exists is the one that users of the ordinary colours know, and the warning beside
/// it says the same. Everywhere else it can be read.
TEST(ContrastTest, ATakenNameIsTheOneExceptionAndOnlyInTheOrdinaryColours) {
    for (const Theme& theme : Themes()) {
        const ScopedTheme scoped(theme);
        const double onWhite = Contrast(ColorOf(Color::kTaken), GetSysColor(COLOR_WINDOW));
        const double onOdd = Contrast(ColorOf(Color::kTaken), ColorOf(Color::kOddRow));
        if (theme.contrast) {
            EXPECT_GE(onWhite, kReadable) << theme.name;
            EXPECT_GE(onOdd, kReadable) << theme.name;
        } else {
            EXPECT_EQ(ColorOf(Color::kTaken), COLORREF{255});
            EXPECT_NEAR(onWhite, 4, 0.005);
            EXPECT_NEAR(onOdd, 3.6, 0.05);
        }
    }
}

}  // namespace
}  // namespace win
