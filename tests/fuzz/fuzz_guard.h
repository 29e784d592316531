// Says which file it was when the program under test crashes or hangs, which ends the run at once.
//
//     FuzzGuard guard;
//     guard.Begin(seed);
//     guard.Doing("rename");                 // keeps a slow file from being taken for one that hangs
//
// "Seed 7, rename: exception 0xc0000005 at 0x..." on the error output, exit code 3.
#pragma once

#include <windows.h>

namespace testkit {

class FuzzGuard {
  public:
    FuzzGuard();
    ~FuzzGuard();
    FuzzGuard(const FuzzGuard&) = delete;
    FuzzGuard& operator=(const FuzzGuard&) = delete;

    void Begin(unsigned seed);
    /// `what` has to live as long as the program.
    void Doing(const char* what);

  private:
    static DWORD WINAPI Watch(void* guard);

    HANDLE end_;
    HANDLE thread_;
};

}  // namespace testkit
