// Quon.ini in every bad shape: what stops the start says what is wrong and leaves the file alone, everything
// else is survived.

#include "dialogs/edit_group.h"
#include "tests/program/quon_test.h"

namespace testkit {
namespace {

using ::testing::HasSubstr;

struct BadStart {
    const char* name;
    /// What the file begins with, "Main" and whatever else; null for no file at all.
    const char* ini;
    /// What the message has to name.
    std::vector<std::string> named;
};

class BadIniStartTest : public ::testing::TestWithParam<BadStart> {};

TEST_P(BadIniStartTest, SaysWhatIsWrongAndLeavesTheFileAlone) {
    const BadStart& bad = GetParam();
    const ProgramFolder folder;
    if (bad.ini) folder.WriteIniText(bad.ini);
    RunningProgram quon = StartQuon(folder);
    const Window box = WaitForSystemMessageBox(quon.Id(), "Quon: Error report");
    const std::string text = box.Child(0xFFFF).Text();
    for (const std::string& part : bad.named)
        EXPECT_THAT(text, HasSubstr(part));
    EXPECT_THAT(text, HasSubstr(folder.IniPath()));
    EXPECT_FALSE(quon.FindWindow({.class_name = "QuonMain"})) << "a half-loaded panel is shown";
    EXPECT_EQ(quon.Windows().size(), 1u);
    box.Activate();
    keyboard::Press(VK_RETURN);
    EXPECT_EQ(quon.WaitForExit(), 1u);
    EXPECT_EQ(folder.Exists("Quon.ini"), bad.ini != nullptr);
    EXPECT_EQ(folder.IniBytes(), bad.ini ? bad.ini : "");
}

INSTANTIATE_TEST_SUITE_P(
    Start, BadIniStartTest,
    ::testing::Values(
        BadStart{"NoFile", nullptr, {"field 0", "CurrentTab", "\"Main\"", "\"Settings\""}},
        BadStart{"EmptyFile", "", {"field 0", "CurrentTab"}},
        BadStart{"EmptyMain", "[Settings]\r\nMain=\r\n", {"field 0", "CurrentTab"}},
        BadStart{"TenFields",
                 "[Settings]\r\nMain=1,False,True,True,True,False,True,4,False,True\r\n",
                 {"field 10", "TabDescriptions"}},
        BadStart{"WrongBoolean",
                 "[Settings]\r\nMain=1,False,True,нет,True,False,True,4,False,True,False\r\n",
                 {"field 3", "HideAfterLaunch", "\"нет\""}},
        BadStart{"WrongBooleanElsewhere",
                 "[Settings]\r\nMain=1,False,True,True,True,False,True,4,False,True,False\r\npoptf=maybe\r\n",
                 {"\"poptf\"", "\"maybe\""}},
        BadStart{"TabNine",
                 "[Settings]\r\nMain=9,False,True,True,True,False,True,4,False,True,False\r\n",
                 {"field 0", "CurrentTab", "9"}},
        BadStart{"TabZero",
                 "[Settings]\r\nMain=none,False,True,True,True,False,True,4,False,True,False\r\n",
                 {"field 0", "CurrentTab", "0"}},
        BadStart{"TabTooLarge",
                 "[Settings]\r\nMain=40000,False,True,True,True,False,True,4,False,True,False\r\n",
                 {"field 0", "CurrentTab", "40000"}},
        BadStart{"TabRecordWithoutBar",
                 "[Settings]\r\nMain=1,False,True,True,True,False,True,4,False,True,False\r\n"
                 "[Buttons]\r\n30=Работа\r\n31=a|0\r\n",
                 {"tab 3", "\"30\"", "\"Buttons\"", "Работа"}}),
    [](const ::testing::TestParamInfo<BadStart>& start) { return std::string(start.param.name); });

class BadIniTest : public QuonTest {};

TEST_F(BadIniTest, RubbishAroundTheSettingsIsSurvived) {
    const QuonIni ini = QuonIni{}.AddShortcut("11", "Editor", folder_.Path());
    std::string rubbish;
    for (int at = 0; at < 4000; ++at)
        rubbish.push_back(static_cast<char>((at * 37 + at / 251) % 256));
    // A zero byte would end the file for the profile functions, a "[" would start a section.
    std::erase_if(rubbish, [](char byte) { return byte == '\0' || byte == '['; });
    folder_.WriteIniText(rubbish + "\r\n" + ini.Text() + "[Tail\r\n" + rubbish);
    QuonPanel quon(folder_);
    quon.ExpectName(1, "Editor");
    mouse::Click(quon.Header(2));
    quon.ExpectName(1, "Empty");
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(folder_.IniValue("Settings", "Main"), QuonIni{.current_tab = 2}.Main());
}

TEST_F(BadIniTest, AHugeFileIsSurvived) {
    QuonIni ini;
    const std::string target = folder_.MakeFile("a.txt", "text");
    for (int at = 0; at < 3000; ++at)
        ini.cuts.emplace_back("Name " + std::to_string(at), target + std::string(300, 'x'));
    ini.AddShortcut("11", "Last", target);
    ini.AddShortcut("12", "Long", "http://host.example/" + std::string(5000, 'y'));
    ini.AddShortcut("13", std::string(700, 'n'), target);
    QuonPanel quon = Start(ini);
    quon.ExpectName(1, "Last");
    quon.ExpectName(2, "Long");
    // A record names nothing when only its beginning can be read.
    quon.ExpectName(3, "Empty");
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(folder_.IniValue("Cuts", "Name 2999"), target + std::string(300, 'x'));
}

TEST_F(BadIniTest, AFileThatCannotBeWrittenIsSurvivedAndKept) {
    const QuonIni ini = QuonIni{}.AddShortcut("11", "Editor", folder_.Path());
    folder_.WriteIniText(ini.Text());
    folder_.SetReadOnly("Quon.ini");
    // Under Wine the read-only mark alone does not stop an administrator's program from writing.
    const OwnedHandle held(CreateFileW(Wide(folder_.IniPath()).c_str(), GENERIC_READ, FILE_SHARE_READ,
                                       nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(held.get(), INVALID_HANDLE_VALUE);
    QuonPanel quon(folder_);
    quon.ExpectName(1, "Editor");
    mouse::Click(quon.Header(2));
    quon.ExpectName(1, "Empty");
    mouse::Click(quon.Header(1));
    quon.ExpectName(1, "Editor");
    EXPECT_EQ(quon.Program().CloseAndWait(), 0u);
    EXPECT_EQ(folder_.IniBytes(), ini.Text());
}

TEST_F(BadIniTest, ALineThatIsNoRecordStopsNoRenaming) {
    const QuonIni ini = QuonIni{}.AddShortcut("11", "Group", folder_.Path() + "|C:\\");
    std::string text = ini.Text();
    const std::string section = "[Buttons]\r\n";
    const std::string junk = "a line that is no entry\r\n";
    text.insert(text.find(section) + section.size(), junk);
    folder_.WriteIniText(text);
    QuonPanel quon(folder_);
    quon.ExpectName(1, "Group");
    quon.OpenButtonMenu(1).Choose("Edit group");
    const Window editor = WaitFor("the editor", [&] {
        const Window dialog = quon.Program().FindWindow({.class_name = "#32770"});
        return dialog && dialog.FindChild(dialogs::frmEditB::c1 + 2) ? dialog : Window();
    });
    editor.Child(dialogs::frmEditB::t1).SetText("Another name");
    mouse::Click(editor.Child(dialogs::frmEditB::c1 + 2));
    WaitUntilClosed(editor);
    quon.ExpectName(1, "Another name");
    EXPECT_EQ(folder_.IniValue("Cuts", "Another name"), folder_.Path() + "|C:\\");
    EXPECT_THAT(folder_.IniBytes(), HasSubstr(junk));
}

TEST_F(BadIniTest, ButtonsWhoseTargetIsGoneFreeThemselves) {
    QuonIni ini;
    const std::string target = folder_.MakeFile("здесь.txt", "text");
    ini.AddShortcut("11", "Here", target);
    ini.AddShortcut("12", "Gone", folder_.FullPath("gone.exe"), "/x");
    ini.AddShortcut("13", "Page", "http://host.example/");
    ini.AddShortcut("14", "Group", folder_.FullPath("gone.exe") + "|" + folder_.FullPath("gone too.exe"));
    ini.buttons.emplace_back("15", "Dangling|0");
    ini.buttons.emplace_back("16", "no bar");
    ini.buttons.emplace_back("17", "|3");
    ini.AddShortcut("21", "Gone", folder_.FullPath("gone.exe"));
    QuonPanel quon = Start(ini);
    quon.ExpectName(1, "Here");
    quon.ExpectName(3, "Page");
    quon.ExpectName(4, "Group");
    for (const int button : {5, 6, 7, 8, 9})
        quon.ExpectName(button, "Empty");
    const auto record = [&](const char* key) { return folder_.IniValue("Buttons", key); };
    EXPECT_EQ(record("11"), "Here|0");
    for (const char* key : {"12", "15", "16", "17"})
        EXPECT_EQ(record(key), "") << key;
    EXPECT_EQ(record("13"), "Page|0");
    EXPECT_EQ(record("14"), "Group|0");
    EXPECT_EQ(record("21"), "Gone|0") << "buttons of a tab that was not shown are left alone";
    EXPECT_EQ(folder_.IniValue("Cuts", "Gone"), folder_.FullPath("gone.exe"));
    EXPECT_EQ(folder_.IniValue("Switch", "Gone"), "/x");
    // A button whose target is gone frees itself whenever its tab is shown.
    folder_.RemoveFile("здесь.txt");
    mouse::Click(quon.Header(1));
    WaitFor("the button frees itself", [&] { return record("11") == ""; });
    mouse::Click(quon.Header(1));
    quon.ExpectName(1, "Empty");
}

}  // namespace
}  // namespace testkit
