#include "win/shell_call.h"

#include <shellapi.h>

#include "win/step_back.h"

namespace win {

INT_PTR OpenInShell(const char* verb, const char* file, const char* parameters, const char* folder,
                    int showCommand) {
    const StepBack stepBack(StepBack::When::kAtQuestion);
    // Some targets are shown by a program that runs already and has no right of its own to come forward.
    AllowSetForegroundWindow(ASFW_ANY);
    return reinterpret_cast<INT_PTR>(
        ShellExecuteA(GetDesktopWindow(), verb, file, parameters, folder, showCommand));
}

}  // namespace win
