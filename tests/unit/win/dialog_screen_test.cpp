// The screen that a dialog comes up on, and what it does when that changes or looks otherwise.

#include <shellscalingapi.h>

#include "res/resource.h"
#include "tests/support/contrast_theme.h"
#include "tests/support/unit_test.h"
#include "win/colors.h"
#include "win/dialog.h"
#include "win/geometry.h"
#include "win/seen_screen.h"
#include "win/text.h"

namespace win {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::ModalAnswers, testkit::Window;

/// A dialog that logs what it is told.
class ProbeDialog : public Dialog {
  public:
    using Dialog::ShowModal;
    std::function<void(HWND)> onInit;
    std::vector<std::string> log;

  protected:
    bool OnInit() override {
        if (onInit) onInit(Dialog::Handle());
        return true;
    }
    bool OnCommand(int id, int) override {
        if (id == IDCANCEL) End(7);
        return true;
    }
    void OnColors() override { log.emplace_back(ContrastTheme() ? "contrast" : "plain"); }
    void OnOtherScreen() override { log.emplace_back("other screen"); }
};

HMONITOR Screen(INT_PTR number) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle that nothing but the fakes looks at.
    return reinterpret_cast<HMONITOR>(number);
}

const HMONITOR kNeighbour = Screen(0x1001);
const HMONITOR kSeen = Screen(0x1002);
constexpr RECT kNeighboursArea{0, 0, 1024, 700};
constexpr RECT kSeenArea{0, 0, 480, 340};

void Cancel(Window dialog) { dialog.Send(WM_COMMAND, IDCANCEL); }

