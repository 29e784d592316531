#pragma once

#include <windows.h>

namespace win {

/// Lets the shell open a file, a folder or an address (ShellExecuteA with the desktop as owner); null
/// pointers are passed as such. The answer is the shell's: 33 or more for success. A question that the shell
/// asks meanwhile comes up in front of this thread's windows, even of those that stay above all others;
/// without a question no window changes its place. The started program may take the foreground.
INT_PTR OpenInShell(const char* verb, const char* file, const char* parameters, const char* folder,
                    int showCommand);

}  // namespace win
