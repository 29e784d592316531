#include "tests/support/wait.h"

#include <windows.h>

#include "tests/support/input.h"
#include "tests/support/screen.h"
#include "tests/support/window.h"

namespace testkit {

void ThrowTimeout(std::string_view what, std::chrono::milliseconds patience) {
    // Taken now, because the exception ends the programs of the test on its way.
    CaptureScreenOfFailure();
    throw TimeoutError("waited " + std::to_string(patience.count()) +
                       " ms in vain for: " + std::string(what) + DescribeOpenWindows());
}

void RestAMoment() {
    constexpr DWORD kRestMs = 8;
    MsgWaitForMultipleObjectsEx(0, nullptr, kRestMs, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    mouse::KeepAtGoal();
}

}  // namespace testkit
