// Writes what the code under test draws to a CallLog, call by call, and draws it as well.
//
//     CallLog log;
//     const RecordedCalls painting = LogPainting(log, box.Handle(), box.Dc());
//     button.DrawButton();
//     EXPECT_THAT(log.Lines(), ElementsAre("Edge 0 0 102 90 type 9 flags 15", "Refresh"));
//
// Lines, rectangles as left top right bottom:
//   Fill <rectangle>                        FillRect
//   Icon <x> <y>                            DrawIcon
//   Text <text> in <rectangle> format <n>   DrawTextExW
//   Colour <number>                         SetTextColor
//   Edge <rectangle> type <n> flags <n>     DrawEdge
//   Refresh                                 InvalidateRect of the whole window
// Calls for another device context or window are left out.
#pragma once

#include <windows.h>

#include "tests/support/recorded_call.h"

namespace testkit {

RecordedCalls LogPainting(CallLog& log, HWND window, HDC dc);

/// The log's text for a rectangle.
std::string RectText(const RECT& rect);

}  // namespace testkit
