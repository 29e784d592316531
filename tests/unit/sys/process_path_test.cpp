// How the executable of a process is found.

#include <psapi.h>
#include <tlhelp32.h>

#include "sys/process_list.h"
#include "tests/support/unit_test.h"
#include "win/process_start.h"

namespace {

using sys::clsProcesi;
using ::testing::ElementsAre, ::testing::IsEmpty;
using testkit::CallLog, testkit::HiddenWindow, testkit::RecordedCall;

class ProcessPathTest : public testing::Test {
  protected:
    win::MenuArray menu_{2700, {{"Item1", {}}}};
    CallLog log_;
};

TEST_F(ProcessPathTest, LetsThePlatformDecideHowThePathIsFound) {
    const HiddenWindow window;
    DWORD platform = 0;
    const RecordedCall version = FAKE_CALL(GetVersionExA, [&](LPOSVERSIONINFOA record) -> BOOL {
        record->dwPlatformId = platform;
        return TRUE;
    });
    const RecordedCall snapshot = STUB_CALL(log_, CreateToolhelp32Snapshot, nullptr);
    const RecordedCall processes = FAKE_CALL(EnumProcesses, [&](DWORD*, DWORD, DWORD* needed) -> BOOL {
        log_.Add("EnumProcesses");
        *needed = 0;
        return TRUE;
    });
    clsProcesi list(menu_, true, 0);
    for (platform = 0; platform <= 3; ++platform)
        EXPECT_EQ(list.GetExePath(window.Handle()), "") << platform;
    EXPECT_THAT(log_.Lines(), ElementsAre("CreateToolhelp32Snapshot 2 0", "EnumProcesses"));
}

TEST_F(ProcessPathTest, TellsThePlatformOfThisSystem) {
    EXPECT_EQ(clsProcesi::GetVersion(), DWORD{VER_PLATFORM_WIN32_NT});
}

TEST_F(ProcessPathTest, FindsTheNameInASnapshotOfTheProcesses) {
    clsProcesi list(menu_, true, 0);
    EXPECT_EQ(list.ExePathToolhelp(GetCurrentProcessId()), testkit::NameOf(win::ProgramPath()));
    EXPECT_EQ(list.LastProcessId(), GetCurrentProcessId());
    clsProcesi fresh(menu_, true, 0);
    EXPECT_EQ(fresh.ExePathToolhelp(0xFFFFFFF0), "");
    EXPECT_EQ(fresh.LastProcessId(), 0u);
}

TEST_F(ProcessPathTest, WalksTheSnapshotUpToTheProcessAndClosesIt) {
    const RecordedCall snapshot =
        STUB_CALL(log_, CreateToolhelp32Snapshot, reinterpret_cast<HANDLE>(UINT_PTR{0x55}));
    const auto entry = [](LPPROCESSENTRY32 record, DWORD process, char fill) -> BOOL {
        EXPECT_EQ(record->dwSize, sizeof(PROCESSENTRY32));
        record->th32ProcessID = process;
        std::memset(record->szExeFile, fill, sizeof record->szExeFile);
        return TRUE;
    };
    const RecordedCall first = FAKE_CALL(Process32First, [&](HANDLE handle, LPPROCESSENTRY32 record) {
        log_.Add("first", handle);
        return entry(record, 4, 'a');
    });
    const RecordedCall next = FAKE_CALL(Process32Next, [&](HANDLE handle, LPPROCESSENTRY32 record) {
        log_.Add("next", handle);
        return entry(record, 8, 'b');
    });
    const RecordedCall close = STUB_CALL(log_, CloseHandle, TRUE);
    clsProcesi list(menu_, true, 0);
    EXPECT_EQ(list.ExePathToolhelp(8), std::string(259, 'b')) << "the field's last character is dropped";
    EXPECT_THAT(log_.Lines(),
                ElementsAre("CreateToolhelp32Snapshot 2 0", "first 0x55", "next 0x55", "CloseHandle 0x55"));
}

TEST_F(ProcessPathTest, GivesNothingForASnapshotThatFails) {
    HANDLE answer = nullptr;
    const RecordedCall snapshot = FAKE_CALL(CreateToolhelp32Snapshot, [&] { return answer; });
    const RecordedCall first = WATCH_CALL(Process32First, [&] { log_.Add("first"); });
    clsProcesi list(menu_, true, 0);
    EXPECT_EQ(list.ExePathToolhelp(GetCurrentProcessId()), "");
    EXPECT_THAT(log_.Lines(), IsEmpty());
    answer = INVALID_HANDLE_VALUE;
    EXPECT_EQ(list.ExePathToolhelp(GetCurrentProcessId()), "");
    EXPECT_THAT(log_.Lines(), ElementsAre("first"));
}

TEST_F(ProcessPathTest, FindsThePathThroughTheModulesOfTheProcess) {
    clsProcesi list(menu_, true, 0);
    EXPECT_EQ(list.ExePathPsapi(GetCurrentProcessId()), win::ProgramPath());
    EXPECT_EQ(list.LastProcessId(), GetCurrentProcessId());
    EXPECT_EQ(list.ExePathPsapi(0xFFFFFFF0), "");
    EXPECT_EQ(list.LastProcessId(), GetCurrentProcessId()) << "what is not found changes nothing";
}

TEST_F(ProcessPathTest, DoublesTheRoomForProcessesUntilSomeIsLeft) {
    DWORD processes = 0;
    const RecordedCall enumerate = FAKE_CALL(EnumProcesses, [&](DWORD*, DWORD size, DWORD* needed) -> BOOL {
        log_.Add(size);
        *needed = std::min<DWORD>(size, processes * 4);
        return TRUE;
    });
    clsProcesi list(menu_, true, 0);
    for (processes = 0; processes < 9; processes += 4) {
        list.ExePathPsapi(1);
        log_.Add("-");
    }
    EXPECT_THAT(log_.Lines(), ElementsAre("16", "-", "16", "32", "-", "16", "32", "64", "-"));
}

/// A process with modules as the test says.
class ProcessModulesTest : public ProcessPathTest {
  protected:
    std::vector<DWORD> ids_{7, 42, 42};
    std::function<BOOL(HMODULE*, DWORD, DWORD*)> modules_ = [](HMODULE* module, DWORD size, DWORD* needed) {
        if (size > 0) *module = reinterpret_cast<HMODULE>(UINT_PTR{0x66});
        *needed = 3000;
        return TRUE;
    };
    HANDLE process_ = reinterpret_cast<HANDLE>(UINT_PTR{0x55});
    RecordedCall enumerate_ = FAKE_CALL(EnumProcesses, [this](DWORD* ids, DWORD size, DWORD* needed) -> BOOL {
        std::copy_n(ids_.begin(), std::min<size_t>(ids_.size(), size / 4), ids);
        *needed = static_cast<DWORD>(ids_.size() * 4);
        return TRUE;
    });
    RecordedCall open_ = FAKE_CALL(OpenProcess, [this](DWORD access, BOOL inherit, DWORD process) {
        log_.Add("open", access, inherit, process);
        return process_;
    });
    RecordedCall list_ =
        FAKE_CALL(EnumProcessModules, [this](HANDLE process, HMODULE* module, DWORD size, LPDWORD needed) {
            log_.Add("modules", process, size);
            return modules_(module, size, needed);
        });
    RecordedCall name_ =
        FAKE_CALL(GetModuleFileNameExA, [this](HANDLE process, HMODULE module, LPSTR path, DWORD size) {
            log_.Add("name", process, static_cast<const void*>(module), size);
            EXPECT_EQ(std::string(path, size), std::string(size, ' '));
            std::memcpy(path, "C:\\文.exe!", 11);
            return DWORD{10};
        });
    RecordedCall close_ = STUB_CALL(log_, CloseHandle, TRUE);
};

TEST_F(ProcessModulesTest, AreAskedForTwiceAndTheFirstOneIsNamed) {
    clsProcesi list(menu_, true, 0);
    EXPECT_EQ(list.ExePathPsapi(42), "C:\\文.exe");
    EXPECT_EQ(list.LastProcessId(), 42u);
    EXPECT_THAT(log_.Lines(), ElementsAre("open 1040 0 42", "modules 0x55 1024", "modules 0x55 3000",
                                          "name 0x55 0x66 500", "CloseHandle 0x55"));
}

TEST_F(ProcessModulesTest, AreTriedAgainForTheNextEntryOfTheProcess) {
    modules_ = [](HMODULE*, DWORD, DWORD* needed) {
        *needed = 16;
        return FALSE;
    };
    clsProcesi list(menu_, true, 0);
    EXPECT_EQ(list.ExePathPsapi(42), "");
    EXPECT_EQ(list.LastProcessId(), 0u);
    EXPECT_THAT(log_.Lines(),
                ElementsAre("open 1040 0 42", "modules 0x55 1024", "modules 0x55 16", "CloseHandle 0x55",
                            "open 1040 0 42", "modules 0x55 1024", "modules 0x55 16", "CloseHandle 0x55"));
}

TEST_F(ProcessModulesTest, AreNotAskedForWhenTheProcessDoesNotOpen) {
    process_ = nullptr;
    clsProcesi list(menu_, true, 0);
    EXPECT_EQ(list.ExePathPsapi(42), "");
    EXPECT_THAT(log_.Lines(), ElementsAre("open 1040 0 42", "open 1040 0 42"));
}

TEST_F(ProcessModulesTest, AreAskedOnlyOfProcessesThatWindowsHasListed) {
    enumerate_ = FAKE_CALL(EnumProcesses, [](DWORD* ids, DWORD size, DWORD* needed) -> BOOL {
        std::fill_n(ids, size / 4, DWORD{42});
        ids[0] = 7;
        *needed = 4;
        return TRUE;
    });
    EXPECT_EQ(clsProcesi(menu_, true, 0).ExePathPsapi(42), "");
    EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST(DropLastCharTest, DropsOneCharacter) {
    EXPECT_EQ(clsProcesi::DropLastChar("abc"), "ab");
    EXPECT_EQ(clsProcesi::DropLastChar("a"), "");
    EXPECT_EQ(clsProcesi::DropLastChar(""), "");
}

}  // namespace
