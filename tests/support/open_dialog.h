#pragma once

#include <windows.h>

namespace testkit {

/// The innermost open dialog of this thread, all others being disabled; null when there is none.
HWND OpenDialog();

}  // namespace testkit
