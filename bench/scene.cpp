#include "bench/scene.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

#include "tests/support/paths.h"
#include "win/handles.h"

namespace bench {
namespace {

constexpr size_t kProgramCount = 7;

/// Programs of Windows or Wine that have icons; not every system has all of them.
std::vector<std::string> Programs() {
    static constexpr std::array kCandidates{
        "notepad.exe",           "regedit.exe",           "system32\\taskmgr.exe",  "system32\\winemine.exe",
        "system32\\winecfg.exe", "system32\\control.exe", "system32\\winefile.exe", "system32\\msiexec.exe",
        "system32\\charmap.exe", "system32\\mstsc.exe",   "system32\\cmd.exe",      "explorer.exe"};
    char windows[MAX_PATH]{};
    GetWindowsDirectoryA(windows, MAX_PATH);
    std::vector<std::string> found;
    for (const char* candidate : kCandidates) {
        const std::string path = std::string(windows) + "\\" + candidate;
        const bool hasIcon = ExtractIconExA(path.c_str(), -1, nullptr, nullptr, 1) > 0;
        if (testkit::FileExists(path) && hasIcon) found.push_back(path);
        if (found.size() == kProgramCount) return found;
    }
    throw std::runtime_error("This system has too few programs with icons");
}

}  // namespace

void MakeOld(const std::string& path) {
    constexpr ULONGLONG kHour = 36'000'000'000;  // in units of 100 ns
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    const ULONGLONG ago = (static_cast<ULONGLONG>(now.dwHighDateTime) << 32) + now.dwLowDateTime - kHour;
    const FILETIME time{static_cast<DWORD>(ago), static_cast<DWORD>(ago >> 32)};
    const win::File file(CreateFileA(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (SetFileTime(file.Get(), nullptr, nullptr, &time) == 0)
        throw std::runtime_error("The age of " + path + " cannot be set");
}

Scene::Scene() {
    quon_ = folder_.CopyIn(testkit::QuonExe());
    floor_ = folder_.CopyIn(testkit::TestProgramFolder() + "\\quon_bench_floor.exe");
    std::vector<std::string> targets = Programs();
    targets.push_back(folder_.MakeFile("targets\\Notes.ini", std::string(3000, 'n')));
    targets.push_back(folder_.MakeFile("targets\\Plan.ini", std::string(70, 'p')));
    for (SceneTab& tab : tabs_) {
        const bool first = &tab == &tabs_.front();
        for (size_t index = 0; index < tab.size(); ++index) {
            tab.at(index).name = (first ? "Shortcut " : "Another shortcut ") + std::to_string(index + 1);
            tab.at(index).target = targets.at(index);
        }
        tab.at(2).switchText = "/x";
        std::reverse(targets.begin(), targets.end());
    }
    WriteIni();
    AgeIni();
}

void Scene::AgeIni() const { MakeOld(folder_.IniPath()); }

void Scene::WriteIni() const {
    std::string buttons = "[Buttons]\r\n";
    std::string cuts = "[Cuts]\r\n";
    std::string switches = "[Switch]\r\n";
    for (int tab = 1; tab <= model::kTabCount; ++tab)
        buttons += model::ButtonPlace{tab, 0}.Key() + "=Tab " + std::to_string(tab) + "|A tab\r\n";
    for (int tab = 1; tab <= static_cast<int>(tabs_.size()); ++tab) {
        for (int index = 1; index <= model::kButtonCount; ++index) {
            const SceneButton& button = Tab(tab).at(static_cast<size_t>(index) - 1);
            buttons += model::ButtonPlace{tab, index}.Key() + "=" + button.name + "|0\r\n";
            cuts += button.name + "=" + button.target + "\r\n";
            if (!button.switchText.empty()) switches += button.name + "=" + button.switchText + "\r\n";
        }
    }
    // Shown at the start, ended by the close button, no tips in the way.
    folder_.WriteIniText(
        "[Settings]\r\nMain=1,False,False,False,True,True,False,4,False,False,False\r\n"
        "poptf=False\r\npopdelay=500\r\nclickshow=False\r\n" +
        buttons + cuts + switches);
}

}  // namespace bench
