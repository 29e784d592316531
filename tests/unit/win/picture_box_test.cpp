#include "win/picture_box.h"

#include "tests/support/annotations.h"
#include "tests/support/unit_test.h"
#include "win/errors.h"
#include "win/handles.h"
#include "win/text.h"

namespace win {
namespace {

using ::testing::ElementsAre;
using testkit::CallLog, testkit::RecordedCall, testkit::RecordedCalls;

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr POINT kInside{50, 40};
constexpr POINT kOutside{102, 40};

class PictureBoxTest : public ::testing::Test {
  protected:
    PictureBoxTest() {
        // The real focus belongs to whatever else is on the screen.
        fakes_.push_back(FAKE_CALL(SetFocus, [this](HWND window) { return focused_ = window; }));
        fakes_.push_back(FAKE_CALL(
            GetKeyState, [this](int key) { return static_cast<SHORT>(held_.contains(key) ? -128 : 0); }));
        box_.CreateOn(parent_.Handle(), 201, {10, 20, 112, 110});
        Listen();
    }

    LRESULT Send(UINT message, POINT at = kInside) {
        return SendMessageW(box_.Handle(), message, 0, MAKELPARAM(at.x, at.y));
    }

    /// The events since the last question.
    std::vector<std::string> Events() {
        const std::vector<std::string> lines = log_.Lines();
        log_.Clear();
        return lines;
    }

    testkit::HiddenWindow parent_;
    PictureBox box_;
    CallLog log_;
    std::set<int> held_;
    HWND focused_ = nullptr;

  private:
    void Listen() {
        const auto logged = [this](const char* event) {
            return [this, event](const PictureBox::Mouse& mouse) {
                log_.Add(event, mouse.button == MouseButton::kLeft ? "left" : "right", mouse.shift,
                         mouse.at.x, mouse.at.y);
            };
        };
        box_.onMouseDown = logged("down");
        box_.onMouseUp = logged("up");
        box_.onMouseMove = logged("move");
        box_.onClick = [this] { log_.Add("click"); };
        box_.onDoubleClick = [this] { log_.Add("double click"); };
        box_.onMouseLeave = [this] { log_.Add("leave"); };
        box_.onCaptureLost = [this] { log_.Add("capture lost"); };
        box_.onContextKey = [this] { log_.Add("context key"); };
        box_.onFocus = [this] { log_.Add("focus"); };
    }

