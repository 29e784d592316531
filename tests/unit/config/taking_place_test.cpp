#include <windows.h>

#include <gmock/gmock.h>

#include <string>

#include "config/ini.h"
#include "config/ini_unit.h"
#include "tests/unit/config/ini_unit_fixture.h"

namespace {

using testing::ElementsAre;
using testkit::RecordedCall;

/// Of the former file while another takes its place.
const std::string kBackup = SideName(5);

/// What Windows answers when the side file is to take its place.
class TakingPlaceTest : public IniUnitTest {
  protected:
    /// Lets the renaming onto the file fail with this error, on a system that does not know of renaming onto
    /// an open one.
    static RecordedCall NoRenaming(DWORD error) {
        return FAKE_CALL(SetFileInformationByHandle, [error](HANDLE, FILE_INFO_BY_HANDLE_CLASS how, auto...) {
            SetLastError(how == FileRenameInfo ? error : ERROR_INVALID_PARAMETER);
            return FALSE;
        });
    }

    /// Lets the replacing stop between its two steps: the former file is out of the way, and the new one has
    /// not moved.
    static RecordedCall StoppedHalfway() {
        return FAKE_CALL(ReplaceFileA, [](LPCSTR to, LPCSTR, LPCSTR backup, auto...) -> BOOL {
            EXPECT_NE(ORIGINAL_CALL(MoveFileExA)(to, backup, 0), FALSE);
            SetLastError(ERROR_UNABLE_TO_MOVE_REPLACEMENT_2);
            return FALSE;
        });
    }
};

TEST_F(TakingPlaceTest, WhereARenameCannotReplaceTheFileIsReplaced) {
    const RecordedCall rename = NoRenaming(ERROR_ACCESS_DENIED);
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(TakingPlaceTest, IsTriedAgainWhileTheFileIsBusy) {
    const RecordedCall rename = NoRenaming(ERROR_ACCESS_DENIED);
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
    const RecordedCall rename = NoRenaming(ERROR_NOT_SUPPORTED);
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
    const RecordedCall rename = NoRenaming(ERROR_ACCESS_DENIED);
    const RecordedCall replace = StoppedHalfway();
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
    EXPECT_TRUE(NothingIsLeft());
    EXPECT_FALSE(folder_.Exists(kBackup));
}

TEST_F(TakingPlaceTest, WhereItCannotBeFinishedTheFormerFileIsPutBack) {
    const RecordedCall rename = NoRenaming(ERROR_ACCESS_DENIED);
    const RecordedCall move = FAKE_CALL(MoveFileExA, [this](LPCSTR from, LPCSTR to, DWORD flags) -> BOOL {
        if (from == folder_.FullPath(kBackup)) return ORIGINAL_CALL(MoveFileExA)(from, to, flags);
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    });
    const RecordedCall replace = StoppedHalfway();
    EXPECT_FALSE(config::WriteIni("Cuts", "a", "2"));
    ExpectUnchanged();
    EXPECT_FALSE(folder_.Exists(kBackup));
}

TEST_F(TakingPlaceTest, WhereNothingCanBeFinishedNothingIsLostAndTheNextUnitFinishesIt) {
    {
        const RecordedCall rename = NoRenaming(ERROR_ACCESS_DENIED);
        const RecordedCall move = FAKE_CALL(MoveFileExA, [](auto...) -> BOOL {
            SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        });
        const RecordedCall replace = StoppedHalfway();
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
        EXPECT_FALSE(folder_.Exists("Quon.ini"));
        EXPECT_EQ(config::ReadIni("Cuts", "a"), "2");
        EXPECT_FALSE(config::WriteIni("Cuts", "a", "3"));
        EXPECT_EQ(config::ReadIni("Cuts", "a"), "2");
        config::RemoveInterruptedUnits();
        EXPECT_EQ(folder_.ReadFile(kBackup), kText) << "while there is no other";
    }
    EXPECT_TRUE(config::WriteIni("Cuts", "c", "4"));
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "b=x=y", "c=4"));
    EXPECT_TRUE(NothingIsLeft());
    EXPECT_FALSE(folder_.Exists(kBackup));
}

