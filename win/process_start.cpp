#include "win/process_start.h"

#include "win/handles.h"
#include "win/text.h"
#include "win/trace.h"

namespace win {

bool StartProcess(const std::string& commandLine, WORD showCommand) {
    std::string line = commandLine;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = showCommand;
    PROCESS_INFORMATION process{};
    const BOOL done = CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                                     &startup, &process);
    if (!Traced(done, "CreateProcessA")) return false;
    const KernelObject thread(process.hThread);
    const KernelObject started(process.hProcess);
    return true;
}

void KeepDriveErrorsQuiet() noexcept {
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, nullptr);
}

std::string ProgramPath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            break;
        }
        path.resize(path.size() * 2);
    }
    return ToBytes(path);
}

std::string ProgramFolder() {
    const std::string path = ProgramPath();
    return path.substr(0, path.rfind('\\'));
}

std::string ProgramRoot() {
    // Taken from the program's path, because its folder's has no "\\" in the root of a drive.
    return ToBytes(ToWide(ProgramPath()).substr(0, 3));
}

}  // namespace win
