#include "config/ini_unit.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "config/ini.h"
#include "config/settings.h"
#include "tests/unit/config/ini_unit_fixture.h"
#include "win/errors.h"
#include "win/message_ban.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testkit::RecordedCall;
using testkit::RecordedCalls;

TEST_F(IniUnitTest, TheFileIsTheOldOneUntilItIsTheNewOne) {
    std::vector<std::string> seen;
    {
        const RecordedCalls calls = AfterEachStep([&] { seen.push_back(folder_.IniBytes()); });
        config::IniUnit unit;
        EXPECT_TRUE(config::WriteIni("Cuts", "d", "4"));
        EXPECT_TRUE(config::RemoveRecord("Cuts", "a"));
        EXPECT_TRUE(config::WriteIniSection("Switch", ""));
        EXPECT_TRUE(unit.Finish());
    }
    EXPECT_EQ(seen.size(), 6u) << "copied, four times written, flushed";
    EXPECT_THAT(seen, Each(kText));
    EXPECT_EQ(folder_.IniBytes(), "; mine\r\n[Cuts]\r\nb=x=y\r\nc=3\r\nd=4\r\n[Switch]\r\n");
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(IniUnitTest, TheSideFileIsFlushedAsAWholeBeforeItTakesThePlace) {
    std::vector<std::string> steps;
    const RecordedCall flush = WATCH_CALL(FlushFileBuffers, [&](HANDLE) {
        steps.push_back("flushed " + folder_.ReadFile(kSide).substr(0, 6));
        EXPECT_THAT(folder_.ReadFile(kSide), HasSubstr("d=4"));
    });
    const RecordedCall rename =
        WATCH_CALL(SetFileInformationByHandle, [&](HANDLE file, FILE_INFO_BY_HANDLE_CLASS how, auto...) {
            if (how != FileRenameInfo) return;
            steps.push_back("moved " + PathOf(file));
        });
    config::WriteIni("Cuts", "d", "4");
    EXPECT_THAT(steps, ElementsAre("flushed ; mine", "moved " + folder_.FullPath(kSide)));
}

TEST_F(IniUnitTest, ReadsInsideAUnitSeeItAndOthersDoNot) {
    config::IniUnit unit;
    config::WriteIni("Cuts", "a", "2");
    EXPECT_EQ(config::ReadIni("Cuts", "a"), "2");
    EXPECT_EQ(config::ListIniKeys("Cuts"), "a|b|c");
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "1");
    EXPECT_TRUE(unit.Finish());
    EXPECT_EQ(config::ReadIni("Cuts", "a"), "2");
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
}

