#include "config/side_file.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "config/file_bytes.h"
#include "config/patience.h"
#include "win/handles.h"
#include "win/text.h"

namespace config {
namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
// Names that no user would give to a copy of his own; several, because one of the files can be kept from us.
constexpr const char* kSuffix = ".unit-";
constexpr int kNames = 4;
constexpr int kBackupName = kNames + 1;  ///< of the former target while another file takes its place

/// The name is this process's alone: another session may use the folder too.
std::string SideName(const std::string& target, int number) {
    return target + kSuffix + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(number);
}

/// Whether what follows the suffix makes a side file's name: two numbers, or one, as they were called once.
bool IsSideNumber(std::string_view text) {
    const auto isNumber = [](std::string_view part) {
        return !part.empty() &&
               std::all_of(part.begin(), part.end(), [](char digit) { return digit >= '0' && digit <= '9'; });
    };
    const size_t end = text.find('-');
    return isNumber(text.substr(0, end)) && (end == std::string_view::npos || isNumber(text.substr(end + 1)));
}

std::string FolderOf(const std::string& path) { return path.substr(0, path.rfind('\\') + 1); }

bool Exists(const std::string& path) { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

bool IsNoRoom(DWORD error) { return error == ERROR_DISK_FULL || error == ERROR_HANDLE_DISK_FULL; }

win::File Open(const std::string& path, DWORD access, DWORD flags = FILE_ATTRIBUTE_NORMAL,
               DWORD share = kShareAll) {
    return win::File(CreateFileA(path.c_str(), access, share, nullptr, OPEN_EXISTING, flags, nullptr));
}

/// Whether the disk has room for the file to grow: on some systems the profile functions do not say that they
/// have found none.
bool HasRoomToGrow(const std::string& path) {
    constexpr ULONGLONG kLargestCluster = 64 * 1024;
    ULARGE_INTEGER room{};
    return GetDiskFreeSpaceExA(FolderOf(path).c_str(), &room, nullptr, nullptr) == 0 ||
           room.QuadPart >= kLargestCluster;
}

/// The result where there can be no side file: the file itself would be truncated before it is written.
SideFileResult WithoutSideFile(const std::string& target) {
    return HasRoomToGrow(target) ? SideFileResult::kImpossible : SideFileResult::kRefused;
}

/// The true path of an open file or folder; "" when Windows does not tell.
std::string FinalPath(HANDLE file) {
    std::string path(MAX_PATH, '\0');
    DWORD length = 0;
    while ((length = GetFinalPathNameByHandleA(file, path.data(), static_cast<DWORD>(path.size()), 0)) >
           path.size())
        path.resize(length);
    path.resize(length);
    constexpr std::string_view kShare = "\\\\?\\UNC\\";
    constexpr std::string_view kLocal = "\\\\?\\";
    if (path.starts_with(kShare)) return "\\\\" + path.substr(kShare.size());
    return path.starts_with(kLocal) ? path.substr(kLocal.size()) : path;
}

/// The path that a file was opened by, or for a symbolic link that of the file it leads to. A folder on the
/// way may be a link without the file being one. Nothing when a link leads nowhere that has a path.
std::optional<std::string> ResolvedPath(const std::string& path, DWORD attributes, HANDLE file) {
    std::string final = FinalPath(file);
    const bool isLink = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (final.empty()) return isLink ? std::nullopt : std::optional(path);
    if (isLink) return final;
    if (win::EqualIgnoringCase(final, path)) return path;
    const win::File folder = Open(FolderOf(path), 0, FILE_FLAG_BACKUP_SEMANTICS);
    const std::string name = path.substr(FolderOf(path).size());
    const bool same = !folder || win::EqualIgnoringCase(FinalPath(folder.Get()) + "\\" + name, final);
    return same ? path : final;
}

/// A file that is to be written.
struct Writable {
    win::File File;          ///< none when it may not be written
    bool MayReplace = true;  ///< false when nothing may take its place
};

/// Opens the file as a write to it would, with some patience: the side file must not get around what is
/// denied. Nor may another program have it open for writing: it may be halfway, and the rest would go into a
/// file whose place has been taken.
Writable OpenToWrite(const std::string& path) {
    constexpr DWORD kAccess = GENERIC_READ | GENERIC_WRITE;
    constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_DELETE;
    Writable writable{Open(path, kAccess | DELETE, FILE_ATTRIBUTE_NORMAL, kShare)};
    if (writable.File) return writable;
    writable.MayReplace = GetLastError() != ERROR_ACCESS_DENIED;
    for (;;) {
        writable.File = Open(path, kAccess, FILE_ATTRIBUTE_NORMAL, kShare);
        if (writable.File || !IsHeldError(GetLastError()) || !WaitForHeldFile()) return writable;
    }
}

/// Who may do what with an open file, as Windows writes it; nothing when Windows does not tell.
std::vector<std::byte> AccessRights(HANDLE file) {
    constexpr size_t kUsualSize = 1024;
    std::vector<std::byte> rights(kUsualSize);
    DWORD needed = 0;
    while (GetKernelObjectSecurity(file, DACL_SECURITY_INFORMATION, rights.data(),
                                   static_cast<DWORD>(rights.size()), &needed) == 0) {
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER || needed <= rights.size()) return {};
        rights.assign(needed, std::byte{});
    }
    return rights;
}

/// Whether a failure to take a file's place may be over in a moment.
bool MayPass(DWORD error) {
    return IsHeldError(error) || error == ERROR_ACCESS_DENIED || error == ERROR_UNABLE_TO_REMOVE_REPLACED ||
           error == ERROR_UNABLE_TO_MOVE_REPLACEMENT || error == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2;
}

/// Whether a failure says that the system, or the file system, does not know what it was asked for.
bool SaysUnknown(DWORD error) {
    return error == ERROR_INVALID_PARAMETER || error == ERROR_NOT_SUPPORTED ||
           error == ERROR_INVALID_FUNCTION || error == ERROR_INVALID_LEVEL ||
           error == ERROR_CALL_NOT_IMPLEMENTED;
}

bool Rename(const std::string& from, const std::string& to) {
    return MoveFileExA(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH) != 0;
}

/// Renames a file that is open with the right DELETE (SetFileInformationByHandle).
bool RenameOpen(HANDLE file, const std::string& to, FILE_INFO_BY_HANDLE_CLASS how, DWORD flags) {
    const std::wstring path = win::ToWide(to);
    const size_t length = path.size() * sizeof(wchar_t);
    // The NUL has its room in the structure.
    std::vector<std::byte> buffer(sizeof(FILE_RENAME_INFO) + length);
    auto* information = reinterpret_cast<FILE_RENAME_INFO*>(buffer.data());
    information->FileNameLength = static_cast<DWORD>(length);
    std::memcpy(buffer.data(), &flags, sizeof(flags));
    std::memcpy(buffer.data() + offsetof(FILE_RENAME_INFO, FileName), path.data(), length);
    return SetFileInformationByHandle(file, how, information, static_cast<DWORD>(buffer.size())) != 0;
}

/// Renames such a file onto another one, also while others have that one open and let it be deleted: they go
/// on with the old one.
bool RenameOntoOpen(HANDLE file, const std::string& to) {
    // The headers have these for the newest systems only.
    constexpr auto kFileRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
    constexpr DWORD kReplaceIfExists = 1;
    constexpr DWORD kPosixSemantics = 2;
    return RenameOpen(file, to, kFileRenameInfoEx, kReplaceIfExists | kPosixSemantics);
}

/// Whether a side file is one of a pair: the former target, and what was to take its place when the program
/// was killed. There was no target then, and whatever is there now, its user may have made for want of one.
bool IsHalfOfReplacement(const std::string& name, const std::vector<std::string>& all) {
    const auto numberAt = [](const std::string& of) { return of.rfind('-') + 1; };
    const auto isBackup = [&](const std::string& of) {
        return of.substr(numberAt(of)) == std::to_string(kBackupName);
    };
    return std::any_of(all.begin(), all.end(), [&](const std::string& other) {
        return isBackup(other) != isBackup(name) &&
               other.substr(0, numberAt(other)) == name.substr(0, numberAt(name));
    });
}

}  // namespace

