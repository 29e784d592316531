#include "model/button_shortcut.h"

#include "config/ini.h"
#include "sys/utility.h"
#include "tests/support/ini_writes.h"
#include "tests/unit/model/button_fixture.h"
#include "win/errors.h"

namespace model {
namespace {

using ::testing::ElementsAre;
using testkit::RecordedCall, testkit::RecordedCalls;

class ButtonShortcutTest : public ButtonFixture {
  protected:
    /// Fills every value with something that it does not hold by itself.
    void SoilValues() {
        button_.Switch = "old switch";
        button_.Group = true;
        button_.FILETIME = "old time";
        button_.FileSize = "old size";
        button_.FileIcon = 99;
        button_.FilePath = "old path";
        button_.Naziv = "old name";
        box_.SetMeaning("old name");
    }

    void ExpectFree() const {
        EXPECT_EQ(button_.FilePath, "");
        EXPECT_EQ(button_.FileSize, "");
        EXPECT_EQ(button_.FileIcon, 0);
        EXPECT_FALSE(button_.Group);
        EXPECT_EQ(button_.Naziv, "Empty");
        EXPECT_TRUE(button_.IsFree());
    }
};

TEST_F(ButtonShortcutTest, ANewButtonIsFree) {
    ExpectFree();
    EXPECT_EQ(button_.Switch, "");
    EXPECT_EQ(button_.Ttip, "");
    EXPECT_EQ(button_.FILETIME, "");
}

TEST_F(ButtonShortcutTest, AFilesRecordFillsAllValues) {
    const std::string file = folder_.MakeFile("Песма č 歌.txt", std::string(1536, 'x'));
    LoadRecord("Песма|3", "[Cuts]\r\nПесма=" + file + "\r\n[Switch]\r\nПесма=/a \"b c\" /d\r\n");
    SoilValues();
    button_.RefreshButton("11");
    EXPECT_EQ(button_.Naziv, "Песма");
    EXPECT_FALSE(button_.IsFree());
    EXPECT_EQ(button_.FilePath, file);
    EXPECT_EQ(button_.FileIcon, 3);
    EXPECT_FALSE(button_.Group);
    EXPECT_EQ(button_.Switch, "/a \"b c\" /d");
    EXPECT_EQ(button_.FileSize, "1 KB");
    EXPECT_EQ(button_.FILETIME, sys::FileTimeText(file));
    EXPECT_NE(button_.FILETIME, "");
}

TEST_F(ButtonShortcutTest, AShortcutWithoutASwitchHasNone) {
    LoadRecord("a|0", "[Cuts]\r\na=" + folder_.MakeFile("a.txt") + "\r\n[Switch]\r\nb=/other\r\n");
    SoilValues();
    button_.RefreshButton("11");
    EXPECT_EQ(button_.Switch, "");
}

TEST_F(ButtonShortcutTest, AFolderLeavesSizeAndTimeAsTheyWere) {
    LoadRecord("f|0", "[Cuts]\r\nf=" + folder_.MakeFolder("фасцикла") + "\r\n[Switch]\r\nf=/e\r\n");
    SoilValues();
    button_.RefreshButton("11");
    EXPECT_EQ(button_.FileSize, "old size");
    EXPECT_EQ(button_.FILETIME, "old time");
    EXPECT_FALSE(button_.Group);
    EXPECT_EQ(button_.Switch, "/e");
    EXPECT_EQ(button_.Naziv, "f");
}

TEST_F(ButtonShortcutTest, AUrlHasNeitherSizeNorTime) {
    LoadRecord("u|0", "[Cuts]\r\nu=http://example.org/a?b=c\r\n[Switch]\r\nu=-new\r\n");
    SoilValues();
    button_.RefreshButton("11");
    EXPECT_EQ(button_.FileSize, "");
    EXPECT_EQ(button_.FILETIME, "");
    EXPECT_FALSE(button_.Group);
    EXPECT_EQ(button_.Switch, "-new");
    EXPECT_EQ(button_.FilePath, "http://example.org/a?b=c");
    EXPECT_EQ(context_.Records.At("11"), "u|0");
}

TEST_F(ButtonShortcutTest, TwoMembersMakeAGroupWithoutSwitchSizeAndTime) {
    const std::string members = folder_.MakeFile("a.txt") + "|C:\\gone\\b.txt";
    LoadRecord("Оба|0", "[Cuts]\r\nОба=" + members + "\r\n[Switch]\r\nОба=/x\r\n");
    SoilValues();
    button_.Group = false;
    button_.RefreshButton("11");
    EXPECT_TRUE(button_.Group);
    EXPECT_EQ(button_.Switch, "");
    EXPECT_EQ(button_.FileSize, "");
    EXPECT_EQ(button_.FILETIME, "");
    EXPECT_EQ(button_.FilePath, members);
    EXPECT_EQ(button_.Naziv, "Оба");
    // Members that are gone do not free a group.
    EXPECT_EQ(context_.Records.At("11"), "Оба|0");
}

TEST_F(ButtonShortcutTest, ARecordGroupTakesItsMembersFromTheEntryOfItsOwnKey) {
    Load("[Buttons]\r\n23=Group\r\n[Cuts]\r\n23=C:\\a.txt|C:\\b.txt\r\nGroup=C:\\wrong.txt\r\n");
    SoilValues();
    button_.RefreshButton("23");
    EXPECT_TRUE(button_.Group);
    EXPECT_EQ(button_.Naziv, "23");
    EXPECT_EQ(button_.FilePath, "C:\\a.txt|C:\\b.txt");
    EXPECT_EQ(button_.FileIcon, 0);
}

TEST_F(ButtonShortcutTest, TheIconIndexIsTheNumberAfterTheLastBar) {
    struct Case {
        const char* record;
        std::int32_t icon;
    };
    const Case cases[] = {{"n|3", 3},      {"n|4|12", 12},       {"n|-2", -2},
                          {"n|12abc", 12}, {"n|abc", 0},         {"n|", 0},
                          {"n", 0},        {"n|99999999999", 0}, {"n|2147483647", 2147483647}};
    for (const Case& example : cases) {
        LoadRecord(example.record, "[Cuts]\r\nn=http://example.org/\r\n");
        button_.FileIcon = 77;
        button_.RefreshButton("11");
        EXPECT_EQ(button_.FileIcon, example.icon) << example.record;
        EXPECT_EQ(button_.Naziv, "n") << example.record;
    }
}

TEST_F(ButtonShortcutTest, ARecordWithoutABarHasNoIconIndex) {
    LoadRecord("7 sites", "[Cuts]\r\n7 sites=http://example.org/\r\n");
    button_.RefreshButton("11");
    EXPECT_EQ(button_.Naziv, "7 sites");
    EXPECT_EQ(button_.FileIcon, 0);
}

TEST_F(ButtonShortcutTest, NamesOfAnyCharactersThatTheFileHoldsAreTaken) {
    for (const std::string name :
         {"A & B [1]; 100% #'", "č ć ž Ü ß", "Ћирилица", "中文 日本語 한국어", "😀", "a.b.c"}) {
        LoadRecord(name + "|0", "[Cuts]\r\n" + name + "=http://example.org/\r\n");
        button_.RefreshButton("11");
        EXPECT_EQ(button_.Naziv, name);
    }
}

TEST_F(ButtonShortcutTest, TheTableDecidesAndNotTheFile) {
    LoadRecord("a|0", "[Cuts]\r\na=http://example.org/a\r\nb=http://example.org/b\r\n");
    context_.Records.Set("11", "b|5");
    button_.RefreshButton("11");
    EXPECT_EQ(button_.Naziv, "b");
    EXPECT_EQ(button_.FileIcon, 5);
}

TEST_F(ButtonShortcutTest, AnEmptyRecordFreesTheButton) {
    Load("[Buttons]\r\n12=b|0\r\n[Cuts]\r\nb=http://example.org/\r\n");
    SoilValues();
    button_.RefreshButton("11");
    ExpectFree();
    EXPECT_EQ(testkit::Window(box_.Handle()).Text(), "Empty");
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "");
    EXPECT_EQ(folder_.IniValue("Buttons", "12"), "b|0");
}

TEST_F(ButtonShortcutTest, ADanglingRecordFreesTheButtonInTableAndFile) {
    for (const char* record : {"gone|0", "|0", "no bar", "gone|1|2"}) {
        LoadRecord(record, "[Cuts]\r\nother=C:\\x=y\r\n");
        SoilValues();
        button_.RefreshButton("11");
        ExpectFree();
        EXPECT_EQ(testkit::Window(box_.Handle()).Text(), "Empty") << record;
        EXPECT_EQ(context_.Records.At("11"), "") << record;
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), "") << record;
        EXPECT_EQ(folder_.IniValue("Cuts", "other"), "C:\\x=y") << record;
    }
}