template <class Function>
FARPROC Untyped(Function* function) {
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

std::vector<std::pair<int, int>>& Behaviours() {
    static std::vector<std::pair<int, int>> behaviours;
    return behaviours;
}

BOOL WINAPI SetBehaviour(HWND, int mask, int values) {
    Behaviours().emplace_back(mask, values);
    return TRUE;
}

/// Two screens: the one that the docked owner is seen on, where nothing but the middle of a dialog has to lie
/// for the dialog to be on it, and its neighbour, which has the rest.
class DialogScreenTest : public ::testing::Test {
  protected:
    DialogScreenTest() {
        fakes_.push_back(FAKE_CALL(MonitorFromWindow, [this](HWND window, DWORD) -> HMONITOR {
            if (window == owner_.Handle()) return kNeighbour;
            const RECT place = Window(window).Rect();
            const POINT middle{(place.left + place.right) / 2, (place.top + place.bottom) / 2};
            return PtInRect(&kSeenArea, middle) != FALSE ? kSeen : kNeighbour;
        }));
        fakes_.push_back(FAKE_CALL(MonitorFromRect, [this](LPCRECT rect, DWORD) -> HMONITOR {
            askedFor_.push_back(*rect);
            return kSeen;
        }));
        fakes_.push_back(FAKE_CALL(GetMonitorInfoW, [](HMONITOR screen, LPMONITORINFO info) -> WINBOOL {
            info->rcWork = screen == kSeen ? kSeenArea : kNeighboursArea;
            info->rcMonitor = info->rcWork;
            return TRUE;
        }));
        fakes_.push_back(
            FAKE_CALL(AdjustWindowRectExForDpi,
                      [this](LPRECT rect, DWORD style, WINBOOL menu, DWORD extended, UINT dpi) -> WINBOOL {
                          frames_.push_back(dpi);
                          return ORIGINAL_CALL(AdjustWindowRectExForDpi)(rect, style, menu, extended, dpi);
                      }));
        fakes_.push_back(FAKE_CALL(GetProcAddress, [](HMODULE module, LPCSTR name) -> FARPROC {
            const std::string wanted = name;
            if (wanted == "SetDialogDpiChangeBehavior") return Untyped(&SetBehaviour);
            return ORIGINAL_CALL(GetProcAddress)(module, name);
        }));
        fakes_.push_back(
            FAKE_CALL(GetDpiForMonitor, [](HMONITOR screen, MONITOR_DPI_TYPE, UINT* x, UINT* y) -> HRESULT {
                *x = *y = screen == kSeen ? 144 : 96;
                return S_OK;
            }));
        Behaviours().clear();
    }

    /// Docks the owner at the left edge: a strip at its right side is left of it.
    void Dock() {
        SetWindowPos(owner_.Handle(), nullptr, -396, 20, 400, 400, SWP_NOZORDER | SWP_NOACTIVATE);
        SetWindowRgn(owner_.Handle(), CreateRectRgn(396, 0, 400, 400), FALSE);
    }
    void Show(const ModalAnswers::Step& step, int templateId = IDD_DEFINE_TAB) {
        const ModalAnswers user({step});
        dialog_.ShowModal(owner_.Handle(), templateId);
    }

    testkit::HiddenWindow owner_;
    std::vector<RECT> askedFor_;
    std::vector<UINT> frames_;
    ProbeDialog dialog_;
    testkit::RecordedCalls fakes_;
};

TEST_F(DialogScreenTest, ItComesUpWhereItsDockedOwnerIsSeen) {
    Dock();
    Show([](Window dialog) {
        const RECT place = dialog.Rect();
        EXPECT_NEAR((place.left + place.right) / 2, (kSeenArea.left + kSeenArea.right) / 2, 1);
        EXPECT_NEAR((place.top + place.bottom) / 2, (kSeenArea.top + kSeenArea.bottom) / 2, 1);
        Cancel(dialog);
    });
    ASSERT_FALSE(askedFor_.empty());
    const RECT strip{0, 20, 4, 420};
    EXPECT_TRUE(EqualRect(&askedFor_.front(), &strip));
}

TEST_F(DialogScreenTest, ItComesUpInTheMiddleWithTheSizeThatItHasThere) {
    Dock();
    SIZE grown{};
    fakes_.push_back(FAKE_CALL(
        SetWindowPos,
        [&](HWND window, HWND after, int x, int y, int width, int height, UINT flags) -> WINBOOL {
            const WINBOOL done = ORIGINAL_CALL(SetWindowPos)(window, after, x, y, width, height, flags);
            if (window == owner_.Handle() || grown.cx != 0) return done;
            // It has come to a screen of another scale.
            const RECT place = Window(window).Rect();
            grown = {Width(place) + 60, Height(place) + 40};
            return ORIGINAL_CALL(SetWindowPos)(window, nullptr, 0, 0, grown.cx, grown.cy,
                                               SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
        }));
    Show([&](Window dialog) {
        const RECT place = dialog.Rect();
        EXPECT_EQ(Width(place), grown.cx);
        EXPECT_EQ(Height(place), grown.cy);
        EXPECT_NEAR((place.left + place.right) / 2, (kSeenArea.left + kSeenArea.right) / 2, 1);
        EXPECT_NEAR((place.top + place.bottom) / 2, (kSeenArea.top + kSeenArea.bottom) / 2, 1);
        Cancel(dialog);
    });
}

TEST_F(DialogScreenTest, ItsTextFitsOnTheScreenThatItComesUpOn) {
    Dock();
    Show(
        [](Window dialog) {
            const RECT place = dialog.Rect();
            EXPECT_LE(Height(place), Height(kSeenArea)) << "the neighbour has room for more";
            Cancel(dialog);
        },
        IDD_EDIT_SHORTCUT);
    ASSERT_FALSE(frames_.empty());
    EXPECT_EQ(frames_.front(), 144U) << "the scale of the screen, not of the owner";
}

TEST_F(DialogScreenTest, AnOwnerWithoutARegionLeavesItToWindows) {
    bool moved = false;
    dialog_.onInit = [&](HWND window) { moved = MonitorFromWindow(window, 0) == kSeen; };
    Show(&Cancel);
    EXPECT_FALSE(moved);
    EXPECT_THAT(askedFor_, IsEmpty());
    EXPECT_EQ(frames_.front(), 96U);
}

TEST_F(DialogScreenTest, ItIsMovedToWhereAllOfItIsOnItsScreen) {
    for (const POINT from : {POINT{900, 650}, {-100, -50}, {600, 100}}) {
        dialog_.onInit = [&](HWND window) {
            SetWindowPos(window, nullptr, from.x, from.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        };
        RECT place{};
        Show([&](Window dialog) {
            place = dialog.Rect();
            Cancel(dialog);
        });
        const SIZE size{Width(place), Height(place)};
        EXPECT_EQ(place.left, std::clamp<LONG>(from.x, 0, 1024 - size.cx));
        EXPECT_EQ(place.top, std::clamp<LONG>(from.y, 0, 700 - size.cy));
    }
}

TEST_F(DialogScreenTest, ItKeepsItsScaleWhereverItIsMoved) {
    Show(&Cancel);
    constexpr int kDisableAll = 1;
    EXPECT_THAT(Behaviours(), ElementsAre(std::pair(kDisableAll, kDisableAll)));
}

TEST_F(DialogScreenTest, OnAScreenOfAnotherScaleItKeepsItsClientArea) {
    Show([&](Window dialog) {
        const RECT before = dialog.Rect();
        const RECT client = dialog.ClientRect();
        const auto style = static_cast<DWORD>(GetWindowLongPtrW(dialog.Handle(), GWL_STYLE));
        const auto extended = static_cast<DWORD>(GetWindowLongPtrW(dialog.Handle(), GWL_EXSTYLE));
        for (const UINT dpi : {192U, 96U}) {
            RECT frame{0, 0, Width(client), Height(client)};
            AdjustWindowRectExForDpi(&frame, style, FALSE, extended, dpi);
            SIZE wanted{1, 1};
            EXPECT_EQ(dialog.Send(WM_GETDPISCALEDSIZE, dpi, reinterpret_cast<LPARAM>(&wanted)), TRUE);
            EXPECT_EQ(wanted.cx, Width(frame));
            EXPECT_EQ(wanted.cy, Height(frame));
            RECT suggested{50, 60, 51, 61};
            dialog.Send(WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&suggested));
            const RECT place = dialog.Rect();
            EXPECT_EQ(place.left, 50);
            EXPECT_EQ(place.top, 60);
            EXPECT_EQ(Width(place), Width(frame)) << dpi;
            EXPECT_EQ(Height(place), Height(frame)) << dpi;
        }
        EXPECT_EQ(Height(dialog.Rect()), Height(before)) << "and back";
        Cancel(dialog);
    });
    EXPECT_THAT(dialog_.log, ElementsAre("other screen", "other screen"));
}

TEST_F(DialogScreenTest, UntilItIsSetUpAnotherScaleChangesNothing) {
    dialog_.onInit = [&](HWND window) {
        const RECT before = Window(window).Rect();
        RECT suggested{50, 60, 51, 61};
        SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(192, 192), reinterpret_cast<LPARAM>(&suggested));
        const RECT after = Window(window).Rect();
        EXPECT_TRUE(EqualRect(&before, &after));
    };
    Show(&Cancel);
    EXPECT_THAT(dialog_.log, IsEmpty());
}

TEST_F(DialogScreenTest, ItsScaleHasTheTextThatItWasGiven) {
    fakes_.push_back(FAKE_CALL(
        SystemParametersInfoForDpi, [](UINT what, UINT size, PVOID record, UINT flags, UINT dpi) -> WINBOOL {
            if (ORIGINAL_CALL(SystemParametersInfoForDpi)(what, size, record, flags, dpi) == FALSE)
                return FALSE;
            static_cast<NONCLIENTMETRICSW*>(record)->lfMessageFont.lfHeight = -12;
            return TRUE;
        }));
    dialog_.onInit = [&](HWND window) {
        LOGFONTW given{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)), sizeof given, &given);
        LOGFONTW own{};
        GetObjectW(MessageFont(dialog_.DialogScale()), sizeof own, &own);
        EXPECT_EQ(own.lfHeight, given.lfHeight);
        EXPECT_LT(dialog_.DialogScale().TextPercent(), 100);
    };
    Dock();
    Show(&Cancel, IDD_ORGANIZE_SHORTCUTS);
    SetWindowRgn(owner_.Handle(), nullptr, FALSE);
    dialog_.onInit = [&](HWND) { EXPECT_EQ(dialog_.DialogScale(), Scale::Of(nullptr)); };
    Show(&Cancel, IDD_ORGANIZE_SHORTCUTS);
}

