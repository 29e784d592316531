#include <windows.h>

#include <gmock/gmock.h>

#include <string>

#include "config/ini.h"
#include "config/ini_unit.h"
#include "tests/unit/config/ini_unit_fixture.h"

namespace {

using testing::ElementsAre;
using testkit::RecordedCall;

/// What Windows answers when the side file is to take its place.
class TakingPlaceTest : public IniUnitTest {
  protected:
    /// Lets the renaming fail with this error as long as the file is there.
    static RecordedCall NoRenaming(DWORD error) {
        return FAKE_CALL(MoveFileExA, [error](LPCSTR from, LPCSTR to, DWORD flags) -> BOOL {
            if (GetFileAttributesA(to) == INVALID_FILE_ATTRIBUTES)
                return ORIGINAL_CALL(MoveFileExA)(from, to, flags);
            SetLastError(error);
            return FALSE;
        });
    }
};

TEST_F(TakingPlaceTest, WhereARenameCannotReplaceTheFileIsReplaced) {
    const RecordedCall move = NoRenaming(ERROR_ACCESS_DENIED);
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(TakingPlaceTest, IsTriedAgainWhileTheFileIsBusy) {
    const RecordedCall move = NoRenaming(ERROR_ACCESS_DENIED);
    for (const int busy : {2, 3, 1000}) {
        folder_.WriteIniText(kText);
        Sleep(600);
        int tries = 0;
        const RecordedCall replace = FAKE_CALL(
            ReplaceFileA, [&](LPCSTR to, LPCSTR from, LPCSTR backup, DWORD flags, LPVOID a, LPVOID b) {
                if (++tries >= busy) return ORIGINAL_CALL(ReplaceFileA)(to, from, backup, flags, a, b);
                SetLastError(ERROR_UNABLE_TO_REMOVE_REPLACED);
                return FALSE;
            });
        const bool done = config::WriteIni("Cuts", "a", "2");
        EXPECT_EQ(done, busy <= 3);
        EXPECT_EQ(folder_.IniValue("Cuts", "a"), done ? "2" : "1");
        EXPECT_TRUE(NothingIsLeft());
    }
}

TEST_F(TakingPlaceTest, IsNotTriedAgainAfterAnErrorThatStays) {
    const RecordedCall move = NoRenaming(ERROR_NOT_SUPPORTED);
    int tries = 0;
    const RecordedCall replace = FAKE_CALL(ReplaceFileA, [&](auto...) -> BOOL {
        ++tries;
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    });
    EXPECT_FALSE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(tries, 1);
    ExpectUnchanged();
}

TEST_F(TakingPlaceTest, WhereWindowsStopsHalfwayTheWorkIsFinished) {
    const RecordedCall move = NoRenaming(ERROR_ACCESS_DENIED);
    for (const DWORD error : {ERROR_UNABLE_TO_MOVE_REPLACEMENT, ERROR_UNABLE_TO_MOVE_REPLACEMENT_2}) {
        folder_.WriteIniText(kText);
        const RecordedCall replace = FAKE_CALL(ReplaceFileA, [&](LPCSTR to, auto...) -> BOOL {
            DeleteFileA(to);
            SetLastError(error);
            return FALSE;
        });
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
        EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
        EXPECT_TRUE(NothingIsLeft());
    }
}

TEST_F(TakingPlaceTest, WhereItCannotBeFinishedNothingIsLostAndTheNextUnitFinishesIt) {
    {
        const RecordedCall move = FAKE_CALL(MoveFileExA, [](auto...) -> BOOL {
            SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        });
        const RecordedCall replace = FAKE_CALL(ReplaceFileA, [](LPCSTR to, auto...) -> BOOL {
            DeleteFileA(to);
            SetLastError(ERROR_UNABLE_TO_MOVE_REPLACEMENT);
            return FALSE;
        });
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
        EXPECT_FALSE(folder_.Exists("Quon.ini"));
        EXPECT_EQ(config::ReadIni("Cuts", "a"), "2");
        EXPECT_FALSE(config::WriteIni("Cuts", "a", "3"));
        EXPECT_EQ(config::ReadIni("Cuts", "a"), "2");
    }
    EXPECT_TRUE(config::WriteIni("Cuts", "c", "4"));
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "b=x=y", "c=4"));
    EXPECT_TRUE(NothingIsLeft());
}

}  // namespace