TEST_F(ButtonShortcutTest, ARecordThatAnotherProgramHasChangedIsTakenInsteadOfFreed) {
    for (const char* known : {"gone|0", ""}) {
        LoadRecord("a|4", "[Cuts]\r\na=http://example.org/a\r\ngone|0=C:\\x\r\n");
        context_.Records.Set("11", known);
        button_.RefreshButton("11");
        EXPECT_EQ(button_.Naziv, "a") << known;
        EXPECT_EQ(context_.Records.At("11"), "a|4");
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), "a|4");
        EXPECT_EQ(folder_.IniValue("Cuts", "gone|0"), "C:\\x");
    }
}

TEST_F(ButtonShortcutTest, NothingIsFreedByAHeldFileThatReadsLikeAMissingRecord) {
    const std::string text = "[Buttons]\r\n11=n|0\r\n[Cuts]\r\nn=http://example.org/\r\n";
    // The hold ends only after the button was refreshed, or at once after the first answer.
    for (const bool goesOn : {true, false}) {
        Load(text);
        bool answered = false;
        auto held = std::make_unique<testkit::HeldFile>(folder_.IniPath());
        {
            const RecordedCall read =
                FAKE_CALL(GetPrivateProfileStringA,
                          [&](LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR value, DWORD size,
                              LPCSTR file) -> DWORD {
                              if (section != std::string("Cuts") || std::exchange(answered, true))
                                  return ORIGINAL_CALL(GetPrivateProfileStringA)(section, key, fallback,
                                                                                 value, size, file);
                              if (!goesOn) held.reset();
                              *value = '\0';
                              SetLastError(ERROR_FILE_NOT_FOUND);
                              return 0;
                          });
            button_.RefreshButton("11");
        }
        held.reset();
        EXPECT_TRUE(answered);
        EXPECT_EQ(button_.Naziv, "n") << goesOn;
        EXPECT_EQ(folder_.IniBytes(), text);
        EXPECT_EQ(context_.Records.At("11"), "n|0");
        button_.RefreshButton("11");
        EXPECT_EQ(button_.FilePath, "http://example.org/") << goesOn;
    }
}

