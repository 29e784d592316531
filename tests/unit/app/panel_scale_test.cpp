// The panel on another scale than the usual one, and while the scale, the text's size or the colours change.

#include <shellscalingapi.h>

#include <cwchar>

#include "config/settings.h"
#include "res/resource.h"
#include "tests/support/contrast_theme.h"
#include "tests/unit/app/panel_harness.h"
#include "win/colors.h"
#include "win/errors.h"
#include "win/geometry.h"
#include "win/scale.h"
#include "win/text.h"

namespace app {
namespace {

using ::testing::ElementsAre;
using testkit::RecordedCall;

constexpr const char* kRecords =
    "[Buttons]\r\n10=Main|first\r\n11=Notes|0\r\n[Cuts]\r\nNotes=C:\\windows\\notepad.exe\r\n";

/// The texts that are drawn while it lives.
class DrawnTexts {
  public:
    struct Drawn {
        std::string text;
        RECT place;
        COLORREF color;
        std::wstring face;
    };
    DrawnTexts()
        : draw_(FAKE_CALL(DrawTextExW, [this](HDC dc, LPWSTR text, int length, LPRECT place, UINT format,
                                              LPDRAWTEXTPARAMS params) {
              LOGFONTW font{};
              GetObjectW(GetCurrentObject(dc, OBJ_FONT), sizeof font, &font);
              texts_.push_back({win::ToBytes({text, static_cast<size_t>(length)}), *place, GetTextColor(dc),
                                font.lfFaceName});
              return ORIGINAL_CALL(DrawTextExW)(dc, text, length, place, format, params);
          })) {}
    DrawnTexts(const DrawnTexts&) = delete;
    DrawnTexts& operator=(const DrawnTexts&) = delete;

    std::vector<Drawn> Of(const std::string& text) const {
        std::vector<Drawn> found;
        std::copy_if(texts_.begin(), texts_.end(), std::back_inserter(found),
                     [&](const Drawn& drawn) { return drawn.text == text; });
        return found;
    }
    std::vector<COLORREF> ColorsOf(const std::string& text) const {
        std::vector<COLORREF> colors;
        for (const Drawn& drawn : Of(text))
            colors.push_back(drawn.color);
        return colors;
    }
    size_t Count() const { return texts_.size(); }

  private:
    std::vector<Drawn> texts_;
    RecordedCall draw_;
};

/// Another message font of the usual size, as long as it lives.
RecordedCall OtherFace(const wchar_t* face) {
    return FAKE_CALL(
        SystemParametersInfoForDpi, [face](UINT what, UINT size, PVOID value, UINT flags, UINT dpi) {
            const WINBOOL done = ORIGINAL_CALL(SystemParametersInfoForDpi)(what, size, value, flags, dpi);
            if (what == SPI_GETNONCLIENTMETRICS)
                wcscpy(static_cast<NONCLIENTMETRICSW*>(value)->lfMessageFont.lfFaceName, face);
            return done;
        });
}

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
        win::ForgetFonts();
    }

    /// What Windows sends when the panel comes onto a screen of another scale.
    void ChangeDpi(UINT dpi) {
        SetDpi(dpi);
        RECT place{200, 100, 900, 900};
        panel_.Window().Send(WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&place));
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

    PanelHarness panel_{"Main=1,False,True,False,False,False,False,3,False,False,False\r\n", kRecords};
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
    ChangeDpi(192);
    ExpectLayout(win::Scale(192, win::TextPercent()));
}

TEST_F(PanelScaleTest, DocksAnewWithAStripOfTheScale) {
    panel_.Load();
    const int screen = GetSystemMetrics(SM_CXSCREEN);
    EXPECT_EQ(panel_.Window().Rect().left, screen - 4);
    ChangeDpi(192);
    EXPECT_EQ(panel_.Window().Rect().left, screen - 8);
}

TEST_F(PanelScaleTest, KeepsTheFacesThatItHad) {
    panel_.Load();
    panel_.Log().Clear();
    const DrawnTexts drawn;
    ChangeDpi(144);
    EXPECT_EQ(panel_.Log().Count("write"), 0u) << "drawing a face stores nothing";
    const win::Scale scale(144, win::TextPercent());
    const auto notes = drawn.Of("Notes");
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_EQ(notes.front().place.left, scale(3));
    EXPECT_EQ(notes.front().place.top, scale(56));
    EXPECT_EQ(notes.front().place.right, scale(99));
    EXPECT_EQ(drawn.Of("Empty").size(), 8u);
}

