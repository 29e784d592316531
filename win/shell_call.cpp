#include "win/shell_call.h"

#include <shellapi.h>

#include "win/foreground.h"
#include "win/message_ban.h"
#include "win/process_start.h"
#include "win/step_back.h"

namespace win {
namespace {

/// How long after an opening a question may still come up, in milliseconds: what came from elsewhere is asked
/// about on the net first.
constexpr ULONGLONG kQuestionDelay = 30000;

/// When something was last opened (GetTickCount64); 0 while nothing can be asked about.
ULONGLONG g_opened = 0;

}  // namespace

INT_PTR OpenInShell(const char* verb, const char* file, const char* parameters, const char* folder,
                    int showCommand) {
    AssertMayPump("OpenInShell");
    const StepBack stepBack(StepBack::When::kAtQuestion);
    // Some targets are shown by a program that runs already and has no right of its own to come forward.
    AllowSetForegroundWindow(ASFW_ANY);
    const InheritedErrorMode errorMode;
    g_opened = GetTickCount64();
    const auto answer = reinterpret_cast<INT_PTR>(
        ShellExecuteA(GetDesktopWindow(), verb, file, parameters, folder, showCommand));
    g_opened = GetTickCount64();
    return answer;
}

HWND LaunchQuestion() noexcept {
    if (g_opened == 0) return nullptr;
    const HWND question = ShownShellQuestion();
    if (question == nullptr && GetTickCount64() - g_opened > kQuestionDelay) g_opened = 0;
    return question;
}

}  // namespace win
