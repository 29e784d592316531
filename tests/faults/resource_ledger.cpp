#include "tests/faults/resource_ledger.h"

namespace faults {

template <class Handle>
Handle ResourceLedger::Take(Kind kind, const char* function, Handle handle) {
    const auto value = reinterpret_cast<std::uintptr_t>(handle);
    // 1 stands for a file that can hold no icons.
    if (value <= 1 || handle == INVALID_HANDLE_VALUE) return handle;
    std::vector<std::string>& entry = open_[{kind, value}];
    // Windows hands out a shared icon again and again; it has to be given back once at most.
    if (kind != Kind::kIcon || entry.empty()) entry.emplace_back(function);
    return handle;
}

template <class Handle>
void ResourceLedger::GiveBack(Kind kind, Handle handle) {
    const auto found = open_.find({kind, reinterpret_cast<std::uintptr_t>(handle)});
    if (found == open_.end()) return;
    found->second.pop_back();
    if (found->second.empty()) open_.erase(found);
}

std::vector<std::string> ResourceLedger::Open() const {
    std::map<std::string, int> counts;
    for (const auto& [handle, functions] : open_)
        for (const std::string& function : functions)
            ++counts[function];
    std::vector<std::string> lines;
    for (const auto& [function, count] : counts)
        lines.push_back(function + " " + std::to_string(count));
    return lines;
}

ResourceLedger::ResourceLedger() {
    RecordDrawing();
    RecordDeviceContexts();
    RecordMenus();
    RecordIcons();
    RecordKernel();
    RecordShell();
}

// NOLINTBEGIN(bugprone-macro-parentheses): the arguments are names and parameter lists.
#define TAKING(kind, function, parameters, ...)                                   \
    fakes_.push_back(FAKE_CALL(function, [this] parameters {                      \
        return Take(Kind::kind, #function, ORIGINAL_CALL(function)(__VA_ARGS__)); \
    }))
#define GIVING(kind, function, Parameter)                           \
    fakes_.push_back(FAKE_CALL(function, [this](Parameter handle) { \
        const auto answer = ORIGINAL_CALL(function)(handle);        \
        if (answer != 0) GiveBack(Kind::kind, handle);              \
        return answer;                                              \
    }))
// NOLINTEND(bugprone-macro-parentheses)

void ResourceLedger::RecordDrawing() {
    TAKING(kGdi, CreateCompatibleBitmap, (HDC dc, int width, int height), dc, width, height);
    TAKING(kGdi, CreateSolidBrush, (COLORREF color), color);
    TAKING(kGdi, CreateFontIndirectW, (const LOGFONTW* font), font);
    TAKING(kGdi, CreateRectRgn, (int left, int top, int right, int bottom), left, top, right, bottom);
    TAKING(kGdi, CreateRectRgnIndirect, (const RECT* rect), rect);
    GIVING(kGdi, DeleteObject, HGDIOBJ);
    fakes_.push_back(FAKE_CALL(SetWindowRgn, [this](HWND window, HRGN region, WINBOOL redraw) {
        const int answer = ORIGINAL_CALL(SetWindowRgn)(window, region, redraw);
        if (answer != 0) GiveBack(Kind::kGdi, region);
        return answer;
    }));
}

void ResourceLedger::RecordDeviceContexts() {
    TAKING(kDc, CreateCompatibleDC, (HDC dc), dc);
    GIVING(kDc, DeleteDC, HDC);
    TAKING(kDc, GetDC, (HWND window), window);
    fakes_.push_back(FAKE_CALL(ReleaseDC, [this](HWND window, HDC dc) {
        GiveBack(Kind::kDc, dc);
        return ORIGINAL_CALL(ReleaseDC)(window, dc);
    }));
    TAKING(kDc, BeginPaint, (HWND window, LPPAINTSTRUCT record), window, record);
    fakes_.push_back(FAKE_CALL(EndPaint, [this](HWND window, const PAINTSTRUCT* record) {
        GiveBack(Kind::kDc, record->hdc);
        return ORIGINAL_CALL(EndPaint)(window, record);
    }));
}

void ResourceLedger::RecordMenus() {
    fakes_.push_back(FAKE_CALL(CreatePopupMenu, [this] {
        return Take(Kind::kMenu, "CreatePopupMenu", ORIGINAL_CALL(CreatePopupMenu)());
    }));
    GIVING(kMenu, DestroyMenu, HMENU);
    fakes_.push_back(FAKE_CALL(AppendMenuW, [this](HMENU menu, UINT flags, UINT_PTR item, LPCWSTR text) {
        const WINBOOL answer = ORIGINAL_CALL(AppendMenuW)(menu, flags, item, text);
        if (answer != 0 && (flags & MF_POPUP) != 0) GiveBack(Kind::kMenu, reinterpret_cast<HMENU>(item));
        return answer;
    }));
}

void ResourceLedger::RecordIcons() {
    TAKING(kIcon, CopyIcon, (HICON icon), icon);
    TAKING(kIcon, ExtractIconA, (HINSTANCE module, LPCSTR file, UINT index), module, file, index);
    TAKING(kIcon, ExtractAssociatedIconA, (HINSTANCE module, LPSTR file, WORD * index), module, file, index);
    fakes_.push_back(FAKE_CALL(LoadImageW, [this](HINSTANCE module, LPCWSTR name, UINT type, int x, int y,
                                                  UINT flags) {
        return Take(Kind::kIcon, "LoadImageW", ORIGINAL_CALL(LoadImageW)(module, name, type, x, y, flags));
    }));
    fakes_.push_back(FAKE_CALL(
        SHGetFileInfoA, [this](LPCSTR path, DWORD attributes, SHFILEINFOA* info, UINT size, UINT flags) {
            const DWORD_PTR answer = ORIGINAL_CALL(SHGetFileInfoA)(path, attributes, info, size, flags);
            if (answer != 0 && (flags & SHGFI_ICON) != 0) Take(Kind::kIcon, "SHGetFileInfoA", info->hIcon);
            return answer;
        }));
    fakes_.push_back(FAKE_CALL(DestroyIcon, [this](HICON icon) {
        // Whatever the answer is: Windows keeps an icon that it shares, and that is no fault.
        GiveBack(Kind::kIcon, icon);
        return ORIGINAL_CALL(DestroyIcon)(icon);
    }));
}

void ResourceLedger::RecordKernel() {
    TAKING(kKernel, CreateFileA,
           (LPCSTR name, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security, DWORD how, DWORD flags,
            HANDLE like),
           name, access, share, security, how, flags, like);
    TAKING(kKernel, OpenProcess, (DWORD access, WINBOOL inherit, DWORD process), access, inherit, process);
    fakes_.push_back(FAKE_CALL(
        CreateProcessA,
        [this](LPCSTR, LPSTR, LPSECURITY_ATTRIBUTES, LPSECURITY_ATTRIBUTES, WINBOOL, DWORD, LPVOID, LPCSTR,
               LPSTARTUPINFOA, LPPROCESS_INFORMATION process) -> WINBOOL {
            // Nothing is started; there are two handles to close all the same.
            process->hProcess = Take(Kind::kKernel, "CreateProcessA", CreateEventW(nullptr, 0, 0, nullptr));
            process->hThread = Take(Kind::kKernel, "CreateProcessA", CreateEventW(nullptr, 0, 0, nullptr));
            return TRUE;
        }));
    GIVING(kKernel, CloseHandle, HANDLE);
    TAKING(kListing, FindFirstFileA, (LPCSTR pattern, LPWIN32_FIND_DATAA found), pattern, found);
    GIVING(kListing, FindClose, HANDLE);
    fakes_.push_back(
        FAKE_CALL(RegOpenKeyExA, [this](HKEY root, LPCSTR path, DWORD options, REGSAM access, PHKEY key) {
            const LSTATUS answer = ORIGINAL_CALL(RegOpenKeyExA)(root, path, options, access, key);
            if (answer == ERROR_SUCCESS) Take(Kind::kKey, "RegOpenKeyExA", *key);
            return answer;
        }));
    fakes_.push_back(FAKE_CALL(RegCloseKey, [this](HKEY key) {
        GiveBack(Kind::kKey, key);
        return ORIGINAL_CALL(RegCloseKey)(key);
    }));
    TAKING(kLock, GlobalLock, (HGLOBAL memory), memory);
    fakes_.push_back(FAKE_CALL(GlobalUnlock, [this](HGLOBAL memory) {
        GiveBack(Kind::kLock, ORIGINAL_CALL(GlobalLock)(memory));
        ORIGINAL_CALL(GlobalUnlock)(memory);
        return ORIGINAL_CALL(GlobalUnlock)(memory);
    }));
}

void ResourceLedger::RecordShell() {
    fakes_.push_back(
        FAKE_CALL(SHGetSpecialFolderLocation, [this](HWND owner, int folder, LPITEMIDLIST* list) {
            const HRESULT answer = ORIGINAL_CALL(SHGetSpecialFolderLocation)(owner, folder, list);
            if (answer == S_OK) Take(Kind::kMemory, "SHGetSpecialFolderLocation", *list);
            return answer;
        }));
    fakes_.push_back(FAKE_CALL(CoTaskMemFree, [this](LPVOID memory) {
        GiveBack(Kind::kMemory, memory);
        ORIGINAL_CALL(CoTaskMemFree)(memory);
    }));
}

}  // namespace faults
