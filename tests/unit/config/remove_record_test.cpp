#include <gmock/gmock.h>

#include "config/ini.h"
#include "config/ini_unit.h"
#include "tests/support/call_log.h"
#include "tests/support/recorded_call.h"
#include "tests/unit/config/config_file.h"
#include "win/errors.h"

namespace {

using testing::ElementsAre;
using testkit::CallLog;
using testkit::RecordedCall;

class RemoveRecordTest : public ConfigFile {};

/// `count` lines of nearly `size` bytes, each named by `name` and its number.
std::string Records(int count, size_t size, const std::string& name, const std::string& filling) {
    std::string text;
    for (int index = 0; index < count; ++index) {
        std::string line = name + std::to_string(index) + "=";
        while (line.size() + filling.size() <= size)
            line += filling;
        text += line + "\r\n";
    }
    return text;
}

TEST_F(RemoveRecordTest, RemovesTheNamedRecordAlone) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\nc=3\r\n[Switch]\r\nb=/x\r\n");
    config::RemoveRecord("Cuts", "b");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1", "c=3"));
    EXPECT_THAT(Lines("Switch"), ElementsAre("b=/x"));
}

TEST_F(RemoveRecordTest, FindsTheNameIgnoringCaseInEveryScript) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nZażółć=2\r\nЗаметки=3\r\nb=4\r\n");
    config::RemoveRecord("Cuts", "ZAŻÓŁĆ");
    config::RemoveRecord("Cuts", "зАМЕТКИ");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1", "b=4"));
}

TEST_F(RemoveRecordTest, WritesNothingWhenThereIsNoSuchRecord) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nbb=2\r\n");
    CallLog log;
    const RecordedCall section = LOG_CALL(log, WritePrivateProfileSectionA);
    const RecordedCall value = LOG_CALL(log, WritePrivateProfileStringA);
    config::RemoveRecord("Cuts", "b");
    config::RemoveRecord("Cuts", "");
    config::RemoveRecord("Missing", "a");
    EXPECT_EQ(log.Text(), "");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1", "bb=2"));
}

TEST_F(RemoveRecordTest, KeepsTheEqualsSignsInOtherValues) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nb=http://h/?x=1&y=2\r\nc==\r\nd=x=\r\n");
    config::RemoveRecord("Cuts", "a");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("b=http://h/?x=1&y=2", "c==", "d=x="));
}

TEST_F(RemoveRecordTest, KeepsQuotesAndEmptyValues) {
    folder_.WriteIniText("[Switch]\r\na=1\r\nb=\"/x /y\"\r\nc='z'\r\nd=\r\n");
    config::RemoveRecord("Switch", "a");
    EXPECT_THAT(Lines("Switch"), ElementsAre("b=\"/x /y\"", "c='z'", "d="));
}

TEST_F(RemoveRecordTest, RewritesTheSectionOnceAndOnceMoreForTheValuesThatWereCut) {
    folder_.WriteIniText("[Cuts]\r\nfirst=x=y\r\nNotes=2\r\nlast=3\r\n");
    CallLog log;
    const RecordedCall section = LOG_CALL(log, WritePrivateProfileSectionA);
    const RecordedCall value = LOG_CALL(log, WritePrivateProfileStringA);
    config::RemoveRecord("Cuts", "NOTES");
    const std::string file = " " + folder_.FullPath(SideName(1));
    EXPECT_THAT(log.Lines(), ElementsAre("WritePrivateProfileSectionA Cuts first=x" + file,
                                         "WritePrivateProfileSectionA Cuts first=x=y" + file));
    EXPECT_THAT(Lines("Cuts"), ElementsAre("first=x=y", "last=3"));
    log.Clear();
    config::RemoveRecord("Cuts", "first");
    EXPECT_EQ(log.Lines().size(), 1u) << "nothing was cut";
}

