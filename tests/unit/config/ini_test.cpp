#include "config/ini.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <random>

#include "tests/support/call_log.h"
#include "tests/support/recorded_call.h"
#include "tests/unit/config/config_file.h"
#include "win/errors.h"

namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testkit::CallLog;
using testkit::RecordedCall;

class IniTest : public ConfigFile {};

/// Writes `bytes` where a profile function is to put its answer.
void Answer(LPSTR buffer, const std::string& bytes) { std::copy(bytes.begin(), bytes.end(), buffer); }

TEST_F(IniTest, ReadsAValueWithTheSizeOf555) {
    CallLog log;
    const RecordedCall read = FAKE_CALL(
        GetPrivateProfileStringA,
        [&](LPCSTR section, LPCSTR key, LPCSTR otherwise, LPSTR buffer, DWORD size, LPCSTR file) -> DWORD {
            log.Add(section, key, "<" + std::string(otherwise) + ">", size, file);
            Answer(buffer, "abcdef");
            return 4;
        });
    EXPECT_EQ(config::ReadIni("Cuts", "Notes"), "abcd");
    EXPECT_THAT(log.Lines(), ElementsAre("Cuts Notes <> 555 " + folder_.IniPath()));
}

TEST_F(IniTest, HasRoomForAThousandCharactersOfAValue) {
    const RecordedCall read = FAKE_CALL(GetPrivateProfileStringA,
                                        [&](LPCSTR, LPCSTR, LPCSTR, LPSTR buffer, DWORD, LPCSTR) -> DWORD {
                                            Answer(buffer, std::string(999, 'x') + '\0');
                                            return 999;
                                        });
    EXPECT_EQ(config::ReadIni("Cuts", "Notes"), std::string(999, 'x'));
}

TEST_F(IniTest, ReadsASectionWithTheSizeOf20000AndStripsTheLastNul) {
    CallLog log;
    const RecordedCall read = FAKE_CALL(GetPrivateProfileSectionA,
                                        [&](LPCSTR section, LPSTR buffer, DWORD size, LPCSTR file) -> DWORD {
                                            log.Add(section, size, file);
                                            Answer(buffer, "a=1\0b=2\0\0"s);
                                            return 8;
                                        });
    EXPECT_EQ(config::ReadIniSection("Cuts"), "a=1\0b=2"s);
    EXPECT_THAT(log.Lines(), ElementsAre("Cuts 20000 " + folder_.IniPath()));
}

TEST_F(IniTest, ReadsALongSectionCutShortWithoutAnError) {
    const std::string line = "a=" + std::string(30000, 'x');
    folder_.WriteIniText("[Cuts]\r\n" + line + "\r\nb=2\r\n");
    // The system gives 19998 characters, and the last one is taken for the NUL that ends the last entry.
    EXPECT_EQ(config::ReadIniSection("Cuts"), line.substr(0, 19997));
    EXPECT_EQ(config::ListIniKeys("Cuts"), "a");
}

TEST_F(IniTest, ReadsASectionThatBeginsWithANulAsEmpty) {
    for (const std::string& answer : {"\0"s, "\0a=1\0\0"s}) {
        const RecordedCall read =
            FAKE_CALL(GetPrivateProfileSectionA, [&](LPCSTR, LPSTR buffer, DWORD, LPCSTR) {
                Answer(buffer, answer);
                return static_cast<DWORD>(answer.size());
            });
        EXPECT_EQ(config::ReadIniSection("Cuts"), "");
    }
}

TEST_F(IniTest, WritesAValueOfTheFileBesideIniPath) {
    CallLog log;
    const RecordedCall write = STUB_CALL(log, WritePrivateProfileStringA, FALSE);
    config::WriteIni("Cuts", "Notes", "C:\\a.txt");
    EXPECT_THAT(log.Lines(), ElementsAre("WritePrivateProfileStringA Cuts Notes C:\\a.txt " +
                                         folder_.FullPath(SideName(1))));
}

TEST_F(IniTest, WritesASectionAsAListEndedByTwoNuls) {
    std::vector<std::string> lists;
    const RecordedCall write = FAKE_CALL(WritePrivateProfileSectionA, [&](LPCSTR, LPCSTR list, LPCSTR) {
        const char* end = list;
        do
            end += std::string(end).size() + 1;
        while (*end != '\0');
        lists.emplace_back(list, end);
        return FALSE;
    });
    config::WriteIniSection("Cuts", "a=1\0b=2"s);
    EXPECT_THAT(lists, ElementsAre("a=1\0b=2\0"s));
}

