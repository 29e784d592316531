#include "model/text_shortcut.h"

#include <limits>

#include "config/ini.h"
#include "config/settings.h"
#include "tests/support/program_calls.h"
#include "tests/support/unit_test.h"
#include "win/combo_box.h"
#include "win/errors.h"

namespace model {
namespace {

using ::testing::ElementsAre;
using testkit::CallLog, testkit::RecordedCall, testkit::RecordedCalls;

/// The text of a section as the profile functions give it.
template <std::size_t Size>
std::string SectionText(const char (&text)[Size]) {
    return {text, Size - 1};
}

TEST(TextShortcutNamesTest, AreTheKeysInTheFilesOrderAndTheRefreshItem) {
    EXPECT_THAT(TextShortcutNames("", SectionText("b=C:\\b\0Ауто=C:\\x\0文=C:\\y=z"), false),
                ElementsAre("b", "Ауто", "文", "[Refresh list]"));
    EXPECT_THAT(TextShortcutNames("", "", true), ElementsAre("[Refresh list]"));
}

TEST(TextShortcutNamesTest, BeginWithTheCollectedOnesWhenTheyAreWanted) {
    const std::string collected = SectionText("Word=C:\\w.exe\0Excel=C:\\e.exe");
    const std::string cuts = SectionText("a=C:\\a\0b=C:\\b");
    EXPECT_THAT(TextShortcutNames(collected, cuts, true),
                ElementsAre("Word", "Excel", "a", "b", "[Refresh list]"));
    EXPECT_THAT(TextShortcutNames(collected, cuts, false), ElementsAre("a", "b", "[Refresh list]"));
}

TEST(TextShortcutNamesTest, NameEachOnceIgnoringCase) {
    EXPECT_THAT(TextShortcutNames(SectionText("Notes=1\0NOTES=2\0Жаба=3"),
                                  SectionText("notes=4\0ЖАБА=5\0Čaj=6\0čAJ=7\0x=8\0X=9"), true),
                ElementsAre("Notes", "Жаба", "Čaj", "x", "[Refresh list]"));
}

TEST(TextShortcutNamesTest, SkipEntriesWithoutAnEqualsSignAmongTheShortcutsOnly) {
    EXPECT_THAT(
        TextShortcutNames(SectionText("bare\0Word=C:\\w"), SectionText("junk\0a=C:\\a\0more junk"), true),
        ElementsAre("bare", "Word", "a", "[Refresh list]"));
}

TEST(TextShortcutNamesTest, ListAnEmptyNameOnce) {
    EXPECT_THAT(TextShortcutNames(SectionText("=C:\\a"), SectionText("a=C:\\b\0=C:\\c\0=\0b=C:\\d"), true),
                ElementsAre("", "a", "b", "[Refresh list]"));
    EXPECT_THAT(TextShortcutNames("", SectionText("a=1\0=2"), false), ElementsAre("a", "", "[Refresh list]"));
}

TEST(TextShortcutNamesTest, AreAllThereInAFullSection) {
    std::string section;
    for (int number = 0; number < 1500; ++number)
        section.append("n").append(std::to_string(number)).append("=x").push_back('\0');
    section.pop_back();
    EXPECT_EQ(TextShortcutNames(section, section, true).size(), 1501u);
}

TEST(TextShortcutNamesTest, EndWithTheRefreshItemEvenWhenAShortcutHasItsName) {
    EXPECT_THAT(TextShortcutNames("", SectionText("[Refresh list]=C:\\a"), false),
                ElementsAre("[Refresh list]", "[Refresh list]"));
}

TEST(UptimeTextTest, GivesHoursAndMinutesWithTwoDigits) {
    struct Case {
        std::uint32_t ticks;
        const char* text;
    };
    constexpr std::uint32_t kHour = 3'600'000;
    for (const Case& example : {Case{0, "00 hours and 00 minutes."},
                                {59'000, "00 hours and 00 minutes."},
                                {60'000, "00 hours and 01 minutes."},
                                {kHour, "01 hours and 00 minutes."},
                                {3 * kHour + 7 * 60'000, "03 hours and 07 minutes."},
                                {kHour - 1000, "00 hours and 59 minutes."},
                                {50 * kHour + 12 * 60'000 + 30'000, "50 hours and 12 minutes."},
                                {100 * kHour, "100 hours and 00 minutes."},
                                {std::numeric_limits<std::uint32_t>::max(), "1193 hours and 02 minutes."}})
        EXPECT_EQ(UptimeText(example.ticks), example.text) << example.ticks;
}

TEST(UptimeTextTest, RoundsToTheNearestSecondFirst) {
    EXPECT_EQ(UptimeText(58'999), "00 hours and 00 minutes.");
    EXPECT_EQ(UptimeText(59'499), "00 hours and 00 minutes.");
    EXPECT_EQ(UptimeText(59'500), "00 hours and 01 minutes.");
    EXPECT_EQ(UptimeText(3'599'501), "01 hours and 00 minutes.");
}

class TextShortcutTest : public ::testing::Test {
  protected:
    TextShortcutTest() {
        fakes_.push_back(
            FAKE_CALL(CreateProcessA,
                      [this](LPCSTR program, LPSTR line, LPSECURITY_ATTRIBUTES process,
                             LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags, LPVOID environment,
                             LPCSTR folder, LPSTARTUPINFOA startup, LPPROCESS_INFORMATION) -> WINBOOL {
                          EXPECT_TRUE(program == nullptr && process == nullptr && thread == nullptr &&
                                      inherit == FALSE && flags == CREATE_DEFAULT_ERROR_MODE &&
                                      environment == nullptr && folder == nullptr);
                          EXPECT_EQ(startup->cb, sizeof *startup);
                          EXPECT_EQ(startup->dwFlags, DWORD{STARTF_USESHOWWINDOW});
                          log_.Add("start", line, "shown", startup->wShowWindow);
                          return TRUE;
                      }));
        fakes_.push_back(
            FAKE_CALL(ShellExecuteA, [this](HWND, LPCSTR, LPCSTR file, LPCSTR arguments, LPCSTR, INT show) {
                log_.Add("open", file, arguments, show);
                return reinterpret_cast<HINSTANCE>(INT_PTR{33});
            }));
        fakes_.push_back(FAKE_CALL(Sleep, [](DWORD) {}));
        // The program seems to lie in the test's own folder.
        fakes_.push_back(testkit::ProgramLiesAt(folder_.FullPath("Quon.exe")));
    }
    void TearDown() override { config::Settings = {}; }

    testkit::ProgramFolder folder_{"програм č 文"};
    testkit::ScopedIniPath ini_{folder_.IniPath()};
    CallLog log_;
    RecordedCalls fakes_;
};

TEST_F(TextShortcutTest, KeepsAFileListAndDoesNothingElseWithIt) {
    folder_.WriteIniText("[Cuts]\r\na=C:\\a\r\n");
    const std::string before = folder_.IniBytes();
    CTextShortcut shortcut;
    EXPECT_EQ(shortcut.FileList, "");
    shortcut.FileList = "C:\\a|C:\\b";
    shortcut.DeleteShortcut();
    shortcut.CreateShortcut();
    shortcut.ResolveShortcut();
    EXPECT_EQ(shortcut.FileList, "C:\\a|C:\\b");
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_THAT(log_.Lines(), ElementsAre());
}

TEST_F(TextShortcutTest, JoinsTheNamesOfASection) {
    folder_.WriteIniText("[Cuts]\r\nbeta=C:\\b=1\r\nАлфа=C:\\a\r\n文=\r\n[Empty]\r\n[Junk]\r\nno sign\r\n");
    EXPECT_EQ(CTextShortcut::CreateShortcutString("Cuts"), "beta|Алфа|文");
    EXPECT_EQ(CTextShortcut::CreateShortcutString("Empty"), "");
    EXPECT_EQ(CTextShortcut::CreateShortcutString("Missing"), "");
    EXPECT_THROW(CTextShortcut::CreateShortcutString("Junk"), win::InvalidArgumentError);
}

TEST_F(TextShortcutTest, FillsTheDropDownFromTheFile) {
    folder_.WriteIniText("[Settings]\r\n");
    const testkit::HiddenWindow parent;
    win::ComboBox list;
    list.CreateOn(parent.Handle(), 230, {0, 0, 200, 200});
    CTextShortcut shortcut(&list);
    shortcut.FillCombo();
    EXPECT_THAT(list.Items(), ElementsAre("[Refresh list]"));
    folder_.WriteIniText(
        "[Collected]\r\nРеч=C:\\w.exe\r\na=C:\\a.exe\r\n[Cuts]\r\nNotes=C:\\a.txt\r\nnotes=C:\\b."
        "txt\r\njunk\r\nA=C:\\c\r\n");
    shortcut.FillCombo();
    EXPECT_THAT(list.Items(), ElementsAre("Notes", "A", "[Refresh list]"));
    config::Settings.ShowCollected = true;
    list.SetText("куцам");
    shortcut.FillCombo();
    EXPECT_THAT(list.Items(), ElementsAre("Реч", "a", "Notes", "[Refresh list]"));
    EXPECT_EQ(list.Text(), "куцам");
}

TEST_F(TextShortcutTest, WithoutADropDownThereIsNothingToFill) {
    const RecordedCall read = LOG_CALL(log_, GetPrivateProfileSectionA);
    CTextShortcut().FillCombo();
    EXPECT_THAT(log_.Lines(), ElementsAre());
}

TEST_F(TextShortcutTest, OpensTheTargetsOfItsName) {
    struct Case {
        const char* what;
        const char* ini;
        const char* name;
        std::vector<std::string> opened;
    };
    const Case cases[] = {
        {"a single target",
         "[Cuts]\r\nНота č=C:\\Документи\\ж 文.txt\r\n",
         "Нота č",
         {"C:\\Документи\\ж 文.txt"}},
        {"a group in its order",
         "[Cuts]\r\nboth=C:\\a.txt|C:\\b.txt\r\n",
         "both",
         {"C:\\a.txt", "C:\\b.txt"}},
        {"the first of two that differ in case",
         "[Cuts]\r\nNotes=C:\\a.txt\r\nnotes=C:\\b.txt\r\n",
         "nOTES",
         {"C:\\a.txt"}},
        {"a collected application first",
         "[Cuts]\r\nWord=C:\\mine.txt\r\n[Collected]\r\nWord=C:\\w.exe\r\n",
         "Word",
         {"C:\\w.exe"}},
        {"and that never as a group", "[Collected]\r\nodd=C:\\w|C:\\v\r\n", "odd", {"C:\\w|C:\\v"}},
        {"no switch from the file", "[Cuts]\r\na=C:\\a.exe\r\n[Switch]\r\na=/x\r\n", "a", {"C:\\a.exe"}}};
    for (const auto& [what, ini, name, opened] : cases) {
        SCOPED_TRACE(what);
        folder_.WriteIniText(ini);
        log_.Clear();
        EXPECT_EQ(CTextShortcut::FireShortcut(name), FireResult::kDone);
        std::vector<std::string> lines;
        for (const std::string& target : opened)
            lines.push_back("open " + target + "  1");
        EXPECT_EQ(log_.Lines(), lines);
    }
}

TEST_F(TextShortcutTest, HandsAnUnknownNameToTheUrlHandler) {
    folder_.WriteIniText("[Settings]\r\n");
    for (const std::string name :
         {"http://example.org/ж?a=b", "C:\\Моји документи\\a b.txt", "nothing at all"}) {
        log_.Clear();
        EXPECT_EQ(CTextShortcut::FireShortcut(name), FireResult::kDone);
        EXPECT_THAT(log_.Lines(),
                    ElementsAre("start rundll32.exe url.dll,FileProtocolHandler " + name + " shown 1"));
    }
}

TEST_F(TextShortcutTest, LooksUpOnlyWhatIsAnEntry) {
    folder_.WriteIniText("[Collected]\r\nbare\r\n=C:\\x.exe\r\n[Cuts]\r\nbare\r\nother\r\nnone=\r\n");
    for (const std::string name : {"bare", "other", "none"}) {
        log_.Clear();
        CTextShortcut::FireShortcut(name);
        EXPECT_THAT(log_.Lines(),
                    ElementsAre("start rundll32.exe url.dll,FileProtocolHandler " + name + " shown 1"));
    }
}

TEST_F(TextShortcutTest, HandsNoNameToTheUrlHandlerToo) {
    folder_.WriteIniText("[Settings]\r\n");
    CTextShortcut::FireShortcut("");
    EXPECT_THAT(log_.Lines(), ElementsAre("start rundll32.exe url.dll,FileProtocolHandler  shown 1"));
}

TEST_F(TextShortcutTest, AnswersAQueryWithoutTheSearchTool) {
    folder_.WriteIniText("[Cuts]\r\n?budget=C:\\a.txt\r\n");
    EXPECT_EQ(CTextShortcut::FireShortcut("?budget"), FireResult::kSearchToolMissing);
    EXPECT_THAT(log_.Lines(), ElementsAre());
    EXPECT_EQ(SearchToolMessage(),
              "You need to have Quon Search Utility to execute this command.\n\nYou can download it from "
              "Quon's web site.");
}

TEST_F(TextShortcutTest, StartsTheSearchToolWithTheQuery) {
    const std::string tool = folder_.MakeFile("QSU.exe");
    struct Case {
        const char* name;
        const char* query;
    };
    const Case cases[] = {
        {"?budget", "budget"}, {"?", ""}, {"? два  речи", " два  речи"}, {"??文", "?文"}, {"?a\"b", "a\"b"}};
    for (const Case& example : cases) {
        log_.Clear();
        EXPECT_EQ(CTextShortcut::FireShortcut(example.name), FireResult::kDone);
        EXPECT_THAT(log_.Lines(), ElementsAre("start \"" + tool + "\" \"" + example.query + "\" shown 1"));
    }
}

TEST_F(TextShortcutTest, TellsTheUptimeFromTheTickCount) {
    const RecordedCall ticks = FAKE_CALL(GetTickCount, [] { return DWORD{3 * 3'600'000 + 7 * 60'000}; });
    EXPECT_EQ(CTextShortcut::HowLong(), "03 hours and 07 minutes.");
}

}  // namespace
}  // namespace model
