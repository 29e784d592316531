#include "model/text_shortcut.h"

#include <windows.h>

#include <shlobj.h>
#include <shlwapi.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <unordered_set>
#include <utility>

#include "config/ini.h"
#include "config/settings.h"
#include "model/launching.h"
#include "model/shortcut_store.h"
#include "sys/shell_folders.h"
#include "win/handles.h"
#include "win/process_start.h"
#include "win/text.h"

namespace model {
namespace {

/// The default value of a key under HKEY_LOCAL_MACHINE; "" when it cannot be read.
std::string ReadDefaultValue(const std::string& path) {
    HKEY opened = nullptr;
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) return {};
    const win::RegistryKey key(opened);
    // One byte more than is offered, so that a value without its terminator still ends.
    std::array<char, 261> value{};
    DWORD size = value.size() - 1;
    if (RegQueryValueExA(key.Get(), nullptr, nullptr, nullptr, reinterpret_cast<BYTE*>(value.data()),
                         &size) != ERROR_SUCCESS)
        return {};
    return value.data();
}

/// Every occurrence of `pattern`, in whatever case, replaced.
std::string ReplaceIgnoringCase(const std::string& text, const std::string& pattern,
                                const std::string& replacement) {
    std::string result;
    size_t at = 0;
    while (at < text.size()) {
        if (win::EqualIgnoringCase(text.substr(at, pattern.size()), pattern)) {
            result += replacement;
            at += pattern.size();
        } else {
            result += text[at++];
        }
    }
    return result;
}

/// Each name once, ignoring case, where it stands first. All of them are put into upper case at once, which
/// one by one takes many times as long.
std::vector<std::string> WithoutDuplicates(std::vector<std::string> names) {
    const std::wstring upper = win::UpperCase(win::Join(names, '\0'));
    std::wstring_view rest = upper;
    std::unordered_set<std::wstring_view> met(names.size());
    std::vector<std::string> distinct;
    distinct.reserve(names.size() + 1);
    for (std::string& name : names) {
        const std::wstring_view spelling = rest.substr(0, rest.find(L'\0'));
        rest.remove_prefix(std::min(spelling.size() + 1, rest.size()));
        if (met.insert(spelling).second) distinct.push_back(std::move(name));
    }
    return distinct;
}

std::string TwoDigits(int number) {
    const std::string text = std::to_string(number);
    return text.size() == 1 ? "0" + text : text;
}

FireResult SearchFor(const std::string& query) {
    const std::string tool = win::ProgramFolder() + "\\QSU.exe";
    if (PathFileExistsA(tool.c_str()) == 0) return FireResult::kSearchToolMissing;
    win::StartProcess("\"" + tool + "\" \"" + query + "\"", SW_SHOWNORMAL);
    return FireResult::kDone;
}

void Launch(std::string target, bool isGroup) {
    int showCommand = 0;
    LaunchTarget(target, isGroup, showCommand, "");
}

}  // namespace

std::string SearchToolMessage() {
    return "You need to have Quon Search Utility to execute this command.\n\n"
           "You can download it from Quon's web site.";
}

std::vector<std::string> TextShortcutNames(const std::string& collected, const std::string& cuts,
                                           bool showCollected) {
    std::vector<std::string> names;
    if (showCollected) names = config::SectionEntries(collected);
    std::vector<std::string> shortcuts = config::SectionEntries(cuts);
    std::erase_if(shortcuts, [](const std::string& entry) { return entry.find('=') == std::string::npos; });
    names.insert(names.end(), std::make_move_iterator(shortcuts.begin()),
                 std::make_move_iterator(shortcuts.end()));
    for (std::string& name : names)
        name.resize(std::min(name.find('='), name.size()));
    names = WithoutDuplicates(std::move(names));
    names.emplace_back(kRefreshItem);
    return names;
}

std::string UptimeText(std::uint32_t ticks) {
    const std::uint32_t seconds = ticks / 1000 + (ticks % 1000 >= 500 ? 1 : 0);
    const int hours = static_cast<int>(seconds / 3600);
    const int minutes = static_cast<int>(seconds / 60) - hours * 60;
    return TwoDigits(hours) + " hours and " + TwoDigits(minutes) + " minutes.";
}

std::string CTextShortcut::CreateShortcutString(const std::string& section) {
    return config::ListIniKeys(section);
}

bool CTextShortcut::FillCombo() {
    if (list_ == nullptr) return true;
    const bool showCollected = config::Settings.ShowCollected;
    const auto collected = showCollected ? config::TryReadIniSection(kCollectedSection) : std::string();
    const auto cuts = ShortcutStore::Entries();
    if (!collected || !cuts) return false;
    list_->SetItems(TextShortcutNames(*collected, *cuts, showCollected));
    return true;
}

FireResult CTextShortcut::FireShortcut(const std::string& name) {
    if (name.starts_with('?')) return SearchFor(name.substr(1));
    const auto program = config::TryReadIni(kCollectedSection, name);
    if (!program) return FireResult::kUnread;
    if (!program->empty()) {
        Launch(*program, false);
        return FireResult::kDone;
    }
    const auto target = ShortcutStore::Target(name);
    if (!target) return FireResult::kUnread;
    if (target->empty())
        win::StartProcess("rundll32.exe url.dll,FileProtocolHandler " + name, SW_SHOWNORMAL);
    else
        Launch(*target, target->find('|') != std::string::npos);
    return FireResult::kDone;
}

void CTextShortcut::LauchMail() {
    const std::string clients = "Software\\Clients\\Mail";
    const std::string client = ReadDefaultValue(clients);
    std::string command = ReadDefaultValue(clients + "\\" + client + "\\shell\\open\\command");
    command =
        ReplaceIgnoringCase(command, "%ProgramFiles%", sys::clsShell::GetSpecialfolder(CSIDL_PROGRAM_FILES));
    win::StartProcess(win::Before(command, ','), SW_SHOWMINIMIZED);
}

std::string CTextShortcut::HowLong() { return UptimeText(GetTickCount()); }

}  // namespace model
