#include "config/ini_unit.h"

#include <windows.h>

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "config/ini.h"
#include "config/settings.h"
#include "tests/support/recorded_call.h"
#include "tests/support/running_program.h"
#include "tests/unit/config/config_file.h"
#include "win/message_ban.h"

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testkit::RecordedCall;
using testkit::RecordedCalls;

const std::string kSide = SideName(1);
const std::string kSecondSide = SideName(2);
constexpr const char* kText = "; mine\r\n[Cuts]\r\na=1\r\nb=x=y\r\nc=3\r\n[Switch]\r\na=/x\r\n";

/// Units of writes on a file of three shortcuts.
class IniUnitTest : public ConfigFile {
  protected:
    IniUnitTest() { folder_.WriteIniText(kText); }

    bool NothingIsLeft() const {
        return !folder_.Exists(kSide) && !folder_.Exists(kSecondSide) && !folder_.Exists(SideName(3)) &&
               !folder_.Exists(SideName(4));
    }
    void ExpectUnchanged() const {
        EXPECT_EQ(folder_.IniBytes(), kText);
        EXPECT_TRUE(NothingIsLeft());
    }
    /// Runs `look` after every call that changes a file.
    template <class Look>
    static RecordedCalls AfterEachStep(Look look) {
        RecordedCalls calls;
        calls.push_back(
            FAKE_CALL(WritePrivateProfileStringA, [=](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) {
                const BOOL done = ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
                look();
                return done;
            }));
        calls.push_back(FAKE_CALL(WritePrivateProfileSectionA, [=](LPCSTR name, LPCSTR text, LPCSTR file) {
            const BOOL done = ORIGINAL_CALL(WritePrivateProfileSectionA)(name, text, file);
            look();
            return done;
        }));
        calls.push_back(FAKE_CALL(CopyFileA, [=](LPCSTR from, LPCSTR to, BOOL keep) {
            const BOOL done = ORIGINAL_CALL(CopyFileA)(from, to, keep);
            look();
            return done;
        }));
        calls.push_back(FAKE_CALL(FlushFileBuffers, [=](HANDLE file) {
            const BOOL done = ORIGINAL_CALL(FlushFileBuffers)(file);
            look();
            return done;
        }));
        return calls;
    }
    /// Lets the write with this number (from 1) leave half a file and find no room for the rest.
    RecordedCall FailingWrite(int number) {
        return FAKE_CALL(WritePrivateProfileStringA,
                         [this, number](LPCSTR name, LPCSTR key, LPCSTR value, LPCSTR file) -> BOOL {
                             if (++writes_ != number)
                                 return ORIGINAL_CALL(WritePrivateProfileStringA)(name, key, value, file);
                             folder_.MakeFile(kSide, "; mi");
                             SetLastError(ERROR_DISK_FULL);
                             return FALSE;
                         });
    }
    testkit::OwnedHandle Hold(const std::string& name, DWORD share = 0) const {
        testkit::OwnedHandle file(CreateFileA(folder_.FullPath(name).c_str(), GENERIC_READ, share, nullptr,
                                              OPEN_EXISTING, 0, nullptr));
        EXPECT_NE(file.get(), INVALID_HANDLE_VALUE) << name;
        return file;
    }

    int writes_ = 0;
};

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
    const RecordedCall flush = FAKE_CALL(FlushFileBuffers, [&](HANDLE file) {
        steps.push_back("flushed " + folder_.ReadFile(kSide).substr(0, 6));
        EXPECT_THAT(folder_.ReadFile(kSide), HasSubstr("d=4"));
        return ORIGINAL_CALL(FlushFileBuffers)(file);
    });
    const RecordedCall move = FAKE_CALL(MoveFileExA, [&](LPCSTR from, LPCSTR to, DWORD flags) {
        EXPECT_EQ(from, folder_.FullPath(kSide));
        EXPECT_EQ(to, folder_.IniPath());
        EXPECT_EQ(flags, DWORD{MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH});
        steps.emplace_back("moved");
        return ORIGINAL_CALL(MoveFileExA)(from, to, flags);
    });
    config::WriteIni("Cuts", "d", "4");
    EXPECT_THAT(steps, ElementsAre("flushed ; mine", "moved"));
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
    { const config::IniUnit onlyRead; }
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
    { const config::IniUnit unit; }
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

