#include "config/file_state.h"

#include "win/handles.h"

namespace config {
namespace {

ULONGLONG Join(DWORD high, DWORD low) { return (ULONGLONG{high} << 32) | low; }

template <class Data>
FileState StateFrom(const Data& data) {
    return {Join(data.nFileSizeHigh, data.nFileSizeLow),
            Join(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime)};
}

}  // namespace

std::optional<FileState> StateOf(const std::string& path) noexcept {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    if (GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data) == 0) return std::nullopt;
    if ((data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return StateFrom(data);
    // A link has no size, and a time of its own.
    const win::File file(CreateFileA(path.c_str(), FILE_READ_ATTRIBUTES,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    BY_HANDLE_FILE_INFORMATION information{};
    if (!file || GetFileInformationByHandle(file.Get(), &information) == 0) return std::nullopt;
    return StateFrom(information);
}

}  // namespace config