    RecordedCalls fakes_;
};

TEST_F(PictureBoxTest, StandsWhereItWasPut) {
    const testkit::Window window(box_.Handle());
    EXPECT_EQ(window.Id(), 201);
    EXPECT_EQ(window.Parent().Handle(), parent_.Handle());
    EXPECT_EQ(box_.ScaleWidth(), 102);
    EXPECT_EQ(box_.ScaleHeight(), 90);
    POINT corner{10, 20};
    ClientToScreen(parent_.Handle(), &corner);
    EXPECT_EQ(window.Rect().left, corner.x);
    EXPECT_EQ(window.Rect().top, corner.y);
    EXPECT_NE(window.Style() & WS_TABSTOP, 0);
    PictureBox passive;
    passive.CreateOn(parent_.Handle(), 210, {0, 0, 14, 14}, false);
    EXPECT_EQ(testkit::Window(passive.Handle()).Style() & WS_TABSTOP, 0);
}

TEST_F(PictureBoxTest, BeginsWithAClearPictureReadyForText) {
    EXPECT_EQ(GetPixel(box_.Dc(), 0, 0), GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(GetPixel(box_.Dc(), 101, 89), GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(GetBkMode(box_.Dc()), TRANSPARENT);
    EXPECT_EQ(GetTextColor(box_.Dc()), GetSysColor(COLOR_BTNTEXT));
    EXPECT_EQ(GetCurrentObject(box_.Dc(), OBJ_FONT), MessageFont());
}

TEST_F(PictureBoxTest, KeepsItsPictureUntilItIsCleared) {
    SetPixel(box_.Dc(), 7, 8, kRed);
    for (int painting = 0; painting < 2; ++painting) {
        const MemoryDc seen(CreateCompatibleDC(nullptr));
        const Bitmap picture(CreateCompatibleBitmap(box_.Dc(), 102, 90));
        const Selection selected(seen.Get(), picture.Get());
        const RecordedCall begin = FAKE_CALL(BeginPaint, [&](HWND, LPPAINTSTRUCT record) {
            record->hdc = seen.Get();
            return seen.Get();
        });
        const RecordedCall end = ANSWER_CALL(EndPaint, TRUE);
        SendMessageW(box_.Handle(), WM_PAINT, 0, 0);
        EXPECT_EQ(GetPixel(seen.Get(), 7, 8), kRed);
        EXPECT_EQ(GetPixel(seen.Get(), 101, 89), GetSysColor(COLOR_BTNFACE));
    }
    box_.Clear();
    EXPECT_EQ(GetPixel(box_.Dc(), 7, 8), GetSysColor(COLOR_BTNFACE));
    box_.SetBackColor(kRed);
    box_.Clear();
    EXPECT_EQ(GetPixel(box_.Dc(), 101, 89), kRed);
}

TEST_F(PictureBoxTest, DrawsTheOverlayOverThePictureWithoutChangingIt) {
    const MemoryDc seen(CreateCompatibleDC(nullptr));
    const Bitmap picture(CreateCompatibleBitmap(box_.Dc(), 102, 90));
    const Selection selected(seen.Get(), picture.Get());
    const RecordedCall begin = FAKE_CALL(BeginPaint, [&](HWND, LPPAINTSTRUCT record) {
        record->hdc = seen.Get();
        return seen.Get();
    });
    const RecordedCall end = ANSWER_CALL(EndPaint, TRUE);
    RECT given{};
    box_.onOverlay = [&](HDC dc, RECT place) {
        given = place;
        SetPixel(dc, 7, 8, kRed);
    };
    SendMessageW(box_.Handle(), WM_PAINT, 0, 0);
    EXPECT_EQ(GetPixel(seen.Get(), 7, 8), kRed);
    EXPECT_NE(GetPixel(box_.Dc(), 7, 8), kRed);
    EXPECT_EQ(given.right, 102);
    EXPECT_EQ(given.bottom, 90);
    EXPECT_EQ(SendMessageW(box_.Handle(), WM_ERASEBKGND, 0, 0), 1);
}

TEST_F(PictureBoxTest, WithoutAPictureItShowsItsBackgroundAndTheOverlay) {
    PictureBox bare;
    bare.SetBackColor(kRed);
    bare.CreateBareOn(parent_.Handle(), 202, {0, 0, 40, 30}, false);
    EXPECT_EQ(bare.Dc(), nullptr);
    EXPECT_EQ(bare.ScaleWidth(), 40);
    EXPECT_EQ(GetWindowLongPtrW(bare.Handle(), GWL_STYLE) & WS_TABSTOP, 0);
    bare.onOverlay = [this](HDC, RECT all) { log_.Add("overlay", all.right, all.bottom); };
    COLORREF filled = 0;
    const RecordedCall fill = WATCH_CALL(FillRect, [&](HDC, const RECT*, HBRUSH brush) {
        LOGBRUSH record{};
        GetObjectW(brush, sizeof record, &record);
        filled = record.lbColor;
    });
    SendMessageW(bare.Handle(), WM_PAINT, 0, 0);
    EXPECT_EQ(filled, kRed);
    EXPECT_THAT(Events(), ElementsAre("overlay 40 30"));
}

TEST_F(PictureBoxTest, HasItsMeaningAsText) {
    int set = 0;
    const RecordedCall text = WATCH_CALL(SetWindowTextW, [&] { ++set; });
    box_.SetMeaning("Дугме & 文");
    box_.SetMeaning("Дугме & 文");
    EXPECT_EQ(testkit::Window(box_.Handle()).Text(), "Дугме & 文");
    EXPECT_EQ(set, 1);
}

TEST_F(PictureBoxTest, KeepsItsFrameAndShowsTheChange) {
    EXPECT_EQ(box_.Frame(), 0);
    const RecordedCall refresh = LOG_CALL(log_, InvalidateRect);
    box_.SetFrame(1);
    EXPECT_EQ(box_.Frame(), 1);
    EXPECT_EQ(log_.Count("InvalidateRect " + testkit::LoggedText(box_.Handle()) + " null"), 1U);
}

TEST_F(PictureBoxTest, APressAndAReleaseInsideAreAClick) {
    Send(WM_LBUTTONDOWN);
    EXPECT_TRUE(box_.Pressed());
    EXPECT_EQ(GetCapture(), box_.Handle());
    EXPECT_EQ(focused_, box_.Handle());
    EXPECT_THAT(Events(), ElementsAre("down left 0 50 40"));
    Send(WM_LBUTTONUP);
    EXPECT_FALSE(box_.Pressed());
    EXPECT_EQ(GetCapture(), nullptr);
    EXPECT_THAT(Events(), ElementsAre("up left 0 50 40", "click"));
}

TEST_F(PictureBoxTest, AReleaseOutsideIsNoClick) {
    for (const POINT at : {kOutside, POINT{50, 90}, {-1, 40}, {50, -1}}) {
        Send(WM_LBUTTONDOWN);
        Events();
        Send(WM_LBUTTONUP, at);
        EXPECT_THAT(Events(), ElementsAre("up left 0 " + std::to_string(at.x) + " " + std::to_string(at.y)));
        EXPECT_EQ(GetCapture(), nullptr);
    }
    Send(WM_LBUTTONDOWN);
    Events();
    Send(WM_LBUTTONUP, {101, 89});
    EXPECT_THAT(Events(), ElementsAre("up left 0 101 89", "click"));
}

TEST_F(PictureBoxTest, AReleaseWithoutAPressIsNoClick) {
    Send(WM_LBUTTONUP);
    EXPECT_THAT(Events(), ElementsAre("up left 0 50 40"));
}

TEST_F(PictureBoxTest, ADoubleClickIsOneClickAndOneDoubleClick) {
    Send(WM_LBUTTONDOWN);
    Send(WM_LBUTTONUP);
    Send(WM_LBUTTONDBLCLK);
    Send(WM_LBUTTONUP);
    EXPECT_THAT(Events(), ElementsAre("down left 0 50 40", "up left 0 50 40", "click", "double click",
                                      "up left 0 50 40"));
    EXPECT_NE(GetClassLongPtrW(box_.Handle(), GCL_STYLE) & CS_DBLCLKS, 0U);
}

TEST_F(PictureBoxTest, TheRightButtonNeverClicks) {
    Send(WM_RBUTTONDOWN);
    Send(WM_RBUTTONUP);
    EXPECT_THAT(Events(), ElementsAre("down right 0 50 40", "up right 0 50 40"));
    EXPECT_FALSE(box_.Pressed());
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(PictureBoxTest, LosingTheMouseCancelsThePress) {
    Send(WM_LBUTTONDOWN);
    Events();
    ReleaseCapture();
    EXPECT_FALSE(box_.Pressed());
    EXPECT_THAT(Events(), ElementsAre("capture lost"));
    Send(WM_LBUTTONUP);
    EXPECT_THAT(Events(), ElementsAre("up left 0 50 40"));
    // Nothing was pressed: nothing is lost.
    Send(WM_CAPTURECHANGED);
    EXPECT_THAT(Events(), ElementsAre());
}

TEST_F(PictureBoxTest, TellsWhichModifiersAreHeld) {
    struct Case {
        std::set<int> keys;
        int shift;
    };
    const Case cases[] = {{{}, 0},           {{VK_SHIFT}, 1},
                          {{VK_CONTROL}, 2}, {{VK_SHIFT, VK_CONTROL}, 3},
                          {{VK_MENU}, 4},    {{VK_SHIFT, VK_CONTROL, VK_MENU}, 7}};
    for (const Case& example : cases) {
        held_ = example.keys;
        EXPECT_EQ(HeldModifiers(), example.shift);
        Send(WM_MOUSEMOVE);
        EXPECT_THAT(Events(), ElementsAre("move left " + std::to_string(example.shift) + " 50 40"));
    }
}

TEST_F(PictureBoxTest, KnowsPlacesBeyondItsTopLeftCorner) {
    Send(WM_MOUSEMOVE, {-5, -7});
    EXPECT_THAT(Events(), ElementsAre("move left 0 -5 -7"));
}

TEST_F(PictureBoxTest, IsHoveredUntilThePointerLeaves) {
    int tracked = 0;
    const RecordedCall track = FAKE_CALL(TrackMouseEvent, [&](LPTRACKMOUSEEVENT record) -> WINBOOL {
        EXPECT_EQ(record->dwFlags, DWORD{TME_LEAVE});
        EXPECT_EQ(record->hwndTrack, box_.Handle());
        ++tracked;
        return TRUE;
    });
    EXPECT_FALSE(box_.Hovered());
    Send(WM_MOUSEMOVE);
    Send(WM_MOUSEMOVE);
    EXPECT_TRUE(box_.Hovered());
    EXPECT_EQ(tracked, 1);
    Events();
    Send(WM_MOUSELEAVE);
    EXPECT_FALSE(box_.Hovered());
    EXPECT_THAT(Events(), ElementsAre("leave"));
    Send(WM_MOUSEMOVE);
    EXPECT_EQ(tracked, 2);
}

TEST_F(PictureBoxTest, APressWithoutATabStopLeavesTheFocus) {
    PictureBox passive;
    passive.CreateOn(parent_.Handle(), 210, {0, 0, 14, 14}, false);
    SendMessageW(passive.Handle(), WM_LBUTTONDOWN, 0, 0);
    EXPECT_EQ(focused_, nullptr);
    SendMessageW(passive.Handle(), WM_LBUTTONUP, 0, 0);
}

TEST_F(PictureBoxTest, TheContextKeyIsDistinguishedFromTheRightButton) {
    SendMessageW(box_.Handle(), WM_CONTEXTMENU, 0, -1);
    EXPECT_THAT(Events(), ElementsAre("context key"));
    SendMessageW(box_.Handle(), WM_CONTEXTMENU, 0, MAKELPARAM(100, 100));
    EXPECT_THAT(Events(), ElementsAre());
}

TEST_F(PictureBoxTest, WantsArrowsAndEnterAndLeavesTabToTheDialogManager) {
    EXPECT_EQ(SendMessageW(box_.Handle(), WM_GETDLGCODE, 0, 0), DLGC_WANTARROWS);
    EXPECT_EQ(SendMessageW(box_.Handle(), WM_GETDLGCODE, VK_RETURN, 0), DLGC_WANTARROWS | DLGC_WANTMESSAGE);
    EXPECT_EQ(SendMessageW(box_.Handle(), WM_GETDLGCODE, VK_TAB, 0), DLGC_WANTARROWS);
}

TEST_F(PictureBoxTest, HandsKeysOn) {
    std::vector<WPARAM> keys;
    box_.onKeyDown = [&](WPARAM key) {
        keys.push_back(key);
        return key == VK_SPACE;
    };
    SendMessageW(box_.Handle(), WM_KEYDOWN, VK_SPACE, 0);
    SendMessageW(box_.Handle(), WM_KEYDOWN, 'A', 0);
    EXPECT_THAT(keys, ElementsAre(WPARAM{VK_SPACE}, WPARAM{'A'}));
}

TEST_F(PictureBoxTest, AHeldKeyPressesItOnceAndGoesOnMovingTheFocus) {
    constexpr LPARAM kRepeated = 0x40000001;
    std::vector<WPARAM> keys;
    box_.onKeyDown = [&](WPARAM key) {
        keys.push_back(key);
        return true;
    };
    for (const WPARAM key : {WPARAM{VK_RETURN}, WPARAM{VK_SPACE}, WPARAM{VK_RIGHT}})
        EXPECT_EQ(SendMessageW(box_.Handle(), WM_KEYDOWN, key, kRepeated), 0);
    EXPECT_EQ(SendMessageW(box_.Handle(), WM_SYSKEYDOWN, VK_RETURN, kRepeated), 0);
    EXPECT_THAT(keys, ElementsAre(WPARAM{VK_RIGHT}));
}

TEST_F(PictureBoxTest, AltAndEnterIsAKeyLikeEnterAndDoesNotBeep) {
    std::vector<WPARAM> keys;
    box_.onKeyDown = [&](WPARAM key) {
        keys.push_back(key);
        return true;
    };
    EXPECT_EQ(SendMessageW(box_.Handle(), WM_SYSKEYDOWN, VK_RETURN, 0), 0);
    EXPECT_EQ(SendMessageW(box_.Handle(), WM_SYSKEYDOWN, VK_SPACE, 0), 0);
    EXPECT_THAT(keys, ElementsAre(WPARAM{VK_RETURN}));
    const RecordedCall rest = ANSWER_CALL(DefWindowProcW, 77);
    EXPECT_EQ(SendMessageW(box_.Handle(), WM_SYSCHAR, VK_RETURN, 0), 0);
    EXPECT_EQ(SendMessageW(box_.Handle(), WM_SYSCHAR, 'A', 0), 77);
}

TEST_F(PictureBoxTest, TellsThatItHasTheFocus) {
    Send(WM_SETFOCUS);
    EXPECT_THAT(Events(), ElementsAre("focus"));
    Send(WM_KILLFOCUS);
    EXPECT_THAT(Events(), ElementsAre());
}

TEST_F(PictureBoxTest, APageTabTellsWhetherItIsSelectedOnceSomebodyHasAsked) {
    const testkit::Annotations told;
    HWND focus = nullptr;
    const RecordedCall get = FAKE_CALL(GetFocus, [&] { return focus; });
    const RecordedCall event =
        FAKE_CALL(NotifyWinEvent, [&](DWORD what, HWND window, LONG object, LONG child) {
            EXPECT_EQ(window, box_.Handle());
            EXPECT_EQ(object, OBJID_CLIENT);
            EXPECT_EQ(child, CHILDID_SELF);
            log_.Add("event", what);
        });
    const auto state = [&] { return told.StateOf(box_.Handle()).value_or(0); };
    constexpr long kAtRest = STATE_SYSTEM_FOCUSABLE | STATE_SYSTEM_SELECTABLE;
    box_.SetAccessible(ROLE_SYSTEM_PAGETAB, "Tab 1");
    box_.SetFrame(1);
    EXPECT_EQ(told.Count(), 0u) << "it takes COM, which nobody needs yet";
    Events();
    SendMessageW(box_.Handle(), WM_GETOBJECT, 0, OBJID_CLIENT);
    EXPECT_EQ(state(), kAtRest | STATE_SYSTEM_SELECTED);
    box_.SetFrame(0);
    EXPECT_EQ(state(), kAtRest);
    EXPECT_THAT(Events(), ElementsAre());
    box_.SetFrame(1);
    EXPECT_EQ(state(), kAtRest | STATE_SYSTEM_SELECTED);
    EXPECT_THAT(Events(), ElementsAre("event " + std::to_string(EVENT_OBJECT_SELECTION)));
    focus = box_.Handle();
    SendMessageW(box_.Handle(), WM_SETFOCUS, 0, 0);
    EXPECT_EQ(state(), kAtRest | STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSED);
    focus = nullptr;
    SendMessageW(box_.Handle(), WM_KILLFOCUS, 0, 0);
    EXPECT_EQ(state(), kAtRest | STATE_SYSTEM_SELECTED);
    box_.Destroy();
    EXPECT_EQ(told.Count(), 0u);
}

TEST_F(PictureBoxTest, AButtonsStateIsWhatWindowsFindsOut) {
    const testkit::Annotations told;
    SendMessageW(box_.Handle(), WM_GETOBJECT, 0, OBJID_CLIENT);
    EXPECT_EQ(told.RoleOf(box_.Handle()), ROLE_SYSTEM_PUSHBUTTON);
    EXPECT_FALSE(told.StateOf(box_.Handle()));
}

TEST_F(PictureBoxTest, NeedsNobodyToListen) {
    PictureBox deaf;
    deaf.CreateOn(parent_.Handle(), 202, {0, 0, 50, 50});
    for (const UINT message : std::initializer_list<UINT>{
             WM_MOUSEMOVE, WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_RBUTTONDOWN, WM_RBUTTONUP,
             WM_MOUSELEAVE, WM_SETFOCUS, WM_KILLFOCUS, WM_KEYDOWN, WM_PAINT})
        EXPECT_EQ(SendMessageW(deaf.Handle(), message, 0, 0), 0) << message;
    SendMessageW(deaf.Handle(), WM_CONTEXTMENU, 0, -1);
    SendMessageW(deaf.Handle(), WM_LBUTTONDOWN, 0, 0);
    ReleaseCapture();
    EXPECT_FALSE(deaf.Pressed());
}

}  // namespace
}  // namespace win