TEST_F(IniUnitTest, OneInWhichNothingIsWrittenTouchesNoFile) {
    const RecordedCall copy = FAKE_CALL(CopyFileA, [](LPCSTR, LPCSTR, BOOL) -> BOOL {
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
        const RecordedCall copy = FAKE_CALL(CopyFileA, [this, error](LPCSTR, LPCSTR, BOOL) -> BOOL {
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
        const RecordedCall copy = FAKE_CALL(CopyFileA, [](LPCSTR, LPCSTR, BOOL) -> BOOL {
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
        const RecordedCall copy = FAKE_CALL(CopyFileA, [error](LPCSTR, LPCSTR, BOOL) -> BOOL {
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
    const RecordedCall copy = FAKE_CALL(CopyFileA, [](LPCSTR, LPCSTR, BOOL) -> BOOL {
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
        const RecordedCall write = FAKE_CALL(WritePrivateProfileSectionA, [](auto...) { return FALSE; });
        config::IniUnit unit;
        EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
        EXPECT_FALSE(config::WriteIniSection("Switch", ""));
        EXPECT_FALSE(unit.Finish());
    }
    EXPECT_EQ(folder_.IniBytes(), kText);
}

TEST_F(IniUnitTest, WhereTheFileItselfIsWrittenWhatCannotBePutBackIsNotBegun) {
    const RecordedCall copy = FAKE_CALL(CopyFileA, [](LPCSTR, LPCSTR, BOOL) -> BOOL {
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
    const RecordedCall copy = FAKE_CALL(CopyFileA, [](LPCSTR, LPCSTR, BOOL) -> BOOL {
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

TEST_F(IniUnitTest, TheTimeOfItsCreationAndTheAccessRightsAreKept) {
    // Not every file system stores them, so what it is asked to store is compared.
    FILETIME stored{};
    std::vector<SECURITY_INFORMATION> rights;
    bool same = true;
    const RecordedCall attributes =
        FAKE_CALL(GetFileAttributesExA, [](LPCSTR file, GET_FILEEX_INFO_LEVELS level, LPVOID data) {
            const BOOL done = ORIGINAL_CALL(GetFileAttributesExA)(file, level, data);
            static_cast<WIN32_FILE_ATTRIBUTE_DATA*>(data)->ftCreationTime = {0x1234, 0x01d00000};
            return done;
        });
    const RecordedCall time = FAKE_CALL(
        SetFileTime, [&](HANDLE, const FILETIME* creation, const FILETIME* access, const FILETIME* write) {
            EXPECT_TRUE(access == nullptr && write == nullptr);
            stored = *creation;
            return TRUE;
        });
    const RecordedCall get =
        FAKE_CALL(GetFileSecurityA,
                  [&](LPCSTR file, SECURITY_INFORMATION what, PSECURITY_DESCRIPTOR rightsOf, DWORD size,
                      LPDWORD needed) -> BOOL {
                      EXPECT_EQ(what, SECURITY_INFORMATION{DACL_SECURITY_INFORMATION});
                      *needed = 1;
                      if (size != 0)
                          *static_cast<char*>(rightsOf) = file == folder_.IniPath() || same ? 'a' : 'b';
                      return size != 0;
                  });
    const RecordedCall set =
        FAKE_CALL(SetFileSecurityA, [&](LPCSTR file, SECURITY_INFORMATION what, PSECURITY_DESCRIPTOR) {
            EXPECT_EQ(file, folder_.FullPath(kSide));
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
    const RecordedCall move = FAKE_CALL(MoveFileExA, [](auto...) -> BOOL {
        ADD_FAILURE() << "the link is replaced";
        return FALSE;
    });
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
}

TEST_F(IniUnitTest, ASideFileThatIsHeldFromBeforeCostsNothing) {
    folder_.MakeFile(kSide, "junk");
    const testkit::OwnedHandle held = Hold(kSide);
    config::RemoveInterruptedUnits();
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_TRUE(config::RemoveRecord("Cuts", "b"));
    EXPECT_TRUE(config::SaveSettings());
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "c=3"));
    EXPECT_FALSE(folder_.Exists(kSecondSide));
}

TEST_F(IniUnitTest, ASideFileThatIsTakenDuringAUnitCostsNothing) {
    // After the copy, after each write, before the file takes its place. While the unit has it open, nobody
    // can keep it from being read.
    constexpr int kAfterTheCopy = 1;
    constexpr int kBeforeThePlace = 4;
    for (int moment = 1; moment <= kBeforeThePlace; ++moment) {
        folder_.WriteIniText(kText);
        testkit::OwnedHandle held;
        int step = 0;
        {
            const RecordedCalls calls = AfterEachStep([&] {
                if (++step == moment && moment < kBeforeThePlace)
                    held = Hold(kSide, moment == kAfterTheCopy ? 0 : FILE_SHARE_READ);
            });
            const RecordedCall move = FAKE_CALL(MoveFileExA, [&](LPCSTR from, LPCSTR to, DWORD flags) {
                if (moment == kBeforeThePlace && !held) held = Hold(kSide);
                return ORIGINAL_CALL(MoveFileExA)(from, to, flags);
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

TEST_F(IniUnitTest, NobodyCanDeleteTheSideFileDuringAUnit) {
    config::IniUnit unit;
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(DeleteFileA(folder_.FullPath(kSide).c_str()), FALSE);
    config::RemoveInterruptedUnits();
    EXPECT_TRUE(folder_.Exists(kSide));
    EXPECT_TRUE(config::WriteIni("Cuts", "d", "4"));
    EXPECT_TRUE(unit.Finish());
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=2", "b=x=y", "c=3", "d=4"));
}

TEST_F(IniUnitTest, ASideFileThatVanishesIsMadeAnewWithAllThatWasWritten) {
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

TEST_F(IniUnitTest, WhatAnotherProgramSavesDuringAUnitIsKept) {
    int saves = 1;
    const RecordedCall flush = FAKE_CALL(FlushFileBuffers, [&](HANDLE file) {
        if (saves-- > 0) folder_.WriteIniText("[Cuts]\r\na=1\r\nb=2\r\nother=5\r\n");
        return ORIGINAL_CALL(FlushFileBuffers)(file);
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

TEST_F(IniUnitTest, AUnitGivesUpOnAFileThatIsSavedWithoutEnd) {
    int saves = 0;
    const RecordedCall flush = FAKE_CALL(FlushFileBuffers, [&](HANDLE file) {
        folder_.WriteIniText("[Cuts]\r\na=" + std::string(static_cast<size_t>(++saves), 'x') + "\r\n");
        return ORIGINAL_CALL(FlushFileBuffers)(file);
    });
    EXPECT_FALSE(config::WriteIni("Cuts", "b", "2"));
    EXPECT_EQ(saves, 5);
    EXPECT_THAT(Lines("Cuts"), ElementsAre("a=xxxxx"));
    EXPECT_TRUE(NothingIsLeft());
}

TEST_F(IniUnitTest, AFileThatIsEmptiedDuringAUnitIsWaitedForAndNotFilledWithTheUnitAlone) {
    bool written = true;
    const RecordedCall flush = FAKE_CALL(FlushFileBuffers, [&](HANDLE file) {
        if (written) folder_.WriteIniText("");
        return ORIGINAL_CALL(FlushFileBuffers)(file);
    });
    const RecordedCall pause = FAKE_CALL(Sleep, [&](DWORD time) {
        if (written) folder_.WriteIniText("[Cuts]\r\nother=5\r\n");
        written = false;
        ORIGINAL_CALL(Sleep)(time);
    });
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_THAT(Lines("Cuts"), ElementsAre("other=5", "a=2"));
}

TEST_F(IniUnitTest, AllSideFilesHeldCostNothingEither) {
    std::vector<testkit::OwnedHandle> held;
    for (const int number : {1, 2, 3, 4}) {
        folder_.MakeFile(SideName(number), "junk");
        held.push_back(Hold(SideName(number)));
    }
    EXPECT_TRUE(config::WriteIni("Cuts", "a", "2"));
    EXPECT_EQ(folder_.IniValue("Cuts", "a"), "2");
}

TEST_F(IniUnitTest, WhatAKilledUnitHasLeftIsRemovedWhateverItHolds) {
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

TEST_F(IniUnitTest, WithoutAFileBesideItNothingIsRemoved) {
    // It may be all that is left.
    folder_.RemoveFile("Quon.ini");
    folder_.MakeFile(kSide, kText);
    config::RemoveInterruptedUnits();
    EXPECT_EQ(folder_.ReadFile(kSide), kText);
    EXPECT_FALSE(folder_.Exists("Quon.ini"));
}

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
