#pragma once

#include <windows.h>

namespace win {

/// Lets the shell open a file, a folder or an address (ShellExecuteA with the desktop as owner); null
/// pointers are passed as such. The answer is the shell's: 33 or more for success. A question that the shell
/// asks meanwhile comes up in front of this thread's windows, even of those that stay above all others;
/// without a question no window changes its place. The started program may take the foreground, and does not
/// inherit that this one keeps errors of drives quiet.
INT_PTR OpenInShell(const char* verb, const char* file, const char* parameters, const char* folder,
                    int showCommand);

/// The window in which another program asks for the shell about what OpenInShell has opened
/// (ShownShellQuestion); null without one. Nothing tells who made it ask: once something has been opened, a
/// question that Explorer brought up counts as well. It comes before the panel then, where it does no harm.
HWND LaunchQuestion() noexcept;

}  // namespace win
