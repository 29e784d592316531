#include "win/trace.h"

#include <array>

namespace win {
namespace {

void AppendLine(const char* path, const char* text) noexcept {
    // Shared, because several programs may have been given the same file.
    const HANDLE file = CreateFileA(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    DWORD written = 0;
    WriteFile(file, text, static_cast<DWORD>(lstrlenA(text)), &written, nullptr);
    CloseHandle(file);
}

}  // namespace

void TraceFailure(const char* function, DWORD error, const char* file, int line) noexcept {
    const DWORD before = GetLastError();
    std::array<char, 4 * MAX_PATH> path{};
    const DWORD length = GetEnvironmentVariableA("QUON_TRACE", path.data(), static_cast<DWORD>(path.size()));
    const bool toFile = length > 0 && length < path.size();
    const bool toDebugger = IsDebuggerPresent() != FALSE;
    if (toFile || toDebugger) {
        // What wsprintf writes at most.
        std::array<char, 1025> text{};
        wsprintfA(text.data(), "%.200s(%d): %.200s failed with %lu\r\n", file, line, function, error);
        if (toDebugger) OutputDebugStringA(text.data());
        if (toFile) AppendLine(path.data(), text.data());
    }
    SetLastError(before);
}

}  // namespace win
