#include "tests/faults/fault_points.h"

namespace faults {
namespace {

constexpr std::uint64_t kInvalidHandle = ~std::uint64_t{0};
constexpr std::uint64_t kOutOfMemory = 0x8007000E;  // E_OUTOFMEMORY
constexpr std::uint64_t kFailed = 0x80004005;       // E_FAIL

/// Most functions of Windows answer 0 when they fail; these do not, or say more by the last error.
const std::map<std::string, Failure>& Failures() {
    static const std::map<std::string, Failure> failures{
        {"CLSIDFromProgID", {0x800401F3}},   // CO_E_CLASSSTRING
        {"CoCreateInstance", {0x80040154}},  // REGDB_E_CLASSNOTREG
        {"CopyFileA", {0, ERROR_ACCESS_DENIED}},
        {"CreateFileA", {kInvalidHandle, ERROR_SHARING_VIOLATION}},
        {"CreateToolhelp32Snapshot", {kInvalidHandle}},
        {"DeleteFileA", {0, ERROR_SHARING_VIOLATION}},
        {"DialogBoxIndirectParamW", {kInvalidHandle}},
        {"DialogBoxParamW", {kInvalidHandle}},
        {"FindExecutableA", {SE_ERR_NOASSOC}},
        {"FindFirstFileA", {kInvalidHandle, ERROR_ACCESS_DENIED}},
        {"FindNextFileA", {0, ERROR_ACCESS_DENIED}},
        {"FlushFileBuffers", {0, ERROR_DISK_FULL}},
        {"GetFileAttributesA", {INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED}},
        {"GetFileAttributesExA", {0, ERROR_ACCESS_DENIED}},
        {"GetFinalPathNameByHandleA", {0, ERROR_PATH_NOT_FOUND}},
        {"GetKernelObjectSecurity", {0, ERROR_ACCESS_DENIED}},
        {"GetPrivateProfileSectionA", {0, ERROR_SHARING_VIOLATION}},
        {"GetPrivateProfileStringA", {0, ERROR_SHARING_VIOLATION}},
        {"MoveFileExA", {0, ERROR_ACCESS_DENIED}},
        {"OpenClipboard", {0, ERROR_ACCESS_DENIED}},
        {"OpenProcess", {0, ERROR_ACCESS_DENIED}},
        {"RegDeleteValueA", {ERROR_ACCESS_DENIED}},
        {"RegEnumKeyExA", {ERROR_NOT_ENOUGH_MEMORY}},
        {"RegOpenKeyExA", {ERROR_ACCESS_DENIED}},
        {"RegQueryValueExA", {ERROR_FILE_NOT_FOUND}},
        {"RegSetValueExA", {ERROR_ACCESS_DENIED}},
        {"RegisterDragDrop", {kOutOfMemory}},
        {"ReplaceFileA", {0, ERROR_UNABLE_TO_REMOVE_REPLACED}},
        {"SHFileOperationA", {ERROR_CANCELLED}},
        {"SHGetSpecialFolderLocation", {kFailed}},
        {"SetFileInformationByHandle", {0, ERROR_ACCESS_DENIED}},
        {"SetWindowTheme", {kFailed}},
        {"ShellExecuteA", {SE_ERR_OOM}},
        {"WriteFile", {0, ERROR_DISK_FULL}},
        {"WritePrivateProfileSectionA", {0, ERROR_SHARING_VIOLATION}},
        {"WritePrivateProfileStringA", {0, ERROR_SHARING_VIOLATION}},
    };
    return failures;
}

/// What does not fail.
const std::set<std::string>& Exempt() {
    static const std::set<std::string> exempt{
        // These only compute in memory of ours and cannot fail.
        "CharUpperBuffW",
        "CompareStringOrdinal",
        "InflateRect",
        "MulDiv",
        "MultiByteToWideChar",
        "OffsetRect",
        "PathIsURLA",
        "PtInRect",
        "SysStringLen",
        "VariantInit",
        "WideCharToMultiByte",
        // These say how things are; none of their answers is a failure.
        "GetActiveWindow",
        "GetCapture",
        "GetCurrentProcessId",
        "GetCurrentThreadId",
        "GetDesktopWindow",
        "GetDlgCtrlID",
        "GetFocus",
        "GetKeyState",
        "GetLastError",
        "GetMessagePos",
        "GetModuleHandleW",
        "GetSysColor",
        "GetSysColorBrush",
        "GetTickCount",
        "GetTickCount64",
        "IsChild",
        "IsWindow",
        "IsWindowEnabled",
        "IsWindowVisible",
        "ShowWindow",
        // These give back what exists. They fail only for what does not, and anything they then kept would be
        // a leak that the test itself has made.
        "CloseClipboard",
        "CloseHandle",
        "CoTaskMemFree",
        "DeleteDC",
        "DeleteObject",
        "DestroyIcon",
        "DestroyMenu",
        "DestroyWindow",
        "EndPaint",
        "FindClose",
        "GlobalUnlock",
        "OleUninitialize",
        "RegCloseKey",
        "ReleaseDC",
        "ReleaseStgMedium",
        "RemoveWindowSubclass",
        "RevokeDragDrop",
        "VariantClear",
        // These are how messages run: a call inside this program, whose answer is ours.
        "CallWindowProcW",
        "DefSubclassProc",
        "DefWindowProcW",
        "DispatchMessageW",
        "EndDialog",
        "IsDialogMessageW",
        "PeekMessageW",
        "PostQuitMessage",
        "SendMessageA",
        "SendMessageW",
        "TranslateMessage",
        // These read or change a window of ours that exists.
        "GetDlgItem",
        "GetWindowLongPtrW",
        "GetWindowTextLengthW",
        "GetWindowTextW",
        "SetWindowLongPtrW",
        // These return nothing, and what they do cannot fail.
        "SetLastError",
        "Sleep",
    };
    return exempt;
}

}  // namespace

const Failure* FailureOf(const std::string& function) {
    static const Failure kUsual;
    if (Exempt().contains(function)) return nullptr;
    const auto found = Failures().find(function);
    return found == Failures().end() ? &kUsual : &found->second;
}

bool MayFailForGood(const std::string& function) {
    // What is never painted is to be painted for ever.
    return function != "BeginPaint";
}

std::vector<std::string> UnknownNames() {
    const std::vector<std::string> known = FaultPoints::Functions();
    std::vector<std::string> unknown;
    const auto check = [&](const std::string& name) {
        if (std::find(known.begin(), known.end(), name) == known.end()) unknown.push_back(name);
    };
    for (const auto& [name, failure] : Failures())
        check(name);
    for (const std::string& name : Exempt())
        check(name);
    return unknown;
}

}  // namespace faults
