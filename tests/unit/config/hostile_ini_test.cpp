// What a configuration file may hold that no program of ours ever wrote.
#include <windows.h>

#include <gmock/gmock.h>

#include <random>

#include "config/ini.h"
#include "config/settings.h"
#include "tests/support/text.h"
#include "tests/unit/config/config_file.h"
#include "win/errors.h"
#include "win/text.h"

namespace {

using namespace std::string_literals;

class HostileIniTest : public ConfigFile {
  protected:
    /// Runs every operation over the sections of the program; only the errors of ours may come out.
    void Use() const {
        for (const std::string section : {"Settings", "Buttons", "Cuts", "Switch", "Collected", ""}) {
            for (const std::string& entry : config::SectionEntries(config::ReadIniSection(section)))
                EXPECT_FALSE(entry.find('\0') != std::string::npos);
            for (const std::string key : {"Main", "11", "a", "", "=", "[", "\xC3"})
                EXPECT_EQ(config::ReadIni(section, key).find('\0'), std::string::npos);
            Try([&] { config::ListIniKeys(section); });
            Try([&] { config::RemoveRecord(section, "a"); });
            Try([&] { config::DeleteIniKey(section, "11"); });
        }
        Try([] { config::LoadMainSettings(); });
        Try([] { config::LoadPopUpSettings(); });
        config::Settings = {};
        config::SaveSettings();
    }

  private:
    template <class Operation>
    static void Try(Operation operation) {
        try {
            operation();
        } catch (const win::RuntimeError& error) {
            EXPECT_STRNE(error.what(), "");
        }
    }
};

TEST_F(HostileIniTest, BearsAnEmptyFile) {
    folder_.WriteIniText("");
    Use();
    EXPECT_EQ(config::ReadIni("Settings", "popdelay"), "500");
}

TEST_F(HostileIniTest, BearsAMissingFile) {
    Use();
    EXPECT_EQ(config::ReadIni("Settings", "popdelay"), "500");
}

TEST_F(HostileIniTest, BearsAFileThatCannotBeWritten) {
    const std::string text = "[Cuts]\r\na=1\r\nb=2\r\n";
    folder_.WriteIniText(text);
    const std::wstring path = testkit::Wide(folder_.IniPath());
    HANDLE file =
        CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    Use();
    CloseHandle(file);
    EXPECT_EQ(folder_.IniBytes(), text);
}

TEST_F(HostileIniTest, BearsAReadOnlyFile) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\n");
    folder_.SetReadOnly("Quon.ini");
    EXPECT_EQ(config::ReadIni("Cuts", "b"), "2");
    Use();
}

TEST_F(HostileIniTest, BearsAFolderInThePlaceOfTheFile) {
    folder_.MakeFolder("Quon.ini");
    Use();
    EXPECT_EQ(config::ReadIni("Settings", "popdelay"), "");
}

TEST_F(HostileIniTest, BearsAFolderThatIsGone) {
    config::IniPath = folder_.FullPath("gone\\Quon.ini");
    Use();
    EXPECT_EQ(config::ReadIni("Settings", "popdelay"), "");
}

TEST_F(HostileIniTest, BearsBytesThatAreNoText) {
    for (unsigned seed = 1; seed <= 10; ++seed) {
        std::mt19937 random(seed);
        std::string bytes = seed % 2 == 0 ? "[Cuts]\r\n" : "";
        while (bytes.size() < 30000) {
            const auto byte = static_cast<char>(random() % 256);
            bytes += byte;
            if (byte == '\n') bytes += random() % 4 == 0 ? "[Cuts]\r\na=" : "a=";
        }
        SCOPED_TRACE(seed);
        folder_.WriteIniText(bytes);
        Use();
    }
}

TEST_F(HostileIniTest, BearsNulsAndControlCharacters) {
    folder_.WriteIniText("[Cuts]\r\na=1\0\x01\x02x\r\nb\0c=2\r\n\x1A\r\n\x07=3\r\nd=\x7F\r\n\0\0\0"s);
    Use();
}

TEST_F(HostileIniTest, BearsHalfCharacters) {
    folder_.WriteIniText("[Cuts]\r\na=\xC3\r\n\xE2\x82=x\r\nb\xF0\x9F\x98=\x80\xBF\r\nc=whole\r\n");
    EXPECT_EQ(config::ReadIni("Cuts", "c"), "whole");
    Use();
}

