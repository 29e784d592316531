#include "win/colors.h"

#include "tests/support/unit_test.h"

namespace win {
namespace {

using testkit::RecordedCall;

constexpr COLORREF kOrdinaryGround = RGB(255, 255, 255);
constexpr COLORREF kDialogGround = RGB(0xF0, 0xF0, 0xF0);

RecordedCall ContrastSwitched(bool contrast) {
    ForgetColors();
    return FAKE_CALL(SystemParametersInfoW, [contrast](UINT what, UINT size, PVOID value, UINT) -> WINBOOL {
        EXPECT_EQ(what, static_cast<UINT>(SPI_GETHIGHCONTRAST));
        EXPECT_EQ(size, sizeof(HIGHCONTRASTW));
        static_cast<HIGHCONTRASTW*>(value)->dwFlags = contrast ? HCF_HIGHCONTRASTON : HCF_AVAILABLE;
        return TRUE;
    });
}

class ColorsTest : public ::testing::Test {
  protected:
    ~ColorsTest() override { ForgetColors(); }
};

TEST_F(ColorsTest, AreTheProgramsOwnInTheOrdinaryLook) {
    const RecordedCall theme = ContrastSwitched(false);
    EXPECT_EQ(ColorOf(Color::kLabel), COLORREF{0x565656});
    EXPECT_EQ(ColorOf(Color::kTipGround), COLORREF{0xDDE1DD});
    EXPECT_EQ(ColorOf(Color::kTaken), COLORREF{255});
    EXPECT_EQ(ColorOf(Color::kFree), COLORREF{0xFF0000});
    EXPECT_EQ(ColorOf(Color::kEvenRow), kOrdinaryGround);
}

TEST_F(ColorsTest, AreTheSystemsUnderAContrastTheme) {
    const RecordedCall theme = ContrastSwitched(true);
    const RecordedCall system = FAKE_CALL(GetSysColor, [](int index) -> DWORD { return 1000U + index; });
    EXPECT_EQ(ColorOf(Color::kLabel), COLORREF{1000 + COLOR_BTNTEXT});
    EXPECT_EQ(ColorOf(Color::kEvenRow), COLORREF{1000 + COLOR_WINDOW});
    EXPECT_EQ(ColorOf(Color::kOddRow), COLORREF{1000 + COLOR_WINDOW});
    EXPECT_EQ(ColorOf(Color::kRemark), COLORREF{1000 + COLOR_WINDOWTEXT});
    EXPECT_EQ(ColorOf(Color::kLink), COLORREF{1000 + COLOR_HOTLIGHT});
    EXPECT_EQ(ColorOf(Color::kTipGround), COLORREF{1000 + COLOR_INFOBK});
}

TEST_F(ColorsTest, AreTheSystemsOnDarkGroundWhateverItIsCalled) {
    const RecordedCall theme = ContrastSwitched(false);
    for (const int dark : {COLOR_WINDOW, COLOR_BTNFACE}) {
        ForgetColors();
        const RecordedCall system = FAKE_CALL(GetSysColor, [dark](int index) -> DWORD {
            return index == dark ? RGB(32, 32, 32) : kOrdinaryGround;
        });
        EXPECT_TRUE(ContrastTheme());
    }
}

TEST_F(ColorsTest, AskForTheThemeOnceUntilItMayHaveChanged) {
    {
        const RecordedCall theme = ContrastSwitched(true);
        EXPECT_TRUE(ContrastTheme());
    }
    {
        const RecordedCall unasked = FAKE_CALL(SystemParametersInfoW, []() -> WINBOOL {
            ADD_FAILURE() << "asked again";
            return FALSE;
        });
        EXPECT_TRUE(ContrastTheme());
    }
    const RecordedCall refused = ANSWER_CALL(SystemParametersInfoW, FALSE);
    ForgetColors();
    EXPECT_FALSE(ContrastTheme());
}

TEST_F(ColorsTest, KnowsADarkGround) {
    EXPECT_TRUE(IsDark(RGB(0, 0, 0)));
    EXPECT_TRUE(IsDark(RGB(0x20, 0x20, 0x60)));
    EXPECT_TRUE(IsDark(RGB(0, 0, 255)));
    EXPECT_FALSE(IsDark(kDialogGround));
    EXPECT_FALSE(IsDark(RGB(255, 255, 0)));
    EXPECT_FALSE(IsDark(kOrdinaryGround));
}

}  // namespace
}  // namespace win