TEST_F(ButtonShortcutTest, NothingIsFreedByAFileThatAnotherProgramGoesOnWriting) {
    const std::string part = "[Settings]\r\nMain=1\r\n[Buttons]\r\n11=n|0\r\n";
    const std::string whole = part + "[Cuts]\r\nn=http://example.org/\r\n";
    int unread = 0;
    context_.onUnread = [&] { ++unread; };
    // The rest comes after the button has been read, while the copy is made, when it has been, and where none
    // can be made.
    enum Moment { kAfterReading, kAtTheCopy, kAfterTheCopy, kWithoutACopy };
    for (const Moment moment : {kAfterReading, kAtTheCopy, kAfterTheCopy, kWithoutACopy}) {
        Load(part);
        unread = 0;
        const auto rest = [&](Moment now) {
            if (now == moment) folder_.WriteIniText(whole);
        };
        {
            const RecordedCall read = FAKE_CALL(
                GetPrivateProfileSectionA, [&](LPCSTR section, LPSTR text, DWORD size, LPCSTR file) {
                    const DWORD count = ORIGINAL_CALL(GetPrivateProfileSectionA)(section, text, size, file);
                    rest(kAfterReading);
                    return count;
                });
            const RecordedCall copy = FAKE_CALL(CopyFileA, [&](LPCSTR from, LPCSTR to, BOOL keep) -> BOOL {
                rest(kAtTheCopy);
                rest(kWithoutACopy);
                if (moment != kWithoutACopy) return ORIGINAL_CALL(CopyFileA)(from, to, keep);
                SetLastError(ERROR_ACCESS_DENIED);
                return FALSE;
            });
            const RecordedCall flush = WATCH_CALL(FlushFileBuffers, [&](HANDLE) { rest(kAfterTheCopy); });
            button_.RefreshButton("11");
        }
        EXPECT_EQ(folder_.IniBytes(), whole) << moment;
        EXPECT_EQ(context_.Records.At("11"), "n|0") << moment;
        EXPECT_EQ(unread, 1) << moment;
        button_.RefreshButton("11");
        EXPECT_EQ(button_.FilePath, "http://example.org/") << moment;
    }
    EXPECT_EQ(unread, 1);
}

