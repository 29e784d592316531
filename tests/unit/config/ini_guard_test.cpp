#include "config/ini_guard.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <stdexcept>
#include <vector>

#include "config/ini.h"
#include "config/settings.h"
#include "tests/support/recorded_call.h"
#include "tests/support/running_program.h"
#include "tests/unit/config/config_file.h"
#include "win/errors.h"

namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testkit::RecordedCall;
using testkit::RecordedCalls;

constexpr const char* kCopy = "Quon.ini.before-write";
constexpr const char* kUnfinished = "Quon.ini.copying";
constexpr const char* kText = "; mine\r\n[Cuts]\r\na=1\r\nb=x=y\r\nc=3\r\n[Switch]\r\na=/x\r\n";

class IniGuardTest : public ConfigFile {
  protected:
    IniGuardTest() { folder_.WriteIniText(kText); }

    bool NothingIsLeft() const { return !folder_.Exists(kCopy) && !folder_.Exists(kUnfinished); }
    void ExpectUnchanged() const {
        EXPECT_EQ(folder_.IniBytes(), kText);
        EXPECT_TRUE(NothingIsLeft());
    }
    /// Runs `look` before every write of the profile functions.
    template <class Look>
    static RecordedCalls BeforeEachWrite(Look look) {
        RecordedCalls calls;
        calls.push_back(
            FAKE_CALL(WritePrivateProfileStringA, [=](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) {
                look();
                return ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
            }));
        calls.push_back(FAKE_CALL(WritePrivateProfileSectionA, [=](LPCSTR name, LPCSTR text, LPCSTR file) {
            look();
            return ORIGINAL_CALL(WritePrivateProfileSectionA)(name, text, file);
        }));
        return calls;
    }
    /// Lets the write with this number (from 1) truncate the file and find no room for the rest.
    RecordedCall FailingWrite(int number) {
        return FAKE_CALL(WritePrivateProfileStringA,
                         [this, number](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) -> BOOL {
                             if (++writes_ != number)
                                 return ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
                             folder_.WriteIniText("; mi");
                             SetLastError(ERROR_DISK_FULL);
                             return FALSE;
                         });
    }

    int writes_ = 0;
};

TEST_F(IniGuardTest, ACompleteCopyLiesThereDuringEveryWriteAndNoneAfterwards) {
    std::vector<std::string> copies;
    {
        const RecordedCalls calls = BeforeEachWrite([&] {
            EXPECT_FALSE(folder_.Exists(kUnfinished));
            copies.push_back(folder_.ReadFile(kCopy));
        });
        config::WriteIni("Cuts", "d", "4");
        config::WriteIniSection("Switch", "");
    }
    ASSERT_EQ(copies.size(), 2u);
    EXPECT_EQ(copies[0], kText);
    EXPECT_THAT(copies[1], HasSubstr("d=4"));
    EXPECT_TRUE(NothingIsLeft());
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1", "b=x=y", "c=3", "d=4"));
}

