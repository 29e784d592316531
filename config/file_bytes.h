#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace config {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

/// The whole of a file, byte by byte (ReadFile); nothing when it cannot be read.
std::optional<std::string> ReadBytes(const std::string& path);

/// Whether an open file, from whose beginning on nothing has been read, begins with the mark of UTF-8
/// (ReadFile).
bool HasUtf8Mark(HANDLE file);

/// Writes the whole of a file that exists (WriteFile); false when that failed.
bool WriteBytes(const std::string& path, const std::string& bytes);

}  // namespace config
