#include "config/ini.h"

#include <windows.h>

#include <algorithm>
#include <unordered_set>

#include "config/ini_guard.h"
#include "win/errors.h"
#include "win/text.h"

namespace config {

std::string IniPath;

namespace {

constexpr DWORD kSectionSize = 20000;
// A section that was cut short comes back at most this much shorter than the buffer: two NULs, the NUL of the
// last entry, and a character of several bytes that did not fit.
constexpr size_t kSectionSlack = 8;
// The buffer is larger than the size that is passed, which counts the NUL too.
constexpr size_t kValueBuffer = 1000;
constexpr DWORD kValueSize = kLongestValue + 1;

// A virus scanner or a backup lets go of the file soon.
constexpr int kAttempts = 3;
constexpr DWORD kAttemptPause = 20;  // milliseconds

/// Calls a profile function, and again while another program has the file open for itself. Its 0 says that
/// nothing was read or written; why, only the last error says, which a success leaves alone.
template <class Call>
DWORD Patiently(Call call) {
    for (int attempt = 1;; ++attempt) {
        SetLastError(ERROR_SUCCESS);
        const auto answer = static_cast<DWORD>(call());
        const DWORD error = GetLastError();
        const bool held = error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION;
        if (answer != 0 || !held || attempt == kAttempts) return answer;
        Sleep(kAttemptPause);
    }
}

/// Stores a value; null takes the key out.
void WriteValue(const std::string& section, const std::string& key, const char* value) {
    IniGuard().Write([&] {
        return Patiently(
            [&] { return WritePrivateProfileStringA(section.c_str(), key.c_str(), value, IniPath.c_str()); });
    });
}

/// The first `count` characters of a profile function's answer. Where a character of several bytes did not
/// fit, NULs in its place are counted too: they are no text.
std::string Answer(const std::string& buffer, size_t count) {
    // Where nothing is found, npos + 1 is 0.
    return count == 0 ? std::string() : buffer.substr(0, buffer.find_last_not_of('\0', count - 1) + 1);
}

/// Whether a section's text was cut because the section is too long.
bool WasCut(const std::string& sectionText) { return sectionText.size() + kSectionSlack >= kSectionSize; }

/// Whether rewriting the section entry by entry without `key` gives back all the others: a line that is no
/// entry stops it, one without a name would be lost, and of a double key only the last value would be left.
bool CanBeRewritten(const std::vector<std::string>& entries, const std::string& key) {
    std::unordered_set<std::wstring> keys;
    return std::all_of(entries.begin(), entries.end(), [&](const std::string& entry) {
        const size_t end = entry.find('=');
        return end != std::string::npos && (end > 0 || key.empty()) &&
               keys.insert(win::UpperCase(win::Before(entry, '='))).second;
    });
}

std::string NotAnEntry(const std::string& section, const std::string& entry) {
    return "Section \"" + section + "\" of " + IniPath + " has an entry without \"=\": " + entry;
}

}  // namespace

std::string ReadIniSection(const std::string& section) {
    std::string buffer(kSectionSize, '\0');
    const DWORD count = Patiently([&] {
        return GetPrivateProfileSectionA(section.c_str(), buffer.data(), kSectionSize, IniPath.c_str());
    });
    if (count == 0 || buffer.front() == '\0') return {};
    return Answer(buffer, count - 1);
}

std::string ReadIni(const std::string& section, const std::string& key) {
    std::string buffer(kValueBuffer, '\0');
    const DWORD count = Patiently([&] {
        return GetPrivateProfileStringA(section.c_str(), key.c_str(), "", buffer.data(), kValueSize,
                                        IniPath.c_str());
    });
    return Answer(buffer, count);
}

void WriteIni(const std::string& section, const std::string& key, const std::string& value) {
    WriteValue(section, key, value.c_str());
}

void WriteIniSection(const std::string& section, const std::string& data) {
    // The NUL added here ends the last entry, the string's own the list.
    const std::string list = data + '\0';
    IniGuard().Write([&] {
        return Patiently(
            [&] { return WritePrivateProfileSectionA(section.c_str(), list.c_str(), IniPath.c_str()); });
    });
}

std::vector<std::string> SectionEntries(const std::string& sectionText) {
    if (sectionText.empty()) return {};
    return win::Split(sectionText, '\0');
}

std::string ListIniKeys(const std::string& section) {
    const std::string text = ReadIniSection(section);
    std::vector<std::string> keys = SectionEntries(text);
    // An entry that was cut before its "=" is no fault of the file.
    if (WasCut(text) && keys.back().find('=') == std::string::npos) keys.pop_back();
    for (std::string& entry : keys) {
        const size_t end = entry.find('=');
        if (end == std::string::npos) throw win::InvalidArgumentError(NotAnEntry(section, entry));
        entry.resize(end);
    }
    return win::Join(keys, '|');
}

void DeleteIniKey(const std::string& section, const std::string& key) {
    const std::vector<std::string> entries = SectionEntries(ReadIniSection(section));
    // Checked before the section is emptied, so that a bad entry costs no record.
    for (const std::string& entry : entries)
        if (entry.find('=') == std::string::npos) throw win::SubscriptError(NotAnEntry(section, entry));
    size_t doomed = 0;
    const auto match = std::find_if(entries.begin(), entries.end(),
                                    [&](const std::string& entry) { return win::Before(entry, '=') == key; });
    if (match != entries.end()) doomed = static_cast<size_t>(match - entries.begin());
    const IniGuard guard;
    WriteIniSection(section, "");
    for (size_t index = 0; index < entries.size(); ++index) {
        if (index == doomed) continue;
        const std::vector<std::string> parts = win::Split(entries[index], '=');
        WriteIni(section, parts[0], parts[1]);
    }
}

void RemoveRecord(const std::string& section, const std::string& key) {
    const std::string text = ReadIniSection(section);
    const std::vector<std::string> entries = SectionEntries(text);
    if (WasCut(text) || !CanBeRewritten(entries, key)) {
        // Nor can a section be rewritten that was not read to its end. Windows takes out the one key.
        if (!key.empty()) WriteValue(section, key, nullptr);
        return;
    }
    const auto match = std::find_if(entries.begin(), entries.end(), [&](const std::string& entry) {
        return win::EqualIgnoringCase(win::Before(entry, '='), key);
    });
    if (match == entries.end()) return;
    const IniGuard guard;
    DeleteIniKey(section, win::Before(*match, '='));
    // Values were cut at their "=", and each step may have failed.
    const std::vector<std::string> left = SectionEntries(ReadIniSection(section));
    const std::unordered_set<std::string> whole(left.begin(), left.end());
    for (const std::string& entry : entries)
        if (&entry != &*match && !whole.contains(entry))
            WriteIni(section, win::Before(entry, '='), win::After(entry, '='));
}

}  // namespace config
