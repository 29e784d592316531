#include "win/message_ban.h"

#include <gtest/gtest-spi.h>

#include "res/resource.h"
#include "tests/support/unit_test.h"
#include "win/dialog.h"
#include "win/errors.h"
#include "win/input_pause.h"
#include "win/menu_array.h"
#include "win/window.h"

namespace win {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

std::vector<std::string> g_breaches;

class MessageBanTest : public ::testing::Test {
  protected:
    MessageBanTest() {
        g_breaches.clear();
        SetBanBreachHandler([](const char* routine) noexcept { g_breaches.emplace_back(routine); });
    }

    /// Everything that lets messages run, once.
    void LetMessagesRun() {
        const auto dialog = FAKE_CALL(DialogBoxIndirectParamW, [] { return INT_PTR{1}; });
        const auto menu = ANSWER_CALL(TrackPopupMenu, 0);
        class Nothing : public Dialog {
          public:
            void Show() { ShowModal(nullptr, IDD_MESSAGE); }

          protected:
            bool OnCommand(int, int) override { return false; }
        };
        Nothing().Show();
        TrackMenu(MenuArray(1, {}), {}, nullptr);
        {
            const InputPause pause;
        }
        ProcessPendingMessages();
        SetErrorReporter([](HWND, const char*) noexcept {});
        Guarded(nullptr, 0, []() -> int { throw RuntimeError("shown to the user"); });
        SetErrorReporter(nullptr);
    }
};

TEST_F(MessageBanTest, IsBrokenByWhateverLetsMessagesRun) {
    LetMessagesRun();
    EXPECT_TRUE(MayPump());
    EXPECT_THAT(g_breaches, IsEmpty());
    {
        const MessageBan ban;
        {
            const MessageBan inner;
        }
        EXPECT_FALSE(MayPump());
        LetMessagesRun();
    }
    EXPECT_THAT(g_breaches, ElementsAre("a dialog", "a menu", "a window of the system",
                                        "a wait that handles events", "an error report"));
    LetMessagesRun();
    EXPECT_EQ(g_breaches.size(), 5u);
}

TEST_F(MessageBanTest, NobodyIsToldOfABreachWithoutAHandler) {
    SetBanBreachHandler(nullptr);
    const MessageBan ban;
    LetMessagesRun();
    EXPECT_THAT(g_breaches, IsEmpty());
}

// Without what is set at the beginning of each test, both would go unnoticed.
TEST(MessageBanDefaultTest, ABreachFailsTheTestInWhichItHappens) {
    EXPECT_NONFATAL_FAILURE(
        {
            const MessageBan ban;
            AssertMayPump("a dialog");
        },
        "Messages run in the middle of what they must not see: a dialog");
}

TEST(MessageBanDefaultTest, AnErrorThatGetsOutOfAHandlerFailsTheTestInWhichItHappens) {
    EXPECT_NONFATAL_FAILURE(Guarded(nullptr, 0, []() -> int { throw RuntimeError("unseen"); }),
                            "Error report: unseen");
}

}  // namespace
}  // namespace win
