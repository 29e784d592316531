#pragma once

#include <windows.h>

#include <string>

namespace win {

/// Starts a command line as it stands, with a window state (SW_ value) for its first window
/// (CreateProcessA) and with Windows' own error mode. False when it could not be started.
bool StartProcess(const std::string& commandLine, WORD showCommand);

/// Keeps away Windows' own message "There is no disk in the drive" when this program asks for drives, in
/// whichever of its threads: pickers let the shell and its extensions look at drives in threads of theirs
/// (SetErrorMode). Programs that are started do not inherit that: see StartProcess and InheritedErrorMode.
void KeepDriveErrorsQuiet() noexcept;

/// While it lives, programs that Windows starts in this one's name inherit the error mode that this one was
/// started with (SetErrorMode): ShellExecuteA takes no flag for that. This thread stays quiet meanwhile
/// (SetThreadErrorMode).
class InheritedErrorMode {
  public:
    InheritedErrorMode() noexcept;
    InheritedErrorMode(const InheritedErrorMode&) = delete;
    InheritedErrorMode& operator=(const InheritedErrorMode&) = delete;
    InheritedErrorMode(InheritedErrorMode&&) = delete;
    InheritedErrorMode& operator=(InheritedErrorMode&&) = delete;
    ~InheritedErrorMode();

  private:
    UINT former_;
};

/// The full path of this program's file.
std::string ProgramPath();

/// The folder of this program without a trailing "\".
std::string ProgramFolder();

/// The first three characters of the program's path: the root of its drive, such as "C:\"; for a program on
/// a network share "\\" and the first character of the server's name.
std::string ProgramRoot();

}  // namespace win
