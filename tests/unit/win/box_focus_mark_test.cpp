// The mark of the box that has the focus, and when it appears. Once marks are shown they stay for the life of
// the process, so EachHoldsInAProcessOfItsOwn runs the other tests, which do not run by themselves.

#include "dialogs/icon_chooser.h"
#include "tests/support/running_program.h"
#include "tests/support/unit_test.h"
#include "win/geometry.h"
#include "win/handles.h"
#include "win/picture_box.h"
#include "win/process_start.h"
#include "win/scale.h"

namespace win {
namespace {

using testkit::ModalAnswers;
using testkit::RecordedCall;

constexpr COLORREF kGround = RGB(255, 255, 255);
constexpr int kSize = 120;

/// A box on a white ground that has the focus.
class BoxFocusMarkTest : public ::testing::Test {
  protected:
    void Create(int dpi = kPlainDpi) {
        dpi_ = ANSWER_CALL(GetDpiForWindow, dpi);
        focus_ = FAKE_CALL(GetFocus, [this] { return focused_ ? box_.Handle() : nullptr; });
        box_.SetBackColor(kGround);
        box_.CreateBareOn(parent_.Handle(), 201, {0, 0, kSize, kSize}, true);
    }

    /// Paints the box into the picture.
    void Paint() {
        const RecordedCall begin = FAKE_CALL(BeginPaint, [this](HWND, LPPAINTSTRUCT record) {
            record->hdc = picture_.Get();
            return picture_.Get();
        });
        const RecordedCall end = ANSWER_CALL(EndPaint, TRUE);
        SendMessageW(box_.Handle(), WM_PAINT, 0, 0);
    }
    COLORREF At(int x, int y) const { return GetPixel(picture_.Get(), x, y); }
    bool IsMarked() {
        Paint();
        return At(kSize / 2, 3) != kGround;
    }
    /// Nothing but a solid frame in the highlight colour, so wide and so far from the edges.
    void ExpectMark(int inset, int width) {
        Paint();
        int wrong = 0;
        for (int y = 0; y < kSize; ++y) {
            for (int x = 0; x < kSize; ++x) {
                const int depth = std::min({x, y, kSize - 1 - x, kSize - 1 - y});
                const bool marked = depth >= inset && depth < inset + width;
                if (At(x, y) != (marked ? GetSysColor(COLOR_HIGHLIGHT) : kGround)) ++wrong;
            }
        }
        EXPECT_EQ(wrong, 0);
    }
    void TellUiState(WORD action, WORD what) {
        SendMessageW(box_.Handle(), WM_UPDATEUISTATE, MAKEWPARAM(action, what), 0);
    }
    /// Opens the chooser, whose dialog says this of its marks.
    void OpenChooser(LRESULT state, const ModalAnswers::Step& step) {
        const RecordedCall marks =
            FAKE_CALL(SendMessageW, [&](HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
                return message == WM_QUERYUISTATE
                           ? state
                           : ORIGINAL_CALL(SendMessageW)(window, message, wParam, lParam);
            });
        const ModalAnswers user({step});
        dialogs::IcoChooser chooser;
        chooser.ReadIcons(ProgramPath());
        chooser.Show(parent_.Handle());
    }

    testkit::HiddenWindow parent_;
    PictureBox box_;
    bool focused_ = true;

  private:
    RecordedCall dpi_;
    RecordedCall focus_;
    Bitmap bitmap_{CreateCompatibleBitmap(WindowDc(nullptr).Get(), kSize, kSize)};
    MemoryDc picture_{CreateCompatibleDC(nullptr)};
    Selection selected_{picture_.Get(), bitmap_.Get()};
};

TEST_F(BoxFocusMarkTest, DISABLED_IsASolidFrameFromTheFirstKeyOn) {
    Create();
    EXPECT_FALSE(IsMarked()) << "it would be noise for who uses the mouse";
    ShowFocusMarks();
    ExpectMark(3, 2);
    focused_ = false;
    EXPECT_FALSE(IsMarked());
}

TEST_F(BoxFocusMarkTest, DISABLED_GrowsWithTheScale) {
    Create(192);
    ShowFocusMarks();
    ExpectMark(6, 4);
}

TEST_F(BoxFocusMarkTest, DISABLED_ComesWithTheKeyThatADialogTellsOf) {
    Create();
    HWND repainted = nullptr;
    const RecordedCall repaint =
        WATCH_CALL(InvalidateRect, [&](HWND window, const RECT*, BOOL) { repainted = window; });
    TellUiState(UIS_SET, UISF_HIDEFOCUS);
    TellUiState(UIS_CLEAR, UISF_HIDEACCEL);
    EXPECT_FALSE(IsMarked());
    EXPECT_EQ(repainted, nullptr);
    TellUiState(UIS_CLEAR, UISF_HIDEACCEL | UISF_HIDEFOCUS);
    EXPECT_EQ(repainted, box_.Handle());
    ExpectMark(3, 2);
}

TEST_F(BoxFocusMarkTest, DISABLED_ComesWithTheTabKeyWhereTheMouseHasOpenedTheChooser) {
    Create();
    OpenChooser(UISF_HIDEFOCUS, [&](testkit::Window chooser) {
        EXPECT_FALSE(IsMarked());
        // Windows hands it on to all that stands on a dialog; Wine does not tell of it.
        chooser.Child(dialogs::IcoChooser::Image1)
            .Send(WM_UPDATEUISTATE, MAKEWPARAM(UIS_CLEAR, UISF_HIDEFOCUS));
        EXPECT_TRUE(IsMarked());
        chooser.Post(WM_COMMAND, IDCANCEL);
    });
}

TEST_F(BoxFocusMarkTest, DISABLED_IsThereAtOnceWhereTheKeyboardHasOpenedTheChooser) {
    Create();
    OpenChooser(0, [&](testkit::Window chooser) {
        EXPECT_TRUE(IsMarked());
        chooser.Post(WM_COMMAND, IDCANCEL);
    });
}

TEST_F(BoxFocusMarkTest, EachHoldsInAProcessOfItsOwn) {
    const ::testing::TestSuite& suite = *::testing::UnitTest::GetInstance()->current_test_suite();
    int run = 0;
    for (int index = 0; index < suite.total_test_count(); ++index) {
        const std::string name = suite.GetTestInfo(index)->name();
        if (!name.starts_with("DISABLED_")) continue;
        ++run;
        EXPECT_EQ(testkit::RunToExit(ProgramPath(), {.arguments = "--gtest_also_run_disabled_tests "
                                                                  "--gtest_filter=BoxFocusMarkTest." +
                                                                  name}),
                  0U)
            << name;
    }
    EXPECT_EQ(run, 5);
}

}  // namespace
}  // namespace win
