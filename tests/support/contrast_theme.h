// A contrast theme of Windows, as far as the program asks whether there is one; win::ForgetColors makes it
// ask again.
#pragma once

#include "tests/support/recorded_call.h"

namespace testkit {

/// Windows answers what `on`, which has to live as long, says at that time.
[[nodiscard]] inline RecordedCall ContrastThemeIs(const bool& on) {
    return FAKE_CALL(SystemParametersInfoW, [&on](UINT what, UINT size, PVOID value, UINT flags) -> WINBOOL {
        if (what != SPI_GETHIGHCONTRAST)
            return ORIGINAL_CALL(SystemParametersInfoW)(what, size, value, flags);
        static_cast<HIGHCONTRASTW*>(value)->dwFlags = on ? HCF_HIGHCONTRASTON : 0;
        return TRUE;
    });
}

}  // namespace testkit
