#include "config/ini.h"

#include <windows.h>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "config/file_bytes.h"
#include "config/ini_comments.h"
#include "config/ini_unit.h"
#include "win/errors.h"
#include "win/handles.h"
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

constexpr DWORD kStartPatience = 4000;  // milliseconds
bool g_starting = false;

[[noreturn]] void ThrowUnreadable(DWORD error) {
    throw win::RuntimeError(IsHeldError(error)
                                ? "Another program holds " + IniPath + ", so that Quon cannot read it"
                                : "Windows error " + std::to_string(error) + " keeps Quon from reading " +
                                      IniPath);
}

/// Whether a profile function that answered nothing, with this last error, has not read the file.
bool WasUnreadable(DWORD error) {
    // Which codes stand for a missing record differs from system to system.
    if (error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND) return false;
    if (IsHeldError(error)) return true;
    const win::File file(CreateFileA(FileToRead().c_str(), GENERIC_READ,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return !file && GetLastError() != ERROR_FILE_NOT_FOUND && GetLastError() != ERROR_PATH_NOT_FOUND;
}

/// What a profile function counts, called again while another program keeps the file from us; nothing when
/// the file could not be read.
template <class Call>
std::optional<DWORD> TryRead(Call call) {
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD count = call(FileToRead().c_str());
        const DWORD error = GetLastError();
        if (count != 0 || !WasUnreadable(error)) return count;
        if (MakeReadable(error)) continue;
        if (g_starting) ThrowUnreadable(error);
        return std::nullopt;
    }
}

/// The first `count` characters of a profile function's answer. Where a character of several bytes did not
/// fit, NULs in its place are counted too: they are no text.
std::string Answer(const std::string& buffer, size_t count) {
    // Where nothing is found, npos + 1 is 0.
    return count == 0 ? std::string() : buffer.substr(0, buffer.find_last_not_of('\0', count - 1) + 1);
}

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

/// Whether the section holds comment lines, which rewriting it would lose.
bool HasComments(const std::string& section) {
    const std::optional<std::string> bytes = ReadBytes(FileToRead());
    return bytes && SectionHasComments(*bytes, section);
}

/// What writing the entries one by one leaves in an empty section: of each value what stands before its first
/// "=", of equal keys the first spelling and the last value. The entry at index `doomed` is left out.
std::vector<std::string> WithoutEntry(const std::vector<std::string>& entries, size_t doomed) {
    std::vector<std::string> left;
    std::unordered_map<std::wstring, size_t> places;
    for (size_t index = 0; index < entries.size(); ++index) {
        if (index == doomed) continue;
        const std::vector<std::string> parts = win::Split(entries[index], '=');
        const auto [place, isNew] = places.try_emplace(win::UpperCase(parts[0]), left.size());
        if (isNew)
            left.push_back(parts[0] + "=" + parts[1]);
        else
            left[place->second] = win::Before(left[place->second], '=') + "=" + parts[1];
    }
    return left;
}

bool HasCutValue(const std::vector<std::string>& entries) {
    return std::any_of(entries.begin(), entries.end(), [](const std::string& entry) {
        return std::count(entry.begin(), entry.end(), '=') > 1;
    });
}

/// What a change answers that could not read what it is to change.
bool NothingDone() noexcept {
    IniUnit::Fail();
    return false;
}

}  // namespace

IniStart::IniStart() noexcept : patience_(kStartPatience) { g_starting = true; }

IniStart::~IniStart() { g_starting = false; }

std::optional<std::string> TryReadIniSection(const std::string& section) {
    std::string buffer(kSectionSize, '\0');
    const std::optional<DWORD> count = TryRead([&](const char* file) {
        return GetPrivateProfileSectionA(section.c_str(), buffer.data(), kSectionSize, file);
    });
    if (!count) return std::nullopt;
    if (*count == 0 || buffer.front() == '\0') return std::string();
    return Answer(buffer, *count - 1);
}

std::string ReadIniSection(const std::string& section) {
    return TryReadIniSection(section).value_or(std::string());
}

std::optional<std::string> TryReadIni(const std::string& section, const std::string& key) {
    std::string buffer(kValueBuffer, '\0');
    const std::optional<DWORD> count = TryRead([&](const char* file) {
        return GetPrivateProfileStringA(section.c_str(), key.c_str(), "", buffer.data(), kValueSize, file);
    });
    if (!count) return std::nullopt;
    return Answer(buffer, *count);
}

std::string ReadIni(const std::string& section, const std::string& key) {
    return TryReadIni(section, key).value_or(std::string());
}

bool WriteIni(const std::string& section, const std::string& key, const std::string& value) {
    return CarryOut({section, key, value});
}

bool WriteIniSection(const std::string& section, const std::string& data) {
    // The NUL added here ends the last entry, the string's own the list.
    return CarryOut({section, std::nullopt, data + '\0'});
}

bool WasCut(const std::string& sectionText) { return sectionText.size() + kSectionSlack >= kSectionSize; }

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

bool DeleteIniKey(const std::string& section, const std::string& key) {
    if (IniUnit::HasFailed()) return false;
    const std::optional<std::string> text = TryReadIniSection(section);
    if (!text) return NothingDone();
    const std::vector<std::string> entries = SectionEntries(*text);
    for (const std::string& entry : entries)
        if (entry.find('=') == std::string::npos) throw win::SubscriptError(NotAnEntry(section, entry));
    size_t doomed = 0;
    const auto match = std::find_if(entries.begin(), entries.end(),
                                    [&](const std::string& entry) { return win::Before(entry, '=') == key; });
    if (match != entries.end()) doomed = static_cast<size_t>(match - entries.begin());
    return WriteIniSection(section, win::Join(WithoutEntry(entries, doomed), '\0'));
}

bool RemoveRecord(const std::string& section, const std::string& key) {
    if (IniUnit::HasFailed()) return false;
    const std::optional<std::string> text = TryReadIniSection(section);
    if (!text) return NothingDone();
    const std::vector<std::string> entries = SectionEntries(*text);
    // Nor can a section be rewritten that was not read to its end, or that holds more than entries. Windows
    // takes out the one key.
    const bool cut = WasCut(*text) || !CanBeRewritten(entries, key);
    const auto match = std::find_if(entries.begin(), entries.end(), [&](const std::string& entry) {
        return win::EqualIgnoringCase(win::Before(entry, '='), key);
    });
    if (cut ? key.empty() : match == entries.end()) return true;
    if (cut || (!key.empty() && HasComments(section))) return CarryOut({section, key, std::nullopt});
    IniUnit unit;
    if (!DeleteIniKey(section, win::Before(*match, '='))) return false;
    // Values were cut at their "=".
    std::vector<std::string> left = entries;
    left.erase(left.begin() + (match - entries.begin()));
    if (HasCutValue(left) && !WriteIniSection(section, win::Join(left, '\0'))) return false;
    return unit.Finish();
}

}  // namespace config
