// A record of calls of Windows that fail and are survived without a message.
//
//     Traced(Shell_NotifyIconA(NIM_ADD, &record), "Shell_NotifyIconA");
#pragma once

#include <windows.h>

namespace win {

/// Reports that `function` failed with `error`, a code of GetLastError's kind, and where:
/// "app/tray_icon.cpp(26): Shell_NotifyIconA failed with 1460". A debugger gets the line
/// (OutputDebugStringA), and it is appended to the file that the environment variable QUON_TRACE names.
/// Without either nothing happens. Leaves the last error as it was.
void TraceFailure(const char* function, DWORD error, const char* file = __builtin_FILE(),
                  int line = __builtin_LINE()) noexcept;

/// Hands `result` on; when it is 0, false or null, the failure is traced with the last error.
template <class Result>
Result Traced(Result result, const char* function, const char* file = __builtin_FILE(),
              int line = __builtin_LINE()) noexcept {
    if (!result) TraceFailure(function, GetLastError(), file, line);
    return result;
}

}  // namespace win