TEST_F(IniTest, ReadsWhatItWroteInEveryScript) {
    const std::pair<std::string, std::string> records[] = {{"Notes", "C:\\a.txt"},
                                                           {"Zażółć", "C:\\Übung\\ß.txt"},
                                                           {"Заметки", "C:\\Папка\\файл.txt"},
                                                           {"笔记", "C:\\文件夹\\文件.txt"}};
    for (const auto& [name, target] : records)
        config::WriteIni("Cuts", name, target);
    for (const auto& [name, target] : records)
        EXPECT_EQ(config::ReadIni("Cuts", name), target);
    EXPECT_EQ(config::ListIniKeys("Cuts"), "Notes|Zażółć|Заметки|笔记");
}

TEST_F(IniTest, GivesNothingForWhatIsMissing) {
    EXPECT_EQ(config::ReadIni("Cuts", "Notes"), "");
    EXPECT_EQ(config::ReadIniSection("Cuts"), "");
    folder_.WriteIniText("[Cuts]\r\nNotes=C:\\a.txt\r\n[Switch]\r\n");
    EXPECT_EQ(config::ReadIni("Cuts", "Other"), "");
    EXPECT_EQ(config::ReadIni("Collected", "Notes"), "");
    EXPECT_EQ(config::ReadIniSection("Collected"), "");
    EXPECT_EQ(config::ReadIniSection("Switch"), "");
}

TEST_F(IniTest, FindsTheFirstOfTwoKeysIgnoringCase) {
    folder_.WriteIniText("[Cuts]\r\nNotes=C:\\a.txt\r\nnotes=C:\\b.txt\r\n");
    EXPECT_EQ(config::ReadIni("Cuts", "NOTES"), "C:\\a.txt");
}

TEST_F(IniTest, Reads554CharactersOfALongValue) {
    const std::string value = std::string(554, 'a') + std::string(46, 'b');
    folder_.WriteIniText("[Cuts]\r\nlong=" + value + "\r\nfits=" + std::string(554, 'c') + "\r\n");
    EXPECT_EQ(config::ReadIni("Cuts", "long"), std::string(554, 'a'));
    EXPECT_EQ(config::ReadIni("Cuts", "fits"), std::string(554, 'c'));
}

TEST_F(IniTest, GivesNoBlanksBeforeAPartThatDidNotFit) {
    folder_.WriteIniText("[Cuts]\r\nlong=C:\\file.exe" + std::string(600, ' ') +
                         "more\r\nquoted=\"a  \"\r\n");
    EXPECT_EQ(config::ReadIni("Cuts", "long"), "C:\\file.exe");
    EXPECT_EQ(config::ReadIni("Cuts", "quoted"), "a  ");
}

TEST_F(IniTest, SplitsASectionIntoItsEntries) {
    EXPECT_THAT(config::SectionEntries(""), ElementsAre());
    EXPECT_THAT(config::SectionEntries("a=1"), ElementsAre("a=1"));
    EXPECT_THAT(config::SectionEntries("a=1\0b=x=y\0c"s), ElementsAre("a=1", "b=x=y", "c"));
}

TEST_F(IniTest, ListsTheKeysInFileOrderJoinedByBars) {
    folder_.WriteIniText("[Cuts]\r\nb=2\r\na=1=x\r\nC c=\r\n");
    EXPECT_EQ(config::ListIniKeys("Cuts"), "b|a|C c");
}

TEST_F(IniTest, ListsNoKeysOfAnEmptySection) {
    folder_.WriteIniText("[Cuts]\r\n");
    EXPECT_EQ(config::ListIniKeys("Cuts"), "");
}

TEST_F(IniTest, RefusesToListASectionWithAnEntryThatIsNoRecord) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\njunk\r\n");
    try {
        config::ListIniKeys("Cuts");
        FAIL() << "no exception";
    } catch (const win::InvalidArgumentError& error) {
        EXPECT_THAT(error.what(), HasSubstr("\"Cuts\""));
        EXPECT_THAT(error.what(), HasSubstr("junk"));
        EXPECT_THAT(error.what(), HasSubstr(folder_.IniPath()));
    }
}

TEST_F(IniTest, DeletesAKeyAndKeepsTheOrderOfTheOthers) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\nc=3\r\n[Switch]\r\nb=/x\r\n");
    config::DeleteIniKey("Cuts", "b");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1", "c=3"));
    EXPECT_THAT(Lines("Switch"), ElementsAre("b=/x"));
}

TEST_F(IniTest, DeletesByWritingTheOtherEntriesOfTheSectionAtOnce) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nb=\r\nc=3\r\n");
    CallLog log;
    const RecordedCall section = LOG_CALL(log, WritePrivateProfileSectionA);
    const RecordedCall value = LOG_CALL(log, WritePrivateProfileStringA);
    config::DeleteIniKey("Cuts", "a");
    EXPECT_THAT(log.Lines(),
                ElementsAre("WritePrivateProfileSectionA Cuts b= " + folder_.FullPath(SideName(1))));
    EXPECT_THAT(Lines("Cuts"), ElementsAre("b=", "c=3"));
}

