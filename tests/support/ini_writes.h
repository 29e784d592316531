// What is written to configuration files, in its order.
//
//     const RecordedCalls writes = LogWrites(log);
//     ...
//     EXPECT_TRUE(InOrder(log, {"write Buttons 23 new|0", "empty Switch"}));
#pragma once

#include "tests/support/call_log.h"
#include "tests/support/recorded_call.h"

namespace testkit {

/// Logs "write SECTION KEY VALUE" and "empty SECTION" and lets the calls through.
[[nodiscard]] inline RecordedCalls LogWrites(CallLog& log) {
    RecordedCalls calls;
    calls.push_back(WATCH_CALL(
        WritePrivateProfileStringA,
        [&log](LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR) { log.Add("write", section, key, value); }));
    calls.push_back(WATCH_CALL(WritePrivateProfileSectionA,
                               [&log](LPCSTR section, LPCSTR, LPCSTR) { log.Add("empty", section); }));
    return calls;
}

}  // namespace testkit