TEST_F(IniUnitTest, TheOutermostOfNestedUnitsCounts) {
    {
        config::IniUnit outer;
        {
            config::IniUnit inner;
            config::WriteIni("Cuts", "a", "2");
            EXPECT_TRUE(inner.Finish());
        }
        EXPECT_EQ(folder_.IniBytes(), kText);
        EXPECT_TRUE(config::IniUnit::AnyOpen());
        EXPECT_TRUE(outer.Finish());
        EXPECT_FALSE(config::IniUnit::AnyOpen());
        EXPECT_FALSE(outer.Finish()) << "it is over";
    }
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(IniUnitTest, AnInnerUnitThatIsNotFinishedTakesTheOuterOneWithIt) {
    config::IniUnit outer;
    config::WriteIni("Cuts", "c", "4");
    {
        const config::IniUnit onlyRead;
    }
    EXPECT_TRUE(config::WriteIni("Cuts", "c", "5"));
    {
        const config::IniUnit inner;
        config::WriteIni("Cuts", "a", "2");
    }
    EXPECT_FALSE(config::WriteIni("Cuts", "c", "6"));
    EXPECT_FALSE(outer.Finish());
    ExpectUnchanged();
}

TEST_F(IniUnitTest, OneThatIsNotFinishedHasNotHappened) {
    {
        const config::IniUnit unit;
    }
    try {
        const config::IniUnit unit;
        config::WriteIni("Cuts", "a", "2");
        throw std::runtime_error("in the middle");
    } catch (const std::runtime_error&) {
    }
    ExpectUnchanged();
    EXPECT_TRUE(win::MayPump());
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2")) << "the next one begins anew";
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
}

TEST_F(IniUnitTest, NoMessagesMayRunWhileOneIsOpen) {
    EXPECT_TRUE(win::MayPump());
    config::IniUnit unit;
    EXPECT_FALSE(win::MayPump());
    {
        config::IniUnit inner;
        EXPECT_TRUE(inner.Finish());
    }
    EXPECT_FALSE(win::MayPump());
    EXPECT_TRUE(unit.Finish());
    EXPECT_TRUE(win::MayPump());
}

TEST_F(IniUnitTest, AnErrorInOneIsReportedWhenItIsOver) {
    static bool may_pump = false;
    may_pump = false;
    win::SetErrorReporter([](HWND, const char*) noexcept { may_pump = win::MayPump(); });
    win::Guarded(nullptr, 0, []() -> int {
        const config::IniUnit unit;
        config::WriteIni("Cuts", "a", "2");
        throw win::RuntimeError("in the middle");
    });
    win::SetErrorReporter(nullptr);
    EXPECT_TRUE(may_pump) << "the report lets messages run";
    ExpectUnchanged();
}

TEST_F(IniUnitTest, OneInWhichNothingIsWrittenTouchesNoFile) {
    const RecordedCall copy = FAKE_CALL(CopyFileA, []() -> BOOL {
        ADD_FAILURE() << "a copy";
        return TRUE;
    });
    config::IniUnit unit;
    config::ReadIni("Cuts", "a");
    config::RemoveRecord("Cuts", "absent");
    EXPECT_TRUE(NothingIsLeft());
    EXPECT_TRUE(unit.Finish());
}

TEST_F(IniUnitTest, TheFirstFailureEndsIt) {
    for (int failing = 1; failing <= 3; ++failing) {
        writes_ = 0;
        const RecordedCall write = FailingWrite(failing);
        config::IniUnit unit;
        for (int number = 1; number <= 5; ++number)
            EXPECT_EQ(config::WriteIni("Cuts", "a", std::to_string(number + 1)), number < failing);
        EXPECT_FALSE(config::RemoveRecord("Cuts", "b"));
        EXPECT_EQ(writes_, failing);
        EXPECT_FALSE(unit.Finish());
        ExpectUnchanged();
    }
    EXPECT_FALSE([&] {
        writes_ = 0;
        const RecordedCall write = FailingWrite(1);
        return config::WriteIni("Cuts", "a", "2");
    }());
    ExpectUnchanged();
}

TEST_F(IniUnitTest, AFileThatCannotBeFlushedChangesNothing) {
    const RecordedCall flush = FAKE_CALL(FlushFileBuffers, [](HANDLE) -> BOOL {
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    });
    EXPECT_FALSE(config::WriteIni("Cuts", "a", "2"));
    ExpectUnchanged();
}

TEST_F(IniUnitTest, TheSettingsAreOneUnit) {
    std::vector<std::string> seen;
    const RecordedCalls calls = AfterEachStep([&] { seen.push_back(folder_.IniBytes()); });
    EXPECT_TRUE(config::SaveSettings());
    EXPECT_EQ(seen.size(), 6u);
    EXPECT_THAT(seen, Each(kText));
}

TEST_F(IniUnitTest, ADiskTooFullIsNotWrittenTo) {
    for (const DWORD error : {ERROR_DISK_FULL, ERROR_HANDLE_DISK_FULL}) {
        const RecordedCall copy = FAKE_CALL(CopyFileA, [this, error]() -> BOOL {
            folder_.MakeFile(kSide, "; mi");
            SetLastError(error);
            return FALSE;
        });
        EXPECT_FALSE(config::WriteIni("Cuts", "a", "2"));
        EXPECT_FALSE(config::WriteIniSection("Switch", ""));
        EXPECT_FALSE(config::RemoveRecord("Cuts", "a"));
        ExpectUnchanged();
    }
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2")) << "there is room again";
}

TEST_F(IniUnitTest, ADiskThatRunsFullInBetweenLosesNothing) {
    // Some profile functions say that they have written what found no room.
    ULONGLONG room = 65535;
    const RecordedCall space =
        FAKE_CALL(GetDiskFreeSpaceExA,
                  [&](LPCSTR folder, PULARGE_INTEGER free, PULARGE_INTEGER, PULARGE_INTEGER) -> BOOL {
                      EXPECT_EQ(folder, folder_.Path() + "\\");
                      free->QuadPart = room;
                      return TRUE;
                  });
    EXPECT_FALSE(config::WriteIni("Cuts", "a", "2"));
    ExpectUnchanged();
    {
        const RecordedCall copy = FAKE_CALL(CopyFileA, []() -> BOOL {
            SetLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        });
        EXPECT_FALSE(config::WriteIni("Cuts", "a", "2")) << "nor the file itself";
        ExpectUnchanged();
    }
    ++room;
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
}

TEST_F(IniUnitTest, WhereNoNewFileCanBeMadeTheFileItselfIsWritten) {
    // No right to make files, no room for a longer name, in the words of several systems.
    for (const DWORD error : {ERROR_ACCESS_DENIED, ERROR_PATH_NOT_FOUND, ERROR_FILENAME_EXCED_RANGE,
                              ERROR_BUFFER_OVERFLOW, ERROR_INVALID_NAME}) {
        folder_.WriteIniText(kText);
        const RecordedCall copy = FAKE_CALL(CopyFileA, [error]() -> BOOL {
            SetLastError(error);
            return FALSE;
        });
        EXPECT_TRUE(config::RemoveRecord("Cuts", "b"));
        config::IniUnit unit;
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
        EXPECT_EQ(config::ReadIni("Cuts", "a"), "2");
        EXPECT_TRUE(unit.Finish());
        EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "c=3")) << error;
        EXPECT_TRUE(NothingIsLeft());
    }
}

