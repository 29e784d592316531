#include "win/message_ban.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "res/resource.h"
#include "tests/support/recorded_call.h"
#include "win/dialog.h"
#include "win/input_pause.h"
#include "win/menu_array.h"
#include "win/window.h"

namespace win {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

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
    EXPECT_THAT(g_breaches,
                ElementsAre("a dialog", "a menu", "a window of the system", "a wait that handles events"));
    LetMessagesRun();
    EXPECT_EQ(g_breaches.size(), 4u);
}

TEST_F(MessageBanTest, NobodyIsToldOfABreachWithoutAHandler) {
    SetBanBreachHandler(nullptr);
    const MessageBan ban;
    LetMessagesRun();
    EXPECT_THAT(g_breaches, IsEmpty());
}

}  // namespace
}  // namespace win
