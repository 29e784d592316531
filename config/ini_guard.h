#pragma once

#include <windows.h>

namespace config {

/// Keeps Quon.ini whole over one or several writes. Windows truncates the file and writes all of it anew each
/// time, and removing a record empties its section first: a program that is killed in between would lose what
/// it never meant to touch. From a guard's first write to its end the file as it was lies beside it; then the
/// copy goes, or comes back when a write has failed. Guards nest, the outermost one counts. None may live
/// while a dialog or a menu is open: a kill would take back all that has been written since.
class IniGuard {
  public:
    IniGuard() noexcept;
    ~IniGuard();
    IniGuard(const IniGuard&) = delete;
    IniGuard& operator=(const IniGuard&) = delete;

    /// Carries out `write`, which returns what a profile function does. It is left out when the disk is too
    /// full for it, or when one before it under the same copy has failed.
    template <class ProfileWrite>
    void Write(ProfileWrite write) const {
        if (MayWrite() && write() == 0) NoteFailure();
    }

    /// Makes final what has been written so far, whichever guards still live.
    static void Commit() noexcept;

  private:
    [[nodiscard]] static bool MayWrite();
    static void NoteFailure() noexcept;

    int exceptions_;
};

/// Puts back what a killed program has left in the middle of its writes; to be called before the first read,
/// by the one instance that runs. Throws RuntimeError when that cannot be done.
void PutBackInterruptedIni();

}  // namespace config
