#include "win/icons.h"

#include "win/text.h"
#include "win/window.h"

namespace win {

Icon ResourceIcon(int id, int size) noexcept {
    return Icon(
        static_cast<HICON>(LoadImageW(ModuleInstance(), MAKEINTRESOURCEW(id), IMAGE_ICON, size, size, 0)));
}

Icon FileIcon(const std::string& file, int index, int size) {
    const std::wstring path = ToWide(file);
    // The function has room for so many characters.
    if (path.empty() || path.size() >= MAX_PATH) return {};
    HICON icon = nullptr;
    UINT id = 0;
    const UINT found = PrivateExtractIconsW(path.c_str(), index, size, size, &icon, &id, 1, 0);
    // All bits stand for a file that is not there.
    return Icon(found == 1 ? icon : nullptr);
}

void DrawIconOfSize(HDC dc, POINT at, HICON icon, int size) noexcept {
    if (size == GetSystemMetrics(SM_CXICON))
        DrawIcon(dc, at.x, at.y, icon);
    else
        DrawIconEx(dc, at.x, at.y, icon, size, size, 0, nullptr, DI_NORMAL);
}

}  // namespace win
