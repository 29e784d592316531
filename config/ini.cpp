#include "config/ini.h"

#include <windows.h>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "config/file_bytes.h"
#include "config/file_state.h"
#include "config/ini_text.h"
#include "config/ini_unit.h"
#include "config/patience.h"
#include "win/errors.h"
#include "win/handles.h"
#include "win/text.h"

namespace config {
inline namespace m_Ini {

std::string IniPath;

namespace {

constexpr DWORD kSectionSize = 20000;
// A section that was cut short comes back at most this much shorter than the buffer: two NULs, the NUL of the
// last entry, and a character of several bytes that did not fit.
constexpr size_t kSectionSlack = 8;
// The buffer is larger than the size that is passed, which counts the NUL too.
constexpr size_t kValueBuffer = 1000;
constexpr DWORD kValueSize = kLongestValue + 1;

constexpr DWORD kStartPatience = 4000;  // milliseconds, as are the others
bool g_starting = false;

constexpr DWORD kGap = 1000;
constexpr DWORD kGapPause = 20;
ULONGLONG g_gapWaited = 0;

/// Waits a moment, at most a second in all during a start, for a file that another program is just saving and
/// that is missing, empty or not whole meanwhile. True when the caller is to look again.
bool WaitForWholeFile() {
    if (!g_starting || g_gapWaited >= kGap) return false;
    const ULONGLONG begin = GetTickCount64();
    Sleep(kGapPause);
    g_gapWaited += std::max<ULONGLONG>(kGapPause, GetTickCount64() - begin);
    return true;
}

[[noreturn]] void ThrowUnreadable(DWORD error) {
    throw win::RuntimeError(IsHeldError(error)
                                ? "Another program holds " + IniPath + ", so that Quon cannot read it"
                                : "Windows error " + std::to_string(error) + " keeps Quon from reading " +
                                      IniPath);
}

/// The record that every whole configuration file has, and the last state that was seen to have it.
struct Required {
    std::string Path;
    std::string Section;
    std::string Key;
    FileState Seen;
};
Required g_required;

/// What it means when a profile function answers nothing.
enum class Nothing {
    kNoRecord,
    kNoFile,      ///< there is no file, nothing in it, or not yet all of it
    kUnreadable,  ///< the file is kept from us
    kChanged,     ///< the file is another one than when it was last looked at
    kUnclear      ///< the file is kept from us, or there is no such record
};

bool HasRequired() {
    std::string buffer(kValueBuffer, '\0');
    return GetPrivateProfileStringA(g_required.Section.c_str(), g_required.Key.c_str(), "", buffer.data(),
                                    kValueSize, IniPath.c_str()) != 0;
}

/// What the file itself says by the way it looks now: some programs empty it, or write it bit by bit.
Nothing MeaningOfFile() {
    const std::optional<FileState> state = StateOf(FileToRead());
    if (!state) {
        const DWORD error = GetLastError();
        const bool none = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
        return none ? Nothing::kNoFile : Nothing::kNoRecord;
    }
    // A unit's own file may well be empty.
    if (FileToRead() != IniPath) return Nothing::kNoRecord;
    if (state->Size == 0) return Nothing::kNoFile;
    if (!WasWhole() || g_required.Seen == *state) return Nothing::kNoRecord;
    if (!HasRequired()) return Nothing::kNoFile;
    g_required.Seen = *state;
    // It is whole by now: it may not have been so a moment ago.
    return Nothing::kChanged;
}

/// The file that is read, in everybody's company; none while another program keeps it to itself.
win::File OpenToRead() {
    return win::File(CreateFileA(FileToRead().c_str(), GENERIC_READ,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

Nothing MeaningOf(DWORD error) {
    if (IsHeldError(error)) return Nothing::kUnreadable;
    if (const Nothing meaning = MeaningOfFile(); meaning != Nothing::kNoRecord) return meaning;
    // Which codes stand for a missing record differs from system to system.
    if (error == ERROR_SUCCESS || error == ERROR_FILE_NOT_FOUND) return Nothing::kNoRecord;
    const win::File file = OpenToRead();
    return file ? Nothing::kUnclear : Nothing::kUnreadable;
}

/// The count that a profile function answers; it is called again while another program keeps the file from
/// us. Nothing when the file could not be read.
template <class Call>
std::optional<DWORD> TryRead(Call call) {
    bool waited = false;
    bool askedTwice = false;
    int changes = 0;
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD count = call(FileToRead().c_str());
        const DWORD error = GetLastError();
        if (count != 0) {
            if (waited) ForgetWaiting();
            return count;
        }
        const Nothing meaning = MeaningOf(error);
        if (meaning == Nothing::kNoRecord) return count;
        if (g_starting && meaning == Nothing::kNoFile) {
            if (WaitForWholeFile()) continue;
            // A start reports by itself what is missing in the file.
            return count;
        }
        if (meaning == Nothing::kChanged) {
            constexpr int kMostChanges = 4;
            if (++changes > kMostChanges) return std::nullopt;
            continue;
        }
        if (meaning == Nothing::kUnclear) {
            // The file can be read now, so this answer counts.
            if (std::exchange(askedTwice, true)) return count;
            continue;
        }
        if (MakeReadable(error)) {
            waited = true;
            continue;
        }
        if (g_starting && meaning == Nothing::kUnreadable) ThrowUnreadable(error);
        return std::nullopt;
    }
}

/// The first `count` characters of a profile function's answer. Where a character of several bytes did not
/// fit, NULs in its place are counted too: they are no text.
std::string Answer(const std::string& buffer, size_t count) {
    // Where nothing is found, npos + 1 is 0.
    return count == 0 ? std::string() : buffer.substr(0, buffer.find_last_not_of('\0', count - 1) + 1);
}

/// Whether the mark of UTF-8 stands before the line that begins this section.
bool HidesFirstSection(std::string_view bytes, const std::string& section) {
    const std::string first = '[' + section + ']';
    return bytes.starts_with(kUtf8Mark) &&
           win::UpperCase(bytes.substr(kUtf8Mark.size(), first.size())) == win::UpperCase(first);
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

/// Whether the section holds comment lines, as far as can be told, which rewriting it would lose.
bool HasComments(const std::string& section) {
    const std::optional<std::string> bytes = ReadBytes(FileToRead());
    return !bytes || SectionHasComments(*bytes, section);
}

/// What an empty section holds after the entries have been written into it one by one: of each value the text
/// before its first "=", of equal keys the first spelling and the last value. The entry at index `doomed` is
/// left out.
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

/// A write of the whole section; the NUL added here ends the last entry, the string's own the list.
IniWrite SectionWrite(const std::string& section, const std::vector<std::string>& entries) {
    return {section, std::nullopt, win::Join(entries, '\0') + '\0'};
}

/// How a record is to be taken out of a section.
struct Removal {
    enum Kind {
        kNothing,   ///< there is no such record
        kByKey,     ///< Windows takes out the one key: the section cannot be rewritten
        kByRewrite  ///< the section is written without the entry
    };
    Kind What = kNothing;
    std::string Key = {};  ///< as it is spelled in the file, as far as that could be read
    std::vector<std::string> Entries = {};
    size_t Index = 0;  ///< of the entry, where the section is rewritten
};

Removal FindRemoval(const std::string& sectionText, const std::string& key) {
    const std::vector<std::string> entries = SectionEntries(sectionText);
    const auto match = std::find_if(entries.begin(), entries.end(), [&](const std::string& entry) {
        return win::EqualIgnoringCase(win::Before(entry, '='), key);
    });
    const std::string stored = match == entries.end() ? key : win::Before(*match, '=');
    // A section that was not read to its end, or that holds more than entries, cannot be rewritten either.
    if (WasCut(sectionText) || !CanBeRewritten(entries, key))
        return {key.empty() ? Removal::kNothing : Removal::kByKey, stored};
    if (match == entries.end()) return {};
    return {Removal::kByRewrite, stored, entries, static_cast<size_t>(match - entries.begin())};
}

/// The answer of a change that could not read what it is to change.
bool NothingDone() noexcept {
    IniUnit::Fail();
    return false;
}

/// Takes the record out in the open unit. What is left of the section is what is read here, at once: another
/// program's changes between two readings could make them fit together badly.
bool TakeOut(const std::string& section, const std::string& key) {
    const std::optional<std::string> text = TryReadIniSection(section);
    if (!text) return NothingDone();
    const Removal removal = FindRemoval(*text, key);
    if (removal.What == Removal::kNothing) return true;
    // Where the file itself is written, it would for a moment hold values that are cut at their "=".
    if (removal.What == Removal::kByKey ||
        (!key.empty() && (IniUnit::WritesItself() || HasComments(section))))
        return CarryOut({section, removal.Key, std::nullopt});
    // What other programs add meanwhile is not in what was read: then only the one record is taken out.
    const unsigned reading = IniUnit::TimesMade();
    IniWrite write = SectionWrite(section, WithoutEntry(removal.Entries, removal.Index));
    write.Otherwise = IniWrite::InNewFile{reading, removal.Key};
    if (!CarryOut(std::move(write))) return false;
    // Values were cut at their "=".
    std::vector<std::string> left = removal.Entries;
    left.erase(left.begin() + static_cast<std::ptrdiff_t>(removal.Index));
    if (!HasCutValue(left)) return true;
    write = SectionWrite(section, left);
    write.Otherwise = IniWrite::InNewFile{reading, ""};
    return CarryOut(std::move(write));
}

}  // namespace

IniStart::IniStart() noexcept : patience_(kStartPatience) {
    g_starting = true;
    g_gapWaited = 0;
}

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
    std::string value = Answer(buffer, *count);
    // Blanks at the end are not part of a value, but those before a part that did not fit are given.
    if (*count + 1 >= kValueSize) value.resize(value.find_last_not_of(' ') + 1);
    return value;
}

std::optional<std::string> ReadIniForCertain(const std::string& section, const std::string& key) {
    // While it is open here, nobody can keep it from being read.
    const win::File file = OpenToRead();
    if (!file && IsHeldError(GetLastError())) return std::nullopt;
    return TryReadIni(section, key);
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

std::string ReadRequired(const std::string& section, const std::string& key) {
    // Before it is read: what is written meanwhile is looked at anew.
    const FileState state = StateOf(IniPath).value_or(FileState{});
    std::string value = ReadIni(section, key);
    if (!value.empty()) g_required = {IniPath, section, key, state};
    return value;
}

void AwaitRequired(const std::string& section, const std::string& key) {
    for (;;) {
        // Before it is read, as above.
        const FileState state = StateOf(IniPath).value_or(FileState{});
        const std::optional<std::string> bytes = ReadBytes(IniPath);
        if (bytes && SectionHasKey(*bytes, section, key)) {
            g_required = {IniPath, section, key, state};
            // Windows does not see the section that begins behind the mark.
            if (HidesFirstSection(*bytes, section) && ReadIni(section, key).empty()) RemoveUtf8Mark();
            return;
        }
        // A file that is held is waited for when it is read.
        if ((!bytes && StateOf(IniPath)) || !WaitForWholeFile()) return;
    }
}

bool WasWhole() { return g_required.Path == IniPath; }

bool IsWhole() {
    const std::optional<FileState> state = StateOf(IniPath);
    return !WasWhole() || (state && *state == g_required.Seen) || HasRequired();
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
    // An empty section needs no emptying; and it might be one that was not read.
    if (entries.empty()) return true;
    size_t doomed = 0;
    const auto match = std::find_if(entries.begin(), entries.end(),
                                    [&](const std::string& entry) { return win::Before(entry, '=') == key; });
    if (match != entries.end()) doomed = static_cast<size_t>(match - entries.begin());
    return CarryOut(SectionWrite(section, WithoutEntry(entries, doomed)));
}

bool RemoveRecord(const std::string& section, const std::string& key) {
    if (IniUnit::HasFailed()) return false;
    // A first look: where there is nothing to take out, no file is made.
    const std::optional<std::string> text = TryReadIniSection(section);
    if (!text) return NothingDone();
    if (FindRemoval(*text, key).What == Removal::kNothing) return true;
    IniUnit unit;
    return IniUnit::BeginWriting() && TakeOut(section, key) && unit.Finish();
}

}  // namespace m_Ini
}  // namespace config
