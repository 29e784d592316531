#include <windows.h>

#include <psapi.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/benchmarks.h"
#include "res/resource.h"
#include "sys/process_list.h"
#include "tests/support/paths.h"
#include "tests/support/running_program.h"
#include "tests/support/test_target.h"

namespace bench {
namespace {

/// The executable's path by the calls that it takes, and nothing around them.
std::string BarePath(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExA(&version);
    static DWORD ids[4096];
    DWORD needed = 96;
    for (DWORD size = 16; size <= sizeof ids; size *= 2) {
        EnumProcesses(ids, size, &needed);
        if (size > needed) break;
    }
    for (DWORD index = 0; index < needed / sizeof(DWORD); ++index) {
        if (ids[index] != process) continue;
        HANDLE opened = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, process);
        static HMODULE modules[1024];
        EnumProcessModules(opened, modules, 1024, &needed);
        EnumProcessModules(opened, modules, std::min<DWORD>(needed, sizeof modules), &needed);
        static char path[500];
        const DWORD length = GetModuleFileNameExA(opened, modules[0], path, sizeof path);
        CloseHandle(opened);
        return {path, length};
    }
    return {};
}

/// Asks every window what the product asks it, and returns the paths of the programs, each once.
std::vector<std::string> BareList() {
    std::vector<std::string> found;
    for (HWND window = GetTopWindow(nullptr); window != nullptr; window = GetWindow(window, GW_HWNDNEXT)) {
        if (GetParent(window) != nullptr) continue;
        // NOLINTNEXTLINE(performance-no-int-to-ptr): window data holds the owner as a number.
        const auto owner = reinterpret_cast<HWND>(GetWindowLongPtrA(window, GWLP_HWNDPARENT));
        if (owner != nullptr && (GetWindowLongA(owner, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) == 0) continue;
        if ((GetWindowLongA(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) != 0) continue;
        DWORD_PTR length = 0;
        static wchar_t title[0x10000];
        if (SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_ABORTIFHUNG, 500, &length) == 0 ||
            length == 0 ||
            SendMessageTimeoutW(window, WM_GETTEXT, length + 1, reinterpret_cast<LPARAM>(title),
                                SMTO_ABORTIFHUNG, 500, &length) == 0 ||
            IsWindowVisible(window) == FALSE)
            continue;
        const std::string path = BarePath(window);
        if (std::find(found.begin(), found.end(), path) == found.end()) found.push_back(path);
    }
    return found;
}

}  // namespace

void MeasureProcessList(const Effort& effort, Table& table) {
    constexpr int kPrograms = 8;
    const testkit::ProgramFolder folder("bench");
    std::vector<testkit::RunningProgram> programs;
    for (int program = 0; program < kPrograms; ++program) {
        programs.emplace_back(
            folder.CopyIn(testkit::TestTargetExe(), "program" + std::to_string(program) + ".exe"),
            testkit::StartOptions{.arguments = "program"});
        programs.back().MainWindow();
    }
    std::vector<double> quon;
    std::vector<double> bare;
    for (int run = 0; run < effort.starts; ++run) {
        double begin = WallTime();
        win::MenuArray menu(IDM_ACTIVE, {{"Item1", {}}});
        sys::clsProcesi(menu, true, 0).Refresh();
        quon.push_back(WallTime() - begin);
        begin = WallTime();
        const std::vector<std::string> paths = BareList();
        bare.push_back(WallTime() - begin);
        if (static_cast<int>(paths.size()) != menu.Count())
            throw std::runtime_error("The floor finds other programs: it does not do the same work");
    }
    table.Add("running programs, median", "ms", Median(quon), Median(bare), "ratio 1.2");
    table.Add("running programs, fastest", "ms", Fastest(quon), Fastest(bare), "");
}

}  // namespace bench
