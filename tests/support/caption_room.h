// Whether a control has room for its caption.
//
//     EXPECT_EQ(MissingRoom(button), 0);
#pragma once

#include <windows.h>

namespace testkit {

/// How many pixels a label or a button lacks for its caption, in the font that it has; 0 when the caption
/// fits, and for all other controls.
LONG MissingRoom(HWND control);

}  // namespace testkit