TEST_F(ButtonShortcutTest, AForeignRecordBehindWhatCanBeReadOfTheSectionIsTakenToo) {
    std::string lines;
    for (int number = 100; number < 150; ++number)
        lines += std::to_string(number) + "=" + std::string(500, 'x') + "\r\n";
    Load("[Buttons]\r\n" + lines + "11=a|4\r\n[Cuts]\r\na=http://example.org/a\r\n");
    context_.Records.Set("11", "");
    button_.RefreshButton("11");
    EXPECT_EQ(button_.Naziv, "a");
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "a|4");
}

TEST_F(ButtonShortcutTest, ADanglingRecordDeletesTheShortcutNamedByItsWholeText) {
    LoadRecord("gone|0", "[Cuts]\r\ngone=\r\ngone|0=C:\\a\r\nother=C:\\b\r\n");
    button_.RefreshButton("11");
    EXPECT_THAT(folder_.Ini().Keys("Cuts"), ElementsAre("gone", "other"));
}

TEST_F(ButtonShortcutTest, ADanglingRecordIsClearedBeforeItsShortcutIsDeleted) {
    LoadRecord("gone|0", "[Cuts]\r\ngone|0=C:\\a\r\nother=C:\\b\r\n");
    const RecordedCalls writes = testkit::LogWrites(log_);
    button_.RefreshButton("11");
    EXPECT_THAT(log_.Lines(), ElementsAre("write Buttons 11 ", "empty Cuts"));
}

TEST_F(ButtonShortcutTest, ADanglingGroupOfTheButtonsOwnSparesAShortcutNamedGroup) {
    Load("[Buttons]\r\n23=Group\r\n[Cuts]\r\nGroup=C:\\a.txt\r\n");
    SoilValues();
    button_.RefreshButton("23");
    ExpectFree();
    EXPECT_EQ(context_.Records.At("23"), "");
    EXPECT_EQ(folder_.IniValue("Buttons", "23"), "");
    EXPECT_EQ(folder_.IniValue("Cuts", "Group"), "C:\\a.txt");
}

TEST_F(ButtonShortcutTest, ATargetThatIsGoneClearsTheRecordButKeepsItsValues) {
    LoadRecord("gone|4", "[Cuts]\r\ngone=C:\\no\\such\\file.txt\r\n[Switch]\r\ngone=/x\r\n");
    SoilValues();
    button_.RefreshButton("11");
    EXPECT_EQ(context_.Records.At("11"), "");
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "");
    EXPECT_EQ(folder_.IniValue("Cuts", "gone"), "C:\\no\\such\\file.txt");
    EXPECT_EQ(folder_.IniValue("Switch", "gone"), "/x");
    EXPECT_EQ(button_.Naziv, "gone");
    EXPECT_EQ(button_.FilePath, "C:\\no\\such\\file.txt");
    EXPECT_EQ(button_.FileIcon, 4);
    EXPECT_EQ(button_.Switch, "/x");
    EXPECT_EQ(button_.FileSize, "");
    EXPECT_EQ(button_.FILETIME, "old time");
    EXPECT_EQ(testkit::Window(box_.Handle()).Text(), "gone");
    button_.RefreshButton("11");
    ExpectFree();
    EXPECT_EQ(testkit::Window(box_.Handle()).Text(), "Empty");
}

TEST_F(ButtonShortcutTest, RefreshingShowsTheHourglassAndPutsThePointerBack) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): any other handle will do.
    const auto former = reinterpret_cast<HCURSOR>(INT_PTR{4711});
    std::vector<HCURSOR> pointers;
    const RecordedCall set = FAKE_CALL(SetCursor, [&](HCURSOR pointer) {
        pointers.push_back(pointer);
        return former;
    });
    // Whatever becomes of the button: it is shown, it is free, its shortcut is gone, its file is gone.
    for (const char* record : {"u|0", "", "gone|0", "file|0"}) {
        LoadRecord(record, "[Cuts]\r\nu=http://example.org/\r\nfile=C:\\no\\such.txt\r\n");
        pointers.clear();
        button_.RefreshButton("11");
        EXPECT_THAT(pointers, ElementsAre(LoadCursor(nullptr, IDC_WAIT), former)) << record;
    }
    pointers.clear();
    EXPECT_THROW(button_.RefreshButton("70"), win::SubscriptError);
    EXPECT_THAT(pointers, ElementsAre(LoadCursor(nullptr, IDC_WAIT), former));
}

