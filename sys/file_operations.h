#pragma once

#include <cstdint>
#include <string>

namespace sys {

/// What clsBmenu::FileOperation does, by its code.
enum FileOperationCode : std::int16_t {
    kCopyFile = 0,     ///< to a folder
    kMoveFile = 1,     ///< to a folder
    kRenameFile = 2,   ///< to a new full path
    kRecycleFile = 3,  ///< into the Recycle Bin
    kDeleteFile = 4,   ///< for good, after the shell's own question
};

/// The shell's services for files: their properties, the two pickers, and what can be done with a file.
class clsBmenu {
  public:
    /// Opens the shell's properties sheet of a path (ShellExecuteEx). Whether it came up is not known.
    static void ShowProperties(const std::string& path);

    /// Asks for a folder of the file system (SHBrowseForFolderW); "" when the user cancels. The path comes
    /// whole, whatever its script and length; the current folder of the process stays what it was.
    static std::string GetFolder();

    /// The same for a file (GetOpenFileNameW).
    static std::string GetFile();

    /// Copies, moves, renames, recycles or deletes one file or folder (SHFileOperation); `destination` counts
    /// for the first three only. Returns 0 for success, else the shell's error; an unknown code is an error.
    /// Success does not mean that all was done: `aborted` says whether the user stopped a part of it, such as
    /// overwriting a file.
    static int FileOperation(std::int16_t operation, const std::string& source,
                             const std::string& destination, bool* aborted = nullptr);
};

}  // namespace sys
