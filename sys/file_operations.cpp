#include "sys/file_operations.h"

#include <windows.h>

#include <commdlg.h>
#include <shellapi.h>
#include <shlobj.h>

#include <array>

#include "sys/shell_folders.h"
#include "win/handles.h"
#include "win/process_start.h"
#include "win/window.h"

namespace sys {
namespace {

constexpr DWORD kNameSize = 255;  // bytes, the NUL that ends the name among them
using NameBuffer = std::array<char, kNameSize>;

/// The picker takes what is in its buffers for a name to begin with: blanks are none.
NameBuffer BlankName() {
    NameBuffer name{};
    name.fill(' ');
    name.back() = '\0';
    return name;
}

std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

void clsBmenu::ShowProperties(const std::string& path) {
    SHELLEXECUTEINFOA record{};
    record.cbSize = sizeof record;
    record.fMask = SEE_MASK_INVOKEIDLIST | SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
    record.hwnd = GetDesktopWindow();
    record.lpVerb = "properties";
    record.lpFile = path.c_str();
    record.lpParameters = "";
    record.lpDirectory = "";
    record.nShow = 0;
    ShellExecuteExA(&record);
    const win::KernelObject process(record.hProcess);
}

std::string clsBmenu::GetFolder() {
    const std::string title = win::ProgramRoot();
    BROWSEINFOA record{};
    record.hwndOwner = GetDesktopWindow();
    record.lpszTitle = title.c_str();
    record.ulFlags = BIF_RETURNONLYFSDIRS;
    const LPITEMIDLIST chosen = SHBrowseForFolderA(&record);
    return chosen == nullptr ? std::string() : TakePath(chosen);
}

std::string clsBmenu::GetFile() {
    NameBuffer path = BlankName();
    NameBuffer title = BlankName();
    const std::string folder = win::ProgramRoot();
    OPENFILENAMEA record{};
    record.lStructSize = sizeof record;
    record.hwndOwner = GetDesktopWindow();
    record.hInstance = win::ModuleInstance();
    record.lpstrFilter = "All Files (*.*)\0*.*\0";
    record.lpstrFile = path.data();
    record.nMaxFile = kNameSize;
    record.lpstrFileTitle = title.data();
    record.nMaxFileTitle = kNameSize;
    record.lpstrInitialDir = folder.c_str();
    record.lpstrTitle = "Select file";
    return GetOpenFileNameA(&record) != FALSE ? Trimmed(path.data()) : std::string();
}

int clsBmenu::FileOperation(std::int16_t operation, const std::string& source,
                            const std::string& destination) {
    struct Kind {
        UINT function;
        bool hasDestination;
        FILEOP_FLAGS flags;
    };
    constexpr FILEOP_FLAGS kUndoable = FOF_ALLOWUNDO | FOF_SIMPLEPROGRESS;
    static constexpr std::array<Kind, 5> kKinds{{{FO_COPY, true, kUndoable},
                                                 {FO_MOVE, true, kUndoable},
                                                 {FO_MOVE, true, kUndoable},
                                                 {FO_DELETE, false, kUndoable},
                                                 {FO_DELETE, false, 0}}};
    if (operation < 0 || operation >= static_cast<std::int16_t>(kKinds.size())) return ERROR_INVALID_FUNCTION;
    const Kind& kind = kKinds.at(static_cast<size_t>(operation));
    // The shell reads lists of names: each name ends with a NUL, the list with one more.
    const std::string from = source + '\0';
    const std::string to = destination + '\0';
    SHFILEOPSTRUCTA record{};
    record.wFunc = kind.function;
    record.pFrom = from.c_str();
    record.pTo = kind.hasDestination ? to.c_str() : nullptr;
    record.fFlags = kind.flags;
    return SHFileOperationA(&record);
}

}  // namespace sys