TEST_F(ButtonShortcutTest, AKeyOutsideTheTableIsABoundsErrorBeforeAnythingIsRead) {
    Load("[Buttons]\r\n");
    const std::string before = folder_.IniBytes();
    for (const char* key : {"", "0", "9", "70", "111"})
        EXPECT_THROW(button_.RefreshButton(key), win::SubscriptError) << key;
    EXPECT_EQ(folder_.IniBytes(), before);
    EXPECT_THROW(button_.DeleteShortcut("70", true), win::SubscriptError);
    context_.CurrentButtonKey = "70";
    EXPECT_THROW(button_.SaveShortcut("C:\\a.exe", 0), win::SubscriptError);
    EXPECT_THROW(button_.SaveGroup("C:\\a|C:\\b"), win::SubscriptError);
}

TEST_F(ButtonShortcutTest, SavingAShortcutGivesTheFileTheNameAndTheTableThePath) {
    context_.CurrentButtonKey = "25";
    button_.SaveShortcut("C:\\Програми\\Уређивач č 文.v2.exe", 7);
    EXPECT_EQ(folder_.IniValue("Cuts", "Уређивач č 文.v2"), "C:\\Програми\\Уређивач č 文.v2.exe");
    EXPECT_EQ(folder_.IniValue("Buttons", "25"), "Уређивач č 文.v2|7");
    EXPECT_EQ(context_.Records.At("25"), "C:\\Програми\\Уређивач č 文.v2.exe|7");
}

TEST_F(ButtonShortcutTest, SavingAShortcutWritesTargetThenRecordThenRefillsTheList) {
    const RecordedCalls writes = testkit::LogWrites(log_);
    button_.SaveShortcut("C:\\a.exe", 0);
    EXPECT_THAT(log_.Lines(), ElementsAre("write Cuts a C:\\a.exe", "write Buttons 11 a|0", "refill"));
}

TEST_F(ButtonShortcutTest, SavingAShortcutGivesItANameThatTheFileCanHold) {
    for (const auto& [path, name] : {std::pair{"C:\\T\\a=b.exe", "a-b"},
                                     {"C:\\T\\[нацрт].txt", "нацрт]"},
                                     {"C:\\T\\Empty.txt", "Empty_"},
                                     {"C:\\T\\.profile", ".profile"}}) {
        folder_.WriteIniText("");
        button_.SaveShortcut(path, 2);
        EXPECT_EQ(folder_.IniValue("Cuts", name), path);
        EXPECT_EQ(folder_.IniValue("Buttons", "11"), std::string(name) + "|2");
        EXPECT_EQ(context_.Records.At("11"), std::string(path) + "|2");
    }
}

TEST_F(ButtonShortcutTest, SavingAGroupKeepsItsMembersUnderTheButtonsKey) {
    context_.CurrentButtonKey = "36";
    button_.Switch = "/x";
    const RecordedCalls writes = testkit::LogWrites(log_);
    button_.SaveGroup("C:\\а.txt|http://b");
    EXPECT_THAT(log_.Lines(),
                ElementsAre("write Cuts 36 C:\\а.txt|http://b", "write Buttons 36 Group", "refill"));
    EXPECT_EQ(context_.Records.At("36"), "Group");
    EXPECT_TRUE(button_.Group);
    EXPECT_EQ(button_.Switch, "");
}

TEST_F(ButtonShortcutTest, ASavedGroupComesBackWhenItsButtonIsRefreshed) {
    context_.CurrentButtonKey = "36";
    button_.SaveGroup("C:\\a.txt|C:\\b.txt");
    button_.RefreshButton("36");
    EXPECT_TRUE(button_.Group);
    EXPECT_EQ(button_.FilePath, "C:\\a.txt|C:\\b.txt");
    EXPECT_EQ(FindButtonKey("36"), "36");
}

