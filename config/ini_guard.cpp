#include "config/ini_guard.h"

#include <exception>
#include <string>

#include "config/ini.h"
#include "win/errors.h"
#include "win/handles.h"

namespace config {
namespace {

enum class Protection {
    kNotYet,  ///< nothing has been written so far
    kCopy,    ///< the copy lies there
    kNone,    ///< there can be none: it is written without
    kRefuse   ///< a write would lose what is there: nothing is written
};

struct GuardState {
    int depth = 0;
    Protection protection = Protection::kNotYet;
    bool failed = false;
    bool owed = false;     ///< the copy could not be put back so far
    std::string copyPath;  ///< kept, so that the end of a guard needs no memory
};

GuardState g_state;

// No name that a user would give to a copy of his own, which a start must not put back.
std::string CopyPath() { return IniPath + ".before-write"; }
std::string UnfinishedCopyPath() { return IniPath + ".copying"; }

bool PutBack(const std::string& copy) {
    return GetFileAttributesA(copy.c_str()) == INVALID_FILE_ATTRIBUTES ||
           MoveFileExA(copy.c_str(), IniPath.c_str(), MOVEFILE_REPLACE_EXISTING) != 0;
}

/// Whether there is a file that a write can damage: none that is missing, read-only or held by others.
bool CanBeDamaged() {
    const DWORD attributes = GetFileAttributesA(IniPath.c_str());
    // A missing file has this attribute too. Opening alone does not tell: not every system minds.
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) return false;
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const win::File file(CreateFileA(IniPath.c_str(), GENERIC_READ | GENERIC_WRITE, kShareAll, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    return static_cast<bool>(file);
}

/// Whether the file can grow by a record: it may take a cluster more than truncating it has given back, and
/// not every system's profile functions tell that they have found no room.
bool HasRoomToGrow() {
    constexpr ULONGLONG kLargestCluster = 64 * 1024;
    const std::string folder = IniPath.substr(0, IniPath.rfind('\\') + 1);
    ULARGE_INTEGER room{};
    return GetDiskFreeSpaceExA(folder.c_str(), &room, nullptr, nullptr) == 0 ||
           room.QuadPart >= kLargestCluster;
}

bool IsNoRoom(DWORD error) { return error == ERROR_DISK_FULL || error == ERROR_HANDLE_DISK_FULL; }

Protection MakeCopy() {
    if (g_state.owed && !PutBack(g_state.copyPath)) return Protection::kRefuse;
    g_state.owed = false;
    g_state.copyPath = CopyPath();
    if (!CanBeDamaged()) return Protection::kNone;
    // Under another name until it is complete: half a copy must never be put back.
    const std::string unfinished = UnfinishedCopyPath();
    const bool copied = CopyFileA(IniPath.c_str(), unfinished.c_str(), FALSE) != 0;
    const DWORD error = copied ? ERROR_SUCCESS : GetLastError();
    const bool noRoom = IsNoRoom(error) || !HasRoomToGrow();
    if (copied && !noRoom &&
        MoveFileExA(unfinished.c_str(), g_state.copyPath.c_str(), MOVEFILE_REPLACE_EXISTING) != 0)
        return Protection::kCopy;
    DeleteFileA(unfinished.c_str());
    return noRoom ? Protection::kRefuse : Protection::kNone;
}

}  // namespace

IniGuard::IniGuard() noexcept : exceptions_(std::uncaught_exceptions()) {
    if (g_state.depth++ > 0) return;
    g_state.protection = Protection::kNotYet;
    g_state.failed = false;
}

IniGuard::~IniGuard() {
    if (std::uncaught_exceptions() > exceptions_) NoteFailure();
    if (--g_state.depth > 0 || g_state.protection != Protection::kCopy) return;
    if (g_state.failed)
        g_state.owed = !PutBack(g_state.copyPath);
    else
        DeleteFileA(g_state.copyPath.c_str());
}

void IniGuard::Commit() noexcept {
    if (g_state.protection != Protection::kCopy || g_state.failed) return;
    DeleteFileA(g_state.copyPath.c_str());
    g_state.protection = Protection::kNotYet;
}

bool IniGuard::MayWrite() {
    if (g_state.protection == Protection::kNotYet) g_state.protection = MakeCopy();
    return g_state.protection == Protection::kNone ||
           (g_state.protection == Protection::kCopy && !g_state.failed);
}

void IniGuard::NoteFailure() noexcept { g_state.failed = true; }

void PutBackInterruptedIni() {
    if (!PutBack(CopyPath()))
        throw win::RuntimeError("Quon was ended while it wrote to " + IniPath + ", and " + CopyPath() +
                                ", the file as it was before, could not be put back");
}

}  // namespace config