TEST_F(HostileIniTest, BearsLinesWithoutEndsAndEndsWithoutLines) {
    for (const char* text : {"[Cuts", "[", "]", "[]\r\na=1", "=", "[Cuts]\r\n=\r\n==\r\n;=\r\n",
                             "[Cuts]\ra=1\rb=2", "\r\n\r\n\r\n", "[Cuts]\r\n[Cuts]\r\n[Cuts]",
                             "\xEF\xBB\xBF[Cuts]\r\na=1\r\n", "[Cuts]\r\n   \r\n\t\r\n a = 1 \r\n"}) {
        SCOPED_TRACE(text);
        folder_.WriteIniText(text);
        Use();
    }
}

TEST_F(HostileIniTest, BearsALineOfAMillionCharacters) {
    folder_.WriteIniText("[Cuts]\r\na=" + std::string(1000000, 'x') + "\r\nb=2\r\n");
    EXPECT_EQ(config::ReadIni("Cuts", "a"), std::string(554, 'x'));
    EXPECT_EQ(config::ReadIni("Cuts", "b"), "2");
    Use();
}

TEST_F(HostileIniTest, ReadsTheFirstOfTwoSectionsWithOneName) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\n[Switch]\r\nx=/x\r\n[Cuts]\r\na=2\r\nb=3\r\n");
    EXPECT_EQ(config::ReadIni("Cuts", "a"), "1");
    EXPECT_EQ(config::ListIniKeys("Cuts"), "a");
    Use();
}

TEST_F(HostileIniTest, ListsADoubleKeyTwice) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nA=2\r\na=3\r\n");
    EXPECT_EQ(config::ListIniKeys("Cuts"), "a|A|a");
    EXPECT_EQ(config::ReadIni("Cuts", "A"), "1");
}

TEST_F(HostileIniTest, KeepsNamesWithOddCharacters) {
    for (const std::string name : {"a b", "a]b", "a[b]", "#a", "'a'", "\"a\"", "a;b", "a,b", "%a%", "a\\b",
                                   "ﬁ", "😀", "e\xCC\x81", "ا"}) {
        SCOPED_TRACE(name);
        folder_.WriteIniText("[Cuts]\r\nfirst=0\r\n");
        config::WriteIni("Cuts", name, "x=y");
        EXPECT_EQ(config::ReadIni("Cuts", name), "x=y");
        EXPECT_EQ(config::ListIniKeys("Cuts"), "first|" + name);
        config::RemoveRecord("Cuts", "first");
        EXPECT_EQ(config::ReadIni("Cuts", name), "x=y");
        config::RemoveRecord("Cuts", name);
        EXPECT_EQ(config::ReadIniSection("Cuts"), "");
    }
}

TEST_F(HostileIniTest, EndsALongValueWithoutNulsWhereverItIsCut) {
    for (size_t shift = 0; shift < 4; ++shift) {
        SCOPED_TRACE(shift);
        std::string value(shift, '-');
        while (value.size() < 600)
            value += "😀";
        folder_.WriteIniText("[Cuts]\r\na=" + value + "\r\n");
        const std::string read = config::ReadIni("Cuts", "a");
        EXPECT_GT(read.size(), 550u);
        EXPECT_LE(read.size(), 554u);
        EXPECT_TRUE(value.starts_with(read));
    }
}

TEST_F(HostileIniTest, ListsTheKeysOfASectionTooLongToReadWholeUpToTheCut) {
    // Wherever the cut falls, even inside a key, the keys that were read are listed.
    for (size_t shift = 1; shift <= 12; ++shift) {
        SCOPED_TRACE(shift);
        std::string text = "[Cuts]\r\n" + std::string(shift, 'x') + "=1\r\n";
        for (int index = 1000; index < 3000; ++index)
            text += "键" + std::to_string(index) + "名=值\r\n";
        folder_.WriteIniText(text);
        const std::vector<std::string> keys = win::Split(config::ListIniKeys("Cuts"), '|');
        const std::vector<std::string> all = folder_.Ini().Keys("Cuts");
        ASSERT_GT(keys.size(), 1000u);
        ASSERT_LT(keys.size(), all.size());
        EXPECT_TRUE(std::equal(keys.begin(), keys.end(), all.begin()));
    }
}

}  // namespace