SideFileResult SideFile::Make(const std::string& path) {
    Drop();
    target_ = path;
    targetIsNew_ = false;
    state_.reset();
    identity_.reset();
    hadUtf8Mark_ = false;
    const DWORD attributes = GetFileAttributesA(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        targetIsNew_ = GetLastError() == ERROR_FILE_NOT_FOUND;
    } else {
        // Opening it would not tell: on some systems it works all the same.
        if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) return SideFileResult::kRefused;
        const Writable writable = OpenToWrite(path);
        const win::File& file = writable.File;
        if (!file) return SideFileResult::kRefused;
        const std::optional<std::string> resolved = ResolvedPath(path, attributes, file.Get());
        if (!resolved) return SideFileResult::kImpossible;
        target_ = *resolved;
        // Nor could a side file with the same rights be deleted.
        if (!writable.MayReplace) return WithoutSideFile(target_);
        // Before the copy: what is written while it is made counts as a change.
        state_ = StateOf(target_);
        identity_ = IdentityOf(file.Get());
        hadUtf8Mark_ = HasUtf8Mark(file.Get());
    }
    return MakeUnderAName();
}

bool SideFile::MakeNew(const std::string& path) const {
    if (!targetIsNew_) return CopyFileA(target_.c_str(), path.c_str(), TRUE) != 0;
    return static_cast<bool>(
        win::File(CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr)));
}

