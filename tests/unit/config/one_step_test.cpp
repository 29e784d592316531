// The file's place taken in one step, as the newest systems can.
#include <windows.h>

#include <gmock/gmock.h>

#include <cstddef>
#include <string>
#include <vector>

#include "config/ini.h"
#include "config/ini_unit.h"
#include "tests/support/text.h"
#include "tests/unit/config/ini_unit_fixture.h"

namespace {

using testkit::RecordedCall;

class OneStepTest : public IniUnitTest {
  protected:
    RecordedCall Renaming(DWORD error) {
        return FAKE_CALL(
            SetFileInformationByHandle,
            [this, error](HANDLE file, FILE_INFO_BY_HANDLE_CLASS what, LPVOID data, DWORD size) -> BOOL {
                ++renamed_;
                EXPECT_EQ(static_cast<int>(what), 22) << "FileRenameInfoEx";
                const auto* record = static_cast<const FILE_RENAME_INFO*>(data);
                EXPECT_EQ(*static_cast<const DWORD*>(data), 3u) << "onto a file, also an open one";
                EXPECT_EQ(record->RootDirectory, nullptr);
                const std::wstring path(record->FileName, record->FileNameLength / sizeof(wchar_t));
                EXPECT_EQ(testkit::Utf8(path), folder_.IniPath());
                EXPECT_GE(size, offsetof(FILE_RENAME_INFO, FileName) + record->FileNameLength + 2);
                if (error != ERROR_SUCCESS) {
                    SetLastError(error);
                    return FALSE;
                }
                std::string from(MAX_PATH, '\0');
                from.resize(GetFinalPathNameByHandleA(file, from.data(), MAX_PATH, 0));
                EXPECT_TRUE(from.ends_with(kSide)) << from;
                return ORIGINAL_CALL(MoveFileExA)(folder_.FullPath(kSide).c_str(), folder_.IniPath().c_str(),
                                                  MOVEFILE_REPLACE_EXISTING);
            });
    }
    RecordedCall Moving(BOOL answer) {
        return FAKE_CALL(MoveFileExA, [this, answer](LPCSTR from, LPCSTR to, DWORD flags) -> BOOL {
            ++moved_;
            if (answer != FALSE) return ORIGINAL_CALL(MoveFileExA)(from, to, flags);
            SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        });
    }

    int renamed_ = 0;
    int moved_ = 0;
};

TEST_F(OneStepTest, IsTheFirstChoice) {
    const RecordedCall move = Moving(TRUE);
    const RecordedCall rename = Renaming(ERROR_SUCCESS);
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
    EXPECT_EQ(renamed_, 1);
    EXPECT_EQ(moved_, 0);
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(OneStepTest, WhereTheSystemKnowsItTwoStepsAreNeverTaken) {
    const RecordedCall move = Moving(FALSE);
    const RecordedCall replace = FAKE_CALL(ReplaceFileA, [](auto...) -> BOOL {
        ADD_FAILURE() << "two steps";
        return FALSE;
    });
    // Another program has it open and does not let it be deleted.
    const testkit::OwnedHandle held = Hold("Quon.ini", FILE_SHARE_READ | FILE_SHARE_WRITE);
    const RecordedCall rename = Renaming(ERROR_SHARING_VIOLATION);
    EXPECT_FALSE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_GT(renamed_, 1) << "it is tried again";
    ExpectUnchanged();
}

TEST_F(OneStepTest, IsNotTriedAgainWhereTheSystemDoesNotKnowIt) {
    const RecordedCall rename = Renaming(ERROR_INVALID_PARAMETER);
    for (const char* value : {"2", "3", "4"}) {
        EXPECT_TRUE(config::WriteIni("Cuts", "a", value));
        EXPECT_EQ(folder_.IniValue("Cuts", "a"), value);
        EXPECT_EQ(renamed_, 1);
    }
}

}  // namespace
