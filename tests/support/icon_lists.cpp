#include "tests/support/icon_lists.h"

#include <commoncontrols.h>
#include <shellapi.h>

#include <vector>

namespace testkit {

HICON MakeIcon(int size, const std::function<COLORREF(int x, int y)>& color) {
    BITMAPINFO format{};
    format.bmiHeader.biSize = sizeof format.bmiHeader;
    format.bmiHeader.biWidth = size;
    format.bmiHeader.biHeight = -size;
    format.bmiHeader.biPlanes = 1;
    format.bmiHeader.biBitCount = 32;
    void* bits = nullptr;
    const HBITMAP picture = CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &bits, nullptr, 0);
    auto* pixel = static_cast<RGBQUAD*>(bits);
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x) {
            const COLORREF wanted = color(x, y);
            const BYTE opaque = wanted == CLR_NONE ? 0 : 255;
            *pixel++ = {static_cast<BYTE>(GetBValue(wanted) & opaque),
                        static_cast<BYTE>(GetGValue(wanted) & opaque),
                        static_cast<BYTE>(GetRValue(wanted) & opaque), opaque};
        }
    const std::vector<BYTE> none(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    const HBITMAP mask = CreateBitmap(size, size, 1, 1, none.data());
    ICONINFO info{TRUE, 0, 0, mask, picture};
    const HICON icon = CreateIconIndirect(&info);
    DeleteObject(mask);
    DeleteObject(picture);
    return icon;
}

int WidthOf(HICON icon) {
    ICONINFO info{};
    if (GetIconInfo(icon, &info) == 0) return 0;
    BITMAP picture{};
    GetObjectW(info.hbmMask, sizeof picture, &picture);
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
    return picture.bmWidth;
}

COLORREF PixelOf(HICON icon, int x, int y) {
    const int size = WidthOf(icon);
    const HDC screen = GetDC(nullptr);
    const HDC dc = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, size, size);
    const HGDIOBJ former = SelectObject(dc, bitmap);
    PatBlt(dc, 0, 0, size, size, BLACKNESS);
    ORIGINAL_CALL(DrawIconEx)(dc, 0, 0, icon, size, size, 0, nullptr, DI_NORMAL);
    const COLORREF color = GetPixel(dc, x, y);
    SelectObject(dc, former);
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return color;
}

IconLists::IconLists()
    : get_(FAKE_CALL(SHGetImageList, [this](int kind, REFIID id, void** object) -> HRESULT {
          const auto found = lists_.find(kind);
          if (found == lists_.end()) return E_INVALIDARG;
          // The handle of a list is its object's address.
          return reinterpret_cast<IUnknown*>(found->second)->QueryInterface(id, object);
      })) {}

IconLists::~IconLists() {
    for (const auto& [kind, list] : lists_)
        ImageList_Destroy(list);
}

void IconLists::Put(int kind, int size, HICON icon) {
    HIMAGELIST& list = lists_[kind];
    if (list == nullptr) list = ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 1, 1);
    ImageList_ReplaceIcon(list, -1, icon);
    DestroyIcon(icon);
}

}  // namespace testkit
