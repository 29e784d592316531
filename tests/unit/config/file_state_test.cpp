#include "config/file_state.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "config/ini.h"
#include "tests/support/recorded_call.h"
#include "tests/unit/config/config_file.h"

namespace {

using testkit::RecordedCall;

class FileStateTest : public ConfigFile {};

TEST_F(FileStateTest, TellsOneStateFromAnother) {
    EXPECT_EQ(config::StateOf(folder_.IniPath()), std::nullopt);
    folder_.WriteIniText("[Cuts]\r\na=1\r\n");
    const auto before = config::StateOf(folder_.IniPath());
    ASSERT_TRUE(before);
    EXPECT_EQ(before->Size, 13u);
    EXPECT_EQ(config::StateOf(folder_.IniPath()), before);
    folder_.WriteIniText("[Cuts]\r\na=12\r\n");
    EXPECT_NE(config::StateOf(folder_.IniPath()), before);
}

TEST_F(FileStateTest, OfALinkIsThatOfTheFileItLeadsTo) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\n");
    const auto file = config::StateOf(folder_.IniPath());
    const RecordedCall attributes =
        FAKE_CALL(GetFileAttributesExA, [](LPCSTR, GET_FILEEX_INFO_LEVELS, LPVOID data) -> BOOL {
            *static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data) = {
                FILE_ATTRIBUTE_REPARSE_POINT, {1, 1}, {1, 1}, {1, 1}, 0, 0};
            return TRUE;
        });
    EXPECT_EQ(config::StateOf(folder_.IniPath()), file);
    EXPECT_EQ(config::TryReadIni("Cuts", "b"), "") << "it is not empty";
    EXPECT_EQ(config::StateOf(folder_.FullPath("missing.ini")), std::nullopt);
}

}  // namespace
