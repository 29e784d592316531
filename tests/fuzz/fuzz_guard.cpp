#include "tests/fuzz/fuzz_guard.h"

#include <atomic>
#include <cstdio>
#include <exception>

namespace testkit {
namespace {

constexpr UINT kExitCode = 3;
constexpr DWORD kLookInterval = 1000;
// A command takes a fraction of a second, on a busy machine a little more.
constexpr ULONGLONG kLongestCommand = 300000;

std::atomic<unsigned> g_seed = 0;
std::atomic<const char*> g_doing = "";
std::atomic<ULONGLONG> g_since = 0;

[[noreturn]] void EndRun(const char* what, unsigned long code, const void* at) {
    std::fflush(stdout);
    std::fprintf(stderr, "Seed %u, %s: %s 0x%lx at %p\n", g_seed.load(), g_doing.load(), what, code, at);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), kExitCode);
    for (;;)
        Sleep(INFINITE);
}

LONG WINAPI OnCrash(EXCEPTION_POINTERS* crash) {
    EndRun("exception", crash->ExceptionRecord->ExceptionCode, crash->ExceptionRecord->ExceptionAddress);
}

[[noreturn]] void OnTerminate() { EndRun("std::terminate", 0, nullptr); }

}  // namespace

FuzzGuard::FuzzGuard()
    : end_(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      thread_(CreateThread(nullptr, 0, &FuzzGuard::Watch, this, 0, nullptr)) {
    SetUnhandledExceptionFilter(&OnCrash);
    std::set_terminate(&OnTerminate);
    Doing("start");
}

FuzzGuard::~FuzzGuard() {
    SetEvent(end_);
    WaitForSingleObject(thread_, INFINITE);
    CloseHandle(thread_);
    CloseHandle(end_);
    SetUnhandledExceptionFilter(nullptr);
}

void FuzzGuard::Begin(unsigned seed) {
    g_seed = seed;
    Doing("load");
}

void FuzzGuard::Doing(const char* what) {
    g_doing = what;
    g_since = GetTickCount64();
}

DWORD WINAPI FuzzGuard::Watch(void* guard) {
    while (WaitForSingleObject(static_cast<FuzzGuard*>(guard)->end_, kLookInterval) == WAIT_TIMEOUT)
        if (const ULONGLONG since = g_since; since != 0 && GetTickCount64() > since + kLongestCommand)
            EndRun("hangs", 0, nullptr);
    return 0;
}

}  // namespace testkit
