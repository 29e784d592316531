#include <windows.h>

#include <commctrl.h>

#include <functional>
#include <string>

#include "app/glavni.h"
#include "win/com.h"
#include "win/dialog.h"
#include "win/errors.h"
#include "win/handles.h"
#include "win/key_repeat.h"
#include "win/process_start.h"
#include "win/text.h"

namespace {

constexpr int kLoadFailed = 1;

/// Shows an error that no handler of ours expected; the program goes on unless it is loading.
void ReportError(HWND owner, const char* message) noexcept {
    try {
        MessageBoxW(owner, win::ToWide(message).c_str(), L"Quon: Error report", MB_OK | MB_ICONERROR);
    } catch (...) {
        MessageBoxW(owner, L"Out of memory", L"Quon: Error report", MB_OK | MB_ICONERROR);
    }
}

/// One instance a session and program folder: copies in two folders are two programs.
std::wstring InstanceName() {
    const size_t hash = std::hash<std::wstring>()(win::UpperCase(win::ProgramFolder()));
    return L"Local\\Quon-" + std::to_wstring(hash);
}

int RunMessageLoop(app::Glavni& glavni) {
    MSG message{};
    const win::MessageFilter filter = [&](MSG& waiting) { return glavni.PreTranslate(waiting); };
    while (GetMessageW(&message, nullptr, 0, 0) > 0)
        win::HandleMessage(message, filter);
    return static_cast<int>(message.wParam);
}

int RunQuon() {
    win::KeepDriveErrorsQuiet();
    const win::KernelObject instance(CreateMutexW(nullptr, FALSE, InstanceName().c_str()));
    // Without a mutex, an instance of another user or an elevated one holds the name.
    if (GetLastError() == ERROR_ALREADY_EXISTS || !instance) return 0;
    const win::OleThread ole;
    win::SetErrorReporter(&ReportError);
    const win::KeyRepeatFilter repeats;
    app::Glavni glavni;
    glavni.CreateParts();
    glavni.Load();
    return RunMessageLoop(glavni);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, PWSTR /*commandLine*/, int /*show*/) {
    try {
        return RunQuon();
    } catch (const std::exception& error) {
        ReportError(nullptr, error.what());
    }
    return kLoadFailed;
}
