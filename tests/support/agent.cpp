#include "tests/support/agent.h"

#include <cwchar>
#include <memory>
#include <stdexcept>

#include "tests/support/paths.h"
#include "tests/support/running_program.h"
#include "tests/support/text.h"

namespace testkit::agent {
namespace {

struct Unmap {
    void operator()(Answer* view) const { UnmapViewOfFile(view); }
};
/// The memory that the answer is written into.
class SharedAnswer {
  public:
    SharedAnswer() {
        wchar_t name[64];
        swprintf(name, ARRAYSIZE(name), kMemoryNameFormat, GetCurrentProcessId());
        memory_.reset(
            CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, sizeof(Answer), name));
        if (!memory_) ThrowWindowsError("CreateFileMappingW");
        view_.reset(static_cast<Answer*>(MapViewOfFile(memory_.get(), FILE_MAP_WRITE, 0, 0, sizeof(Answer))));
        if (!view_) ThrowWindowsError("MapViewOfFile");
    }
    const Answer& Get() const { return *view_; }

  private:
    OwnedHandle memory_;
    std::unique_ptr<Answer, Unmap> view_;
};

}  // namespace

Presence::Presence(Window window) {
    // Loaded once and for all here; in the other program it comes and goes with its hooks.
    static const HMODULE library = LoadLibraryW(Wide(TestProgramFolder() + "\\quon_test_agent.dll").c_str());
    if (!library) throw std::runtime_error("quon_test_agent.dll is not beside the test program");
    void* procedure = reinterpret_cast<void*>(GetProcAddress(library, "AgentHook"));
    hook_.reset(
        SetWindowsHookExW(WH_CALLWNDPROC, reinterpret_cast<HOOKPROC>(procedure), library, window.ThreadId()));
    if (!hook_) ThrowWindowsError("SetWindowsHookExW");
}

std::unique_ptr<Answer> Ask(Window window, Question question) {
    const SharedAnswer answer;
    const Presence presence(window);
    window.Send(RegisterWindowMessageW(kMessageName), static_cast<WPARAM>(question),
                static_cast<LPARAM>(GetCurrentProcessId()));
    if (!answer.Get().done) throw std::runtime_error("no answer from inside " + window.Describe());
    return std::make_unique<Answer>(answer.Get());
}

bool HasMessages(Window window) {
    try {
        return Ask(window, Question::kWaitingMessages)->count != 0;
    } catch (const std::runtime_error&) {
        if (window.Exists()) throw;
        return true;
    }
}

UINT ErrorModes(Window window) { return Ask(window, Question::kErrorModes)->count; }

std::size_t CountMenusAndIcons(Window window) { return Ask(window, Question::kMenusAndIcons)->count; }

}  // namespace testkit::agent
