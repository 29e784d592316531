#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace config {

/// What tells one state of a file from another.
struct FileState {
    ULONGLONG Size = 0;     ///< in bytes
    ULONGLONG Written = 0;  ///< a FILETIME
    bool operator==(const FileState&) const = default;
};

/// The present state of a file, for a symbolic link that of the file it leads to (GetFileAttributesExA,
/// GetFileInformationByHandle). Nothing when it cannot be told; the last error says why.
std::optional<FileState> StateOf(const std::string& path) noexcept;

}  // namespace config
