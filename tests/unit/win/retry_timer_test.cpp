#include "win/retry_timer.h"

#include "tests/support/unit_test.h"

namespace {

using ::testing::ElementsAre;
using testkit::RecordedCall;

class RetryTimerTest : public testing::Test {
  protected:
    HWND Handle() const { return window_.Handle(); }

    testkit::HiddenWindow window_;
    std::vector<UINT> pauses_;
    RecordedCall set_ = FAKE_CALL(SetTimer, [this](HWND window, UINT_PTR id, UINT pause, TIMERPROC) {
        EXPECT_EQ(window, Handle());
        EXPECT_EQ(id, 7u);
        pauses_.push_back(pause);
        return id;
    });
    win::RetryTimer timer_{7, 200};
};

TEST_F(RetryTimerTest, TriesEverMoreRarelyForAsLongAsItIsAskedTo) {
    int tries = 0;
    timer_.onTry = [&] {
        if (++tries < 8) timer_.Again(Handle());
    };
    timer_.Again(Handle());
    for (int time = 0; time < 8; ++time)
        EXPECT_TRUE(timer_.OnTimer(Handle(), 7));
    EXPECT_THAT(pauses_, ElementsAre(200, 400, 800, 1600, 3200, 5000, 5000, 5000));
    // Somebody else asks: something new has happened.
    timer_.Again(Handle());
    EXPECT_EQ(pauses_.back(), 200u);
}

TEST_F(RetryTimerTest, LeavesOtherTimersAlone) {
    timer_.onTry = [] { ADD_FAILURE() << "tried"; };
    EXPECT_FALSE(timer_.OnTimer(Handle(), 8));
}

TEST_F(RetryTimerTest, IsAsQuickAsEverAfterATryThatThrew) {
    timer_.onTry = [] { throw std::runtime_error("no memory"); };
    timer_.Again(Handle());
    EXPECT_THROW(timer_.OnTimer(Handle(), 7), std::runtime_error);
    timer_.Again(Handle());
    EXPECT_THAT(pauses_, ElementsAre(200, 200));
}

}  // namespace
