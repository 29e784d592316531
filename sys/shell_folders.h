#pragma once

#include <windows.h>

#include <shtypes.h>

#include <string>

#include "win/menu_array.h"

namespace sys {

/// The whole file-system path of an item list from the shell, whatever its script and length; "" when it has
/// none. Frees the list (SHGetPathFromIDListEx).
std::string TakePath(LPITEMIDLIST list);

/// The folders that the shell keeps for the system and the user, and the machine's drives.
class clsShell {
  public:
    /// Fills the menu anew behind its element 0, "My Computer": the drives, then folders and shell places.
    /// Each element's tag is what is to be explored: a path, a drive's root or a path in the shell's
    /// namespace. Reading a drive's label may take as long as the drive takes to answer.
    static void ListShellFolders(win::MenuArray& menu);

    /// The file-system path of a special folder by its CSIDL number; "" when it has none
    /// (SHGetSpecialFolderLocation).
    static std::string GetSpecialfolder(int folder);

    /// The name of a drive in the menu, by its root ("C:\"): its kind, or a fixed disk's label
    /// (GetDriveTypeA).
    static std::string DriveTypeCaption(const std::string& root);

    /// A drive's label; "" when it has none or cannot be read (GetVolumeInformationA).
    static std::string VolumeLabel(const std::string& root);
};

}  // namespace sys
