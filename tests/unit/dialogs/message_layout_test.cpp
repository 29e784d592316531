#include "dialogs/message_layout.h"

#include "tests/support/unit_test.h"

namespace dialogs {
namespace {

using ::testing::ElementsAre, ::testing::IsEmpty;

constexpr int kTextHeight = 600;

std::vector<int> ButtonLefts(int buttons) {
    std::vector<int> lefts;
    for (const TwipsRect& button : LayOutMessage(kTextHeight, buttons, false).buttons)
        lefts.push_back(button.left);
    return lefts;
}

int Bottom(const TwipsRect& rect) { return rect.top + rect.height; }

TEST(MessageLayoutTest, PlacesTwoAndThreeButtonsAtTheirFixedLeftEdges) {
    EXPECT_THAT(ButtonLefts(2), ElementsAre(570, 3180));
    EXPECT_THAT(ButtonLefts(3), ElementsAre(390, 1875, 3360));
}

TEST(MessageLayoutTest, CentresASingleButton) {
    const MessageLayout layout = LayOutMessage(kTextHeight, 1, false);
    ASSERT_EQ(layout.buttons.size(), 1u);
    const TwipsRect& button = layout.buttons[0];
    EXPECT_EQ(button.left, layout.clientWidth - (button.left + button.width));
}

TEST(MessageLayoutTest, HasNoButtonsForACountOfNone) { EXPECT_THAT(ButtonLefts(0), IsEmpty()); }

TEST(MessageLayoutTest, CountsMoreThanThreeButtonsAsThree) {
    EXPECT_THAT(ButtonLefts(4), ElementsAre(390, 1875, 3360));
}

TEST(MessageLayoutTest, KeepsButtonsApartAndInsideTheWindow) {
    for (const int count : {1, 2, 3}) {
        const MessageLayout layout = LayOutMessage(kTextHeight, count, false);
        int free = 0;
        for (const TwipsRect& button : layout.buttons) {
            EXPECT_GT(button.left, free) << count << " buttons";
            free = button.left + button.width;
        }
        EXPECT_LT(free, layout.clientWidth) << count << " buttons";
    }
}

TEST(MessageLayoutTest, EndsTheWindow250TwipsBelowTheButtonRow) {
    for (const int count : {1, 2, 3}) {
        for (const bool inBox : {false, true}) {
            const MessageLayout layout = LayOutMessage(kTextHeight, count, inBox);
            for (const TwipsRect& button : layout.buttons)
                EXPECT_EQ(layout.clientHeight, Bottom(button) + 250) << count << " buttons, input " << inBox;
        }
    }
}

TEST(MessageLayoutTest, GivesTheTextItsHeightAndPutsTheButtonsBelowIt) {
    for (const int height : {195, 600, 9000}) {
        const MessageLayout layout = LayOutMessage(height, 2, false);
        EXPECT_EQ(layout.text.height, height);
        EXPECT_GT(layout.buttons[0].top, Bottom(layout.text));
    }
}

TEST(MessageLayoutTest, GrowsByWhatTheTextGrows) {
    EXPECT_EQ(LayOutMessage(1600, 3, true).clientHeight - LayOutMessage(600, 3, true).clientHeight, 1000);
}

TEST(MessageLayoutTest, WrapsTheTextAtTheWidthItIsGiven) {
    EXPECT_EQ(LayOutMessage(kTextHeight, 1, false).text.width, MessageTextWidth());
}

TEST(MessageLayoutTest, PutsTheInputLineBetweenTextAndButtons) {
    const MessageLayout layout = LayOutMessage(kTextHeight, 2, true);
    EXPECT_GE(layout.input.width, 900);
    EXPECT_GT(layout.input.height, 0);
    EXPECT_GT(layout.input.top, Bottom(layout.text));
    EXPECT_GT(layout.buttons[0].top, Bottom(layout.input));
    EXPECT_LE(layout.input.left + layout.input.width, layout.clientWidth);
}

TEST(MessageLayoutTest, LeavesNoRoomForAnInputLineThatIsNotAskedFor) {
    const MessageLayout layout = LayOutMessage(kTextHeight, 2, false);
    EXPECT_EQ(layout.input.width, 0);
    EXPECT_LT(layout.clientHeight, LayOutMessage(kTextHeight, 2, true).clientHeight);
}

TEST(MessageLayoutTest, ClosesUpBelowTheTextWithoutButtons) {
    const MessageLayout layout = LayOutMessage(kTextHeight, 0, false);
    EXPECT_GE(layout.clientHeight, Bottom(layout.text) + 250);
    EXPECT_LT(layout.clientHeight, LayOutMessage(kTextHeight, 1, false).clientHeight);
}

}  // namespace
}  // namespace dialogs
