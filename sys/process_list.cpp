#include "sys/process_list.h"

#include <psapi.h>
#include <tlhelp32.h>

#include <algorithm>
#include <array>
#include <iterator>

#include "sys/utility.h"
#include "win/foreground.h"
#include "win/handles.h"
#include "win/text.h"

namespace sys {
namespace {

constexpr size_t kWindowStep = 20;  // entries
// No title is longer, whatever a window claims.
constexpr DWORD_PTR kLongestTitle = 0xFFFF;
constexpr std::string_view kOwnTitles = "Quon";

/// The identifiers of all processes; the list is made larger until a part of it stays unused.
std::vector<DWORD> ProcessIds() {
    DWORD size = 8;  // bytes
    DWORD needed = 96;
    std::vector<DWORD> ids;
    while (size <= needed) {
        size *= 2;
        ids.assign(size / sizeof(DWORD), 0);
        EnumProcesses(ids.data(), size, &needed);
    }
    ids.resize(needed / sizeof(DWORD));
    return ids;
}

/// Finds the first module of a process, its executable; false when the process does not tell.
bool FirstModule(HANDLE process, HMODULE& module) {
    std::array<HMODULE, 1024 / sizeof(HMODULE)> first{};
    DWORD needed = 0;
    EnumProcessModules(process, first.data(), sizeof first, &needed);
    std::vector<HMODULE> modules(std::max<size_t>(needed / sizeof(HMODULE), 1));
    if (EnumProcessModules(process, modules.data(), needed, &needed) == FALSE) return false;
    module = modules.front();
    return true;
}

}  // namespace

clsProcesi::clsProcesi(win::MenuArray& menu, bool taskbarOnly, DWORD leftOut)
    : menu_(menu), taskbarOnly_(taskbarOnly), leftOut_(leftOut) {}

void clsProcesi::Refresh() {
    for (HWND window = GetTopWindow(nullptr); window != nullptr; window = GetWindow(window, GW_HWNDNEXT))
        if (IsTaskbarWindow(window)) AddWindow(window);
}

DWORD clsProcesi::GetVersion() {
    OSVERSIONINFOA version{};
    version.dwOSVersionInfoSize = sizeof version;
    std::fill(std::begin(version.szCSDVersion), std::end(version.szCSDVersion), ' ');
    GetVersionExA(&version);
    return version.dwPlatformId;
}

bool clsProcesi::IsTaskbarWindow(HWND window) {
    if (GetParent(window) != nullptr) return false;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): window data holds the owner as a number.
    const auto owner = reinterpret_cast<HWND>(GetWindowLongPtrA(window, GWLP_HWNDPARENT));
    if (owner != nullptr && !IsToolWindow(owner)) return false;
    return !IsToolWindow(window);
}

bool clsProcesi::IsToolWindow(HWND window) {
    return (GetWindowLongA(window, GWL_EXSTYLE) & WS_EX_TOOLWINDOW) != 0;
}

void clsProcesi::AddWindow(HWND window) {
    std::string title;
    if (!ReadTitle(window, title)) return;
    Record(window, title);
    if (!IsLeftOut(window, title)) AddProgram(GetExePath(window));
}

bool clsProcesi::ReadTitle(HWND window, std::string& title) const {
    // The wide form, because the 8-bit one may wait for a hung window without an end.
    DWORD_PTR length = 0;
    if (SendMessageTimeoutW(window, WM_GETTEXTLENGTH, 0, 0, SMTO_ABORTIFHUNG, Timeout, &length) == 0 ||
        length == 0)
        return false;
    std::wstring text(std::min(length, kLongestTitle), L'\0');
    DWORD_PTR copied = 0;
    // The text's own NUL is the buffer's last place.
    const LRESULT answered =
        SendMessageTimeoutW(window, WM_GETTEXT, text.size() + 1, reinterpret_cast<LPARAM>(text.data()),
                            SMTO_ABORTIFHUNG, Timeout, &copied);
    if ((IsWindowVisible(window) == FALSE || win::IsCloaked(window)) && taskbarOnly_) return false;
    title = win::ToBytes(text.c_str());
    return answered != 0;
}

void clsProcesi::Record(HWND window, const std::string& title) {
    if (windows_.size() == windows_.capacity()) windows_.reserve(windows_.size() + kWindowStep);
    windows_.push_back({window, title});
}

bool clsProcesi::IsLeftOut(HWND window, const std::string& title) const {
    if (title.starts_with(kOwnTitles)) return true;
    if (leftOut_ == 0) return false;
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    return process == leftOut_;
}

void clsProcesi::AddProgram(const std::string& path) {
    const std::string name = PathPart(path, kBareName);
    if (menuCount_ != 0) {
        for (int index = 0; index < menu_.Count(); ++index)
            if (menu_[index].caption == name) return;
    }
    win::MenuItem& item = menuCount_ == 0 ? menu_[0] : menu_.Load(menuCount_);
    if (menuCount_ != 0) item.visible = item.enabled = true;
    item.tag = path;
    item.caption = name;
    ++menuCount_;
}

std::string clsProcesi::GetExePath(HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    switch (GetVersion()) {
        case VER_PLATFORM_WIN32_WINDOWS: return ExePathToolhelp(process);
        case VER_PLATFORM_WIN32_NT: return ExePathPsapi(process);
        default: return {};
    }
}

std::string clsProcesi::ExePathToolhelp(DWORD process) {
    const win::KernelObject snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    // A failed snapshot is INVALID_HANDLE_VALUE, not null: it has no first entry, which ends the same way.
    if (!snapshot) return {};
    PROCESSENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32First(snapshot.Get(), &entry); more != FALSE;
         more = Process32Next(snapshot.Get(), &entry)) {
        if (entry.th32ProcessID != process) continue;
        lastProcessId_ = process;
        return win::Before(DropLastChar({entry.szExeFile, std::size(entry.szExeFile)}), '\0');
    }
    return {};
}

std::string clsProcesi::ExePathPsapi(DWORD process) {
    for (const DWORD id : ProcessIds()) {
        if (id != process) continue;
        const win::KernelObject opened(
            OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, process));
        HMODULE module = nullptr;
        if (!opened || !FirstModule(opened.Get(), module)) continue;
        std::array<char, 500> path{};
        path.fill(' ');
        const DWORD length =
            GetModuleFileNameExA(opened.Get(), module, path.data(), static_cast<DWORD>(path.size()));
        lastProcessId_ = process;
        return {path.data(), std::min<size_t>(length, path.size())};
    }
    return {};
}

std::string clsProcesi::DropLastChar(const std::string& text) {
    return text.substr(0, text.empty() ? 0 : text.size() - 1);
}

}  // namespace sys