class DialogLookTest : public ::testing::Test {
  protected:
    DialogLookTest() : ask_(testkit::ContrastThemeIs(contrast_)) { ForgetColors(); }
    ~DialogLookTest() override {
        ask_.Restore();
        ForgetColors();
    }

    void Show(const ModalAnswers::Step& step) {
        const ModalAnswers user({step});
        dialog_.ShowModal(owner_.Handle(), IDD_DEFINE_TAB);
    }

    bool contrast_ = false;
    testkit::HiddenWindow owner_;
    ProbeDialog dialog_;
    testkit::RecordedCall ask_;
};

TEST_F(DialogLookTest, ItFollowsTheColoursAfterAskingForThemAnew) {
    std::vector<HWND> told;
    UINT redraw = 0;
    Show([&](Window dialog) {
        const auto send =
            FAKE_CALL(SendMessageW, [&](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
                if (message == WM_SYSCOLORCHANGE && window != dialog.Handle()) told.push_back(window);
                return ORIGINAL_CALL(SendMessageW)(window, message, wParam, lParam);
            });
        const auto draw =
            FAKE_CALL(RedrawWindow, [&](HWND window, const RECT* part, HRGN region, UINT flags) {
                EXPECT_EQ(window, dialog.Handle());
                EXPECT_EQ(part, nullptr);
                EXPECT_THAT(dialog_.log, ElementsAre("contrast")) << "painted with what is made anew";
                redraw = flags;
                return ORIGINAL_CALL(RedrawWindow)(window, part, region, flags);
            });
        contrast_ = true;
        dialog.Send(WM_SYSCOLORCHANGE);
        Cancel(dialog);
    });
    EXPECT_EQ(redraw, UINT{RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN});
    EXPECT_EQ(told.size(), 9U) << "its controls";
}

