#include "sys/target_state.h"

#include <windows.h>

#include <shlwapi.h>
#include <winnetwk.h>

#include <algorithm>
#include <array>
#include <optional>

#include "sys/utility.h"
#include "win/handles.h"
#include "win/text.h"

namespace sys {
namespace {

constexpr std::wstring_view kDevicePrefix = L"\\\\?\\";

bool HasDriveLetter(std::wstring_view path) { return path.size() >= 2 && path[1] == L':'; }

bool IsNetworkPath(std::wstring_view path) {
    return path.starts_with(L"\\\\") && !path.starts_with(kDevicePrefix);
}

/// The path as it is written without the prefix that lifts the limits of a path's length and form. That of a
/// volume without a drive letter can only be written with it.
std::wstring OrdinaryPath(const std::wstring& path) {
    constexpr std::wstring_view kShare = L"\\\\?\\UNC\\";
    if (!path.starts_with(kDevicePrefix)) return path;
    if (win::UpperCase(path.substr(0, kShare.size())) == kShare) return L"\\\\" + path.substr(kShare.size());
    const std::wstring rest = path.substr(kDevicePrefix.size());
    return HasDriveLetter(rest) ? rest : path;
}

/// "\\server" of a network path.
std::wstring ServerOf(std::wstring_view path) { return std::wstring(path.substr(0, path.find(L'\\', 2))); }

/// The server behind a drive letter that stands for a share, or the drive itself.
std::wstring PlaceOfDrive(const std::wstring& drive) {
    if (GetDriveTypeW((drive + L"\\").c_str()) != DRIVE_REMOTE) return drive;
    std::array<wchar_t, 1024> share{};
    auto size = static_cast<DWORD>(share.size());
    const DWORD error = WNetGetConnectionW(drive.c_str(), share.data(), &size);
    // The second: Windows remembers the share, but is not connected with it now.
    const bool isKnown = error == NO_ERROR || error == ERROR_CONNECTION_UNAVAIL;
    if (!isKnown || !IsNetworkPath(share.data())) return drive;
    return ServerOf(share.data());
}

/// The server or drive that a path leads through; "" for a path without one.
std::wstring PlaceOf(const std::string& path) {
    const std::wstring wide = OrdinaryPath(win::ToWide(path));
    if (IsNetworkPath(wide)) return win::UpperCase(ServerOf(wide));
    if (HasDriveLetter(wide)) return win::UpperCase(PlaceOfDrive(wide.substr(0, 2)));
    return {};
}

/// The root of the drive, volume or share that a path leads through; "" for a path without one.
std::wstring RootOf(const std::wstring& path) {
    if (HasDriveLetter(path)) return path.substr(0, 2) + L"\\";
    if (path.starts_with(kDevicePrefix))
        return path.substr(0, path.find(L'\\', kDevicePrefix.size())) + L"\\";
    if (!IsNetworkPath(path)) return {};
    const size_t share = path.find(L'\\', 2);
    return share == std::wstring::npos ? path : path.substr(0, path.find(L'\\', share + 1)) + L"\\";
}

/// The form of a path that Windows takes at any length.
std::wstring ExtendedPath(const std::wstring& path) {
    if (path.size() < MAX_PATH) return path;
    if (IsNetworkPath(path)) return L"\\\\?\\UNC" + path.substr(1);
    return HasDriveLetter(path) ? std::wstring(kDevicePrefix) + path : path;
}

std::optional<WIN32_FILE_ATTRIBUTE_DATA> Attributes(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data) == 0) return std::nullopt;
    return data;
}

/// Whether the way to a path that is not found leads through a folder that stands for another volume or
/// folder, and that one is away.
bool LeadsAway(const std::wstring& path, const std::wstring& root) {
    for (size_t end = path.rfind(L'\\'); end != std::wstring::npos && end > root.size();
         end = path.rfind(L'\\', end - 1)) {
        const std::wstring folder = path.substr(0, end);
        const auto data = Attributes(ExtendedPath(folder));
        if (!data) continue;
        if ((data->dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return false;
        const win::File opened(CreateFileW(ExtendedPath(folder).c_str(), 0,
                                           FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                           OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
        return !opened;
    }
    return false;
}

/// Errors that are about the target. All others are about the way there: the network, the drive, its medium,
/// the right to look.
bool SaysMissing(DWORD error) {
    static constexpr std::array<DWORD, 8> kMissing{
        ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_INVALID_DRIVE,        ERROR_INVALID_NAME,
        ERROR_BAD_PATHNAME,   ERROR_DIRECTORY,      ERROR_FILENAME_EXCED_RANGE, ERROR_INVALID_PARAMETER};
    return std::find(kMissing.begin(), kMissing.end(), error) != kMissing.end();
}

/// Errors that come from a place that did answer.
bool SaysForbidden(DWORD error) {
    static constexpr std::array<DWORD, 6> kForbidden{ERROR_ACCESS_DENIED,         ERROR_SHARING_VIOLATION,
                                                     ERROR_LOCK_VIOLATION,        ERROR_BAD_NET_NAME,
                                                     ERROR_NETWORK_ACCESS_DENIED, ERROR_LOGON_FAILURE};
    return std::find(kForbidden.begin(), kForbidden.end(), error) != kForbidden.end();
}

TargetState StateOf(const WIN32_FILE_ATTRIBUTE_DATA& data) {
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) return {TargetKind::kFolder, {}, {}};
    return {TargetKind::kFile, FileSizeText(data), FileTimeText(data)};
}

/// The state of a path that Windows does not find. `error` is Windows' error code, 0 for none.
TargetState NotFound(const std::string& path, DWORD error, SilentPlaces& silent) {
    const std::wstring wide = OrdinaryPath(win::ToWide(path));
    // The shell's function refuses some paths without looking: long ones, and the root of a share.
    if (error == ERROR_SUCCESS || wide.size() >= MAX_PATH) {
        if (const auto data = Attributes(ExtendedPath(wide))) return StateOf(*data);
        error = GetLastError();
    }
    if (SaysMissing(error)) {
        // On a drive that is not plugged in nothing is found either, which says nothing about the target.
        const std::wstring root = RootOf(wide);
        if (root.empty() || Attributes(root)) {
            // A server has been asked already.
            if (!IsNetworkPath(wide) && LeadsAway(wide, root)) return {};
            return {TargetKind::kMissing, {}, {}};
        }
        error = GetLastError();
    }
    if (!SaysForbidden(error)) silent.Add(path);
    return {};
}

}  // namespace

bool SilentPlaces::Hold(const std::string& path) const {
    return !places_.empty() && places_.contains(PlaceOf(path));
}

void SilentPlaces::Add(const std::string& path) {
    if (std::wstring place = PlaceOf(path); !place.empty()) places_.insert(std::move(place));
}

TargetState LookAtTarget(const std::string& path, SilentPlaces& silent) {
    if (silent.Hold(path)) return {};
    SetLastError(ERROR_SUCCESS);
    if (PathFileExistsA(path.c_str()) == 0) {
        const DWORD error = GetLastError();
        if (IsUrl(path)) return {TargetKind::kUrl, {}, {}};
        return NotFound(path, error, silent);
    }
    if (PathIsDirectoryA(path.c_str()) != 0) return {TargetKind::kFolder, {}, {}};
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data) == 0)
        return {TargetKind::kFile, {}, {}};
    return StateOf(data);
}

TargetState LookAtTarget(const std::string& path) {
    SilentPlaces silent;
    return LookAtTarget(path, silent);
}

}  // namespace sys
