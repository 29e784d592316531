#include "tests/support/caption_room.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace testkit {
namespace {

// Pixels of 96 dots per inch: the mark of a check box, and what a button's face keeps free.
constexpr LONG kMark = 13;
constexpr LONG kFace = 6;

LONG WidthOf(HDC dc, const std::wstring& text) {
    SIZE size{};
    GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size);
    return size.cx;
}

/// What a text that wraps in this width lacks.
LONG MissingForLines(HDC dc, const std::wstring& text, LONG width, LONG height) {
    RECT lines{0, 0, width, 0};
    DrawTextW(dc, text.c_str(), static_cast<int>(text.size()), &lines,
              DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    return std::max({LONG{0}, lines.right - width, lines.bottom - height});
}

LONG MissingForLine(HDC dc, LONG wanted, const RECT& client) {
    SIZE line{};
    GetTextExtentPoint32W(dc, L"Mg", 2, &line);
    return std::max({LONG{0}, wanted - client.right, line.cy - client.bottom});
}

LONG MissingOfButton(HWND button, HDC dc, const std::wstring& caption, const RECT& client) {
    const LONG_PTR style = GetWindowLongPtrW(button, GWL_STYLE);
    const LONG besideMark = kMark + WidthOf(dc, L"0") / 2;
    const LONG width = WidthOf(dc, caption);
    if ((style & BS_MULTILINE) != 0)
        return MissingForLines(dc, caption, client.right - besideMark, client.bottom);
    switch (style & BS_TYPEMASK) {
        case BS_GROUPBOX: return std::max<LONG>(0, width + 2 * kMark - client.right);
        case BS_OWNERDRAW: return MissingForLine(dc, width, client);
        case BS_PUSHBUTTON:
        case BS_DEFPUSHBUTTON: return MissingForLine(dc, width + kFace, client);
        default: return MissingForLine(dc, width + besideMark, client);
    }
}

}  // namespace

LONG MissingRoom(HWND control) {
    std::wstring name(32, L'\0');
    name.resize(static_cast<std::size_t>(GetClassNameW(control, name.data(), static_cast<int>(name.size()))));
    std::wstring caption(static_cast<std::size_t>(GetWindowTextLengthW(control)) + 1, L'\0');
    caption.resize(
        static_cast<std::size_t>(GetWindowTextW(control, caption.data(), static_cast<int>(caption.size()))));
    if (caption.empty() || (name != L"Button" && name != L"Static")) return 0;
    const HDC dc = GetDC(control);
    const HGDIOBJ font = SelectObject(dc, reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0)));
    RECT client{};
    GetClientRect(control, &client);
    LONG missing = 0;
    if (name == L"Button")
        missing = MissingOfButton(control, dc, caption, client);
    else if (caption.find(L'\n') != std::wstring::npos || WidthOf(dc, caption) > client.right)
        missing = MissingForLines(dc, caption, client.right, client.bottom);
    else
        missing = MissingForLine(dc, WidthOf(dc, caption), client);
    SelectObject(dc, font);
    ReleaseDC(control, dc);
    return missing;
}

}  // namespace testkit
