#include "tests/faults/watchdog.h"

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <exception>
#include <mutex>
#include <thread>

namespace faults {
namespace {

constexpr ULONGLONG kLongestAttempt = 60000;  // milliseconds

std::mutex g_mutex;
std::string g_attempt;
std::atomic<ULONGLONG> g_since = 0;

[[noreturn]] void Die(const char* how) {
    std::printf("%s in: %s\n", how, g_attempt.c_str());
    std::fflush(stdout);
    TerminateProcess(GetCurrentProcess(), 3);
    std::abort();
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* exception) {
    switch (exception->ExceptionRecord->ExceptionCode) {
        case EXCEPTION_ACCESS_VIOLATION:
        case EXCEPTION_STACK_OVERFLOW:
        case EXCEPTION_INT_DIVIDE_BY_ZERO:
        case EXCEPTION_ILLEGAL_INSTRUCTION: break;
        default: return EXCEPTION_CONTINUE_SEARCH;
    }
    // An exception that a library of Windows catches itself is not the program's.
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<LPCWSTR>(exception->ExceptionRecord->ExceptionAddress), &module);
    if (module == GetModuleHandleW(nullptr)) Die("Crash");
    return EXCEPTION_CONTINUE_SEARCH;
}

LONG WINAPI OnUncaught(EXCEPTION_POINTERS* /*exception*/) { Die("Crash"); }

void Watch() {
    for (;;) {
        Sleep(1000);
        if (GetTickCount64() > g_since + kLongestAttempt) Die("Hang");
    }
}

}  // namespace

void StartWatchdog() {
    static const bool started = [] {
        g_since = GetTickCount64();
        AddVectoredExceptionHandler(1, &OnException);
        SetUnhandledExceptionFilter(&OnUncaught);
        std::set_terminate([] { Die("Exception that got out"); });
        std::thread(&Watch).detach();
        return true;
    }();
    static_cast<void>(started);
}

void NoteAttempt(const std::string& what) {
    const std::scoped_lock lock(g_mutex);
    g_attempt = what;
    g_since = GetTickCount64();
    std::printf("%s\n", what.c_str());
    std::fflush(stdout);
}

}  // namespace faults
