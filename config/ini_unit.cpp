#include "config/ini_unit.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "config/file_bytes.h"
#include "config/ini.h"
#include "config/patience.h"
#include "config/side_file.h"
#include "win/message_ban.h"
#include "win/trace.h"

namespace config {
namespace {

enum class Way {
    kNotYet,    ///< nothing has been written so far
    kSideFile,  ///< a side file takes the writes
    kItself     ///< there can be none: the file itself takes them
};

/// How often a unit is started again after other programs have changed its files.
constexpr int kRemakes = 4;

/// How long to wait for a held file when a change to the file itself has to be taken back: a long wait is
/// better than a file with half a change in it. In milliseconds.
constexpr DWORD kTakeBackPatience = 1000;

/// The open unit, with all that it takes to carry it out once more.
struct OpenUnit {
    int depth = 0;
    bool failed = false;
    Way way = Way::kNotYet;
    int remakes = 0;
    unsigned timesMade = 0;
    SideFile side;
    std::vector<IniWrite> writes;
    bool hasCondition = false;
    std::optional<FileState> condition;  ///< the state of the file that the unit is made for
    std::optional<std::string> before;   ///< what the file held, where it takes the writes itself
    std::optional<win::MessageBan> ban;
};

OpenUnit g_unit;

/// The one file that holds everything, when Windows stopped halfway while putting it into its place.
std::string g_stranded;

bool IsStranded() noexcept {
    return !g_stranded.empty() && GetFileAttributesA(IniPath.c_str()) == INVALID_FILE_ATTRIBUTES;
}

const std::string& FileToWrite() noexcept {
    return g_unit.way == Way::kSideFile ? g_unit.side.Path() : IniPath;
}

bool CallProfileFunction(const IniWrite& write);

bool CallInNewFile(const std::string& section, const std::string& key) {
    return key.empty() || CallProfileFunction({section, key, std::nullopt});
}

/// Takes away the mark of UTF-8 that some editors put before the first line: Windows does not see the section
/// that begins in that line, and would add another one.
bool TakeAwayUtf8Mark(const SideFile& side) {
    if (!side.HadUtf8Mark()) return true;
    const std::string& path = side.Path();
    const std::optional<std::string> bytes = ReadBytes(path);
    return bytes && bytes->starts_with(kUtf8Mark) && WriteBytes(path, bytes->substr(kUtf8Mark.size()));
}

bool CallProfileFunction(const IniWrite& write) {
    // The new file has been made without the mark; the file itself is not written for that alone.
    if (write.Section.empty()) return g_unit.way == Way::kSideFile;
    if (write.Otherwise && write.Otherwise->Reading != g_unit.timesMade)
        return CallInNewFile(write.Section, write.Otherwise->Key);
    const char* file = FileToWrite().c_str();
    const char* text = write.Text ? write.Text->c_str() : nullptr;
    if (g_unit.way == Way::kSideFile && g_unit.side.IsGone()) {
        // The profile function would make a new file with nothing but this in it.
        SetLastError(ERROR_FILE_NOT_FOUND);
        return false;
    }
    SetLastError(ERROR_SUCCESS);
    if (write.Key)
        return win::Traced(WritePrivateProfileStringA(write.Section.c_str(), write.Key->c_str(), text, file),
                           "WritePrivateProfileStringA") != 0;
    return win::Traced(WritePrivateProfileSectionA(write.Section.c_str(), text, file),
                       "WritePrivateProfileSectionA") != 0;
}

/// Reads what is to be put back if the file itself takes the writes and one of them fails. False when there
/// is something that cannot be read: nothing may be written then.
bool ReadBefore() {
    for (;;) {
        g_unit.before = ReadBytes(IniPath);
        if (g_unit.before) return true;
        if (GetFileAttributesA(IniPath.c_str()) == INVALID_FILE_ATTRIBUTES) return true;
        if (!WaitForHeldFile()) return false;
    }
}

/// Whether a file in this state is one that the unit is made for.
bool MeetsCondition(const std::optional<FileState>& state) {
    return !g_unit.hasCondition || (state && g_unit.condition == state);
}

/// Whether there is no file, or nothing in it.
bool IsAbsent() {
    const std::optional<FileState> state = StateOf(IniPath);
    if (state) return state->Size == 0;
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

/// Waits for a file that was whole before and is absent now: another program is saving it, or its drive has
/// been taken out. A new file would hold nothing but this unit. False when it stays so.
bool AwaitFile() {
    while (WasWhole() && IsAbsent())
        if (!WaitForHeldFile()) return false;
    return true;
}

bool ChooseWay() {
    if (IsStranded()) {
        if (MoveFileExA(g_stranded.c_str(), IniPath.c_str(), MOVEFILE_WRITE_THROUGH) == 0) return false;
        // The former file is still there under another name.
        RemoveSideFiles(IniPath);
    }
    g_stranded.clear();
    if (!AwaitFile()) return false;
    ++g_unit.timesMade;
    switch (g_unit.side.Make(IniPath)) {
        case SideFileResult::kMade:
            g_unit.way = Way::kSideFile;
            return MeetsCondition(g_unit.side.CopiedState()) && TakeAwayUtf8Mark(g_unit.side);
        case SideFileResult::kRefused: return false;
        case SideFileResult::kImpossible: break;
    }
    g_unit.way = Way::kItself;
    return ReadBefore() && MeetsCondition(StateOf(IniPath));
}

/// Makes the side file once more, because the former is kept from us or made from what has changed since,
/// with the first `count` writes in it.
bool MakeAnew(size_t count) {
    // Some programs empty a file before they write it, or write another one and rename it.
    while (g_unit.side.TargetWasEmptied())
        if (!WaitForHeldFile()) return false;
    if (!ChooseWay()) return false;
    for (size_t index = 0; index < count; ++index)
        if (!CallProfileFunction(g_unit.writes[index])) return false;
    return true;
}

/// After a failure: whether it is worth trying again, with the first `writesBefore` writes done.
bool MayTryAgain(DWORD error, size_t writesBefore) {
    if (g_unit.way == Way::kSideFile && (g_unit.side.IsGone() || g_unit.side.TargetHasChanged()))
        return g_unit.remakes++ < kRemakes && MakeAnew(writesBefore);
    if (!IsHeldError(error)) return false;
    // What the file itself has taken so far is the unit's own.
    const bool isUntouched = g_unit.way == Way::kItself && writesBefore == 0;
    if (isUntouched && !MeetsCondition(StateOf(IniPath))) return false;
    return WaitForHeldFile() ||
           (g_unit.way == Way::kSideFile && g_unit.side.IsHeld() && MakeAnew(writesBefore));
}

bool CarryOutLast() {
    while (!CallProfileFunction(g_unit.writes.back()))
        if (!MayTryAgain(GetLastError(), g_unit.writes.size() - 1)) return false;
    return true;
}

/// Writes the file itself, because its place is denied to the side file.
bool WriteItself() {
    g_unit.side.Drop();
    g_unit.way = Way::kItself;
    // What was read for the rewriting of a section is not what is written now.
    ++g_unit.timesMade;
    if (!ReadBefore() || !MeetsCondition(StateOf(IniPath))) return false;
    return std::all_of(g_unit.writes.begin(), g_unit.writes.end(), [](const IniWrite& write) {
        while (!CallProfileFunction(write))
            if (!IsHeldError(GetLastError()) || !WaitForHeldFile()) return false;
        return true;
    });
}

/// Puts the side file into its place.
bool PutInPlace() {
    for (;;) {
        if (g_unit.way == Way::kItself) return true;
        if (g_unit.side.Flush() && g_unit.side.Replace()) return true;
        const DWORD error = GetLastError();
        if (g_unit.side.TargetIsLost()) {
            g_stranded = g_unit.side.Leave();
            return true;
        }
        const bool isDenied = error == ERROR_ACCESS_DENIED && g_unit.way == Way::kSideFile;
        if (isDenied && !g_unit.side.TargetHasChanged() && !g_unit.side.IsHeld() &&
            !g_unit.side.IsTargetHeld())
            return WriteItself();
        if (!MayTryAgain(error, g_unit.writes.size())) return false;
    }
}

void TakeBack() noexcept {
    g_unit.side.Drop();
    if (g_unit.way != Way::kItself || !g_unit.before) return;
    try {
        const LongPatience patience(kTakeBackPatience);
        while (ReadBytes(IniPath) != g_unit.before && !WriteBytes(IniPath, *g_unit.before))
            if (!WaitForHeldFile()) return;
    } catch (const std::exception&) {
        return;  // No memory to look at it: what was written stays.
    }
}

void Reset() noexcept {
    g_unit.side.Drop();
    g_unit.writes.clear();
    g_unit.before.reset();
    g_unit.way = Way::kNotYet;
    g_unit.remakes = 0;
    g_unit.timesMade = 0;
    g_unit.failed = false;
    g_unit.hasCondition = false;
}

}  // namespace

IniUnit::IniUnit() noexcept : writesBefore_(g_unit.writes.size()) {
    if (g_unit.depth++ == 0) g_unit.ban.emplace();
}

IniUnit::IniUnit(const std::optional<FileState>& onlyFor) noexcept : IniUnit() {
    g_unit.hasCondition = true;
    g_unit.condition = onlyFor;
}

IniUnit::~IniUnit() {
    if (ended_) return;
    // An inner unit cannot be taken back alone.
    if (g_unit.writes.size() > writesBefore_) g_unit.failed = true;
    if (--g_unit.depth > 0) return;
    TakeBack();
    Reset();
    g_unit.ban.reset();
}

bool IniUnit::Finish() {
    if (ended_) return false;
    if (g_unit.depth > 1) {
        ended_ = true;
        --g_unit.depth;
        return !g_unit.failed;
    }
    const bool done = !g_unit.failed && (g_unit.writes.empty() || PutInPlace());
    if (!done) TakeBack();
    // Not sooner: success with the side file says nothing about the file whose place it is to take.
    if (done && !g_unit.writes.empty()) ForgetWaiting();
    Reset();
    ended_ = true;
    --g_unit.depth;
    g_unit.ban.reset();
    return done;
}

void IniUnit::Fail() noexcept { g_unit.failed = AnyOpen(); }

bool IniUnit::BeginWriting() {
    if (!AnyOpen() || g_unit.failed) return false;
    if (g_unit.way != Way::kNotYet) return true;
    // Counts as failed until it has worked, also when it throws.
    g_unit.failed = true;
    g_unit.failed = !ChooseWay();
    return !g_unit.failed;
}

bool IniUnit::WritesItself() noexcept { return g_unit.way == Way::kItself; }

unsigned IniUnit::TimesMade() noexcept { return g_unit.timesMade; }

bool IniUnit::HasFailed() noexcept { return g_unit.failed; }

bool IniUnit::AnyOpen() noexcept { return g_unit.depth > 0; }

void RemoveInterruptedUnits() { RemoveSideFiles(IniPath); }

bool RemoveUtf8Mark() { return CarryOut({"", std::nullopt, std::nullopt}); }

bool CarryOut(IniWrite write) {
    if (g_unit.depth == 0) {
        IniUnit unit;
        return CarryOut(std::move(write)) && unit.Finish();
    }
    if (g_unit.failed) return false;
    if (!IniUnit::BeginWriting()) return false;
    // Counts as failed until it has worked, also when it throws.
    g_unit.failed = true;
    g_unit.writes.push_back(std::move(write));
    g_unit.failed = !CarryOutLast();
    return !g_unit.failed;
}

const std::string& FileToRead() noexcept {
    // Nothing that a failed unit has written counts.
    if (g_unit.way == Way::kSideFile && !g_unit.failed) return g_unit.side.Path();
    return IsStranded() ? g_stranded : IniPath;
}

bool MakeReadable(unsigned long error) { return !g_unit.failed && MayTryAgain(error, g_unit.writes.size()); }

}  // namespace config
