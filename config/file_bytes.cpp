#include "config/file_bytes.h"

#include <windows.h>

#include <array>

#include "win/handles.h"

namespace config {

std::optional<std::string> ReadBytes(const std::string& path) {
    const win::File file(CreateFileA(path.c_str(), GENERIC_READ,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) return std::nullopt;
    std::string bytes(GetFileSize(file.Get(), nullptr), '\0');
    DWORD read = 0;
    if (ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr) == 0 ||
        read != bytes.size())
        return std::nullopt;
    return bytes;
}

bool HasUtf8Mark(HANDLE file) {
    std::array<char, kUtf8Mark.size()> start{};
    DWORD read = 0;
    return ReadFile(file, start.data(), static_cast<DWORD>(start.size()), &read, nullptr) != 0 &&
           std::string_view(start.data(), read) == kUtf8Mark;
}

bool WriteBytes(const std::string& path, const std::string& bytes) {
    const win::File file(CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                     FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    return file &&
           WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0 &&
           SetEndOfFile(file.Get()) != 0;
}

}  // namespace config
