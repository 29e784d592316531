#pragma once

#include <windows.h>

namespace dialogs {

/// Puts a box into the gap that its label's caption leaves for it, the caption's first run of blanks; where
/// that is depends on the font. Only the box's left and right change. The label, which must clip its
/// siblings, gets a hole there, so that neither covers the other. `mark` is the width in pixels of what
/// stands before the caption, 13 for a check box, 0 for none.
void PlaceInCaptionGap(HWND label, HWND box, int mark);

}  // namespace dialogs
