#include "model/launching.h"

#include <windows.h>

#include <shellapi.h>
#include <shlwapi.h>

#include <algorithm>
#include <array>
#include <vector>

#include "model/probe_file.h"
#include "sys/utility.h"
#include "win/message_ban.h"
#include "win/process_start.h"
#include "win/shell_call.h"
#include "win/text.h"

namespace model {
inline namespace m_Funkcije {

std::string DefaultBrowserPath;

namespace {

// Below this the answer of the shell's functions is an error code.
constexpr INT_PTR kFirstSuccess = 33;
constexpr DWORD kSettleTime = 500;  // milliseconds

/// Programs and links get the shell's default verb, everything else "Open". The comparison knows only the
/// lower-case forms.
bool TakesDefaultVerb(const std::string& item) {
    static constexpr std::array kProgramEndings{"exe", "bat", "com", "lnk"};
    return std::any_of(kProgramEndings.begin(), kProgramEndings.end(),
                       [&](const char* ending) { return item.ends_with(ending); });
}

bool OpenItems(const std::string& target, const std::vector<std::string>& items, int showCommand) {
    INT_PTR answer = 0;
    std::string folder;
    for (const std::string& item : items) {
        if (sys::IsUrl(item)) win::OpenInShell(nullptr, target.c_str(), nullptr, "", SW_SHOWNORMAL);
        // An item without a folder is opened in that of the item before it.
        if (item.find('\\') != std::string::npos) folder = sys::PathPart(item, sys::kFolder);
        const char* verb = TakesDefaultVerb(item) ? "" : "Open";
        answer = win::OpenInShell(verb, item.c_str(), "", folder.c_str(), showCommand);
    }
    return answer >= kFirstSuccess;
}

}  // namespace

void FindDefaultBrowser() {
    const ProbeFile probe("temphtm.HTM", "<HTML> <\\HTML>");
    DefaultBrowserPath = FindAssociatedExe(probe.Path());
}

std::string FindAssociatedExe(const std::string& path) {
    // The function is given no size: room for a full path of characters of several bytes.
    std::array<char, 4 * MAX_PATH> buffer{};
    buffer.fill(' ');
    buffer.back() = '\0';
    const auto answer = reinterpret_cast<INT_PTR>(FindExecutableA(path.c_str(), nullptr, buffer.data()));
    std::string program;
    if (static_cast<short>(answer) >= kFirstSuccess) program = buffer.data();
    if (program.empty() && sys::IsUrl(path)) program = DefaultBrowserPath;
    return program;
}

std::string LaunchTarget(std::string& target, bool isGroup, int& showCommand, const std::string& switchText) {
    win::AssertMayPump("LaunchTarget");
    if (showCommand == 0) showCommand = SW_SHOWNORMAL;
    std::string result;
    if (!switchText.empty()) {
        // No quotes around the target: a path with blanks is passed as it stands.
        target += " " + switchText;
        win::StartProcess(target, SW_SHOWNORMAL);
    } else {
        const auto items = isGroup ? win::Split(target, '|') : std::vector<std::string>{target};
        if (OpenItems(target, items, showCommand)) result = "OK";
    }
    Sleep(kSettleTime);
    return result;
}

}  // namespace m_Funkcije
}  // namespace model
