#include "win/icons.h"

#include <commctrl.h>
#include <commoncontrols.h>
#include <shellapi.h>

#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "win/com.h"
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

/// A square picture, line by line from the top.
struct Picture {
    int size = 0;
    std::vector<RGBQUAD> pixels;

    [[nodiscard]] const RGBQUAD& At(int x, int y) const { return pixels[Place(x, y)]; }
    RGBQUAD& At(int x, int y) { return pixels[Place(x, y)]; }

  private:
    [[nodiscard]] size_t Place(int x, int y) const noexcept {
        return static_cast<size_t>(y) * static_cast<size_t>(size) + static_cast<size_t>(x);
    }
};

BITMAPINFO FormatOf(int size) noexcept {
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = size;
    format.bmiHeader.biHeight = -size;  // from the top
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    return format;
}

/// Empty when Windows does not give it.
Picture PictureOf(HBITMAP bitmap, int size) {
    Picture picture{size, std::vector<RGBQUAD>(static_cast<size_t>(size) * static_cast<size_t>(size))};
    BITMAPINFO format = FormatOf(size);
    const WindowDc screen(nullptr);
    if (GetDIBits(screen.Get(), bitmap, 0, static_cast<UINT>(size), picture.pixels.data(), &format,
                  DIB_RGB_COLORS) != size)
        return {};
    return picture;
}

/// The pixels of an icon of this size with how opaque they are, which icons of old tell by their mask.
Picture PictureOf(HICON icon, int size) {
    ICONINFO info{};
    if (GetIconInfo(icon, &info) == FALSE) return {};
    const Bitmap color(info.hbmColor);
    const Bitmap mask(info.hbmMask);
    if (!color) return {};
    Picture picture = PictureOf(color.Get(), size);
    const auto hasAlpha = [](const RGBQUAD& pixel) { return pixel.rgbReserved != 0; };
    if (std::any_of(picture.pixels.begin(), picture.pixels.end(), hasAlpha)) return picture;
    const Picture holes = PictureOf(mask.Get(), size);
    if (holes.size != picture.size) return {};
    for (size_t place = 0; place < picture.pixels.size(); ++place)
        picture.pixels[place].rgbReserved = holes.pixels[place].rgbRed == 0 ? BYTE{255} : BYTE{0};
    return picture;
}

/// In the largest list, an icon that does not come in its size stands in the top left corner.
bool IsInCorner(const Picture& picture) noexcept {
    const int half = picture.size / 2;
    for (int y = 0; y < picture.size; ++y)
        for (int x = y < half ? half : 0; x < picture.size; ++x)
            if (picture.At(x, y).rgbReserved != 0) return false;
    return true;
}

/// How much of the pixel `from` of a line of `length` pixels lies in the pixel `to` of a line of `shorter`.
std::uint64_t Overlap(int from, int to, int length, int shorter) noexcept {
    const int begin = std::max(from * shorter, to * length);
    const int end = std::min((from + 1) * shorter, (to + 1) * length);
    return end > begin ? static_cast<std::uint64_t>(end - begin) : 0;
}

/// The mean of what lies in one pixel of the smaller picture; a pixel counts by how opaque it is.
RGBQUAD MeanOf(const Picture& picture, int size, int x, int y) noexcept {
    const int length = picture.size;
    std::uint64_t red = 0;
    std::uint64_t green = 0;
    std::uint64_t blue = 0;
    std::uint64_t opaque = 0;
    for (int row = y * length / size; row * size < (y + 1) * length; ++row) {
        for (int column = x * length / size; column * size < (x + 1) * length; ++column) {
            const RGBQUAD& pixel = picture.At(column, row);
            const std::uint64_t weight =
                Overlap(row, y, length, size) * Overlap(column, x, length, size) * pixel.rgbReserved;
            red += weight * pixel.rgbRed;
            green += weight * pixel.rgbGreen;
            blue += weight * pixel.rgbBlue;
            opaque += weight;
        }
    }
    if (opaque == 0) return {};
    const auto area = static_cast<std::uint64_t>(length) * static_cast<std::uint64_t>(length);
    return {static_cast<BYTE>(blue / opaque), static_cast<BYTE>(green / opaque),
            static_cast<BYTE>(red / opaque), static_cast<BYTE>(opaque / area)};
}

Icon IconOf(const Picture& picture) {
    const BITMAPINFO format = FormatOf(picture.size);
    void* bits = nullptr;
    const Bitmap color(CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0));
    // The mask is not used where pixels tell themselves how opaque they are, but there has to be one.
    const std::vector<BYTE> none(picture.pixels.size());
    const Bitmap mask(CreateBitmap(picture.size, picture.size, 1, 1, none.data()));
    if (!color || !mask) return {};
    std::copy(picture.pixels.begin(), picture.pixels.end(), static_cast<RGBQUAD*>(bits));
    ICONINFO info{TRUE, 0, 0, mask.Get(), color.Get()};
    return Icon(CreateIconIndirect(&info));
}

/// Drawing an icon smaller than it is would leave out lines of it.
Picture Shrunk(const Picture& picture, int size) {
    Picture small{size, {}};
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            small.pixels.push_back(MeanOf(picture, size, x, y));
    return small;
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

Icon ListedIcon(int index, int size) {
    Icon best;
    for (const int kind : {SHIL_EXTRALARGE, SHIL_JUMBO}) {
        ComPtr<IImageList> list;
        HICON listed = nullptr;
        int width = 0;
        int height = 0;
        if (FAILED(SHGetImageList(kind, __uuidof(IImageList), list.ReceiveVoid())) ||
            FAILED(list->GetIconSize(&width, &height)) || width != height ||
            FAILED(list->GetIcon(index, ILD_NORMAL, &listed)))
            break;
        Icon icon(listed);
        if (width < size) {
            best = std::move(icon);
            continue;
        }
        const Picture picture = PictureOf(listed, width);
        if (picture.size == 0 || (best && IsInCorner(picture))) break;
        Icon shrunk = IconOf(Shrunk(picture, size));
        return shrunk ? std::move(shrunk) : std::move(best);
    }
    return best;
}

void DrawIconOfSize(HDC dc, POINT at, HICON icon, int size) noexcept {
    if (size == GetSystemMetrics(SM_CXICON))
        DrawIcon(dc, at.x, at.y, icon);
    else
        DrawIconEx(dc, at.x, at.y, icon, size, size, 0, nullptr, DI_NORMAL);
}

}  // namespace win
