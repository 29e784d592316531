// The file of a unit of writes: held, taken away, overtaken by what others save, left behind.
#include "config/side_file.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "config/ini.h"
#include "config/ini_unit.h"
#include "config/settings.h"
#include "tests/unit/config/ini_unit_fixture.h"

namespace {

using testing::ElementsAre;
using testkit::RecordedCall;
using testkit::RecordedCalls;

class SideFileTest : public IniUnitTest {};

TEST_F(SideFileTest, ASideFileThatIsHeldFromBeforeCostsNothing) {
    folder_.MakeFile(kSide, "junk");
    const testkit::OwnedHandle held = Hold(kSide);
    config::RemoveInterruptedUnits();
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_TRUE(config::RemoveRecord("Cuts", "b"));
    EXPECT_TRUE(config::SaveSettings());
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "c=3"));
    EXPECT_FALSE(folder_.Exists(kSecondSide));
}

TEST_F(SideFileTest, ASideFileThatIsTakenDuringAUnitCostsNothing) {
    // After the copy and after each write. While the unit has it open, nobody can keep it from being read.
    constexpr int kAfterTheCopy = 1;
    constexpr int kAfterTheLastWrite = 3;
    for (int moment = 1; moment <= kAfterTheLastWrite; ++moment) {
        folder_.WriteIniText(kText);
        testkit::OwnedHandle held;
        int step = 0;
        {
            const RecordedCalls calls = AfterEachStep([&] {
                if (++step == moment) held = Hold(kSide, moment == kAfterTheCopy ? 0 : FILE_SHARE_READ);
            });
            config::IniUnit unit;
            EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
            EXPECT_TRUE(config::RemoveRecord("Cuts", "b"));
            EXPECT_EQ(config::TryReadIni("Cuts", "c"), "3");
            EXPECT_TRUE(unit.Finish()) << moment;
        }
        EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "c=3")) << moment;
        EXPECT_FALSE(folder_.Exists(kSecondSide));
        held = {};
        config::RemoveInterruptedUnits();
        EXPECT_TRUE(NothingIsLeft());
    }
}

TEST_F(SideFileTest, NobodyCanDeleteTheSideFileDuringAUnit) {
    config::IniUnit unit;
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(DeleteFileA(folder_.FullPath(kSide).c_str()), FALSE);
    config::RemoveInterruptedUnits();
    EXPECT_TRUE(folder_.Exists(kSide));
    EXPECT_TRUE(config::WriteIni("Cuts", "d", "4"));
    EXPECT_TRUE(unit.Finish());
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "b=x=y", "c=3", "d=4"));
}

TEST_F(SideFileTest, NobodyCanKeepTheFlushedSideFileFromItsPlace) {
    const std::string path = folder_.FullPath(kSide);
    const auto open = [&](DWORD access, DWORD share) {
        const testkit::OwnedHandle file(
            CreateFileA(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
        return file.get() != INVALID_HANDLE_VALUE;
    };
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const RecordedCall rename = WATCH_CALL(SetFileInformationByHandle, [&] {
        EXPECT_FALSE(open(GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE));
        EXPECT_FALSE(open(DELETE, kShareAll));
        EXPECT_TRUE(open(GENERIC_READ, kShareAll));
    });
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
    EXPECT_FALSE(folder_.Exists(kSecondSide));
}

TEST_F(SideFileTest, ASideFileThatVanishesIsMadeAnewWithAllThatWasWritten) {
    // Where others can take it away all the same, as on a share whose connection breaks.
    const RecordedCall open = FAKE_CALL(CreateFileA, [](LPCSTR file, DWORD access, DWORD share,
                                                        LPSECURITY_ATTRIBUTES rights, DWORD how, DWORD flags,
                                                        HANDLE like) {
        return ORIGINAL_CALL(CreateFileA)(file, access, share | FILE_SHARE_DELETE, rights, how, flags, like);
    });
    const auto vanish = [&] {
        EXPECT_NE(MoveFileA(folder_.FullPath(kSide).c_str(), folder_.FullPath("away").c_str()), FALSE);
        folder_.RemoveFile("away");
    };
    config::IniUnit unit;
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    vanish();
    EXPECT_TRUE(config::WriteIni("Cuts", "d", "4"));
    vanish();
    EXPECT_EQ(config::TryReadIni("Cuts", "a"), "2");
    vanish();
    EXPECT_TRUE(unit.Finish());
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "b=x=y", "c=3", "d=4"));
    EXPECT_THAT(Lines("Switch"), ElementsAre("a=/x"));
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(SideFileTest, WhatAnotherProgramSavesDuringAUnitIsKept) {
    int saves = 1;
    const RecordedCall flush = WATCH_CALL(FlushFileBuffers, [&](HANDLE) {
        if (saves-- > 0) folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\nother=5\r\n");
    });
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "b=2", "other=5"));
    EXPECT_TRUE(NothingIsLeft());
    // The same for a file that was not there when the unit began.
    folder_.RemoveFile("Quon.ini");
    saves = 1;
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "3"));
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=3", "b=2", "other=5"));
}