TEST_F(IniTest, DeletingAnAbsentKeyDropsTheFirstEntry) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\n");
    config::DeleteIniKey("Cuts", "nothing");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("b=2"));
}

TEST_F(IniTest, DeletesTheFirstOfTwoEntriesOfAKey) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\nc=3\r\nb=4\r\n");
    config::DeleteIniKey("Cuts", "b");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1", "c=3", "b=4"));
}

TEST_F(IniTest, DeletesOnlyTheExactSpelling) {
    folder_.WriteIniText("[Cuts]\r\nfirst=1\r\nNotes=2\r\n");
    config::DeleteIniKey("Cuts", "notes");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("Notes=2"));
}

TEST_F(IniTest, DeletingCutsEveryOtherValueAtItsEqualsSign) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nb=x=y\r\nc=3\r\n");
    config::DeleteIniKey("Cuts", "a");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("b=x", "c=3"));
}

TEST_F(IniTest, DeletingFromASectionWithAnEntryThatIsNoRecordChangesNothing) {
    const std::string text = "[Cuts]\r\na=1\r\njunk\r\nb=2\r\n";
    folder_.WriteIniText(text);
    try {
        config::DeleteIniKey("Cuts", "a");
        FAIL() << "no exception";
    } catch (const win::SubscriptError& error) {
        EXPECT_THAT(error.what(), HasSubstr("\"Cuts\""));
        EXPECT_THAT(error.what(), HasSubstr("junk"));
        EXPECT_THAT(error.what(), HasSubstr(folder_.IniPath()));
    }
    EXPECT_EQ(folder_.IniBytes(), text);
}

/// Removes a key step by step: the section emptied, and every other entry written again.
void DeleteStepByStep(const std::string& section, const std::string& key, const std::string& path) {
    const std::vector<std::string> entries = config::SectionEntries(config::ReadIniSection(section));
    size_t doomed = 0;
    for (size_t index = entries.size(); index-- > 0;)
        if (entries[index].substr(0, entries[index].find('=')) == key) doomed = index;
    WritePrivateProfileSectionA(section.c_str(), "\0", path.c_str());
    for (size_t index = 0; index < entries.size(); ++index) {
        if (index == doomed) continue;
        const size_t name = entries[index].find('=');
        const std::string rest = entries[index].substr(name + 1);
        WritePrivateProfileStringA(section.c_str(), entries[index].substr(0, name).c_str(),
                                   rest.substr(0, rest.find('=')).c_str(), path.c_str());
    }
}

/// Without the blanks at the ends of lines: each write reads the file anew and trims what earlier writes have
/// left, so the blanks depend on the number of writes.
std::string Trimmed(std::string text) {
    for (size_t blank = 0; (blank = std::min(text.find(" \r"), text.find("\t\r"))) != std::string::npos;)
        text.erase(blank, 1);
    return text;
}

TEST_F(IniTest, DeletingLeavesByteForByteWhatWritingEveryOtherEntryLeaves) {
    std::mt19937 random(1);
    const std::string pieces[] = {
        "a", "A", "b", "ž",    "Ž",    "=",    "=",  " ",   "\t", "\"", "'",  "x y",    ";",           "[",
        "]", "|", "#", "\r\n", "\r\n", "\r\n", "q=", "r=5", "s=", "t=", "u=", "\r\nz=", "\r\n[S]\r\n", "值"};
    int deletions = 0;
    for (int round = 0; round < 200; ++round) {
        std::string text = "; first\r\n[S]\r\nfirst=1\r\n";
        for (int piece = 0; piece < 25; ++piece)
            text += pieces[random() % std::size(pieces)];
        text += "\r\n[T]\r\n;last\r\nx=y\r\n";
        const char* keys[] = {"a", "A", "b", "q", "r", "first", "absent", "z"};
        const std::string key = keys[random() % std::size(keys)];
        folder_.WriteIniText(text);
        try {
            config::DeleteIniKey("S", key);
        } catch (const win::SubscriptError&) {
            EXPECT_EQ(folder_.IniBytes(), text);
            continue;
        }
        const std::string found = Trimmed(folder_.IniBytes());
        folder_.WriteIniText(text);
        DeleteStepByStep("S", key, folder_.IniPath());
        ASSERT_EQ(found, Trimmed(folder_.IniBytes())) << "without " << key << " of:\n" << text;
        ++deletions;
    }
    EXPECT_GT(deletions, 50);
}

TEST_F(IniTest, DeletingFromAnEmptySectionLeavesItEmpty) {
    folder_.WriteIniText("[Cuts]\r\n[Switch]\r\na=/x\r\n");
    config::DeleteIniKey("Cuts", "a");
    EXPECT_THAT(Lines("Cuts"), ElementsAre());
    EXPECT_THAT(Lines("Switch"), ElementsAre("a=/x"));
}

}  // namespace
