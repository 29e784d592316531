// No caption is cut, whatever the screen's scale and the size of the text.
#include "tests/support/caption_room.h"

#include "res/resource.h"
#include "tests/unit/app/every_window.h"
#include "tests/unit/app/panel_harness.h"
#include "win/handles.h"
#include "win/scale.h"
#include "win/text.h"

namespace app {
namespace {

using testkit::Window;

/// A text of another size, and a screen of another scale, as long as it lives. The dialogs' templates know of
/// the text's size only: Windows scales them itself by the screen that the test has.
class ScopedLook {
  public:
    ScopedLook(int dpi, int textHeight) {
        calls_.push_back(FAKE_CALL(GetDpiForWindow, [dpi](HWND) { return static_cast<UINT>(dpi); }));
        calls_.push_back(FAKE_CALL(GetDpiForSystem, [dpi] { return static_cast<UINT>(dpi); }));
        calls_.push_back(FAKE_CALL(
            AdjustWindowRectExForDpi,
            [](LPRECT rect, DWORD style, WINBOOL menu, DWORD extended, UINT) -> WINBOOL {
                return ORIGINAL_CALL(AdjustWindowRectExForDpi)(rect, style, menu, extended, win::kPlainDpi);
            }));
        calls_.push_back(
            FAKE_CALL(SystemParametersInfoForDpi,
                      [textHeight](UINT what, UINT size, PVOID value, UINT flags, UINT screen) -> WINBOOL {
                          const WINBOOL done =
                              ORIGINAL_CALL(SystemParametersInfoForDpi)(what, size, value, flags, screen);
                          if (what == SPI_GETNONCLIENTMETRICS)
                              static_cast<NONCLIENTMETRICSW*>(value)->lfMessageFont.lfHeight =
                                  -MulDiv(textHeight, static_cast<int>(screen), win::kPlainDpi);
                          return done;
                      }));
        Forget();
    }
    ~ScopedLook() { Forget(); }
    ScopedLook(const ScopedLook&) = delete;
    ScopedLook& operator=(const ScopedLook&) = delete;

  private:
    static void Forget() {
        win::ForgetTextSize();
        win::ForgetFonts();
    }

    testkit::RecordedCalls calls_;
};

void ExpectRoom(const std::string& what, Window window) {
    for (const Window control : window.Descendants()) {
        const LONG missing = testkit::MissingRoom(control.Handle());
        const bool seen = (control.Style() & WS_VISIBLE) != 0;
        EXPECT_TRUE(!seen || missing == 0) << what << ": " << control.Describe() << " lacks " << missing;
    }
}

/// What is drawn while it lives, and what each text lacks in the place that it is drawn in.
class DrawnTexts {
  public:
    DrawnTexts() = default;
    DrawnTexts(const DrawnTexts&) = delete;
    DrawnTexts& operator=(const DrawnTexts&) = delete;

    struct Room {
        LONG lines = 0;
        LONG width = 0;   // lacking, in pixels
        LONG height = 0;  // likewise
    };
    const std::map<std::wstring, Room>& Found() const { return found_; }

  private:
    void Measure(HDC dc, std::wstring text, const RECT& place, UINT format) {
        RECT needed{0, 0, place.right - place.left, 0};
        ORIGINAL_CALL(DrawTextExW)
        (dc, text.data(), static_cast<int>(text.size()), &needed, format | DT_CALCRECT, nullptr);
        found_[text] = {.lines = needed.bottom / win::LineHeight(dc),
                        .width = std::max<LONG>(0, needed.right - (place.right - place.left)),
                        .height = std::max<LONG>(0, needed.bottom - (place.bottom - place.top))};
    }

