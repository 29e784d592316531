#include "model/button_place.h"

#include <gtest/gtest.h>

#include "model/button_record.h"
#include "win/errors.h"

namespace model {
namespace {

TEST(ButtonPlaceTest, AKeyIsTheTabsNumberFollowedByTheButtons) {
    EXPECT_EQ((ButtonPlace{1, 1}).Key(), "11");
    EXPECT_EQ((ButtonPlace{6, 9}).Key(), "69");
    EXPECT_EQ((ButtonPlace{2, 0}).Key(), "20");
}

TEST(ButtonPlaceTest, EveryKeyLeadsBackToItsPlace) {
    for (int tab = 1; tab <= kTabCount; ++tab)
        for (int slot = 0; slot <= kButtonCount; ++slot)
            EXPECT_EQ(ButtonPlace::Parse(ButtonPlace{tab, slot}.Key()), (ButtonPlace{tab, slot}));
}

TEST(ButtonPlaceTest, NoOtherKeyIsAPlace) {
    for (const char* key : {"", "name", "0", "9", "70", "99", "110", "-1", "-15", "1-1"})
        EXPECT_THROW(ButtonPlace::Parse(key), win::SubscriptError) << key;
    EXPECT_THROW(ButtonPlace::Parse("99999999999"), win::OverflowError);
}

TEST(ButtonRecordTest, TheNameIsTheTextBeforeTheFirstBarAndTheIconTheNumberAfterTheLast) {
    const ButtonPlace place{2, 3};
    EXPECT_EQ(ButtonRecord::Parse(place, "Name|7").name, "Name");
    EXPECT_EQ(ButtonRecord::Parse(place, "Name|7").icon, 7);
    EXPECT_EQ(ButtonRecord::Parse(place, "Група 文|4|12").name, "Група 文");
    EXPECT_EQ(ButtonRecord::Parse(place, "Група 文|4|12").icon, 12);
    EXPECT_EQ(ButtonRecord::Parse(place, "|0").name, "");
    EXPECT_EQ(ButtonRecord::Parse(place, "7 bars").name, "7 bars");
    EXPECT_EQ(ButtonRecord::Parse(place, "7 bars").icon, 0);
    EXPECT_EQ(ButtonRecord::Parse(place, "n|99999999999").icon, 0);
}

TEST(ButtonRecordTest, ARecordGroupIsNamedByItsPlacesKey) {
    EXPECT_EQ(ButtonRecord::Parse({2, 3}, "Group").name, "23");
    EXPECT_EQ(ButtonRecord::Parse({2, 3}, "Group|0").name, "Group");
    EXPECT_EQ(ButtonRecord::Parse({2, 3}, "group").name, "group");
    EXPECT_EQ(RecordName("99", "Group"), "99");
}

TEST(ButtonRecordTest, ItsTextIsReadBackAsItWas) {
    const ButtonRecord record{"Ноте 文", 17};
    EXPECT_EQ(record.Text(), "Ноте 文|17");
    EXPECT_EQ(ButtonRecord::Parse({1, 1}, record.Text()).icon, 17);
}

TEST(ButtonRecordTest, AnotherNameKeepsWhatStandsBehindIt) {
    EXPECT_EQ(WithName("old|07|x", "new"), "new|07|x");
    EXPECT_EQ(WithName("old", "new"), "new|");
}

}  // namespace
}  // namespace model