TEST_F(SideFileTest, AUnitGivesUpOnAFileThatIsSavedWithoutEnd) {
    int saves = 0;
    const RecordedCall flush = WATCH_CALL(FlushFileBuffers, [&](HANDLE) {
        folder_.WriteIniText("[Cuts]\r\na=" + std::string(static_cast<size_t>(++saves), 'x') + "\r\n");
    });
    EXPECT_FALSE(config::WriteIni("Cuts", "b", "2"));
    EXPECT_EQ(saves, 5);
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=xxxxx"));
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(SideFileTest, AFileThatIsEmptiedDuringAUnitIsWaitedForAndNotFilledWithTheUnitAlone) {
    bool written = true;
    const RecordedCall flush = WATCH_CALL(FlushFileBuffers, [&](HANDLE) {
        if (written) folder_.WriteIniText("");
    });
    const RecordedCall pause = FAKE_CALL(Sleep, [&](DWORD time) {
        if (written) folder_.WriteIniText("[Cuts]\r\nother=5\r\n");
        written = false;
        ORIGINAL_CALL(Sleep)(time);
    });
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_THAT(Lines("Cuts"), ElementsAre("other=5", "a=2"));
}

TEST_F(SideFileTest, AllSideFilesHeldCostNothingEither) {
    std::vector<testkit::OwnedHandle> held;
    for (const int number : {1, 2, 3, 4}) {
        folder_.MakeFile(SideName(number), "junk");
        held.push_back(Hold(SideName(number)));
    }
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
}

TEST_F(SideFileTest, WhatAKilledUnitHasLeftIsRemovedWhateverItHolds) {
    for (const std::string& left :
         {std::string(), std::string(500, '\0'), std::string("[Cuts]\r\na=9\r\n")}) {
        folder_.MakeFile(kSide, left);
        folder_.MakeFile("Quon.ini.unit-4", left);
        folder_.MakeFile("Quon.ini.unit-77-2", left);
        folder_.MakeFile("Quon.ini.unit-x", "mine");
        folder_.MakeFile("Quon.ini.unit-7-x", "mine");
        folder_.MakeFile("Quon.ini.before-write", left);
        config::RemoveInterruptedUnits();
        ExpectUnchanged();
        EXPECT_EQ(folder_.ReadFile("Quon.ini.unit-x"), "mine");
        EXPECT_EQ(folder_.ReadFile("Quon.ini.unit-7-x"), "mine");
        EXPECT_FALSE(folder_.Exists("Quon.ini.unit-4"));
        EXPECT_FALSE(folder_.Exists("Quon.ini.unit-77-2"));
        // Nor would it hinder a unit, or get into it.
        folder_.MakeFile(kSide, left);
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "1"));
        ExpectUnchanged();
    }
}

TEST_F(SideFileTest, WithoutAFileBesideItNothingIsRemoved) {
    // It may be all that is left.
    folder_.RemoveFile("Quon.ini");
    folder_.MakeFile(kSide, kText);
    config::RemoveInterruptedUnits();
    EXPECT_EQ(folder_.ReadFile(kSide), kText);
    EXPECT_FALSE(folder_.Exists("Quon.ini"));
}

TEST_F(SideFileTest, AFolderWhosePathLeavesHardlyAnyRoomCostsNothing) {
    // 250 characters to the end of "Quon.ini": its side files' names are longer than an ordinary path may be.
    const size_t length = 250 - folder_.Path().size() - std::string("\\\\Quon.ini").size() + 2;
    const std::string folder = folder_.MakeFolder(std::string(length, 'f'));
    const std::string path = folder + "\\Quon.ini";
    ASSERT_NE(CopyFileA(folder_.IniPath().c_str(), path.c_str(), TRUE), FALSE);
    const testkit::ScopedIniPath deep(path);
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_TRUE(config::RemoveRecord("Cuts", "c"));
    EXPECT_EQ(config::ReadIniSection("Cuts"), std::string("a=2\0b=x=y", 9));
    WIN32_FIND_DATAA found{};
    const HANDLE left = FindFirstFileA((path + ".unit*").c_str(), &found);
    EXPECT_EQ(left, INVALID_HANDLE_VALUE) << found.cFileName;
    FindClose(left);
    DeleteFileA(path.c_str());
}

TEST_F(SideFileTest, ARealSymbolicLinkStaysOne) {
    const std::string whole = folder_.MakeFile("elsewhere\\true.ini", kText);
    folder_.RemoveFile("Quon.ini");
    constexpr DWORD kUnprivileged = 2;  // SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE
    if (CreateSymbolicLinkA(folder_.IniPath().c_str(), whole.c_str(), kUnprivileged) == FALSE ||
        !folder_.Exists("Quon.ini"))
        GTEST_SKIP() << "no symbolic link can be made here";
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_NE(GetFileAttributesA(folder_.IniPath().c_str()) & FILE_ATTRIBUTE_REPARSE_POINT, 0u);
    EXPECT_THAT(folder_.ReadFile("elsewhere\\true.ini"), testing::HasSubstr("a=2\r\n"));
    EXPECT_EQ(config::ReadIni("Cuts", "b"), "x=y");
}

}  // namespace
