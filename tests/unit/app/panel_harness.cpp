#include "tests/unit/app/panel_harness.h"

#include "config/settings.h"
#include "model/launching.h"
#include "tests/support/program_calls.h"
#include "win/dialog.h"
#include "win/errors.h"

namespace app {
namespace {

/// The main window, found without the object: it is created inside the calls that are recorded.
bool IsPanel(HWND window) { return testkit::Window(window).Class() == "QuonMain"; }

}  // namespace

bool TakeQuitMessage() {
    MSG message{};
    bool quit = false;
    while (PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != 0)
        quit = true;
    return quit;
}

PanelHarness::PanelHarness(std::string_view settings, std::string_view rest) : ini_(folder_.IniPath()) {
    folder_.WriteIniText("[Settings]\r\n" + std::string(settings) + std::string(rest));
    config::Settings = {};
    model::DefaultBrowserPath.clear();
    fakes_.push_back(testkit::ProgramLiesAt(folder_.FullPath("Quon.exe")));
    RecordProfile();
    RecordWindow();
    RecordShell();
    panel_ = std::make_unique<app::Glavni>();
}

PanelHarness::~PanelHarness() { EndSession(); }

void PanelHarness::EndSession() {
    panel_.reset();
    win::SetMainWindow(nullptr);
    win::SetHelpHandler(nullptr);
    config::Settings = {};
    TakeQuitMessage();
}

void PanelHarness::Renew() {
    EndSession();
    panel_ = std::make_unique<app::Glavni>();
}

void PanelHarness::Load() {
    panel_->CreateParts();
    log_.Clear();
    panel_->Load();
}

bool PanelHarness::PressKey(UINT message, WORD key, std::initializer_list<int> held, HWND child) {
    const HeldModifierKeys modifiers(held);
    MSG pressed{};
    pressed.hwnd = child ? child : panel_->Handle();
    pressed.message = message;
    pressed.wParam = key;
    // As the message loop does it.
    return win::Guarded(panel_->Handle(), true, [&] { return panel_->PreTranslate(pressed); });
}

void HeldModifierKeys::Write(std::initializer_list<int> keys, BYTE state) {
    BYTE all[256]{};
    GetKeyboardState(all);
    for (const int key : keys)
        all[key] = state;
    SetKeyboardState(all);
}

void PanelHarness::RecordProfile() {
    fakes_.push_back(
        WATCH_CALL(GetPrivateProfileStringA, [this](LPCSTR section, LPCSTR key, LPCSTR, LPSTR, DWORD,
                                                    LPCSTR) { log_.Add("read", section, key); }));
    fakes_.push_back(WATCH_CALL(GetPrivateProfileSectionA, [this](LPCSTR section, LPSTR, DWORD, LPCSTR) {
        log_.Add("section", section);
    }));
    fakes_.push_back(
        WATCH_CALL(WritePrivateProfileStringA, [this](LPCSTR section, LPCSTR key, LPCSTR value, LPCSTR) {
            log_.Add("write", section, key, value);
        }));
}

void PanelHarness::RecordWindow() {
    fakes_.push_back(FAKE_CALL(ShowWindow, [this](HWND window, int command) -> BOOL {
        if (!IsPanel(window)) return ORIGINAL_CALL(ShowWindow)(window, command);
        log_.Add("state", command);
        return FALSE;
    }));
    fakes_.push_back(
        FAKE_CALL(SetWindowPos, [this](HWND window, HWND after, int x, int y, int cx, int cy, UINT flags) {
            if (IsPanel(window) && (flags & SWP_SHOWWINDOW) != 0 && (flags & SWP_NOMOVE) != 0) {
                log_.Add((flags & SWP_NOACTIVATE) != 0 ? "show quietly" : "show");
                return TRUE;
            }
            if (IsPanel(window)) {
                if ((flags & SWP_NOMOVE) == 0)
                    log_.Add("place", x, y);
                else
                    log_.Add(after == HWND_TOPMOST ? "topmost" : "not topmost");
            }
            return ORIGINAL_CALL(SetWindowPos)(window, after, x, y, cx, cy, flags);
        }));
    fakes_.push_back(WATCH_CALL(SetTimer, [this](HWND window, UINT_PTR, UINT interval, TIMERPROC) {
        if (IsPanel(window)) log_.Add("timer on", interval);
    }));
    fakes_.push_back(WATCH_CALL(KillTimer, [this](HWND window, UINT_PTR) {
        if (IsPanel(window)) log_.Add("timer off");
    }));
    fakes_.push_back(WATCH_CALL(DrawEdge, [this] { log_.Add("edge"); }));
    fakes_.push_back(FAKE_CALL(FindWindowA, [this](LPCSTR className, LPCSTR caption) -> HWND {
        log_.Add("find", className, caption);
        return nullptr;
    }));
}

void PanelHarness::RecordShell() {
    fakes_.push_back(FAKE_CALL(GetLogicalDriveStringsA, [this](DWORD, LPSTR roots) -> DWORD {
        log_.Add("drives");
        std::memcpy(roots, "C:\\\0", 5);
        return 4;
    }));
    fakes_.push_back(WATCH_CALL(FindFirstFileA, [this](LPCSTR pattern, LPWIN32_FIND_DATAA) {
        log_.Add("list", testkit::NameOf(pattern));
    }));
    fakes_.push_back(FAKE_CALL(Shell_NotifyIconA, [this](DWORD what, PNOTIFYICONDATAA record) -> BOOL {
        log_.Add("tray", what == NIM_ADD ? "add" : what == NIM_DELETE ? "delete" : "other");
        trayRecord_ = {};
        std::memcpy(&trayRecord_, record, std::min<size_t>(record->cbSize, sizeof trayRecord_));
        return TRUE;
    }));
    fakes_.push_back(FAKE_CALL(FindExecutableA, [this](LPCSTR file, LPCSTR, LPSTR answer) {
        log_.Add("associated", testkit::NameOf(file), testkit::FileExists(file) ? "there" : "missing");
        std::strcpy(answer, "C:\\browser.exe");
        return reinterpret_cast<HINSTANCE>(33);
    }));
}

}  // namespace app