TEST_F(RemoveRecordTest, LeavesBothOfTwoKeysThatDifferOnlyInCase) {
    folder_.WriteIniText("[Cuts]\r\nNotes=C:\\a.txt\r\nb=2\r\nnotes=C:\\b.txt\r\n");
    config::RemoveRecord("Cuts", "b");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("Notes=C:\\a.txt", "notes=C:\\b.txt"));
    EXPECT_EQ(config::ReadIni("Cuts", "notes"), "C:\\a.txt");
}

TEST_F(RemoveRecordTest, RemovesTheFirstOfTwoEqualKeys) {
    folder_.WriteIniText("[Cuts]\r\nNotes=C:\\a.txt\r\nb=x=y\r\nNotes=C:\\b.txt\r\n");
    config::RemoveRecord("Cuts", "Notes");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("b=x=y", "Notes=C:\\b.txt"));
}

TEST_F(RemoveRecordTest, LosesNoRecordOfASectionTooLongToReadWhole) {
    const std::string before = Records(150, 98, "before", "x=");
    const std::string after = Records(250, 98, "after", "y=");
    folder_.WriteIniText("[Cuts]\r\n" + before + "Doomed=1\r\n" + after + "[Switch]\r\na=/x\r\n");
    const auto all = Lines("Cuts");
    ASSERT_EQ(all.size(), 401u);

    config::RemoveRecord("Cuts", "doomed");
    auto rest = all;
    rest.erase(rest.begin() + 150);
    EXPECT_EQ(Lines("Cuts"), rest);

    config::RemoveRecord("Cuts", "absent");
    config::RemoveRecord("Cuts", "");
    EXPECT_EQ(Lines("Cuts"), rest);

    // One that lies behind what can be read.
    config::RemoveRecord("Cuts", "after249");
    rest.pop_back();
    EXPECT_EQ(Lines("Cuts"), rest);
    EXPECT_THAT(Lines("Switch"), ElementsAre("a=/x"));
}

TEST_F(RemoveRecordTest, LosesNoRecordAroundTheLongestSectionThatCanBeRead) {
    // What is read of a section is cut at 19998 bytes; each of these is read whole, cut by little, or by
    // more, and the cut falls into characters of three bytes.
    constexpr int kLines = 40;
    const std::string lines = "a=1\r\n" + Records(kLines, 490, "键", "值") + "z=";
    const size_t read = lines.size() - (kLines + 1) + 1;  // CR LF is read as one NUL
    ASSERT_LT(read, 19980u);
    for (size_t length = 19980; length <= 20004; ++length) {
        const std::string value = std::string((length - read) % 3, '-') + [&] {
            std::string filling;
            for (size_t index = 0; index < (length - read) / 3; ++index)
                filling += "值";
            return filling;
        }();
        folder_.WriteIniText("[Cuts]\r\n" + lines + value + "\r\n");
        auto rest = Lines("Cuts");
        rest.erase(rest.begin());
        config::RemoveRecord("Cuts", "a");
        EXPECT_EQ(Lines("Cuts"), rest) << length;
    }
}

TEST_F(RemoveRecordTest, LeavesALineWithoutANameAloneUnlessThatIsToBeRemoved) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\n=x=y\r\nb=2\r\n");
    config::RemoveRecord("Cuts", "b");
    EXPECT_EQ(folder_.IniBytes(), "[Cuts]\r\na=1\r\n=x=y\r\n");
    config::RemoveRecord("Cuts", "");
    EXPECT_EQ(folder_.IniBytes(), "[Cuts]\r\na=1\r\n");
}

TEST_F(RemoveRecordTest, TakesARecordOutOfASectionWithALineThatIsNoneAndLeavesTheRestAsItIs) {
    folder_.WriteIniText("[Cuts]\r\na=x=y\r\njunk\r\nb=2\r\n");
    config::RemoveRecord("Cuts", "B");
    EXPECT_EQ(folder_.IniBytes(), "[Cuts]\r\na=x=y\r\njunk\r\n");
}

