#pragma once

#include <windows.h>

#include <string>

namespace win {

/// Starts a command line as it stands, with a window state (SW_ value) for its first window
/// (CreateProcessA). False when it could not be started.
bool StartProcess(const std::string& commandLine, WORD showCommand);

/// Keeps away Windows' own message "There is no disk in the drive" when this thread asks for drives
/// (SetThreadErrorMode). The mode of the process stays, because every program that is started would inherit
/// it.
void KeepDriveErrorsQuiet() noexcept;

/// The full path of this program's file.
std::string ProgramPath();

/// The folder of this program without a trailing "\".
std::string ProgramFolder();

/// The first three characters of the program's path: the root of its drive, such as "C:\"; for a program on
/// a network share "\\" and the first character of the server's name.
std::string ProgramRoot();

}  // namespace win