TEST_F(IniUnitTest, WhereTheFileItselfIsWrittenAFailureIsTakenBackToo) {
    const RecordedCall copy = FAKE_CALL(CopyFileA, []() -> BOOL {
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    });
    {
        const config::IniUnit unit;
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "much longer than before"));
        EXPECT_NE(folder_.IniBytes(), kText);
    }
    EXPECT_EQ(folder_.IniBytes(), kText);
    {
        const RecordedCall write = ANSWER_CALL(WritePrivateProfileSectionA, FALSE);
        config::IniUnit unit;
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
        EXPECT_FALSE(config::WriteIniSection("Switch", ""));
        EXPECT_FALSE(unit.Finish());
    }
    EXPECT_EQ(folder_.IniBytes(), kText);
}

TEST_F(IniUnitTest, WhereTheFileItselfIsWrittenWhatCannotBePutBackIsNotBegun) {
    const RecordedCall copy = FAKE_CALL(CopyFileA, []() -> BOOL {
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    });
    const RecordedCall open =
        FAKE_CALL(CreateFileA,
                  [](LPCSTR file, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES rights, DWORD how,
                     DWORD flags, HANDLE like) -> HANDLE {
                      if (access != GENERIC_READ)
                          return ORIGINAL_CALL(CreateFileA)(file, access, share, rights, how, flags, like);
                      SetLastError(ERROR_SHARING_VIOLATION);
                      return INVALID_HANDLE_VALUE;
                  });
    EXPECT_FALSE(config::WriteIni("Cuts", "a", "2"));
    ExpectUnchanged();
}

TEST_F(IniUnitTest, WhereTheFileItselfIsWrittenAHoldIsWaitedForInTakingBack) {
    const RecordedCall copy = FAKE_CALL(CopyFileA, []() -> BOOL {
        SetLastError(ERROR_ACCESS_DENIED);
        return FALSE;
    });
    int held = 20;
    const RecordedCall open =
        FAKE_CALL(CreateFileA,
                  [&](LPCSTR file, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES rights, DWORD how,
                      DWORD flags, HANDLE like) -> HANDLE {
                      if (access != GENERIC_WRITE || held == 0)
                          return ORIGINAL_CALL(CreateFileA)(file, access, share, rights, how, flags, like);
                      --held;
                      SetLastError(ERROR_SHARING_VIOLATION);
                      return INVALID_HANDLE_VALUE;
                  });
    {
        const config::IniUnit unit;
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "much longer than before"));
    }
    EXPECT_EQ(held, 0);
    EXPECT_EQ(folder_.IniBytes(), kText);
}

