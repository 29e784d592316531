#include "win/process_start.h"

#include <optional>

#include "win/handles.h"
#include "win/text.h"
#include "win/trace.h"

namespace win {
namespace {

/// The process's error mode (SEM_ flags) before it was made quiet.
std::optional<UINT> g_startMode;

}  // namespace

bool StartProcess(const std::string& commandLine, WORD showCommand) {
    std::string line = commandLine;
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESHOWWINDOW;
    startup.wShowWindow = showCommand;
    PROCESS_INFORMATION process{};
    const BOOL done = CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, CREATE_DEFAULT_ERROR_MODE,
                                     nullptr, nullptr, &startup, &process);
    if (!Traced(done, "CreateProcessA")) return false;
    const KernelObject thread(process.hThread);
    const KernelObject started(process.hProcess);
    return true;
}

void KeepDriveErrorsQuiet() noexcept {
    constexpr UINT kQuiet = SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX;
    SetThreadErrorMode(kQuiet, nullptr);
    const UINT mode = GetErrorMode();
    g_startMode = mode;
    SetErrorMode(mode | kQuiet);
}

InheritedErrorMode::InheritedErrorMode() noexcept : former_(GetErrorMode()) {
    SetErrorMode(g_startMode.value_or(former_));
}

InheritedErrorMode::~InheritedErrorMode() { SetErrorMode(former_); }

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
