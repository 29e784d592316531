#include "tests/support/running_program.h"

#include <psapi.h>
#include <tlhelp32.h>

#include <chrono>
#include <stdexcept>

#include "tests/support/agent.h"
#include "tests/support/gdi_table.h"
#include "tests/support/input.h"
#include "tests/support/paths.h"
#include "tests/support/text.h"
#include "tests/support/wait.h"

namespace testkit {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kClosePatience{5000};

OwnedHandle MakeJob() {
    OwnedHandle job(CreateJobObjectW(nullptr, nullptr));
    if (!job) ThrowWindowsError("CreateJobObjectW");
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    if (!SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits)) {
        ThrowWindowsError("SetInformationJobObject");
    }
    return job;
}

/// This program's environment with further variables, as CreateProcess takes it.
std::wstring EnvironmentBlock(const std::vector<std::pair<std::string, std::string>>& further) {
    std::wstring block;
    wchar_t* own = GetEnvironmentStringsW();
    for (const wchar_t* entry = own; *entry; entry += std::wstring_view(entry).size() + 1) {
        const std::wstring_view text(entry);
        bool replaced = false;
        for (const auto& [name, value] : further) {
            const std::wstring start = Wide(name + "=");
            replaced |=
                CompareStringOrdinal(text.data(), static_cast<int>(std::min(text.size(), start.size())),
                                     start.data(), static_cast<int>(start.size()), TRUE) == CSTR_EQUAL;
        }
        if (!replaced) block.append(text).push_back(L'\0');
    }
    FreeEnvironmentStringsW(own);
    for (const auto& [name, value] : further)
        block.append(Wide(name + "=" + value)).push_back(L'\0');
    block.push_back(L'\0');
    return block;
}

bool SameName(const std::string& one, const std::string& other) {
    return CompareStringOrdinal(Wide(one).c_str(), -1, Wide(other).c_str(), -1, TRUE) == CSTR_EQUAL;
}

}  // namespace

RunningProgram::RunningProgram(const std::string& path, const StartOptions& options) : job_(MakeJob()) {
    // The desktop's own process starts with the first program that needs it. It must not belong to this job.
    GetDesktopWindow();
    std::wstring command =
        Wide("\"" + path + "\"" + (options.arguments.empty() ? "" : " " + options.arguments));
    std::wstring environment = EnvironmentBlock(options.environment);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    if (options.show_state >= 0) {
        startup.dwFlags = STARTF_USESHOWWINDOW;
        startup.wShowWindow = static_cast<WORD>(options.show_state);
    }
    const std::string folder = options.work_folder.empty() ? FolderOf(path) : options.work_folder;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(Wide(path).c_str(), command.data(), nullptr, nullptr, FALSE,
                        CREATE_SUSPENDED | CREATE_UNICODE_ENVIRONMENT, environment.data(),
                        Wide(folder).c_str(), &startup, &process)) {
        ThrowWindowsError("Starting " + path);
    }
    process_.reset(process.hProcess);
    const OwnedHandle thread(process.hThread);
    id_ = process.dwProcessId;
    if (!AssignProcessToJobObject(job_.get(), process_.get())) {
        const DWORD error = GetLastError();
        TerminateProcess(process_.get(), 1);
        ThrowWindowsError("AssignProcessToJobObject", error);
    }
    ResumeThread(thread.get());
}

RunningProgram RunningProgram::Attach(DWORD process_id) {
    OwnedHandle process(OpenProcess(
        SYNCHRONIZE | PROCESS_TERMINATE | PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, process_id));
    if (!process) ThrowWindowsError("Opening process " + std::to_string(process_id));
    return {process_id, std::move(process)};
}

RunningProgram::~RunningProgram() {
    if (!process_) return;
    try {
        if (!CloseGently()) Terminate();
    } catch (const std::exception&) {
        // A destructor; the job or the end of the test program does the rest.
    }
}

std::optional<DWORD> RunningProgram::ExitCode() const {
    if (WaitForSingleObject(process_.get(), 0) == WAIT_TIMEOUT) return std::nullopt;
    DWORD code = 0;
    if (!GetExitCodeProcess(process_.get(), &code)) ThrowWindowsError("GetExitCodeProcess");
    return code;
}

DWORD RunningProgram::WaitForExit() const {
    WaitFor("process " + std::to_string(id_) + " to end", [this] { return !IsRunning(); });
    return *ExitCode();
}

DWORD RunningProgram::CloseAndWait() {
    if (!CloseGently()) throw TimeoutError("process " + std::to_string(id_) + " does not close");
    return *ExitCode();
}

std::vector<Window> RunningProgram::WindowsToClose() const {
    // A dialog keeps the window behind it disabled and comes first. A program may also have hidden its
    // window; of its hidden windows only one with a caption can be that, the others are the system's own.
    std::vector<Window> windows = Windows();
    if (windows.empty()) {
        windows = Windows({.visible_only = false});
        std::erase_if(windows, [](Window window) {
            return window.Owner().Handle() || (window.Style() & WS_CAPTION) != WS_CAPTION;
        });
    }
    std::erase_if(windows, [](Window window) { return !window.IsEnabled(); });
    return windows;
}

