#pragma once

#include <windows.h>

namespace win {

/// Has the shell open a file, a folder or an address (ShellExecuteA, the desktop for its owner); null
/// pointers are passed as such. The answer is the shell's: 33 and more for success. A question that the shell
/// asks meanwhile comes up before this thread's windows, also before those that stay above all others;
/// without a question nothing changes its place. What is started may take the foreground.
INT_PTR OpenInShell(const char* verb, const char* file, const char* parameters, const char* folder,
                    int showCommand);

}  // namespace win
