#include "model/button_records.h"

#include "config/settings.h"
#include "tests/support/unit_test.h"
#include "win/errors.h"

namespace model {
namespace {

using testkit::ProgramFolder, testkit::ScopedIniPath;

class ButtonRecordsTest : public ::testing::Test {
  protected:
    void TearDown() override { config::Settings = {}; }

    ProgramFolder folder_;
    ScopedIniPath ini_{folder_.IniPath()};
};

TEST_F(ButtonRecordsTest, LoadingAsksForAllSixtyKeysInOrder) {
    folder_.WriteIniText("[Settings]\r\n");
    std::vector<std::string> asked;
    const testkit::RecordedCall read =
        FAKE_CALL(GetPrivateProfileStringA, [&](LPCSTR section, LPCSTR key, LPCSTR, LPSTR, DWORD, LPCSTR) {
            asked.push_back(std::string(section) + " " + key);
            return DWORD{0};
        });
    ButtonRecords().LoadButtonRecords();
    std::vector<std::string> expected;
    for (int key = 10; key <= 69; ++key) {
        expected.push_back("Buttons " + std::to_string(key));
    }
    EXPECT_EQ(asked, expected);
}

TEST_F(ButtonRecordsTest, LoadingKeepsTheRecordsOfTabsAndButtons) {
    folder_.WriteIniText(
        "[Buttons]\r\n10=Посао|Све|и још\r\n11=Ћирилица č 文|3\r\n69=last|0\r\n35=Group\r\n");
    ButtonRecords records;
    records.LoadButtonRecords();
    EXPECT_EQ(records.At("10"), "Посао|Све|и још");
    EXPECT_EQ(records.At("11"), "Ћирилица č 文|3");
    EXPECT_EQ(records.At("35"), "Group");
    EXPECT_EQ(records.At("69"), "last|0");
    EXPECT_EQ(records.At("12"), "");
}

TEST_F(ButtonRecordsTest, LoadingAgainForgetsWhatTheFileNoLongerHas) {
    folder_.WriteIniText("[Buttons]\r\n11=a|0\r\n");
    ButtonRecords records;
    records.LoadButtonRecords();
    folder_.WriteIniText("[Buttons]\r\n12=b|0\r\n");
    records.LoadButtonRecords();
    EXPECT_EQ(records.At("11"), "");
    EXPECT_EQ(records.At("12"), "b|0");
}

TEST_F(ButtonRecordsTest, AKeyOutsideTheTableIsABoundsError) {
    ButtonRecords records;
    for (const char* key : {"9", "70", "0", "-1", "", "name"}) {
        EXPECT_THROW(static_cast<void>(records.At(key)), win::SubscriptError) << key;
        EXPECT_THROW(records.Set(key, "x|0"), win::SubscriptError) << key;
    }
    EXPECT_THROW(static_cast<void>(records.At("99999999999")), win::RuntimeError);
    for (const char* key : {"10", "69"}) {
        EXPECT_NO_THROW(records.Set(key, "x|0")) << key;
        EXPECT_EQ(records.At(key), "x|0");
    }
}

TEST_F(ButtonRecordsTest, TheBoundsErrorNamesTheKey) {
    try {
        static_cast<void>(ButtonRecords().At("70"));
        FAIL() << "no error";
    } catch (const win::SubscriptError& error) {
        EXPECT_THAT(error.what(), ::testing::HasSubstr("\"70\""));
    }
}

TEST_F(ButtonRecordsTest, SelectingAButtonJoinsTheShownTabAndItsNumber) {
    config::Settings.CurrentTab = 4;
    ButtonContext context;
    context.Select(7);
    EXPECT_EQ(context.CurrentButtonIndex, 7);
    EXPECT_EQ(context.CurrentButtonKey, "47");
}

TEST_F(ButtonRecordsTest, AButtonIsFoundByTheNameInItsRecord) {
    struct Case {
        const char* ini;
        std::vector<std::pair<std::string, std::string>> found;
    };
    const Case cases[] = {
        {"[Buttons]\r\n11=Alpha|0\r\n12=\r\n13=Бета č|12|4\r\n",
         {{"Alpha", "11"}, {"Бета č", "13"}, {"Alph", ""}, {"alpha", ""}, {"Gamma", ""}}},
        // The first one in the file's order.
        {"[Buttons]\r\n25=Twice|0\r\n11=Twice|0\r\n", {{"Twice", "25"}}},
        // Tabs are no buttons, and no button has an empty name.
        {"[Buttons]\r\n10=Work|all\r\n20=Games|\r\n21=Work|0\r\n", {{"Work", "21"}, {"Games", ""}}},
        {"[Buttons]\r\n11=\r\n12=|0\r\n", {{"", ""}}},
        // A group under its own key.
        {"[Buttons]\r\n23=Group\r\n", {{"23", "23"}, {"Group", ""}}},
        {"[Settings]\r\n", {{"Alpha", ""}}},
        {"[Buttons]\r\n", {{"Alpha", ""}}}};
    for (const auto& [ini, found] : cases) {
        folder_.WriteIniText(ini);
        for (const auto& [name, key] : found)
            EXPECT_EQ(FindButtonKey(name), key) << name << " in " << ini;
    }
}

TEST_F(ButtonRecordsTest, LookingForAButtonReportsALineThatIsNoRecord) {
    folder_.WriteIniText("[Buttons]\r\n11=Alpha|0\r\njunk\r\n");
    EXPECT_THROW(FindButtonKey("Alpha"), win::InvalidArgumentError);
}

}  // namespace
}  // namespace model
