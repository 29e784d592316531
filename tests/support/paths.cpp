#include "tests/support/paths.h"

#include <windows.h>

#include <algorithm>
#include <memory>

#include "tests/support/text.h"

namespace testkit {
namespace {

struct CloseFile {
    void operator()(void* handle) const { CloseHandle(handle); }
};
using File = std::unique_ptr<void, CloseFile>;

File OpenFile(const std::string& path, DWORD access, DWORD disposition) {
    HANDLE handle =
        CreateFileW(Wide(path).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) ThrowWindowsError("Opening " + path);
    return File(handle);
}

}  // namespace

std::string EnvironmentValue(const std::string& name) {
    const std::wstring wide_name = Wide(name);
    const DWORD size = GetEnvironmentVariableW(wide_name.c_str(), nullptr, 0);
    if (size == 0) return {};
    std::wstring value(size, L'\0');
    value.resize(GetEnvironmentVariableW(wide_name.c_str(), value.data(), size));
    return Utf8(value);
}

std::string WindowsPath(std::string path) {
    // Wine shows the root of the build machine as drive Z.
    if (path.starts_with('/')) path.insert(0, "Z:");
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::string TestProgramFolder() {
    wchar_t path[4 * MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, ARRAYSIZE(path));
    return FolderOf(Utf8(path));
}

std::string QuonExe() {
    const std::string given = EnvironmentValue("QUON_EXE");
    return given.empty() ? FolderOf(TestProgramFolder()) + "\\Quon.exe" : WindowsPath(given);
}

std::string TestTargetExe() { return TestProgramFolder() + "\\quon_test_target.exe"; }

std::string NewUsersIni() { return FileBytes(TestProgramFolder() + "\\Quon.ini"); }

std::string FolderOf(const std::string& path) {
    const std::size_t slash = path.rfind('\\');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

std::string NameOf(const std::string& path) { return path.substr(path.rfind('\\') + 1); }

bool FileExists(const std::string& path) {
    return GetFileAttributesW(Wide(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

std::string FileBytes(const std::string& path) {
    const File file = OpenFile(path, GENERIC_READ, OPEN_EXISTING);
    std::string bytes;
    char part[4096];
    DWORD count = 0;
    while (ReadFile(file.get(), part, sizeof part, &count, nullptr) && count > 0)
        bytes.append(part, count);
    return bytes;
}

void WriteBytes(const std::string& path, std::string_view bytes) {
    const File file = OpenFile(path, GENERIC_WRITE, CREATE_ALWAYS);
    DWORD written = 0;
    if (!WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ||
        written != bytes.size()) {
        ThrowWindowsError("Writing " + path);
    }
}

void MakeFolders(const std::string& path) {
    const DWORD attributes = GetFileAttributesW(Wide(path).c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY)) return;
    if (const std::string parent = FolderOf(path); !parent.empty()) MakeFolders(parent);
    if (!CreateDirectoryW(Wide(path).c_str(), nullptr) && GetLastError() != ERROR_ALREADY_EXISTS) {
        ThrowWindowsError("Making the folder " + path);
    }
}

}  // namespace testkit