    std::map<std::wstring, Room> found_;
    testkit::RecordedCall draw_ = FAKE_CALL(DrawTextExW, [this](HDC dc, LPWSTR text, int length, LPRECT place,
                                                                UINT format, LPDRAWTEXTPARAMS params) {
        if (length > 0) Measure(dc, {text, static_cast<size_t>(length)}, *place, format);
        return ORIGINAL_CALL(DrawTextExW)(dc, text, length, place, format, params);
    });
};

constexpr const char* kWideLabel = "Windows";

/// What a label of seven letters, the most that a tab takes, lacks on the plain scale for the 45 pixels that
/// it has there.
int LackOfLabel() {
    const ScopedLook usual(win::kPlainDpi, 12);
    const win::MemoryDc dc(CreateCompatibleDC(nullptr));
    const win::Selection font(dc.Get(), win::MessageFont());
    return std::max(0, win::TextWidth(dc.Get(), kWideLabel) - 45);
}

/// The texts that the panel draws itself, in the places that it draws them in.
void ExpectRoomOnPanel(const std::string& what, int lackOfLabel) {
    const DrawnTexts drawn;
    PanelHarness panel(kPlainSettings,
                       "[Buttons]\r\n10=Main|first\r\n20=Windows|second\r\n11=A name of two lines|0\r\n"
                       "[Cuts]\r\nA name of two lines=C:\\windows\\notepad.exe\r\n");
    panel.Load();
    panel.Window().Send(WM_PAINT);
    std::set<std::wstring> seen;
    for (const auto& [text, room] : drawn.Found()) {
        seen.insert(text);
        // Nothing is cut that is not cut on the plain scale.
        const int lack = text == win::ToWide(kWideLabel) ? lackOfLabel : 0;
        EXPECT_LE(room.width, lack) << what << win::ToBytes(text);
        EXPECT_EQ(room.height, 0) << what << win::ToBytes(text);
    }
    EXPECT_EQ(seen, (std::set<std::wstring>{L"Quon", L"Main", L"Windows", L"A name of two lines", L"Empty"}));
    EXPECT_EQ(drawn.Found().at(L"A name of two lines").lines, 2) << what;
}

void ExpectRoomEverywhere(int dpi, int textHeight) {
    const std::string look = std::to_string(dpi) + " dpi, text of " + std::to_string(textHeight) + ": ";
    const int lackOfLabel = LackOfLabel();
    const ScopedLook scoped(dpi, textHeight);
    ExpectRoomOnPanel(look, win::Scale(dpi, win::TextPercent())(lackOfLabel));
    ForEveryWindow([&](const std::string& name, Window window) {
        // The other windows come from templates, which Windows scales.
        const bool fromTemplate = window.FindChild(frmMsg_l1).Handle() == nullptr && name != "the panel";
        if (fromTemplate && dpi != win::kPlainDpi) return;
        ExpectRoom(look + name, window);
    });
}

TEST(CaptionRoomTest, EveryWindowHasRoomForItsCaptionsAtEverySizeOfTheText) {
    // Of 96 dots per inch: 12 is the usual one, 27 the largest that Windows offers.
    for (const int height : {12, 15, 18, 27})
        ExpectRoomEverywhere(win::kPlainDpi, height);
}

TEST(CaptionRoomTest, WhatIsLaidOutInPixelsHasRoomAtEveryScaleToo) {
    ExpectRoomEverywhere(120, 27);
    ExpectRoomEverywhere(144, 12);
    ExpectRoomEverywhere(192, 18);
    ExpectRoomEverywhere(192, 27);
}

TEST(CaptionRoomTest, IsMissedWhereACaptionIsTooLong) {
    const HWND parent =
        CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 200, 200, nullptr, nullptr, nullptr, nullptr);
    const auto missing = [&](const wchar_t* kind, DWORD style, int width, int height) {
        return testkit::MissingRoom(CreateWindowExW(0, kind, L"A caption of some length", WS_CHILD | style, 0,
                                                    0, width, height, parent, nullptr, nullptr, nullptr));
    };
    EXPECT_EQ(missing(L"Button", BS_PUSHBUTTON, 300, 30), 0);
    EXPECT_GT(missing(L"Button", BS_PUSHBUTTON, 80, 30), 0);
    EXPECT_GT(missing(L"Button", BS_PUSHBUTTON, 300, 9), 0);
    EXPECT_GT(missing(L"Button", BS_AUTOCHECKBOX, 80, 30), 0);
    EXPECT_GT(missing(L"Static", SS_LEFT, 80, 10), 0);
    EXPECT_EQ(missing(L"Static", SS_LEFT, 80, 100), 0) << "a label wraps";
    DestroyWindow(parent);
}

}  // namespace
}  // namespace app