TEST_F(IniUnitTest, AReadOnlyFileStaysAsItIs) {
    folder_.SetReadOnly("Quon.ini");
    EXPECT_FALSE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_FALSE(config::RemoveRecord("Cuts", "a"));
    ExpectUnchanged();
}

TEST_F(IniUnitTest, AMissingFileIsMadeAsAWhole) {
    folder_.RemoveFile("Quon.ini");
    {
        config::IniUnit unit;
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
        EXPECT_FALSE(folder_.Exists("Quon.ini"));
        EXPECT_TRUE(config::WriteIni("Switch", "a", "/y"));
        EXPECT_TRUE(unit.Finish());
    }
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2"));
    EXPECT_THAT(Lines("Switch"), ElementsAre("a=/y"));
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(IniUnitTest, AFileThatWasWholeIsNotMadeAnewWithTheUnitAlone) {
    const std::string whole = std::string(kText) + "[Settings]\r\nMain=1\r\n";
    folder_.WriteIniText(whole);
    EXPECT_EQ(config::ReadRequired("Settings", "Main"), "1");
    for (const bool empty : {false, true}) {
        folder_.RemoveFile("Quon.ini");
        if (empty) folder_.WriteIniText("");
        EXPECT_FALSE(config::WriteIni("Cuts", "a", "2"));
        EXPECT_FALSE(config::SaveSettings());
        EXPECT_EQ(folder_.Exists("Quon.ini"), empty);
        EXPECT_TRUE(NothingIsLeft());
        Sleep(600);
        // It comes back while it is waited for.
        const RecordedCall pause = FAKE_CALL(Sleep, [&](DWORD) { folder_.WriteIniText(whole); });
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
        EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "b=x=y", "c=3"));
    }
}

TEST_F(IniUnitTest, AHeldFileStaysAsItIs) {
    for (const DWORD share : {DWORD{0}, DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE}}) {
        {
            const testkit::OwnedHandle held = Hold("Quon.ini", share);
            const ULONGLONG begin = GetTickCount64();
            EXPECT_FALSE(config::WriteIni("Cuts", "a", "3")) << share;
            EXPECT_LT(GetTickCount64() - begin, 1000u);
        }
        ExpectUnchanged();
    }
}

TEST_F(IniUnitTest, AFileThatOthersReadAndMayLoseIsReplaced) {
    const testkit::OwnedHandle held =
        Hold("Quon.ini", FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "3"));
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=3", "b=x=y", "c=3"));
}

TEST_F(IniUnitTest, AnAttributeIsKept) {
    SetFileAttributesA(folder_.IniPath().c_str(), FILE_ATTRIBUTE_HIDDEN);
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "3"));
    EXPECT_TRUE(GetFileAttributesA(folder_.IniPath().c_str()) & FILE_ATTRIBUTE_HIDDEN);
}

TEST_F(IniUnitTest, ABackupSeesThatTheFileHasBeenWritten) {
    const RecordedCall information =
        FAKE_CALL(GetFileInformationByHandleEx,
                  [](HANDLE file, FILE_INFO_BY_HANDLE_CLASS how, LPVOID data, DWORD size) {
                      const BOOL done = ORIGINAL_CALL(GetFileInformationByHandleEx)(file, how, data, size);
                      if (how == FileBasicInfo)
                          static_cast<FILE_BASIC_INFO*>(data)->FileAttributes = FILE_ATTRIBUTE_NORMAL;
                      return done;
                  });
    const RecordedCall attributes = FAKE_CALL(GetFileAttributesA, [this](LPCSTR file) -> DWORD {
        if (file == folder_.FullPath(kSide)) return FILE_ATTRIBUTE_NORMAL;
        return ORIGINAL_CALL(GetFileAttributesA)(file);
    });
    std::vector<DWORD> set;
    const RecordedCall change =
        WATCH_CALL(SetFileAttributesA, [&](LPCSTR, DWORD given) { set.push_back(given); });
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "3"));
    EXPECT_THAT(set, ElementsAre(DWORD{FILE_ATTRIBUTE_ARCHIVE}));
}