TEST_F(IniGuardTest, RemovingARecordIsProtectedFromItsFirstWriteToItsLast) {
    std::vector<std::string> copies;
    {
        const RecordedCalls calls = BeforeEachWrite([&] { copies.push_back(folder_.ReadFile(kCopy)); });
        config::RemoveRecord("Cuts", "a");
    }
    EXPECT_EQ(copies.size(), 4u) << "emptied, two records written, one of them whole";
    EXPECT_THAT(copies, Each(kText));
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(IniGuardTest, RemovingARecordByWindowsOwnMeansIsProtectedToo) {
    folder_.WriteIniText("[Cuts]\r\na=1\r\nno entry\r\n");
    std::vector<std::string> copies;
    const RecordedCalls calls = BeforeEachWrite([&] { copies.push_back(folder_.ReadFile(kCopy)); });
    config::RemoveRecord("Cuts", "a");
    EXPECT_THAT(copies, ElementsAre("[Cuts]\r\na=1\r\nno entry\r\n"));
}

TEST_F(IniGuardTest, TheSettingsAreWrittenUnderOneCopy) {
    std::vector<std::string> copies;
    const RecordedCalls calls = BeforeEachWrite([&] { copies.push_back(folder_.ReadFile(kCopy)); });
    config::SaveSettings();
    EXPECT_EQ(copies.size(), 4u);
    EXPECT_THAT(copies, Each(kText));
}

TEST_F(IniGuardTest, AKillInAnyWriteOfARemovalIsMadeGoodByTheNextStart) {
    for (int last = 1; last <= 4; ++last) {
        folder_.WriteIniText(kText);
        // What lies on the disk at that moment, written over what the operation itself leaves.
        std::string file;
        std::string copy;
        {
            int writes = 0;
            const RecordedCalls calls = BeforeEachWrite([&] {
                if (++writes != last) return;
                file = folder_.IniBytes();
                copy = folder_.ReadFile(kCopy);
            });
            config::RemoveRecord("Cuts", "a");
        }
        folder_.WriteIniText(file.substr(0, file.size() / 2));
        folder_.MakeFile(kCopy, copy);
        config::PutBackInterruptedIni();
        ExpectUnchanged();
    }
}

TEST_F(IniGuardTest, AStartPutsBackACompleteCopyOnlyAndOnlyWhereThereIsOne) {
    config::PutBackInterruptedIni();
    ExpectUnchanged();
    folder_.MakeFile(kUnfinished, "[Cu");
    config::PutBackInterruptedIni();
    EXPECT_EQ(folder_.IniBytes(), kText);
    // Nor does what it has left hinder the next write.
    config::WriteIni("Cuts", "a", "2");
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
    EXPECT_TRUE(NothingIsLeft());
    // The file may have been lost altogether.
    folder_.RemoveFile("Quon.ini");
    folder_.MakeFile(kCopy, kText);
    config::PutBackInterruptedIni();
    ExpectUnchanged();
}

TEST_F(IniGuardTest, AStartThatCannotPutTheCopyBackSaysSoAndLeavesBoth) {
    folder_.WriteIniText("; mi");
    folder_.MakeFile(kCopy, kText);
    const RecordedCall move = FAKE_CALL(MoveFileExA, [](LPCSTR, LPCSTR, DWORD) -> BOOL {
        SetLastError(ERROR_SHARING_VIOLATION);
        return FALSE;
    });
    try {
        config::PutBackInterruptedIni();
        ADD_FAILURE() << "no error";
    } catch (const win::RuntimeError& error) {
        EXPECT_THAT(error.what(), AllOf(HasSubstr(folder_.IniPath()), HasSubstr(folder_.FullPath(kCopy))));
    }
    EXPECT_EQ(folder_.IniBytes(), "; mi");
    EXPECT_EQ(folder_.ReadFile(kCopy), kText);
}

TEST_F(IniGuardTest, AWriteThatFailsInTheMiddleTakesNothingWithIt) {
    const RecordedCall write = FailingWrite(1);
    config::WriteIni("Cuts", "a", "2");
    ExpectUnchanged();
}

TEST_F(IniGuardTest, WhatFollowsAFailedWriteUnderTheSameCopyIsLeftOut) {
    const RecordedCall write = FailingWrite(2);
    config::RemoveRecord("Cuts", "a");
    EXPECT_EQ(writes_, 2);
    ExpectUnchanged();
    // The next operation begins anew.
    config::WriteIni("Cuts", "a", "2");
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(IniGuardTest, AnErrorInTheMiddleTakesBackWhatWasWritten) {
    try {
        const config::IniGuard guard;
        config::WriteIni("Cuts", "a", "2");
        throw std::runtime_error("in the middle");
    } catch (const std::runtime_error&) {
        ExpectUnchanged();
    }
}

TEST_F(IniGuardTest, TheSettingsStayWhereTheSessionEndsInTheMiddleOfSomething) {
    const config::IniGuard guard;
    config::WriteIni("Cuts", "a", "2");
    config::SaveSettings();
    EXPECT_TRUE(NothingIsLeft());
    config::PutBackInterruptedIni();
    EXPECT_EQ(folder_.IniValue("Settings", "popdelay"), "500");
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
}

TEST_F(IniGuardTest, AGuardUnderWhichNothingIsWrittenMakesNoCopy) {
    const RecordedCall copy = FAKE_CALL(CopyFileA, [](LPCSTR, LPCSTR, BOOL) -> BOOL {
        ADD_FAILURE() << "a copy";
        return TRUE;
    });
    const config::IniGuard guard;
    config::ReadIni("Cuts", "a");
    config::RemoveRecord("Cuts", "absent");
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(IniGuardTest, ADiskTooFullForTheCopyIsNotWrittenTo) {
    for (const DWORD error : {ERROR_DISK_FULL, ERROR_HANDLE_DISK_FULL}) {
        const RecordedCall copy = FAKE_CALL(CopyFileA, [this, error](LPCSTR, LPCSTR, BOOL) -> BOOL {
            folder_.MakeFile(kUnfinished, "; mi");
            SetLastError(error);
            return FALSE;
        });
        config::WriteIni("Cuts", "a", "2");
        config::WriteIniSection("Switch", "");
        config::RemoveRecord("Cuts", "a");
        ExpectUnchanged();
    }
    config::WriteIni("Cuts", "a", "2");
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2") << "there is room again";
}

TEST_F(IniGuardTest, ADiskThatTheCopyHasFilledIsNotWrittenTo) {
    ULONGLONG room = 65535;
    const RecordedCall space =
        FAKE_CALL(GetDiskFreeSpaceExA,
                  [&](LPCSTR folder, PULARGE_INTEGER free, PULARGE_INTEGER, PULARGE_INTEGER) -> BOOL {
                      EXPECT_EQ(folder, folder_.Path() + "\\");
                      free->QuadPart = room;
                      return TRUE;
                  });
    config::WriteIni("Cuts", "a", "2");
    ExpectUnchanged();
    ++room;
    config::WriteIni("Cuts", "a", "2");
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
}

TEST_F(IniGuardTest, AFolderThatTakesNoCopyIsNoReasonNotToWrite) {
    {
        const RecordedCall copy = FAKE_CALL(CopyFileA, [](LPCSTR, LPCSTR, BOOL) -> BOOL {
            SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        });
        const RecordedCall space =
            FAKE_CALL(GetDiskFreeSpaceExA, [](LPCSTR, PULARGE_INTEGER, PULARGE_INTEGER, PULARGE_INTEGER) {
                SetLastError(ERROR_ACCESS_DENIED);
                return FALSE;
            });
        config::RemoveRecord("Cuts", "b");
    }
    {
        const RecordedCall move = FAKE_CALL(MoveFileExA, [](LPCSTR, LPCSTR, DWORD) -> BOOL {
            SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        });
        config::WriteIni("Cuts", "a", "2");
    }
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "c=3"));
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(IniGuardTest, AFileThatIsMissingReadOnlyOrHeldIsNotCopied) {
    std::vector<std::string> copied;
    const RecordedCall copy = FAKE_CALL(CopyFileA, [&](LPCSTR from, LPCSTR to, BOOL keep) {
        copied.emplace_back(from);
        return ORIGINAL_CALL(CopyFileA)(from, to, keep);
    });
    folder_.SetReadOnly("Quon.ini");
    config::WriteIni("Cuts", "a", "2");
    config::RemoveRecord("Cuts", "a");
    SetFileAttributesA(folder_.IniPath().c_str(), FILE_ATTRIBUTE_NORMAL);
    folder_.RemoveFile("Quon.ini");
    config::WriteIni("Cuts", "a", "2");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2")) << "a new file needs no protection";
    const testkit::OwnedHandle held(CreateFileA(folder_.IniPath().c_str(), GENERIC_READ, FILE_SHARE_READ,
                                                nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(held.get(), INVALID_HANDLE_VALUE);
    config::WriteIni("Cuts", "a", "3");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2"));
    EXPECT_THAT(copied, IsEmpty());
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(IniGuardTest, ACopyThatCannotBePutBackIsKeptAndStopsAllWritesUntilItCan) {
    {
        const RecordedCall write = FailingWrite(1);
        const RecordedCall move = FAKE_CALL(MoveFileExA, [](LPCSTR from, LPCSTR to, DWORD flags) -> BOOL {
            if (std::string(from).ends_with(kUnfinished)) return ORIGINAL_CALL(MoveFileExA)(from, to, flags);
            SetLastError(ERROR_SHARING_VIOLATION);
            return FALSE;
        });
        config::WriteIni("Cuts", "a", "2");
        config::WriteIni("Cuts", "c", "4");
    }
    EXPECT_EQ(writes_, 1);
    EXPECT_EQ(folder_.IniBytes(), "; mi");
    EXPECT_EQ(folder_.ReadFile(kCopy), kText);
    config::WriteIni("Cuts", "c", "5");
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=1", "b=x=y", "c=5"));
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(IniGuardTest, ACopyThatCannotBeDeletedIsReplacedByTheNext) {
    {
        const RecordedCall remove = FAKE_CALL(DeleteFileA, [](LPCSTR) -> BOOL {
            SetLastError(ERROR_SHARING_VIOLATION);
            return FALSE;
        });
        config::WriteIni("Cuts", "a", "2");
    }
    EXPECT_TRUE(folder_.Exists(kCopy));
    std::vector<std::string> copies;
    const RecordedCalls calls = BeforeEachWrite([&] { copies.push_back(folder_.ReadFile(kCopy)); });
    config::WriteIni("Cuts", "a", "3");
    EXPECT_THAT(copies, ElementsAre(HasSubstr("a=2")));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "3");
    EXPECT_TRUE(NothingIsLeft());
}

}  // namespace
