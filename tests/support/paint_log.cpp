#include "tests/support/paint_log.h"

#include <string>

#include "tests/support/text.h"

namespace testkit {

std::string RectText(const RECT& rect) {
    return std::to_string(rect.left) + " " + std::to_string(rect.top) + " " + std::to_string(rect.right) +
           " " + std::to_string(rect.bottom);
}

RecordedCalls LogPainting(CallLog& log, HWND window, HDC dc) {
    RecordedCalls calls;
    calls.push_back(FAKE_CALL(FillRect, [&log, dc](HDC on, const RECT* rect, HBRUSH brush) {
        if (on == dc) log.Add("Fill", RectText(*rect));
        return ORIGINAL_CALL(FillRect)(on, rect, brush);
    }));
    calls.push_back(FAKE_CALL(DrawIcon, [&log, dc](HDC on, int x, int y, HICON icon) {
        if (on == dc) log.Add("Icon", x, y);
        return ORIGINAL_CALL(DrawIcon)(on, x, y, icon);
    }));
    calls.push_back(FAKE_CALL(DrawTextExW, [&log, dc](HDC on, LPWSTR text, int length, LPRECT rect,
                                                      UINT format, LPDRAWTEXTPARAMS params) {
        if (on == dc) {
            const std::wstring_view drawn(text, static_cast<std::size_t>(length));
            log.Add("Text", Utf8(drawn), "in", RectText(*rect), "format", format);
        }
        return ORIGINAL_CALL(DrawTextExW)(on, text, length, rect, format, params);
    }));
    calls.push_back(FAKE_CALL(SetTextColor, [&log, dc](HDC on, COLORREF colour) {
        if (on == dc) log.Add("Colour", colour);
        return ORIGINAL_CALL(SetTextColor)(on, colour);
    }));
    calls.push_back(FAKE_CALL(DrawEdge, [&log, dc](HDC on, LPRECT rect, UINT type, UINT flags) {
        if (on == dc) log.Add("Edge", RectText(*rect), "type", type, "flags", flags);
        return ORIGINAL_CALL(DrawEdge)(on, rect, type, flags);
    }));
    calls.push_back(FAKE_CALL(InvalidateRect, [&log, window](HWND on, const RECT* rect, BOOL erase) {
        if (on == window && rect == nullptr) log.Add("Refresh");
        return ORIGINAL_CALL(InvalidateRect)(on, rect, erase);
    }));
    return calls;
}

}  // namespace testkit
