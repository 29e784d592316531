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
    calls.push_back(WATCH_CALL(FillRect, [&log, dc](HDC on, const RECT* rect, HBRUSH) {
        if (on == dc) log.Add("Fill", RectText(*rect));
    }));
    calls.push_back(WATCH_CALL(DrawIcon, [&log, dc](HDC on, int x, int y, HICON) {
        if (on == dc) log.Add("Icon", x, y);
    }));
    calls.push_back(WATCH_CALL(
        DrawTextExW, [&log, dc](HDC on, LPWSTR text, int length, LPRECT rect, UINT format, LPDRAWTEXTPARAMS) {
            if (on == dc) {
                const std::wstring_view drawn(text, static_cast<std::size_t>(length));
                log.Add("Text", Utf8(drawn), "in", RectText(*rect), "format", format);
            }
        }));
    calls.push_back(WATCH_CALL(SetTextColor, [&log, dc](HDC on, COLORREF colour) {
        if (on == dc) log.Add("Colour", colour);
    }));
    calls.push_back(WATCH_CALL(DrawEdge, [&log, dc](HDC on, LPRECT rect, UINT type, UINT flags) {
        if (on == dc) log.Add("Edge", RectText(*rect), "type", type, "flags", flags);
    }));
    calls.push_back(WATCH_CALL(InvalidateRect, [&log, window](HWND on, const RECT* rect, BOOL) {
        if (on == window && rect == nullptr) log.Add("Refresh");
    }));
    return calls;
}

}  // namespace testkit
