#include "win/key_repeat.h"

#include "tests/support/unit_test.h"

namespace win {
namespace {

constexpr LPARAM kPressed = 0x001C0001;
constexpr LPARAM kRepeated = 0x401C0001;

/// Whether a modal loop would drop the message.
bool IsDropped(int code, UINT message, WPARAM key, LPARAM lParam) {
    MSG waiting{};
    waiting.message = message;
    waiting.wParam = key;
    waiting.lParam = lParam;
    return CallMsgFilterW(&waiting, code) != FALSE;
}

TEST(KeyRepeatTest, IsKnownByTheThirtiethBit) {
    EXPECT_FALSE(IsKeyRepeat(kPressed));
    EXPECT_TRUE(IsKeyRepeat(kRepeated));
    // A key that is let go has the bit too; nobody asks about those messages.
    EXPECT_TRUE(IsKeyRepeat(static_cast<LPARAM>(0xC01C0001)));
    EXPECT_FALSE(IsKeyRepeat(static_cast<LPARAM>(0x801C0001)));
}

TEST(KeyRepeatTest, AKeyActsOnceWhereItOpensStoresOrClosesSomething) {
    constexpr KeyPlace kAll[] = {KeyPlace::kPanel, KeyPlace::kButton, KeyPlace::kDialog, KeyPlace::kMenu};
    for (const KeyPlace place : kAll) {
        for (const WPARAM key : {WPARAM{VK_RETURN}, WPARAM{VK_F1}, WPARAM{VK_F10}})
            EXPECT_TRUE(ActsOnce(key, place)) << key;
        for (const WPARAM key : {WPARAM{VK_DOWN}, WPARAM{VK_TAB}, WPARAM{VK_BACK}, WPARAM{'A'}})
            EXPECT_FALSE(ActsOnce(key, place)) << key;
        EXPECT_EQ(ActsOnce(VK_SPACE, place), place == KeyPlace::kButton || place == KeyPlace::kMenu)
            << "elsewhere it types";
        EXPECT_EQ(ActsOnce(VK_ESCAPE, place), place == KeyPlace::kPanel);
        EXPECT_EQ(ActsOnce(VK_F2, place), place == KeyPlace::kPanel);
    }
}

TEST(KeyRepeatTest, ModalLoopsGetTheFirstPressOfEnterOnly) {
    std::optional<KeyRepeatFilter> filter(std::in_place);
    for (const int code : {MSGF_DIALOGBOX, MSGF_MENU}) {
        for (const WPARAM key : {WPARAM{VK_RETURN}, WPARAM{VK_F1}, WPARAM{VK_F10}}) {
            EXPECT_FALSE(IsDropped(code, WM_KEYDOWN, key, kPressed)) << key;
            EXPECT_TRUE(IsDropped(code, WM_KEYDOWN, key, kRepeated)) << key;
            EXPECT_TRUE(IsDropped(code, WM_SYSKEYDOWN, key, kRepeated)) << key;
            EXPECT_FALSE(IsDropped(code, WM_KEYUP, key, kRepeated)) << key;
        }
        EXPECT_FALSE(IsDropped(code, WM_KEYDOWN, 'A', kRepeated));
        EXPECT_FALSE(IsDropped(code, WM_KEYDOWN, VK_DOWN, kRepeated));
    }
    EXPECT_FALSE(IsDropped(MSGF_DIALOGBOX, WM_KEYDOWN, VK_SPACE, kRepeated)) << "it types";
    EXPECT_TRUE(IsDropped(MSGF_MENU, WM_KEYDOWN, VK_SPACE, kRepeated));
    EXPECT_FALSE(IsDropped(MSGF_SCROLLBAR, WM_KEYDOWN, VK_RETURN, kRepeated));
    filter.reset();
    EXPECT_FALSE(IsDropped(MSGF_DIALOGBOX, WM_KEYDOWN, VK_RETURN, kRepeated)) << "the filter is gone";
}

}  // namespace
}  // namespace win