bool RunningProgram::CloseGently() {
    constexpr milliseconds kAskAgain{250};
    const auto end = std::chrono::steady_clock::now() + kClosePatience;
    while (IsRunning() && std::chrono::steady_clock::now() < end) {
        for (const Window window : WindowsToClose())
            PostMessageW(window.Handle(), WM_CLOSE, 0, 0);
        HappensWithin(kAskAgain, [this] { return !IsRunning(); });
    }
    return !IsRunning();
}

void RunningProgram::Terminate() {
    if (!IsRunning()) return;
    TerminateProcess(process_.get(), 1);
    WaitForExit();
}

std::vector<Window> RunningProgram::Windows(WindowQuery query) const {
    query.process_id = id_;
    return FindTopWindows(query);
}

Window RunningProgram::FindWindow(WindowQuery query) const {
    query.process_id = id_;
    return FindTopWindow(query);
}

Window RunningProgram::WaitForWindow(WindowQuery query) const {
    query.process_id = id_;
    const Window found = WaitFor(query.Describe(), [&] {
        const Window window = FindTopWindow(query);
        if (!window && !IsRunning()) {
            throw std::runtime_error("the program ended with code " + std::to_string(*ExitCode()) +
                                     " instead of showing " + query.Describe());
        }
        return window;
    });
    WaitUntilStarted();
    return found;
}

void RunningProgram::WaitUntilStarted() const {
    WaitForInputIdle(process_.get(), static_cast<DWORD>(kPatience.count()));
}

Window RunningProgram::MainWindow() const {
    const Window found = WaitFor("a main window of process " + std::to_string(id_), [this] {
        for (const Window window : Windows()) {
            if (!window.Owner()) return window;
        }
        return Window();
    });
    WaitUntilStarted();
    return found;
}

void RunningProgram::WaitUntilIdle() const {
    // A message that it is handling does not count as waiting; the next answer shows that it has come back
    // from it.
    constexpr int kQuietRounds = 3;
    int quiet = 0;
    WaitFor("process " + std::to_string(id_) + " to be idle", [&] {
        const Window window = FindWindow();
        quiet = window && !agent::HasMessages(window) ? quiet + 1 : 0;
        return quiet >= kQuietRounds;
    });
}

std::size_t RunningProgram::WorkingSet() const {
    PROCESS_MEMORY_COUNTERS counters = {};
    counters.cb = sizeof counters;
    if (!GetProcessMemoryInfo(process_.get(), &counters, sizeof counters)) {
        ThrowWindowsError("GetProcessMemoryInfo");
    }
    return counters.WorkingSetSize;
}

std::size_t RunningProgram::GdiObjectCount() const { return CountDrawingObjects(process_.get()); }

std::size_t RunningProgram::UserObjectCount() const {
    if (const DWORD count = GetGuiResources(process_.get(), GR_USEROBJECTS)) return count;
    std::size_t windows = 0;
    for (const Window window : Windows({.visible_only = false}))
        windows += 1 + window.Descendants().size();
    return windows + agent::CountMenusAndIcons(MainWindow());
}

RunningProgram StartQuon(const ProgramFolder& folder, const StartOptions& options) {
    constexpr POINT kOutOfTheWay = {980, 600};
    mouse::MoveTo(kOutOfTheWay);
    const std::string path = folder.FullPath("Quon.exe");
    if (!FileExists(path)) folder.CopyIn(QuonExe());
    return RunningProgram(path, options);
}

DWORD RunToExit(const std::string& path, const StartOptions& options) {
    return RunningProgram(path, options).WaitForExit();
}

std::vector<ProcessInfo> FindProcesses(const ProcessQuery& query) {
    const OwnedHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    if (snapshot.get() == INVALID_HANDLE_VALUE) ThrowWindowsError("CreateToolhelp32Snapshot");
    std::vector<ProcessInfo> found;
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot.get(), &entry); more;
         more = Process32NextW(snapshot.get(), &entry)) {
        const std::string name = NameOf(Utf8(entry.szExeFile));
        if (!query.name.empty() && !SameName(name, query.name)) continue;
        if (query.parent_id != 0 && entry.th32ParentProcessID != query.parent_id) continue;
        found.push_back({entry.th32ProcessID, entry.th32ParentProcessID, name});
    }
    return found;
}

RunningProgram WaitForProcess(const ProcessQuery& query) {
    DWORD id = 0;
    WaitFor("a process " + query.name, [&] {
        const std::vector<ProcessInfo> found = FindProcesses(query);
        if (!found.empty()) id = found.front().id;
        return !found.empty();
    });
    return RunningProgram::Attach(id);
}

}  // namespace testkit