SideFileResult SideFile::MakeUnderAName() {
    for (int number = 1; number <= kNames; ++number) {
        const std::string name = SideName(target_, number);
        // Not every function of every system refuses such a name, but enough of them do.
        if (win::ToWide(name).size() >= MAX_PATH) break;
        bool made = false;
        do {
            made = MakeNew(name);
            if (!made && GetLastError() == ERROR_FILE_EXISTS) {
                DeleteFileA(name.c_str());
                made = MakeNew(name);
            }
        } while (!made && IsHeldError(GetLastError()) && WaitForHeldFile());
        if (made) {
            if (Keep(name)) return SideFileResult::kMade;
            DeleteFileA(name.c_str());
            continue;
        }
        const DWORD error = GetLastError();
        // Half a copy would be in the way of the next.
        if (IsNoRoom(error)) DeleteFileA(name.c_str());
        if (IsNoRoom(error) || IsHeldError(error)) return SideFileResult::kRefused;
    }
    return WithoutSideFile(target_);
}

bool SideFile::Keep(const std::string& path) {
    do {
        // The profile functions do not share what they write with writers: this handle only reads.
        kept_ = Open(path, GENERIC_READ, FILE_ATTRIBUTE_NORMAL, FILE_SHARE_READ | FILE_SHARE_WRITE);
    } while (!kept_ && IsHeldError(GetLastError()) && WaitForHeldFile());
    if (!kept_) return false;
    path_ = path;
    // From the beginning: where the folder gives new files no right to be deleted, the target's does.
    TakeOverRights();
    return true;
}

bool SideFile::IsHeld() const noexcept {
    // While this handle is open, we cannot delete the file either.
    const DWORD access = GENERIC_READ | GENERIC_WRITE | (kept_ ? 0 : DELETE);
    return !Open(path_, access) && IsHeldError(GetLastError());
}

bool SideFile::IsTargetHeld() const noexcept { return !Open(target_, DELETE) && IsHeldError(GetLastError()); }

bool SideFile::IsGone() const noexcept {
    if (path_.empty() || Exists(path_)) return false;
    const DWORD error = GetLastError();
    return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
}

bool SideFile::TargetHasChanged() const noexcept {
    const std::optional<FileState> now = StateOf(target_);
    return now && (targetIsNew_ || (state_ && *now != *state_));
}

bool SideFile::TargetWasEmptied() const noexcept {
    if (!state_ || state_->Size == 0) return false;
    const std::optional<FileState> now = StateOf(target_);
    return !now || now->Size == 0;
}

std::optional<SideFile::Identity> SideFile::IdentityOf(HANDLE file) {
    // The whole information would have the volume's number too, for which other processes may be asked.
    FILE_BASIC_INFO information{};
    if (GetFileInformationByHandleEx(file, FileBasicInfo, &information, sizeof(information)) == 0)
        return std::nullopt;
    const FILETIME created{information.CreationTime.LowPart,
                           static_cast<DWORD>(information.CreationTime.HighPart)};
    return Identity{information.FileAttributes, created, AccessRights(file)};
}

void SideFile::TakeOverIdentity(HANDLE file) const {
    if (!identity_) return;
    SetFileTime(file, &identity_->Created, nullptr, nullptr);
    // It has been written, which a backup is to see.
    const DWORD attributes = (identity_->Attributes & ~DWORD{FILE_ATTRIBUTE_NORMAL}) | FILE_ATTRIBUTE_ARCHIVE;
    if (GetFileAttributesA(path_.c_str()) != attributes) SetFileAttributesA(path_.c_str(), attributes);
}

void SideFile::TakeOverRights() const {
    if (!identity_) return;
    // Where they are the same already, setting them could only lose what a system stores by other means.
    std::vector<std::byte> rights = identity_->Rights;
    if (!rights.empty() && rights != AccessRights(kept_.Get()))
        SetFileSecurityA(path_.c_str(), DACL_SECURITY_INFORMATION, rights.data());
}

