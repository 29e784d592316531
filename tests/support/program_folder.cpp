#include "tests/support/program_folder.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>
#include <objidl.h>
#include <shlobj.h>

#include <atomic>
#include <memory>
#include <stdexcept>

#include "tests/support/text.h"

namespace testkit {
namespace {

constexpr DWORD kDeletePatienceMs = 5000;

struct CloseSearch {
    void operator()(void* handle) const { FindClose(handle); }
};
using Search = std::unique_ptr<void, CloseSearch>;

struct ReleaseObject {
    void operator()(IUnknown* object) const { object->Release(); }
};
template <class Interface>
using Com = std::unique_ptr<Interface, ReleaseObject>;

/// COM for the time of one call, however the thread was set up before.
struct ComSession {
    ComSession() : started(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~ComSession() {
        if (started) CoUninitialize();
    }
    ComSession(const ComSession&) = delete;
    ComSession& operator=(const ComSession&) = delete;
    bool started;
};

/// Tries again while another program may still be letting go of the file.
template <class Call>
bool Patiently(Call call) {
    const ULONGLONG end = GetTickCount64() + kDeletePatienceMs;
    while (!call()) {
        if (GetTickCount64() > end) return false;
        Sleep(20);
    }
    return true;
}

bool DeleteTree(const std::wstring& folder) {
    WIN32_FIND_DATAW item = {};
    HANDLE handle = FindFirstFileW((folder + L"\\*").c_str(), &item);
    if (handle == INVALID_HANDLE_VALUE) return false;
    bool done = true;
    {
        const Search search(handle);
        do {
            const std::wstring name = item.cFileName;
            if (name == L"." || name == L"..") continue;
            const std::wstring path = folder + L"\\" + name;
            SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            const bool is_folder = (item.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
            done &= is_folder ? DeleteTree(path) : Patiently([&] { return DeleteFileW(path.c_str()); });
        } while (FindNextFileW(search.get(), &item));
    }
    return Patiently([&] { return RemoveDirectoryW(folder.c_str()); }) && done;
}

std::string TemporaryFolder() {
    wchar_t path[MAX_PATH + 1] = L"";
    if (GetTempPathW(ARRAYSIZE(path), path) == 0) ThrowWindowsError("GetTempPathW");
    wchar_t full[4 * MAX_PATH] = L"";
    // The short form of a user's folder ("RUNNER~1") would not compare equal to what the product reads.
    if (GetLongPathNameW(path, full, ARRAYSIZE(full)) == 0) ThrowWindowsError("GetLongPathNameW");
    std::string folder = Utf8(full);
    while (folder.ends_with('\\'))
        folder.pop_back();
    return folder;
}

void Check(HRESULT result, const char* what) {
    if (FAILED(result)) ThrowWindowsError(what, static_cast<DWORD>(result));
}

}  // namespace

ProgramFolder::ProgramFolder(std::string_view name) {
    static std::atomic<int> count = 0;
    path_ = TemporaryFolder() + "\\" + std::string(name) + "-" + std::to_string(GetCurrentProcessId()) + "-" +
            std::to_string(++count);
    // A crashed run with the same process number may have left one behind.
    if (FileExists(path_)) DeleteTree(Wide(path_));
    MakeFolders(path_);
}

ProgramFolder::~ProgramFolder() {
    if (!DeleteTree(Wide(path_)))
        ADD_FAILURE() << "could not delete " << path_ << ": something is still open";
}

std::string ProgramFolder::FullPath(std::string_view relative) const {
    return path_ + "\\" + std::string(relative);
}

bool ProgramFolder::Exists(std::string_view relative) const { return FileExists(FullPath(relative)); }

std::string ProgramFolder::MakeFile(std::string_view relative, std::string_view bytes) const {
    const std::string path = FullPath(relative);
    MakeFolders(FolderOf(path));
    WriteBytes(path, bytes);
    return path;
}

std::string ProgramFolder::MakeFolder(std::string_view relative) const {
    const std::string path = FullPath(relative);
    MakeFolders(path);
    return path;
}

std::string ProgramFolder::MakeLink(std::string_view relative, const LinkDetails& details) const {
    const std::string path = FullPath(relative);
    MakeFolders(FolderOf(path));
    const ComSession session;
    IShellLinkW* raw_link = nullptr;
    Check(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                           reinterpret_cast<void**>(&raw_link)),
          "Making a shell link");
    const Com<IShellLinkW> link(raw_link);
    const auto set = [&](HRESULT (STDMETHODCALLTYPE IShellLinkW::*method)(LPCWSTR), const std::string& text) {
        if (!text.empty()) Check((link.get()->*method)(Wide(text).c_str()), "Filling a shell link");
    };
    set(&IShellLinkW::SetPath, details.target);
    set(&IShellLinkW::SetArguments, details.arguments);
    set(&IShellLinkW::SetDescription, details.description);
    set(&IShellLinkW::SetWorkingDirectory, details.work_folder);
    if (!details.icon_path.empty()) {
        Check(link->SetIconLocation(Wide(details.icon_path).c_str(), details.icon_index), "SetIconLocation");
    }
    if (details.show_state != 0) Check(link->SetShowCmd(details.show_state), "SetShowCmd");
    IPersistFile* raw_file = nullptr;
    Check(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&raw_file)), "IPersistFile");
    const Com<IPersistFile> file(raw_file);
    Check(file->Save(Wide(path).c_str(), TRUE), "Saving a shell link");
    return path;
}

std::string ProgramFolder::CopyIn(const std::string& source, std::string_view relative) const {
    const std::string path = FullPath(relative.empty() ? NameOf(source) : std::string(relative));
    MakeFolders(FolderOf(path));
    if (!CopyFileW(Wide(source).c_str(), Wide(path).c_str(), FALSE)) {
        ThrowWindowsError("Copying " + source + " to " + path);
    }
    return path;
}

std::string ProgramFolder::ReadFile(std::string_view relative) const { return FileBytes(FullPath(relative)); }

void ProgramFolder::SetReadOnly(std::string_view relative) const {
    if (!SetFileAttributesW(Wide(FullPath(relative)).c_str(), FILE_ATTRIBUTE_READONLY)) {
        ThrowWindowsError("Making " + FullPath(relative) + " read-only");
    }
}

void ProgramFolder::RemoveFile(std::string_view relative) const {
    if (!DeleteFileW(Wide(FullPath(relative)).c_str())) ThrowWindowsError("Deleting " + FullPath(relative));
}

std::string ProgramFolder::IniBytes() const {
    return Exists("Quon.ini") ? ReadFile("Quon.ini") : std::string();
}

std::vector<std::string> ProgramFolder::IniLines(std::string_view section) const {
    std::vector<std::string> lines;
    for (const IniText::Entry& entry : Ini().Entries(section))
        lines.push_back(entry.key + "=" + entry.value);
    return lines;
}

}  // namespace testkit