TEST_F(IniUnitTest, TheTimeOfItsCreationAndTheAccessRightsAreKept) {
    // Not every file system stores them, so what it is asked to store is compared.
    constexpr DWORD kLongRights = 3000;
    FILETIME stored{};
    std::vector<SECURITY_INFORMATION> rights;
    bool same = true;
    const RecordedCall information =
        FAKE_CALL(GetFileInformationByHandleEx,
                  [](HANDLE file, FILE_INFO_BY_HANDLE_CLASS what, LPVOID data, DWORD size) {
                      const BOOL done = ORIGINAL_CALL(GetFileInformationByHandleEx)(file, what, data, size);
                      if (what == FileBasicInfo)
                          static_cast<FILE_BASIC_INFO*>(data)->CreationTime.QuadPart = 0x01d0000000001234;
                      return done;
                  });
    const RecordedCall time = FAKE_CALL(
        SetFileTime, [&](HANDLE, const FILETIME* creation, const FILETIME* access, const FILETIME* write) {
            EXPECT_TRUE(access == nullptr && write == nullptr);
            stored = *creation;
            return TRUE;
        });
    const RecordedCall get =
        FAKE_CALL(GetKernelObjectSecurity,
                  [&](HANDLE file, SECURITY_INFORMATION what, PSECURITY_DESCRIPTOR rightsOf, DWORD size,
                      LPDWORD needed) -> BOOL {
                      EXPECT_EQ(what, SECURITY_INFORMATION{DACL_SECURITY_INFORMATION});
                      *needed = kLongRights;
                      if (size < kLongRights) {
                          SetLastError(ERROR_INSUFFICIENT_BUFFER);
                          return FALSE;
                      }
                      static_cast<char*>(rightsOf)[kLongRights - 1] =
                          PathOf(file).ends_with("Quon.ini") || same ? 'a' : 'b';
                      return TRUE;
                  });
    const RecordedCall set =
        FAKE_CALL(SetFileSecurityA, [&](LPCSTR file, SECURITY_INFORMATION what, PSECURITY_DESCRIPTOR given) {
            EXPECT_EQ(file, folder_.FullPath(kSide));
            EXPECT_EQ(static_cast<char*>(given)[kLongRights - 1], 'a');
            rights.push_back(what);
            return TRUE;
        });
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "3"));
    EXPECT_EQ(stored.dwHighDateTime, 0x01d00000u);
    EXPECT_EQ(stored.dwLowDateTime, 0x1234u);
    EXPECT_THAT(rights, IsEmpty()) << "the copy has them already";
    same = false;
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "4"));
    EXPECT_THAT(rights, ElementsAre(SECURITY_INFORMATION{DACL_SECURITY_INFORMATION}));
}

TEST_F(IniUnitTest, ASymbolicLinkStaysOne) {
    const std::string elsewhere = folder_.MakeFile("elsewhere\\true.ini", kText);
    const auto asLink = [&](const std::string& prefix, const std::string& target) {
        RecordedCalls calls;
        calls.push_back(FAKE_CALL(GetFileAttributesA, [this](LPCSTR file) {
            const DWORD attributes = ORIGINAL_CALL(GetFileAttributesA)(file);
            return file == folder_.IniPath() ? attributes | FILE_ATTRIBUTE_REPARSE_POINT : attributes;
        }));
        calls.push_back(
            FAKE_CALL(GetFinalPathNameByHandleA, [=](HANDLE, LPSTR path, DWORD size, DWORD) -> DWORD {
                const std::string final = prefix + target;
                if (final.size() >= size) return static_cast<DWORD>(final.size() + 1);
                final.copy(path, final.size());
                return static_cast<DWORD>(final.size());
            }));
        return calls;
    };
    {
        const RecordedCalls link = asLink("\\\\?\\", elsewhere);
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
        folder_.MakeFile("elsewhere\\true.ini.unit-1", "junk");
        config::RemoveInterruptedUnits();
    }
    ExpectUnchanged();
    EXPECT_THAT(folder_.ReadFile("elsewhere\\true.ini"), HasSubstr("a=2\r\n"));
    EXPECT_FALSE(folder_.Exists("elsewhere\\true.ini.unit-1"));
    // A link to where no path leads: the file itself is written.
    const RecordedCalls link = asLink("", "");
    const RecordedCall rename = FAKE_CALL(SetFileInformationByHandle, [](auto...) -> BOOL {
        ADD_FAILURE() << "the link is replaced";
        return FALSE;
    });
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
}

}  // namespace
