// Files and folders around the tests. Paths are full Windows paths in UTF-8, folders without a "\" at the
// end.
#pragma once

#include <string>
#include <string_view>

namespace testkit {

/// The value of an environment variable; "" when it is not set.
std::string EnvironmentValue(const std::string& name);
/// A path of the build machine ("/srv/x/build") as this program has to spell it ("Z:\srv\x\build"); one
/// that is a Windows path already stays as it is.
std::string WindowsPath(std::string path);

/// The folder of the running test program, where its helper programs are too.
std::string TestProgramFolder();
/// The built Quon.exe: the environment's QUON_EXE, or else the one of the same build folder.
std::string QuonExe();
/// The helper program that records how it was launched (see test_target.h).
std::string TestTargetExe();

/// The text of the Quon.ini that a new user gets: ProgramFolder::WriteIniText(NewUsersIni()).
std::string NewUsersIni();

/// Everything before and everything after the last "\"; a name without one has no folder.
std::string FolderOf(const std::string& path);
std::string NameOf(const std::string& path);

bool FileExists(const std::string& path);
/// The bytes of a file. Throws when it cannot be read.
std::string FileBytes(const std::string& path);
/// Replaces a file's content.
void WriteBytes(const std::string& path, std::string_view bytes);
/// Makes a folder with all folders above it; content with one that is there.
void MakeFolders(const std::string& path);

}  // namespace testkit
