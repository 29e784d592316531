#include "sys/mouse_wheel.h"

#include "tests/support/unit_test.h"
#include "win/errors.h"

namespace sys {
namespace {

using ::testing::ElementsAre;

std::vector<UINT>& Received() {
    static std::vector<UINT> messages;
    return messages;
}

LRESULT CALLBACK OwnProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_MOUSEWHEEL && message != WM_APP) return DefWindowProcW(window, message, wParam, lParam);
    Received().push_back(message);
    return 42;
}

class MouseWheelTest : public ::testing::Test {
  protected:
    MouseWheelTest() {
        Received().clear();
        for (const HWND window : {window_.Handle(), other_.Handle()})
            SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&OwnProcedure));
    }
    ~MouseWheelTest() override { UnhookWheel(); }

    void Hook(const testkit::HiddenWindow& window) {
        HookWheel(window.Handle(), [this](const WheelTurn& turn) {
            EXPECT_TRUE(Received().empty());
            turns_.push_back(turn);
        });
    }
    static LRESULT Turn(const testkit::HiddenWindow& window) {
        return SendMessageW(window.Handle(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, 120), MAKELPARAM(11, 22));
    }
    static LONG_PTR ProcedureOf(const testkit::HiddenWindow& window) {
        return GetWindowLongPtrW(window.Handle(), GWLP_WNDPROC);
    }

    testkit::HiddenWindow window_;
    testkit::HiddenWindow other_;
    std::vector<WheelTurn> turns_;
};

TEST_F(MouseWheelTest, ANotchIsPlus120AwayFromTheUserAndMinus120TowardTheUser) {
    EXPECT_EQ(WheelTurnOf(0x00780000, 0).Rotation, 120);
    EXPECT_EQ(WheelTurnOf(0xFF880000, 0).Rotation, -120);
    EXPECT_EQ(WheelTurnOf(0, 0).Rotation, 0);
}

TEST_F(MouseWheelTest, TheRotationIsTheLowHalfOfTheParameterAsASignedNumber) {
    // As a 64-bit program gets it: sign-extended or not.
    EXPECT_EQ(WheelTurnOf(static_cast<WPARAM>(0xFFFFFFFFFF880000ULL), 0).Rotation, -120);
    EXPECT_EQ(WheelTurnOf(static_cast<WPARAM>(0x12345678FF880000ULL), 0).Rotation, -120);
    EXPECT_EQ(WheelTurnOf(0x7FFF0000, 0).Rotation, 32767);
    EXPECT_EQ(WheelTurnOf(0x80000000, 0).Rotation, -32768);
}

TEST_F(MouseWheelTest, TheRotationIsRoundedToTheNearestNumber) {
    EXPECT_EQ(WheelTurnOf(0x0078007F, 0).Rotation, 120);
    EXPECT_EQ(WheelTurnOf(0xFF88007F, 0).Rotation, -120);
    EXPECT_EQ(WheelTurnOf(0x0078FFFF, 0).Rotation, 121);
}

TEST_F(MouseWheelTest, KeysAndPlaceAreTheOtherParts) {
    EXPECT_EQ(WheelTurnOf(0x0078000C, 0x00160011), (WheelTurn{12, 120, 17, 22}));
    // Above the screen: negative, as the whole parameter is.
    EXPECT_EQ(WheelTurnOf(0, static_cast<LPARAM>(0xFFF60011)), (WheelTurn{0, 0, 17, -10}));
}

TEST_F(MouseWheelTest, TheFormHearsOfATurnBeforeTheWindowGetsIt) {
    Hook(window_);
    EXPECT_EQ(Turn(window_), 42);
    EXPECT_THAT(turns_, ElementsAre(WheelTurn{MK_CONTROL, 120, 11, 22}));
    EXPECT_THAT(Received(), ElementsAre(UINT{WM_MOUSEWHEEL}));
}

TEST_F(MouseWheelTest, OtherMessagesAreOnlyPassedOn) {
    Hook(window_);
    EXPECT_EQ(SendMessageW(window_.Handle(), WM_APP, 0, 0), 42);
    EXPECT_TRUE(turns_.empty());
}

TEST_F(MouseWheelTest, UnhookingPutsTheWindowsOwnProcedureBack) {
    const LONG_PTR before = ProcedureOf(window_);
    Hook(window_);
    EXPECT_NE(ProcedureOf(window_), before);
    UnhookWheel();
    EXPECT_EQ(ProcedureOf(window_), before);
    Turn(window_);
    EXPECT_TRUE(turns_.empty());
    UnhookWheel();
    EXPECT_EQ(ProcedureOf(window_), before);
}