TEST_F(ButtonShortcutTest, SavingNeedsNoListToRefill) {
    CButtonShortcut lone(context_, nullptr);
    lone.SaveShortcut("C:\\a.exe", 0);
    lone.SaveGroup("a|b");
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "Group");
}

TEST_F(ButtonShortcutTest, DeletingFreesTheButtonOfTheGivenKey) {
    Load("[Buttons]\r\n11=a|0\r\n12=b|1\r\n[Cuts]\r\nb=C:\\b=1.txt\r\n");
    context_.CurrentButtonKey = "11";
    SoilValues();
    button_.DeleteShortcut("12", false);
    ExpectFree();
    EXPECT_EQ(button_.FILETIME, "old time");
    EXPECT_EQ(context_.Records.At("12"), "");
    EXPECT_EQ(folder_.IniValue("Buttons", "12"), "");
    EXPECT_EQ(folder_.IniValue("Buttons", "11"), "a|0");
    EXPECT_EQ(folder_.IniValue("Cuts", "b"), "C:\\b=1.txt");
}

TEST_F(ButtonShortcutTest, DeletingKeepsTheShortcutsSwitchAndRemovesOneNamedEmpty) {
    Load("[Buttons]\r\n11=a|0\r\n[Switch]\r\na=/x=1\r\nEmpty=/y\r\nz=/z\r\n");
    button_.Naziv = "a";
    button_.Switch = "/x=1";
    button_.DeleteShortcut("11", true);
    EXPECT_EQ(button_.Switch, "/x=1");
    EXPECT_THAT(folder_.IniLines("Switch"), ElementsAre("a=/x=1", "z=/z"));
}

TEST_F(ButtonShortcutTest, DeletingWithoutASwitchLeavesTheSwitchesAlone) {
    Load("[Buttons]\r\n11=a|0\r\n[Switch]\r\nEmpty=/y\r\n");
    button_.DeleteShortcut("11", true);
    EXPECT_EQ(folder_.IniValue("Switch", "Empty"), "/y");
}

TEST_F(ButtonShortcutTest, DeletingWritesTheRecordBeforeItLooksAtTheSwitch) {
    Load("[Buttons]\r\n11=a|0\r\n[Switch]\r\nEmpty=/y\r\n");
    button_.Switch = "/x";
    const RecordedCalls writes = testkit::LogWrites(log_);
    button_.DeleteShortcut("11", true);
    EXPECT_THAT(log_.Lines(), ElementsAre("write Buttons 11 ", "empty Switch"));
}

TEST_F(ButtonShortcutTest, FreeingAButtonLeavesItsShortcutsSwitchInTheFile) {
    LoadRecord("a|0", "[Cuts]\r\na=" + folder_.MakeFile("a.txt") + "\r\n[Switch]\r\na=/x\r\n");
    button_.RefreshButton("11");
    button_.DeleteShortcut("11", false);
    EXPECT_EQ(folder_.IniValue("Switch", "a"), "/x");
    EXPECT_EQ(button_.Switch, "/x");
}

TEST_F(ButtonShortcutTest, WorksWithoutAFace) {
    CButtonShortcut spare(context_, nullptr);
    LoadRecord("u|2", "[Cuts]\r\nu=http://example.org/\r\n");
    spare.RefreshButton("11");
    EXPECT_EQ(spare.Naziv, "u");
    spare.DrawButton();
    spare.DeleteShortcut("11", false);
    EXPECT_TRUE(spare.IsFree());
    EXPECT_EQ(spare.ParentButton(), nullptr);
}

TEST_F(ButtonShortcutTest, StrippingGivesTheTextBeforeTheDelimiter) {
    struct Case {
        std::string text;
        std::string delimiter;
        std::string expected;
    };
    const Case cases[] = {{"a|b|c", "|", "a"}, {"a--b", "--", "a"},
                          {"abc", "|", "abc"}, {"|b", "|", ""},
                          {"", "|", ""},       {std::string("C:\\a\0rest\0", 10), "", "C:\\a"},
                          {"abc", "", "abc"},  {"жута ж", " ж", "жута"}};
    for (const Case& example : cases)
        EXPECT_EQ(CButtonShortcut::StripString(example.text, example.delimiter), example.expected)
            << example.text;
}

}  // namespace
}  // namespace model