TEST_F(RemoveRecordTest, KeepsTheUsersCommentLines) {
    folder_.WriteIniText(
        "; all\r\n[Cuts]\r\n; work\r\na=x=y\r\nb=2\r\n; home\r\nc=3\r\n[Switch]\r\nb=/x\r\n");
    EXPECT_TRUE(config::RemoveRecord("Cuts", "B"));
    EXPECT_TRUE(config::RemoveRecord("Switch", "b"));
    EXPECT_EQ(folder_.IniBytes(), "; all\r\n[Cuts]\r\n; work\r\na=x=y\r\n; home\r\nc=3\r\n[Switch]\r\n");
}

TEST_F(RemoveRecordTest, WritesNothingWhereTheSectionCannotBeRead) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\n");
    const RecordedCall read = FAKE_CALL(GetPrivateProfileSectionA, [](auto...) -> DWORD {
        SetLastError(ERROR_SHARING_VIOLATION);
        return 0;
    });
    EXPECT_FALSE(config::RemoveRecord("Cuts", "b"));
    EXPECT_FALSE(config::DeleteIniKey("Cuts", "b"));
    config::IniUnit unit;
    EXPECT_TRUE(config::WriteIni("Cuts", "c", "3"));
    EXPECT_FALSE(config::RemoveRecord("Cuts", "b"));
    EXPECT_FALSE(config::WriteIni("Cuts", "c", "4")) << "what belongs together is not done by halves";
    EXPECT_FALSE(unit.Finish());
    EXPECT_EQ(folder_.IniBytes(), "[Cuts]\r\na=1\r\nb=2\r\n");
}

TEST_F(RemoveRecordTest, LosesNoRecordWhereReadingASectionFailsHalfway) {
    for (int failing = 1; failing <= 3; ++failing) {
        folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\nc=3\r\n");
        int reads = 0;
        const RecordedCall read =
            FAKE_CALL(GetPrivateProfileSectionA, [&](LPCSTR section, LPSTR text, DWORD size, LPCSTR file) {
                if (++reads == failing) return DWORD{0};
                return ORIGINAL_CALL(GetPrivateProfileSectionA)(section, text, size, file);
            });
        config::RemoveRecord("Cuts", "b");
        EXPECT_THAT(Lines("Cuts"), testing::IsSupersetOf({"a=1", "c=3"})) << failing;
    }
}

TEST_F(RemoveRecordTest, RemovesNothingElseWhereAnotherProgramHasRemovedItMeanwhile) {
    for (const int moment : {1, 2}) {
        folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\nc=3\r\n");
        int reads = 0;
        const RecordedCall read =
            FAKE_CALL(GetPrivateProfileSectionA, [&](LPCSTR section, LPSTR text, DWORD size, LPCSTR file) {
                const DWORD count = ORIGINAL_CALL(GetPrivateProfileSectionA)(section, text, size, file);
                if (++reads == moment) folder_.WriteIniText("[Cuts]\r\na=1\r\nc=3\r\nd=44\r\n");
                return count;
            });
        config::RemoveRecord("Cuts", "b");
        EXPECT_THAT(Lines("Cuts"), testing::IsSupersetOf({"a=1", "c=3"})) << moment;
        EXPECT_THAT(Lines("Cuts"), testing::Not(testing::Contains("b=2"))) << moment;
    }
}

TEST_F(RemoveRecordTest, ReadsWhatItRewritesOnce) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\nc=3=x\r\n");
    std::vector<std::string> read;
    const RecordedCall section =
        WATCH_CALL(GetPrivateProfileSectionA, [&](LPCSTR name, LPSTR, DWORD, LPCSTR file) {
            if (folder_.IniPath() != file) read.emplace_back(name);
        });
    EXPECT_TRUE(config::RemoveRecord("Cuts", "b"));
    EXPECT_THAT(read, ElementsAre("Cuts")) << "what is read twice may have changed in between";
}

