#include "sys/file_operations.h"

#include <windows.h>

#include <commdlg.h>
#include <shellapi.h>
#include <shlobj.h>

#include <array>
#include <vector>

#include "sys/shell_folders.h"
#include "win/handles.h"
#include "win/message_ban.h"
#include "win/process_start.h"
#include "win/text.h"
#include "win/trace.h"
#include "win/window.h"

namespace sys {
namespace {

// In characters, including the NUL that ends the name: no path of Windows is longer.
constexpr DWORD kNameSize = 32768;

/// Puts the current folder of the process back: the pickers change it while the user looks around, and a
/// folder that is current cannot be removed, nor its drive.
class CurrentFolderKept {
  public:
    CurrentFolderKept() : folder_(GetCurrentDirectoryW(0, nullptr), L'\0') {
        folder_.resize(GetCurrentDirectoryW(static_cast<DWORD>(folder_.size()), folder_.data()));
    }
    CurrentFolderKept(const CurrentFolderKept&) = delete;
    CurrentFolderKept& operator=(const CurrentFolderKept&) = delete;
    CurrentFolderKept(CurrentFolderKept&&) = delete;
    CurrentFolderKept& operator=(CurrentFolderKept&&) = delete;
    ~CurrentFolderKept() { SetCurrentDirectoryW(folder_.c_str()); }

  private:
    std::wstring folder_;
};

std::string Trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

void clsBmenu::ShowProperties(const std::string& path) {
    win::AssertMayPump("ShowProperties");
    SHELLEXECUTEINFOA record{};
    record.cbSize = sizeof record;
    record.fMask = SEE_MASK_INVOKEIDLIST | SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI;
    record.hwnd = GetDesktopWindow();
    record.lpVerb = "properties";
    record.lpFile = path.c_str();
    record.lpParameters = "";
    record.lpDirectory = "";
    record.nShow = 0;
    win::Traced(ShellExecuteExA(&record), "ShellExecuteExA");
    const win::KernelObject process(record.hProcess);
}

std::string clsBmenu::GetFolder() {
    const CurrentFolderKept kept;
    const std::wstring title = win::ToWide(win::ProgramRoot());
    BROWSEINFOW record{};
    record.hwndOwner = GetDesktopWindow();
    record.lpszTitle = title.c_str();
    record.ulFlags = BIF_RETURNONLYFSDIRS;
    const LPITEMIDLIST chosen = SHBrowseForFolderW(&record);
    return chosen == nullptr ? std::string() : TakePath(chosen);
}

std::string clsBmenu::GetFile() {
    const CurrentFolderKept kept;
    // The picker begins with the name that it finds in its buffers, so they are empty.
    std::vector<wchar_t> path(kNameSize);
    std::vector<wchar_t> title(kNameSize);
    const std::wstring folder = win::ToWide(win::ProgramRoot());
    OPENFILENAMEW record{};
    record.lStructSize = sizeof record;
    record.hwndOwner = GetDesktopWindow();
    record.hInstance = win::ModuleInstance();
    record.lpstrFilter = L"All Files (*.*)\0*.*\0";
    record.lpstrFile = path.data();
    record.nMaxFile = kNameSize;
    record.lpstrFileTitle = title.data();
    record.nMaxFileTitle = kNameSize;
    record.lpstrInitialDir = folder.c_str();
    record.lpstrTitle = L"Select file";
    return GetOpenFileNameW(&record) != FALSE ? Trimmed(win::ToBytes(path.data())) : std::string();
}

int clsBmenu::FileOperation(std::int16_t operation, const std::string& source, const std::string& destination,
                            bool* aborted) {
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
    const int result = SHFileOperationA(&record);
    if (aborted != nullptr) *aborted = record.fAnyOperationsAborted != FALSE;
    return result;
}

}  // namespace sys