TEST_F(DialogLookTest, OfTheSettingsItFollowsAContrastThemeThatComesOrGoes) {
    Show([&](Window dialog) {
        dialog.Send(WM_SETTINGCHANGE, SPI_SETWORKAREA);
        EXPECT_THAT(dialog_.log, IsEmpty());
        contrast_ = true;
        dialog.Send(WM_SETTINGCHANGE, SPI_SETHIGHCONTRAST);
        EXPECT_THAT(dialog_.log, ElementsAre("contrast"));
        dialog.Send(WM_SETTINGCHANGE, SPI_SETHIGHCONTRAST);
        EXPECT_THAT(dialog_.log, ElementsAre("contrast"));
        contrast_ = false;
        // Another window of the program may have asked before.
        ForgetColors();
        EXPECT_FALSE(ContrastTheme());
        dialog.Send(WM_SETTINGCHANGE, 0);
        EXPECT_THAT(dialog_.log, ElementsAre("contrast", "plain"));
        Cancel(dialog);
    });
}

TEST(SeenScreenTest, TellsNoScaleWhereWindowsDoesNot) {
    const auto refuse = FAKE_CALL(GetDpiForMonitor,
                                  [](HMONITOR, MONITOR_DPI_TYPE, UINT*, UINT*) -> HRESULT { return E_FAIL; });
    EXPECT_EQ(DpiOf(kSeen, 120), 120);
}

}  // namespace
}  // namespace win
