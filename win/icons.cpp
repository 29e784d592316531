#include "win/icons.h"

#include <span>

#include "win/text.h"
#include "win/window.h"

namespace win {
namespace {

constexpr int kDataType = 10;  // RT_RCDATA, which has no wide form of its own
constexpr DWORD kIconVersion = 0x00030000;

/// A number in an icon file, the lowest byte first; 0 where the file has ended.
size_t NumberAt(std::span<const BYTE> file, size_t at, size_t bytes) noexcept {
    if (at + bytes > file.size()) return 0;
    size_t number = 0;
    while (bytes > 0)
        number = number << 8U | file[at + --bytes];
    return number;
}

/// The picture of an icon file to be used for a size: the smallest that is large enough, else the largest.
std::span<BYTE> BestPicture(std::span<BYTE> file, int size) noexcept {
    // The file's directory: the number of pictures, and of each its width in one byte and its place.
    constexpr size_t kCount = 4;
    constexpr size_t kHeader = 6;
    constexpr size_t kEntry = 16;
    constexpr size_t kLength = 8;
    constexpr size_t kOffset = 12;
    size_t best = 0;
    size_t bestWidth = 0;
    const auto wanted = static_cast<size_t>(size);
    for (size_t index = 0; index < NumberAt(file, kCount, 2); ++index) {
        const size_t entry = kHeader + index * kEntry;
        const size_t width = NumberAt(file, entry, 1);
        const bool better = bestWidth < wanted ? width > bestWidth : width >= wanted && width < bestWidth;
        if (!better) continue;
        best = entry;
        bestWidth = width;
    }
    const size_t offset = NumberAt(file, best + kOffset, 4);
    const size_t length = NumberAt(file, best + kLength, 4);
    if (bestWidth == 0 || offset > file.size() || length > file.size() - offset) return {};
    return file.subspan(offset, length);
}

}  // namespace

Icon ResourceIcon(int id, int size) noexcept {
    return Icon(
        static_cast<HICON>(LoadImageW(ModuleInstance(), MAKEINTRESOURCEW(id), IMAGE_ICON, size, size, 0)));
}

Icon DataIcon(int id, int size) noexcept {
    const HRSRC resource = FindResourceW(ModuleInstance(), MAKEINTRESOURCEW(id), MAKEINTRESOURCEW(kDataType));
    const HGLOBAL loaded = resource == nullptr ? nullptr : LoadResource(ModuleInstance(), resource);
    auto* bytes = loaded == nullptr ? nullptr : static_cast<BYTE*>(LockResource(loaded));
    if (bytes == nullptr) return {};
    const std::span<BYTE> file(bytes, SizeofResource(ModuleInstance(), resource));
    const std::span<BYTE> picture = BestPicture(file, size);
    if (picture.empty()) return {};
    return Icon(CreateIconFromResourceEx(picture.data(), static_cast<DWORD>(picture.size()), TRUE,
                                         kIconVersion, size, size, 0));
}

Icon FileIcon(const std::string& file, int index, int size) {
    const std::wstring path = ToWide(file);
    // The function has room for this many characters.
    if (path.empty() || path.size() >= MAX_PATH) return {};
    HICON icon = nullptr;
    UINT id = 0;
    const UINT found = PrivateExtractIconsW(path.c_str(), index, size, size, &icon, &id, 1, 0);
    // An answer with all bits set means that there is no such file.
    return Icon(found == 1 ? icon : nullptr);
}

void DrawIconOfSize(HDC dc, POINT at, HICON icon, int size) noexcept {
    if (size == GetSystemMetrics(SM_CXICON))
        DrawIcon(dc, at.x, at.y, icon);
    else
        DrawIconEx(dc, at.x, at.y, icon, size, size, 0, nullptr, DI_NORMAL);
}

}  // namespace win