TEST_F(PanelScaleTest, KeepsTheLabelsOfItsTabs) {
    panel_.Load();
    const DrawnTexts drawn;
    ChangeDpi(144);
    const win::Scale scale(144, win::TextPercent());
    const auto labels = drawn.Of("Main");
    ASSERT_EQ(labels.size(), 1u);
    const RECT expected = scale(RECT{3, 5, 48, 22});
    EXPECT_NE(EqualRect(&labels.front().place, &expected), 0);
}

TEST_F(PanelScaleTest, IsPaintedAnewWithAllItsParts) {
    panel_.Load();
    std::vector<UINT> redrawn;
    const RecordedCall redraw =
        FAKE_CALL(RedrawWindow, [&](HWND window, const RECT* part, HRGN region, UINT flags) -> WINBOOL {
            if (window == panel_.Panel().Handle() && part == nullptr && region == nullptr)
                redrawn.push_back(flags);
            return TRUE;
        });
    ChangeDpi(144);
    EXPECT_THAT(redrawn, ElementsAre(UINT{RDW_INVALIDATE | RDW_ALLCHILDREN}));
}

TEST_F(PanelScaleTest, FollowsAgainAfterAnErrorWhileItWasLaidOut) {
    static int reports;
    reports = 0;
    win::SetErrorReporter([](HWND, const char*) noexcept { ++reports; });
    panel_.Load();
    {
        const RecordedCall redraw =
            FAKE_CALL(RedrawWindow, []() -> WINBOOL { throw win::RuntimeError("no paint"); });
        ChangeDpi(144);
    }
    EXPECT_EQ(reports, 1);
    ChangeDpi(192);
    ExpectLayout(win::Scale(192, win::TextPercent()));
}

TEST_F(PanelScaleTest, TakesAnotherFaceOfTheSystemsText) {
    panel_.Load();
    const auto face = [](const DrawnTexts& drawn, const char* text) {
        const auto found = drawn.Of(text);
        return found.size() == 1 ? found.front().face : L"drawn " + std::to_wstring(found.size()) + L" times";
    };
    std::wstring usual;
    {
        const DrawnTexts drawn;
        panel_.Window().Send(WM_SYSCOLORCHANGE, 0, 0);
        usual = face(drawn, "Notes");
    }
    {
        const RecordedCall other = OtherFace(L"Courier New");
        const DrawnTexts drawn;
        panel_.Window().Send(WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
        EXPECT_EQ(face(drawn, "Notes"), L"Courier New");
        EXPECT_EQ(face(drawn, "Main"), L"Courier New");
    }
    const DrawnTexts drawn;
    panel_.Window().Send(WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
    EXPECT_EQ(face(drawn, "Notes"), usual);
    EXPECT_NE(usual, L"Courier New");
}

TEST_F(PanelScaleTest, StaysAsItIsWhenASettingChangesThatIsNotOfItsLook) {
    panel_.Load();
    const DrawnTexts drawn;
    panel_.Window().Send(WM_SETTINGCHANGE, SPI_SETDOUBLECLICKTIME, 0);
    EXPECT_EQ(drawn.Count(), 0u);
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
    const bool on = true;
    const RecordedCall contrast = testkit::ContrastThemeIs(on);
    constexpr COLORREF kText = RGB(1, 2, 3);
    const RecordedCall system = FAKE_CALL(GetSysColor, [](int index) -> DWORD {
        return index == COLOR_BTNTEXT ? kText : ORIGINAL_CALL(GetSysColor)(index);
    });
    const DrawnTexts drawn;
    panel_.Window().Send(WM_SETTINGCHANGE, SPI_SETHIGHCONTRAST, 0);
    EXPECT_THAT(drawn.ColorsOf("Main"), ElementsAre(kText));
    EXPECT_THAT(drawn.ColorsOf("Notes"), ElementsAre(kText));
}

TEST_F(PanelScaleTest, FollowsTheSystemsColoursWithoutATheme) {
    panel_.Load();
    constexpr COLORREF kText = RGB(1, 2, 3);
    const RecordedCall system = FAKE_CALL(GetSysColor, [](int index) -> DWORD {
        return index == COLOR_BTNTEXT ? kText : ORIGINAL_CALL(GetSysColor)(index);
    });
    const DrawnTexts drawn;
    panel_.Window().Send(WM_SYSCOLORCHANGE, 0, 0);
    EXPECT_THAT(drawn.ColorsOf("Main"), ElementsAre(win::PlainColor(win::Color::kLabel)));
    EXPECT_THAT(drawn.ColorsOf("Notes"), ElementsAre(kText));
}

}  // namespace
}  // namespace app
