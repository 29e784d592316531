#include "dialogs/caption_gap.h"

#include <string>

#include "win/geometry.h"
#include "win/handles.h"
#include "win/text.h"
#include "win/window.h"

namespace dialogs {
namespace {

/// The place of a control in its dialog's client pixels.
RECT PlaceOf(HWND control) {
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
    return place;
}

}  // namespace

void PlaceInCaptionGap(HWND label, HWND box, int mark) {
    const std::string caption = win::WindowText(label);
    const size_t gapStart = caption.find("  ");
    const size_t gapEnd = caption.find_first_not_of(' ', gapStart);
    const RECT labelPlace = PlaceOf(label);
    RECT place = PlaceOf(box);
    {
        const win::WindowDc dc(label);
        // NOLINTNEXTLINE(performance-no-int-to-ptr): a message's answer is the font's handle.
        const win::Selection font(dc.Get(), reinterpret_cast<HFONT>(SendMessageW(label, WM_GETFONT, 0, 0)));
        // Windows leaves half the width of a digit between a mark and its caption.
        const int start = labelPlace.left + mark + (mark == 0 ? 0 : win::TextWidth(dc.Get(), "0") / 2);
        const int blank = win::TextWidth(dc.Get(), " ");
        place.left = start + win::TextWidth(dc.Get(), caption.substr(0, gapStart)) + blank;
        place.right = start + win::TextWidth(dc.Get(), caption.substr(0, gapEnd)) - blank;
    }
    SetWindowPos(box, nullptr, place.left, place.top, win::Width(place), win::Height(place),
                 SWP_NOZORDER | SWP_NOACTIVATE);
    RECT hole = place;
    OffsetRect(&hole, -labelPlace.left, -labelPlace.top);
    win::CutHole(label, hole);
}

}  // namespace dialogs