bool SideFile::KeepForMove(DWORD access) {
    kept_.Reset();
    kept_ = Open(path_, access | DELETE, FILE_ATTRIBUTE_NORMAL, FILE_SHARE_READ | FILE_SHARE_WRITE);
    return static_cast<bool>(kept_);
}

bool SideFile::Flush() {
    if (!HasRoomToGrow(target_)) {
        SetLastError(ERROR_DISK_FULL);
        return false;
    }
    if (!KeepForMove(GENERIC_WRITE)) return false;
    TakeOverIdentity(kept_.Get());
    return FlushFileBuffers(kept_.Get()) != 0;
}

// There are three ways into the place. The first takes one step, also where others have the target open, but
// not every system and file system knows it. The second takes one step too, but Windows denies it while the
// target is open to anybody. The third goes on there, but takes two steps, and a program that is killed
// between them leaves no target: so it is for where the first is not known. The target is kept under a name
// of ours meanwhile, for without one Windows deletes it before its successor is in its place.
bool SideFile::TakePlace() {
    // For a target for which it is not known, that costs nothing any more.
    static std::string unknownFor;
    const bool replaces = !targetIsNew_ && !TargetIsLost();
    if (!kept_ && !KeepForMove(0)) return false;
    if (replaces && unknownFor != target_) {
        if (RenameOntoOpen(kept_.Get(), target_)) return true;
        if (SaysUnknown(GetLastError())) unknownFor = target_;
    }
    // A file that has meanwhile come into the place of a missing target is not ours to replace.
    if (RenameOpen(kept_.Get(), target_, FileRenameInfo, replaces ? TRUE : FALSE)) return true;
    // The third way opens the file itself.
    kept_.Reset();
    return replaces && unknownFor == target_ && ReplaceWithBackup();
}

bool SideFile::ReplaceWithBackup() {
    const std::string backup = SideName(target_, kBackupName);
    if (ReplaceFileA(target_.c_str(), path_.c_str(), backup.c_str(), 0, nullptr, nullptr) != 0) {
        DeleteFileA(backup.c_str());
        return true;
    }
    const DWORD error = GetLastError();
    // It stopped between its steps: the second is made up for, or the first taken back.
    if (TargetIsLost() && Rename(path_, target_)) {
        DeleteFileA(backup.c_str());
        return true;
    }
    if (TargetIsLost()) Rename(backup, target_);
    SetLastError(error);
    return false;
}

bool SideFile::Replace() {
    for (;;) {
        if (TargetHasChanged()) {
            SetLastError(ERROR_FILE_INVALID);
            return false;
        }
        if (TakePlace()) break;
        const DWORD error = GetLastError();
        if (MayPass(error) && !IsHeld() && WaitForHeldFile()) continue;
        SetLastError(error);
        return false;
    }
    kept_.Reset();
    path_.clear();
    return true;
}

bool SideFile::TargetIsLost() const noexcept {
    return !targetIsNew_ && !path_.empty() && !Exists(target_) && GetLastError() == ERROR_FILE_NOT_FOUND;
}

std::string SideFile::Leave() noexcept {
    kept_.Reset();
    return std::exchange(path_, {});
}

void SideFile::Drop() noexcept {
    kept_.Reset();
    if (!path_.empty()) DeleteFileA(path_.c_str());
    path_.clear();
}

void RemoveSideFiles(const std::string& path) {
    const win::File file = Open(path, 0);
    if (!file) return;
    const std::string target =
        ResolvedPath(path, GetFileAttributesA(path.c_str()), file.Get()).value_or(path);
    const std::string start = target + kSuffix;
    WIN32_FIND_DATAA found{};
    // Does not look at the short names, which could match too.
    const win::FindFiles listing(
        FindFirstFileExA((start + "*").c_str(), FindExInfoBasic, &found, FindExSearchNameMatch, nullptr, 0));
    if (!listing) return;
    std::vector<std::string> names;
    do {
        const std::string name = FolderOf(target) + static_cast<const char*>(found.cFileName);
        if (name.size() > start.size() && IsSideNumber(std::string_view(name).substr(start.size())))
            names.push_back(name);
    } while (FindNextFileA(listing.Get(), &found) != 0);
    for (const std::string& name : names)
        if (!IsHalfOfReplacement(name, names)) DeleteFileA(name.c_str());
}

}  // namespace config
