// Quon.ini as some editors save it: with the mark of UTF-8 before its first line.
#include <windows.h>

#include <gmock/gmock.h>

#include <string>
#include <string_view>

#include "config/ini.h"
#include "config/ini_unit.h"
#include "tests/support/paths.h"
#include "tests/unit/config/ini_unit_fixture.h"

namespace {

using testkit::RecordedCall;

constexpr const char* kMark = "\xEF\xBB\xBF";
constexpr const char* kBegin = "[Settings]\r\nMain=1\r\n[Cuts]\r\na=1\r\n";

/// On a system that does not see the section that begins behind the mark.
class Utf8MarkTest : public IniUnitTest {
  protected:
    Utf8MarkTest() { folder_.WriteIniText(std::string(kMark) + kBegin); }

    RecordedCall read_ = FAKE_CALL(
        GetPrivateProfileStringA,
        [this](LPCSTR section, LPCSTR key, LPCSTR none, LPSTR text, DWORD size, LPCSTR file) -> DWORD {
            if (std::string_view(section) != "Settings" || !testkit::FileBytes(file).starts_with(kMark))
                return ORIGINAL_CALL(GetPrivateProfileStringA)(section, key, none, text, size, file);
            *text = '\0';
            SetLastError(ERROR_FILE_NOT_FOUND);
            return 0;
        });
};

TEST_F(Utf8MarkTest, IsTakenAwayByEveryUnit) {
    EXPECT_EQ(config::ReadIni("Settings", "Main"), "");
    config::IniUnit unit;
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(config::ReadIni("Settings", "Main"), "1");
    EXPECT_TRUE(unit.Finish());
    EXPECT_EQ(folder_.IniBytes(), "[Settings]\r\nMain=1\r\n[Cuts]\r\na=2\r\n");
}

TEST_F(Utf8MarkTest, IsTakenAwayWhereItHidesWhatAStartNeeds) {
    config::AwaitRequired("Settings", "Main");
    EXPECT_EQ(config::ReadIni("Settings", "Main"), "1");
    EXPECT_EQ(folder_.IniBytes(), kBegin);
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(Utf8MarkTest, StaysDuringAStartThatReadsWhatItNeeds) {
    for (const std::string& text : {"\r\n" + std::string(kBegin), std::string("[Settings]\r\nOther=1\r\n"),
                                    std::string("[Settings\r\nMain=1\r\n")}) {
        folder_.WriteIniText(kMark + text);
        const RecordedCall read =
            FAKE_CALL(GetPrivateProfileStringA, ORIGINAL_CALL(GetPrivateProfileStringA));
        config::AwaitRequired("Settings", "Main");
        EXPECT_EQ(folder_.IniBytes(), kMark + text);
    }
}

TEST_F(Utf8MarkTest, StaysWhereThereCanBeNoNewFile) {
    const RecordedCall copy = FAKE_CALL(CopyFileA, [](LPCSTR, LPCSTR, BOOL) -> BOOL {
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    });
    config::AwaitRequired("Settings", "Main");
    EXPECT_EQ(folder_.IniBytes(), std::string(kMark) + kBegin);
}

}  // namespace
