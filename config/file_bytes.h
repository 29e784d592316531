#pragma once

#include <optional>
#include <string>

namespace config {

/// The whole of a file, byte by byte (ReadFile); nothing when it cannot be read.
std::optional<std::string> ReadBytes(const std::string& path);

/// Writes the whole of a file that exists (WriteFile); false when that failed.
bool WriteBytes(const std::string& path, const std::string& bytes);

}  // namespace config
