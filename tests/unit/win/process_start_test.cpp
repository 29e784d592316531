#include "win/process_start.h"

#include "tests/support/unit_test.h"

namespace {

using testkit::RecordedCall;

TEST(ProcessStartTest, PassesTheCommandLineAsItStandsWithTheWindowState) {
    for (const WORD show : {WORD{SW_SHOWNORMAL}, WORD{SW_SHOWMINIMIZED}}) {
        int calls = 0;
        const RecordedCall create =
            FAKE_CALL(CreateProcessA,
                      [&](LPCSTR program, LPSTR line, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES,
                          BOOL inherit, DWORD flags, LPVOID environment, LPCSTR folder,
                          LPSTARTUPINFOA startup, LPPROCESS_INFORMATION) -> BOOL {
                          ++calls;
                          EXPECT_EQ(program, nullptr);
                          EXPECT_STREQ(line, "C:\\My Tools\\a.exe \"файл 文件\"");
                          EXPECT_EQ(inherit, FALSE);
                          EXPECT_EQ(flags, DWORD{CREATE_DEFAULT_ERROR_MODE});
                          EXPECT_EQ(environment, nullptr);
                          EXPECT_EQ(folder, nullptr);
                          EXPECT_EQ(startup->cb, sizeof *startup);
                          EXPECT_EQ(startup->dwFlags, DWORD{STARTF_USESHOWWINDOW});
                          EXPECT_EQ(startup->wShowWindow, show);
                          // The system writes into the line.
                          line[0] = '\0';
                          return FALSE;
                      });
        const std::string line = "C:\\My Tools\\a.exe \"файл 文件\"";
        EXPECT_FALSE(win::StartProcess(line, show));
        EXPECT_EQ(line, "C:\\My Tools\\a.exe \"файл 文件\"");
        EXPECT_EQ(calls, 1);
    }
}

TEST(ProcessStartTest, KeepsDriveErrorsQuietInAllThreadsWithoutHandingThatDown) {
    constexpr UINT kQuiet = SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX;
    constexpr UINT kStarters = SEM_NOGPFAULTERRORBOX;
    const UINT process = SetErrorMode(kStarters);
    const DWORD thread = GetThreadErrorMode();
    win::KeepDriveErrorsQuiet();
    EXPECT_EQ(GetErrorMode(), kStarters | kQuiet);
    {
        const win::InheritedErrorMode inherited;
        EXPECT_EQ(GetErrorMode(), kStarters) << "what a program that is started inherits";
        EXPECT_EQ(GetThreadErrorMode(), kQuiet) << "this thread may ask for drives meanwhile";
        {
            const win::InheritedErrorMode within;
        }
        EXPECT_EQ(GetErrorMode(), kStarters);
    }
    EXPECT_EQ(GetErrorMode(), kStarters | kQuiet);
    SetErrorMode(process);
    SetThreadErrorMode(thread, nullptr);
}

TEST(ProcessStartTest, ClosesBothHandlesOfWhatItStarted) {
    HANDLE process = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    HANDLE thread = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    const RecordedCall create =
        FAKE_CALL(CreateProcessA,
                  [&](LPCSTR, LPSTR, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, BOOL, DWORD, LPVOID,
                      LPCSTR, LPSTARTUPINFOA, LPPROCESS_INFORMATION information) -> BOOL {
                      information->hProcess = process;
                      information->hThread = thread;
                      return TRUE;
                  });
    EXPECT_TRUE(win::StartProcess("a.exe", SW_SHOWNORMAL));
    DWORD flags = 0;
    EXPECT_FALSE(GetHandleInformation(process, &flags));
    EXPECT_FALSE(GetHandleInformation(thread, &flags));
}

TEST(ProcessStartTest, StartsAProgramWithArgumentsInAnyScript) {
    const testkit::ProgramFolder folder;
    const std::string source = folder.MakeFile("a.txt", "text");
    const std::string copy = folder.FullPath("Копия żółw 文件.txt");
    EXPECT_TRUE(win::StartProcess("cmd.exe /c copy \"" + source + "\" \"" + copy + "\"", SW_SHOWNORMAL));
    testkit::WaitFor("the copy",
                     [&] { return testkit::FileExists(copy) && testkit::FileBytes(copy) == "text"; });
}

TEST(ProcessStartTest, FailsQuietlyOnWhatIsNoProgram) {
    const testkit::ProgramFolder folder;
    EXPECT_FALSE(win::StartProcess("", SW_SHOWNORMAL));
    EXPECT_FALSE(win::StartProcess("   ", SW_SHOWNORMAL));
    EXPECT_FALSE(win::StartProcess("\"" + folder.FullPath("missing.exe") + "\" /x", SW_SHOWNORMAL));
    EXPECT_FALSE(win::StartProcess("\"" + folder.MakeFile("junk.exe", "no program") + "\"", SW_SHOWNORMAL));
}

TEST(ProcessStartTest, KnowsTheProgramAndItsFolder) {
    EXPECT_EQ(win::ProgramFolder(), testkit::TestProgramFolder());
    EXPECT_TRUE(win::ProgramPath().starts_with(win::ProgramFolder() + "\\"));
    EXPECT_TRUE(testkit::FileExists(win::ProgramPath()));
}

TEST(ProcessStartTest, KnowsTheRootByThreeCharactersOfTheProgramsPath) {
    std::wstring path;
    const RecordedCall name = FAKE_CALL(GetModuleFileNameW, [&](HMODULE, LPWSTR buffer, DWORD) -> DWORD {
        *std::copy(path.begin(), path.end(), buffer) = L'\0';
        return static_cast<DWORD>(path.size());
    });
    for (const auto& [program, root] :
         std::vector<std::pair<std::wstring, std::string>>{{L"C:\\Програми\\Quon.exe", "C:\\"},
                                                           {L"D:\\Quon.exe", "D:\\"},
                                                           {L"\\\\server\\share\\Quon.exe", "\\\\s"},
                                                           {L"\\\\сервер\\share\\Quon.exe", "\\\\с"}}) {
        path = program;
        EXPECT_EQ(win::ProgramRoot(), root);
    }
}

TEST(ProcessStartTest, ReadsAProgramPathOfAnyLength) {
    std::wstring path = L"C:\\";
    for (int index = 0; index < 90; ++index)
        path += L"папка\\";
    const RecordedCall name = FAKE_CALL(GetModuleFileNameW, [&](HMODULE, LPWSTR buffer, DWORD size) -> DWORD {
        const std::wstring full = path + L"文.exe";
        const std::wstring part = full.substr(0, size - 1);
        std::copy(part.begin(), part.end(), buffer);
        buffer[part.size()] = L'\0';
        return full.size() < size ? static_cast<DWORD>(full.size()) : size;
    });
    EXPECT_EQ(win::ProgramPath(), testkit::Utf8(path) + "文.exe");
    EXPECT_EQ(win::ProgramFolder(), testkit::Utf8(path.substr(0, path.size() - 1)));
    EXPECT_EQ(win::ProgramRoot(), "C:\\");
}

}  // namespace
