#include "model/collected_apps.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "config/ini.h"
#include "config/ini_unit.h"
#include "model/launching.h"
#include "model/probe_file.h"
#include "model/storable_name.h"
#include "model/text_shortcut.h"
#include "sys/utility.h"
#include "win/text.h"
#include "win/window.h"

namespace model {
namespace {

constexpr size_t kLongestKeyName = 255;  // characters, which may take four bytes each

/// Whether the extension can end a file's name. With a separator or a ":" in it the probe would be a
/// different file than it seems, perhaps one of the user's.
bool CanEndFileName(const std::string& extension) {
    return extension.find_first_of("\\/:*?\"<>|") == std::string::npos &&
           std::none_of(extension.begin(), extension.end(),
                        [](char character) { return static_cast<unsigned char>(character) < 0x20; });
}

bool EndsWithExe(const std::string& path) {
    constexpr std::string_view kEnding = ".exe";
    return path.size() >= kEnding.size() &&
           win::EqualIgnoringCase(path.substr(path.size() - kEnding.size()), kEnding);
}

}  // namespace

bool clsCollectedApps::CreateAppList() {
    if (!win::ProcessPendingMessages()) return false;
    std::array<char, 4 * kLongestKeyName + 1> name{};
    for (DWORD index = 0;; ++index) {
        DWORD size = name.size();
        if (RegEnumKeyExA(HKEY_CLASSES_ROOT, index, name.data(), &size, nullptr, nullptr, nullptr, nullptr) !=
            ERROR_SUCCESS)
            break;
        // Up to its first NUL.
        const std::string key = name.data();
        if (key.starts_with('.')) CollectFor(key);
    }
    return Store();
}

bool clsCollectedApps::Store() const {
    // Only now, because the questions above may let messages run.
    config::IniUnit unit;
    for (const std::string& program : programs_)
        config::WriteIni(kCollectedSection, NameForTarget(program), program);
    return unit.Finish();
}

void clsCollectedApps::CollectFor(const std::string& extension) {
    if (!CanEndFileName(extension)) return;
    const ProbeFile probe("tempfile" + extension, "Tamo");
    if (!probe) return;
    const std::string program = FindAssociatedExe(probe.Path());
    if (IsNewProgram(program, probe.Path())) programs_.push_back(program);
}

bool clsCollectedApps::IsNewProgram(const std::string& answer, const std::string& probe) {
    if (!EndsWithExe(answer) || answer.find('\\') == std::string::npos) return false;
    // The answer for a program is the program itself, perhaps with its folder spelt differently. A path that
    // cannot be read back whole would open something else.
    const bool isProbe =
        win::EqualIgnoringCase(sys::PathPart(answer, sys::kFileName), sys::PathPart(probe, sys::kFileName));
    return !isProbe && answer.size() <= config::kLongestValue &&
           collected_.insert(win::UpperCase(answer)).second;
}

}  // namespace model