TEST_F(TakingPlaceTest, WhereThePlaceIsDeniedForGoodTheFileItselfIsWritten) {
    const RecordedCall rename = NoRenaming(ERROR_ACCESS_DENIED);
    int tries = 0;
    const RecordedCall replace = FAKE_CALL(ReplaceFileA, [&](auto...) -> BOOL {
        ++tries;
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    });
    config::IniUnit unit;
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_TRUE(config::RemoveRecord("Cuts", "b"));
    EXPECT_EQ(folder_.IniBytes(), kText);
    EXPECT_TRUE(unit.Finish());
    EXPECT_GT(tries, 1) << "it might have been for a moment";
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "c=3"));
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(TakingPlaceTest, WhereThePlaceIsDeniedForGoodAFailureIsTakenBackToo) {
    const RecordedCall rename = NoRenaming(ERROR_ACCESS_DENIED);
    const RecordedCall replace = FAKE_CALL(ReplaceFileA, [](auto...) -> BOOL {
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    });
    const RecordedCall write = FAKE_CALL(
        WritePrivateProfileStringA, [this](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) -> BOOL {
            if (file != folder_.IniPath() || std::string(key) != "b")
                return ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
            SetLastError(ERROR_DISK_FULL);
            return FALSE;
        });
    config::IniUnit unit;
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "much longer than before"));
    EXPECT_TRUE(config::WriteIni("Cuts", "b", "2"));
    EXPECT_FALSE(unit.Finish());
    ExpectUnchanged();
}

TEST_F(TakingPlaceTest, AFileThatMayNotBeDeletedIsWrittenItself) {
    // As in a folder in which the user may read and write, but delete nothing.
    const RecordedCall open =
        FAKE_CALL(CreateFileA,
                  [](LPCSTR file, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES rights, DWORD how,
                     DWORD flags, HANDLE like) -> HANDLE {
                      if ((access & DELETE) == 0)
                          return ORIGINAL_CALL(CreateFileA)(file, access, share, rights, how, flags, like);
                      SetLastError(ERROR_ACCESS_DENIED);
                      return INVALID_HANDLE_VALUE;
                  });
    const RecordedCall copy = FAKE_CALL(CopyFileA, [](auto...) -> BOOL {
        ADD_FAILURE() << "that would stay there";
        return FALSE;
    });
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_TRUE(config::RemoveRecord("Cuts", "b"));
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "c=3"));
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(TakingPlaceTest, TheFormerFileIsThereUntilItsSuccessorIs) {
    const RecordedCall rename = NoRenaming(ERROR_ACCESS_DENIED);
    int replaced = 0;
    const RecordedCall replace =
        WATCH_CALL(ReplaceFileA, [&](LPCSTR, LPCSTR, LPCSTR backup, DWORD, LPVOID, LPVOID) {
            ++replaced;
            EXPECT_EQ(backup, folder_.FullPath(kBackup));
        });
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(replaced, 1);
    EXPECT_FALSE(folder_.Exists(kBackup));
    // One that a killed program has left goes at the next start.
    folder_.MakeFile(kBackup, kText);
    config::RemoveInterruptedUnits();
    EXPECT_FALSE(folder_.Exists(kBackup));
}

TEST_F(TakingPlaceTest, WhatAKillBetweenTheTwoStepsLeftIsNotDeletedWithTheFreshFileInItsPlace) {
    const std::string other = "Quon.ini.unit-77-";
    for (const std::string& killed : {SideName(5), SideName(2), other + "5", other + "1", other + "2"})
        folder_.MakeFile(killed, kText);
    for (const char* junk : {"Quon.ini.unit-78-5", "Quon.ini.unit-79-1", "Quon.ini.unit-1"})
        folder_.MakeFile(junk, "junk");
    config::RemoveInterruptedUnits();
    EXPECT_TRUE(folder_.Exists(SideName(5)));
    EXPECT_TRUE(folder_.Exists(SideName(2)));
    for (const char* number : {"5", "1", "2"})
        EXPECT_TRUE(folder_.Exists(other + number)) << number;
    for (const char* junk : {"Quon.ini.unit-78-5", "Quon.ini.unit-79-1", "Quon.ini.unit-1"})
        EXPECT_FALSE(folder_.Exists(junk)) << junk;
}

}  // namespace
