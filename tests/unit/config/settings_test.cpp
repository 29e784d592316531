#include "config/settings.h"

#include <limits>

#include "config/ini.h"
#include "tests/support/unit_test.h"
#include "tests/unit/config/config_file.h"
#include "win/errors.h"
#include "win/text.h"

namespace {

using ::testing::AllOf, ::testing::ElementsAre, ::testing::HasSubstr;
using testkit::CallLog, testkit::RecordedCall;

constexpr const char* kFieldNames[] = {
    "CurrentTab",           "StartWithWindows",  "StartGlued",        "HideAfterLaunch",
    "TaskbarProcessesOnly", "CloseButtonCloses", "ExtensiveTooltips", "Edge",
    "SingleClickOpen",      "ShowCollected",     "TabDescriptions"};
constexpr size_t kFieldCount = std::size(kFieldNames);

class SettingsTest : public ConfigFile {
  protected:
    SettingsTest() { config::Settings = {}; }
    ~SettingsTest() override { config::Settings = {}; }

    void WriteMain(const std::string& record) const {
        folder_.WriteIniText("[Settings]\r\nMain=" + record + "\r\n");
    }
    void WriteKey(const std::string& line) const { folder_.WriteIniText("[Settings]\r\n" + line + "\r\n"); }

    /// What an error has to say of a field of "Main".
    auto NamesField(size_t index) const {
        return AllOf(HasSubstr("field " + std::to_string(index) + " (" + kFieldNames[index] + ")"),
                     HasSubstr("\"Main\""), HasSubstr("\"Settings\""), HasSubstr(folder_.IniPath()));
    }
    auto NamesKey(const std::string& key) const {
        return AllOf(HasSubstr("\"" + key + "\""), HasSubstr("\"Settings\""), HasSubstr(folder_.IniPath()));
    }
};

/// The message of the Error that the operation has to throw.
template <class Error, class Operation>
std::string ErrorOf(Operation operation) {
    try {
        operation();
    } catch (const Error& error) {
        return error.what();
    } catch (const win::RuntimeError& error) {
        return std::string("another error: ") + error.what();
    }
    return "no error";
}

/// A whole record with one field replaced.
std::string MainWith(size_t index, const std::string& value) {
    std::vector<std::string> fields(kFieldCount, "False");
    fields[0] = "1";
    fields[7] = "4";
    fields[index] = value;
    return win::Join(fields, ',');
}

TEST_F(SettingsTest, LoadsTheElevenFieldsOfMain) {
    WriteMain("3,True,False,True,False,True,False,2,True,False,True");
    config::LoadMainSettings();
    const config::SettingsRecord& s = config::Settings;
    EXPECT_EQ(s.CurrentTab, 3);
    EXPECT_EQ(s.Edge, 2);
    EXPECT_TRUE(s.StartWithWindows && s.HideAfterLaunch && s.CloseButtonCloses && s.SingleClickOpen &&
                s.TabDescriptions);
    EXPECT_FALSE(s.StartGlued || s.TaskbarProcessesOnly || s.ExtensiveTooltips || s.ShowCollected);
}

TEST_F(SettingsTest, LoadsEachBooleanFromItsOwnField) {
    bool config::SettingsRecord::* const fields[] = {nullptr,
                                                     &config::SettingsRecord::StartWithWindows,
                                                     &config::SettingsRecord::StartGlued,
                                                     &config::SettingsRecord::HideAfterLaunch,
                                                     &config::SettingsRecord::TaskbarProcessesOnly,
                                                     &config::SettingsRecord::CloseButtonCloses,
                                                     &config::SettingsRecord::ExtensiveTooltips,
                                                     nullptr,
                                                     &config::SettingsRecord::SingleClickOpen,
                                                     &config::SettingsRecord::ShowCollected,
                                                     &config::SettingsRecord::TabDescriptions};
    for (size_t index = 0; index < kFieldCount; ++index) {
        if (fields[index] == nullptr) continue;
        WriteMain(MainWith(index, "True"));
        config::LoadMainSettings();
        for (size_t other = 0; other < kFieldCount; ++other) {
            if (fields[other] == nullptr) continue;
            EXPECT_EQ(config::Settings.*fields[other], other == index) << kFieldNames[other];
        }
    }
}

TEST_F(SettingsTest, IgnoresFieldsAfterTheEleventh) {
    WriteMain(MainWith(10, "True") + ",maybe,12");
    config::LoadMainSettings();
    EXPECT_TRUE(config::Settings.TabDescriptions);
}

TEST_F(SettingsTest, NamesTheFirstFieldThatIsMissing) {
    std::string record;
    for (size_t present = 0; present < kFieldCount; ++present) {
        if (present > 0)
            record += (present > 1 ? "," : "") + std::string(present == 1 || present == 8 ? "1" : "False");
        WriteMain(record);
        const std::string message = ErrorOf<win::SubscriptError>(config::LoadMainSettings);
        EXPECT_THAT(message, NamesField(present));
        EXPECT_THAT(message, HasSubstr("\"" + record + "\""));
    }
}

TEST_F(SettingsTest, NamesTheFirstFieldWhereThereIsNoRecord) {
    EXPECT_THAT(ErrorOf<win::SubscriptError>(config::LoadMainSettings), NamesField(0));
    WriteKey("popdelay=500");
    EXPECT_THAT(ErrorOf<win::SubscriptError>(config::LoadMainSettings), NamesField(0));
}

TEST_F(SettingsTest, NamesAFieldThatIsNoBoolean) {
    for (const size_t index : {1U, 2U, 3U, 4U, 5U, 6U, 8U, 9U, 10U}) {
        for (const std::string value : {"maybe", "", "Truee", "1x", "Ложь"}) {
            WriteMain(MainWith(index, value));
            EXPECT_THAT(ErrorOf<win::TypeMismatchError>(config::LoadMainSettings),
                        AllOf(NamesField(index), HasSubstr("\"" + value + "\"")));
        }
    }
}

TEST_F(SettingsTest, NamesANumberThatIsTooLarge) {
    const std::pair<size_t, const char*> numbers[] = {
        {0, "32768"}, {0, "-32769"}, {0, "2147483648"}, {7, "2147483648"}, {7, "-2147483649"}, {7, "1e999"}};
    for (const auto& [index, value] : numbers) {
        WriteMain(MainWith(index, value));
        EXPECT_THAT(ErrorOf<win::OverflowError>(config::LoadMainSettings),
                    AllOf(NamesField(index), HasSubstr(value)));
    }
    for (const std::string value : {"2147483648", "-2147483649"}) {
        WriteKey("popdelay=" + value);
        EXPECT_THAT(ErrorOf<win::OverflowError>(config::LoadPopUpSettings),
                    AllOf(NamesKey("popdelay"), HasSubstr(value)));
    }
}

TEST_F(SettingsTest, TakesNumbersUpToTheirWidth) {
    WriteMain(MainWith(0, "32767"));
    config::LoadMainSettings();
    EXPECT_EQ(config::Settings.CurrentTab, 32767);
    WriteMain(MainWith(0, "-32768"));
    config::LoadMainSettings();
    EXPECT_EQ(config::Settings.CurrentTab, -32768);
    WriteMain(MainWith(7, "-2147483648"));
    config::LoadMainSettings();
    EXPECT_EQ(config::Settings.Edge, std::numeric_limits<std::int32_t>::min());
}

TEST_F(SettingsTest, ReadsAFieldThatIsNoNumberAsZero) {
    WriteMain(MainWith(0, "first"));
    config::LoadMainSettings();
    EXPECT_EQ(config::Settings.CurrentTab, 0);
    WriteMain(MainWith(7, ""));
    config::LoadMainSettings();
    EXPECT_EQ(config::Settings.Edge, 0);
}

TEST_F(SettingsTest, ReadsTheNumberThatATextBeginsWith) {
    const std::pair<const char*, std::int32_t> texts[] = {{"", 0},
                                                          {"12", 12},
                                                          {"  7 ", 7},
                                                          {"\t8", 8},
                                                          {"-3", -3},
                                                          {"+5", 5},
                                                          {"4abc", 4},
                                                          {"5 6", 5},
                                                          {"abc4", 0},
                                                          {"1e3", 1000},
                                                          {"2.4", 2},
                                                          {"-2.6", -3},
                                                          {".6", 1},
                                                          {"007", 7},
                                                          {"0x10", 0},
                                                          {"inf", 0},
                                                          {"nan", 0},
                                                          {"-", 0},
                                                          {".", 0},
                                                          {"+-5", 0},
                                                          {"--5", 0},
                                                          {"1e-999", 0},
                                                          {"2147483647", 2147483647},
                                                          {"2147483647.4", 2147483647},
                                                          {"500 ms", 500},
                                                          {"٣", 0}};
    for (const auto& [text, number] : texts)
        EXPECT_EQ(config::LeadingNumber(text, "it"), number) << "of \"" << text << "\"";
}

TEST_F(SettingsTest, ReadsATextThatIsANumberAsAWhole) {
    const std::pair<const char*, std::int32_t> texts[] = {{"12", 12},
                                                          {" 7\t", 7},
                                                          {"-3", -3},
                                                          {"+5", 5},
                                                          {"2.6", 3},
                                                          {"1e3", 1000},
                                                          {"2147483647", 2147483647}};
    for (const auto& [text, number] : texts)
        EXPECT_EQ(config::ToNumber(text, "it"), number) << "of \"" << text << "\"";
    for (const std::string text : {"", " ", "soon", "4abc", "5 6", "500 ms", "0x10", "inf", "1,5", "٣"}) {
        EXPECT_THAT(ErrorOf<win::TypeMismatchError>([&] { config::ToNumber(text, "the delay"); }),
                    AllOf(HasSubstr("\"" + text + "\""), HasSubstr("the delay")));
    }
    for (const std::string text : {"2147483648", "-2147483649", "1e999"}) {
        EXPECT_THAT(ErrorOf<win::OverflowError>([&] { config::ToNumber(text, "the delay"); }),
                    AllOf(HasSubstr("\"" + text + "\""), HasSubstr("the delay")));
    }
}

TEST_F(SettingsTest, ReadsBooleansAsWordsInAnyCaseOrAsNumbers) {
    for (const std::string text : {"True", "true", "TRUE", " True ", "1", "-1", "2", "0.5", "1e3"})
        EXPECT_TRUE(config::ToBoolean(text, "it")) << text;
    for (const std::string text : {"False", "false", "FALSE", "\tFalse", "0", "-0", "0.0", "+0"})
        EXPECT_FALSE(config::ToBoolean(text, "it")) << text;
    for (const std::string text :
         {"", " ", "Yes", "No", "T", "1,5", "0x1", "inf", "nan", "1 2", "True False", "+", "e5"}) {
        EXPECT_THAT(ErrorOf<win::TypeMismatchError>([&] { config::ToBoolean(text, "the mark"); }),
                    AllOf(HasSubstr("\"" + text + "\""), HasSubstr("the mark")));
    }
}

TEST_F(SettingsTest, LoadsThePopUpSettings) {
    WriteKey("clickshow=True\r\npopdelay=250\r\npoptf=True");
    config::LoadPopUpSettings();
    EXPECT_TRUE(config::Settings.PopOnHover);
    EXPECT_EQ(config::Settings.PopDelay, 250);
    EXPECT_TRUE(config::Settings.ClickShows);
}

TEST_F(SettingsTest, ReadsAbsentOrEmptyPopUpMarksAsFalse) {
    for (const std::string lines : {"other=1", "poptf=\r\nclickshow=", "poptf=False\r\nclickshow=0"}) {
        WriteKey(lines);
        config::Settings.PopOnHover = config::Settings.ClickShows = true;
        config::LoadPopUpSettings();
        EXPECT_FALSE(config::Settings.PopOnHover) << lines;
        EXPECT_FALSE(config::Settings.ClickShows) << lines;
    }
}

TEST_F(SettingsTest, ReadsAMissingOrZeroDelayAs500) {
    for (const std::string line : {"other=1", "popdelay=", "popdelay=0", "popdelay=soon", "popdelay=0.4"}) {
        WriteKey(line);
        config::Settings.PopDelay = 1;
        config::LoadPopUpSettings();
        EXPECT_EQ(config::Settings.PopDelay, 500) << line;
    }
}

TEST_F(SettingsTest, NamesAPopUpMarkThatIsNoBoolean) {
    for (const std::string key : {"poptf", "clickshow"}) {
        WriteKey(key + "=perhaps");
        EXPECT_THAT(ErrorOf<win::TypeMismatchError>(config::LoadPopUpSettings),
                    AllOf(NamesKey(key), HasSubstr("\"perhaps\"")));
    }
}

TEST_F(SettingsTest, ChecksThePopUpSettingsWithoutTakingThem) {
    WriteKey("poptf=True\r\npopdelay=250\r\nclickshow=True");
    config::CheckPopUpSettings();
    EXPECT_FALSE(config::Settings.PopOnHover);
    EXPECT_EQ(config::Settings.PopDelay, 500);
    EXPECT_FALSE(config::Settings.ClickShows);
    for (const std::string key : {"poptf", "clickshow"}) {
        WriteKey(key + "=perhaps");
        EXPECT_THAT(ErrorOf<win::TypeMismatchError>(config::CheckPopUpSettings), NamesKey(key));
    }
    WriteKey("popdelay=2147483648");
    EXPECT_THAT(ErrorOf<win::OverflowError>(config::CheckPopUpSettings), NamesKey("popdelay"));
}

TEST_F(SettingsTest, ReadsThePopUpSettingsInTheirOrder) {
    CallLog log;
    const RecordedCall read = FAKE_CALL(
        GetPrivateProfileStringA, [&](LPCSTR section, LPCSTR key, LPCSTR, LPSTR, DWORD, LPCSTR) -> DWORD {
            log.Add(section, key);
            return 0;
        });
    config::LoadPopUpSettings();
    EXPECT_THAT(log.Lines(), ElementsAre("Settings poptf", "Settings popdelay", "Settings clickshow"));
}

TEST_F(SettingsTest, SavesFourValuesInTheirOrder) {
    config::Settings = {.CurrentTab = 1,
                        .StartWithWindows = false,
                        .StartGlued = true,
                        .HideAfterLaunch = true,
                        .TaskbarProcessesOnly = true,
                        .CloseButtonCloses = false,
                        .ExtensiveTooltips = true,
                        .Edge = 4,
                        .SingleClickOpen = false,
                        .ShowCollected = true,
                        .TabDescriptions = false,
                        .PopOnHover = true,
                        .PopDelay = 250,
                        .ClickShows = false};
    CallLog log;
    const RecordedCall write = STUB_CALL(log, WritePrivateProfileStringA, TRUE);
    config::SaveSettings();
    const std::string start = "WritePrivateProfileStringA Settings ";
    const std::string file = " " + folder_.FullPath(SideName(1));
    EXPECT_THAT(log.Lines(),
                ElementsAre(start + "Main 1,False,True,True,True,False,True,4,False,True,False" + file,
                            start + "popdelay 250" + file, start + "poptf True" + file,
                            start + "clickshow False" + file));
}

TEST_F(SettingsTest, TheHotKeyIsANumberOrNone) {
    const struct {
        const char* text;
        int word;
    } rows[] = {{"1617", 1617}, {"65535", 65535}, {"65536", 0},          {"0", 0},      {"-5", 0},
                {"", 0},        {"keys", 0},      {"99999999999999", 0}, {" 833 ", 833}};
    for (const auto& [text, word] : rows) {
        WriteKey(std::string("hotkey=") + text);
        config::LoadHotKey();
        EXPECT_EQ(config::Settings.HotKey, word) << text;
    }
    WriteKey("other=1");
    config::LoadHotKey();
    EXPECT_EQ(config::Settings.HotKey, 0);
}

TEST_F(SettingsTest, TheHotKeyIsSavedLastAndOnlyWhereThereIsOrWasOne) {
    WriteKey("other=1");
    config::LoadHotKey();
    config::SaveSettings();
    EXPECT_FALSE(folder_.IniValue("Settings", "hotkey").has_value());
    config::Settings.HotKey = 1617;
    config::SaveSettings();
    EXPECT_EQ(folder_.Ini().Keys("Settings").back(), "hotkey");
    EXPECT_EQ(folder_.IniValue("Settings", "hotkey"), "1617");
    config::LoadHotKey();
    config::Settings.HotKey = 0;
    config::SaveSettings();
    EXPECT_EQ(folder_.IniValue("Settings", "hotkey"), "0");
}

TEST_F(SettingsTest, AreCompleteForANewUserAndAsTheOptionsDocumentThem) {
    folder_.WriteIniText(testkit::NewUsersIni());
    config::LoadMainSettings();
    config::LoadPopUpSettings();
    const config::SettingsRecord& s = config::Settings;
    EXPECT_FALSE(s.StartWithWindows || s.StartGlued || s.CloseButtonCloses || s.SingleClickOpen);
    EXPECT_TRUE(s.HideAfterLaunch && s.TaskbarProcessesOnly && s.ExtensiveTooltips && s.ShowCollected &&
                s.PopOnHover && s.ClickShows);
    EXPECT_EQ(s.PopDelay, 500);
    EXPECT_THAT(s.CurrentTab, AllOf(testing::Ge(1), testing::Le(6)));
    EXPECT_EQ(s.Edge, 1) << "the left one: the taskbar lies at the bottom one";
    // Each of the values is there, in the form that saving gives it.
    for (const char* key : {"Main", "poptf", "popdelay", "clickshow"})
        EXPECT_TRUE(folder_.IniValue("Settings", key).has_value()) << key;
    config::SaveSettings();
    EXPECT_EQ(folder_.IniBytes(), testkit::NewUsersIni());
}

TEST_F(SettingsTest, LoadsWhatItSavedAndLeavesTheOtherSectionsAlone) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\n");
    config::Settings = {.CurrentTab = -6,
                        .StartWithWindows = true,
                        .CloseButtonCloses = true,
                        .Edge = 3,
                        .SingleClickOpen = true,
                        .TabDescriptions = true,
                        .PopDelay = 1200,
                        .ClickShows = true};
    config::SaveSettings();
    const std::string saved = folder_.IniBytes();
    config::Settings = {};
    config::LoadMainSettings();
    config::LoadPopUpSettings();
    EXPECT_EQ(config::Settings.CurrentTab, -6);
    EXPECT_EQ(config::Settings.PopDelay, 1200);
    config::SaveSettings();
    EXPECT_EQ(folder_.IniBytes(), saved);
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1"));
}

}  // namespace