TEST_F(MouseWheelTest, UnhookingLetsTheFormGo) {
    auto form = std::make_shared<int>();
    HookWheel(window_.Handle(), [form](const WheelTurn&) {});
    EXPECT_EQ(form.use_count(), 2);
    UnhookWheel();
    EXPECT_EQ(form.use_count(), 1);
}

TEST_F(MouseWheelTest, ThereIsOneHookAtATime) {
    const LONG_PTR before = ProcedureOf(window_);
    Hook(window_);
    Hook(window_);
    Turn(window_);
    EXPECT_EQ(turns_.size(), 1U);
    Received().clear();
    Hook(other_);
    EXPECT_EQ(ProcedureOf(window_), before);
    Turn(other_);
    EXPECT_EQ(turns_.size(), 2U);
}

TEST_F(MouseWheelTest, AWindowThatIsGoneIsNotHooked) {
    testkit::HiddenWindow gone;
    const HWND handle = gone.Handle();
    gone.Destroy();
    HookWheel(handle, [](const WheelTurn&) {});
    UnhookWheel();
    SUCCEED();
}

TEST_F(MouseWheelTest, TheFormMayUnhookWhileItHearsOfATurn) {
    HookWheel(window_.Handle(), [](const WheelTurn&) { UnhookWheel(); });
    EXPECT_EQ(Turn(window_), 42);
}

TEST_F(MouseWheelTest, ATurnThatComesAfterTheHookHasEndedIsOnlyPassedOn) {
    Hook(window_);
    UnhookWheel();
    // As another hook does that lies on top of this one and still calls it.
    EXPECT_EQ(WheelWndProc(window_.Handle(), WM_MOUSEWHEEL, MAKEWPARAM(0, 120), 0), 42);
    EXPECT_TRUE(turns_.empty());
}

TEST_F(MouseWheelTest, AnErrorOfTheFormDoesNotStopTheMessage) {
    static int reports;
    reports = 0;
    win::SetErrorReporter([](HWND, const char* message) noexcept {
        EXPECT_STREQ(message, "no");
        ++reports;
    });
    HookWheel(window_.Handle(), [](const WheelTurn&) { throw win::OverflowError("no"); });
    EXPECT_EQ(Turn(window_), 42);
    EXPECT_EQ(reports, 1);
}

TEST(WheelNotchesTest, SmallStepsAddUpToANotch) {
    WheelNotches wheel;
    for (int step = 1; step < 12; ++step)
        EXPECT_EQ(wheel.Add(-10, 100), 0) << step;
    EXPECT_EQ(wheel.Add(-10, 100), -1);
    for (int step = 1; step < 12; ++step)
        EXPECT_EQ(wheel.Add(-10, 100), 0) << step;
    EXPECT_EQ(wheel.Add(-25, 100), -1);
    EXPECT_EQ(wheel.Add(-105, 100), -1) << "fifteen were left over";
}

TEST(WheelNotchesTest, AFullStepIsOneNotchAtOnceAndALargeOneSeveral) {
    WheelNotches wheel;
    EXPECT_EQ(wheel.Add(120, 0), 1);
    EXPECT_EQ(wheel.Add(-120, 0), -1);
    EXPECT_EQ(wheel.Add(0, 0), 0);
    EXPECT_EQ(wheel.Add(360, 0), 3);
    EXPECT_EQ(wheel.Add(-32768, 0), -273);
}

TEST(WheelNotchesTest, ARestIsDroppedWhenTheDirectionChangesAndAfterAPause) {
    WheelNotches wheel;
    EXPECT_EQ(wheel.Add(110, 0), 0);
    EXPECT_EQ(wheel.Add(-20, 10), 0);
    EXPECT_EQ(wheel.Add(-100, 20), -1) << "the way back counts from its beginning";
    EXPECT_EQ(wheel.Add(-110, 30), 0);
    EXPECT_EQ(wheel.Add(-10, 1031), 0) << "too late";
    EXPECT_EQ(wheel.Add(-110, 2031), -1) << "just in time";
    EXPECT_EQ(wheel.Add(60, 0xFFFFFFF0U), 0);
    EXPECT_EQ(wheel.Add(60, 0x10), 1) << "over the clock's end";
}

}  // namespace
}  // namespace sys
