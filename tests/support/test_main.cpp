#include <windows.h>

#include <gmock/gmock.h>

#include "tests/support/quiet_desktop.h"
#include "tests/support/screen.h"
#include "tests/support/x_keyboard.h"

int main(int count, char** arguments) {
    // A crash has to end the test program with its error code, not wait in a box for somebody to read it.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    ::testing::InitGoogleMock(&count, arguments);
    testkit::CaptureScreenOnFailures();
    testkit::LetModifiersGo();
    const testkit::QuietDesktop quiet;
    return RUN_ALL_TESTS();
}
