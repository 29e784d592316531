// A window that seems to be another program's.
//
//     std::wstring program = L"C:\\Windows\\notepad.exe";                      // may change meanwhile
//     const RecordedCalls other = WindowOfProgram(window.Handle(), program);
#pragma once

#include "tests/support/recorded_call.h"

namespace testkit {

/// The process that such a window seems to be of.
inline constexpr DWORD kOtherProcess = 1;

/// Windows says that this process is the program at this path; no other tells its name.
[[nodiscard]] inline RecordedCalls OtherProcessRuns(const std::wstring& path) {
    RecordedCalls calls;
    calls.push_back(FAKE_CALL(OpenProcess, [](DWORD access, BOOL inherit, DWORD process) {
        return process == kOtherProcess ? ORIGINAL_CALL(OpenProcess)(access, inherit, GetCurrentProcessId())
                                        : nullptr;
    }));
    calls.push_back(
        FAKE_CALL(QueryFullProcessImageNameW, [&path](HANDLE, DWORD, LPWSTR name, PDWORD size) -> BOOL {
            *size = static_cast<DWORD>(path.copy(name, *size));
            return TRUE;
        }));
    return calls;
}

/// And that this window belongs to it.
[[nodiscard]] inline RecordedCalls WindowOfProgram(HWND owned, const std::wstring& path) {
    RecordedCalls calls = OtherProcessRuns(path);
    calls.push_back(FAKE_CALL(GetWindowThreadProcessId, [owned](HWND window, LPDWORD process) -> DWORD {
        if (window != owned) return ORIGINAL_CALL(GetWindowThreadProcessId)(window, process);
        if (process != nullptr) *process = kOtherProcess;
        return kOtherProcess;
    }));
    return calls;
}

}  // namespace testkit