TEST_F(RemoveRecordTest, KeepsWhatAnotherProgramHasAddedBeforeItIsDone) {
    for (const char* after : {"[Cuts]\r\na=1\r\nb=2\r\nc=3=x\r\nother=5=y\r\n",
                              "[Cuts]\r\nother=5=y\r\n; mine\r\na=1\r\nc=3=x\r\n"}) {
        folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\nc=3=x\r\n");
        int saves = 1;
        const RecordedCall flush = WATCH_CALL(FlushFileBuffers, [&](HANDLE) {
            if (saves-- > 0) folder_.WriteIniText(after);
        });
        config::IniUnit unit;
        EXPECT_TRUE(config::WriteIni("Switch", "z", "/z"));
        EXPECT_TRUE(config::RemoveRecord("Cuts", "b"));
        EXPECT_TRUE(unit.Finish());
        EXPECT_THAT(Lines("Cuts"), testing::UnorderedElementsAre("a=1", "c=3=x", "other=5=y"));
        EXPECT_THAT(Lines("Switch"), ElementsAre("z=/z"));
    }
}

TEST_F(RemoveRecordTest, WhereTheFileItselfIsWrittenNoValueIsEverCut) {
    // No new file can be made, or it may not take the place.
    for (const bool canCopy : {false, true}) {
        folder_.WriteIniText("[Cuts]\r\na=1\r\nB=2\r\nc=http://h/?x=1&y=2\r\n");
        const RecordedCall copy = FAKE_CALL(CopyFileA, [&](LPCSTR from, LPCSTR to, BOOL keep) -> BOOL {
            if (canCopy) return ORIGINAL_CALL(CopyFileA)(from, to, keep);
            SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        });
        const RecordedCall rename = FAKE_CALL(SetFileInformationByHandle, [](auto...) -> BOOL {
            SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        });
        const auto look = [&](LPCSTR file) {
            if (folder_.IniPath() != file) return;
            EXPECT_THAT(Lines("Cuts"), testing::Contains("c=http://h/?x=1&y=2")) << canCopy;
        };
        const RecordedCall section =
            FAKE_CALL(WritePrivateProfileSectionA, [&](LPCSTR name, LPCSTR text, LPCSTR file) {
                const BOOL done = ORIGINAL_CALL(WritePrivateProfileSectionA)(name, text, file);
                look(file);
                return done;
            });
        std::string removed;
        const RecordedCall key =
            FAKE_CALL(WritePrivateProfileStringA, [&](LPCSTR name, LPCSTR record, LPCSTR text, LPCSTR file) {
                const BOOL done = ORIGINAL_CALL(WritePrivateProfileStringA)(name, record, text, file);
                look(file);
                removed = record;
                return done;
            });
        EXPECT_TRUE(config::RemoveRecord("Cuts", "b"));
        EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1", "c=http://h/?x=1&y=2"));
        EXPECT_EQ(removed, "B") << "as it is spelled there";
    }
}

TEST_F(RemoveRecordTest, LosesNoRecordWhereOneCannotBeWrittenBack) {
    for (int failing = 1; failing <= 2; ++failing) {
        folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\nc=3=x\r\nd=4\r\n");
        int writes = 0;
        const RecordedCall write =
            FAKE_CALL(WritePrivateProfileSectionA, [&](LPCSTR section, LPCSTR text, LPCSTR file) -> BOOL {
                if (++writes == failing) return FALSE;
                return ORIGINAL_CALL(WritePrivateProfileSectionA)(section, text, file);
            });
        EXPECT_FALSE(config::RemoveRecord("Cuts", "b"));
        EXPECT_EQ(writes, failing);
        EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1", "b=2", "c=3=x", "d=4"))
            << failing << ": all or nothing";
    }
}

}  // namespace
