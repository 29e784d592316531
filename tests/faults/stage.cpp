#include "tests/faults/stage.h"

#include <commdlg.h>

#include "dialogs/message_box.h"
#include "res/resource.h"
#include "tests/support/open_dialog.h"
#include "win/errors.h"
#include "win/window.h"

namespace faults {
namespace {

using testkit::Window;

Stage* g_stage = nullptr;

constexpr const char* kTouched = "faults.touched";

constexpr const char* kSettings =
    "Main=1,False,False,False,False,True,True,2,False,True,False\r\npopdelay=100\r\npoptf=True\r\n"
    "clickshow=True\r\n";

/// Records of all kinds; the targets lie in the folder.
std::string Records(const testkit::ProgramFolder& data) {
    const std::string notes = data.MakeFile("notes.txt", "text");
    const std::string tool = data.MakeFile("tool.exe", "no program");
    return "[Buttons]\r\n10=One|The first tab\r\n20=Two|\r\n11=Notes|0\r\n12=Site|0\r\n13=Pair|0\r\n"
           "14=Tool|0\r\n15=\r\n21=Notes|3\r\n22=Pair|0\r\n"
           "[Cuts]\r\nNotes=" +
           notes + "\r\nSite=http://a.example/?x=y\r\nPair=" + notes + "|" + tool + "\r\nTool=" + tool +
           "\r\nSpare=" + notes +
           "\r\n"
           "[Switch]\r\nTool=/x=1\r\n[Collected]\r\nEditor=C:\\editor.exe\r\n";
}

}  // namespace

std::vector<std::string>& Stage::ForeignErrors() {
    static std::vector<std::string> errors;
    return errors;
}

Stage::Stage() : panel_(kSettings, Records(data_)) {
    g_stage = this;
    win::SetErrorReporter(&Stage::Report);
    PlayShell();
    PlayPickers();
    PlayClipboard();
    PlayRegistry();
    PlayDesktop();
    timer_ = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, &Stage::Tick);
}

Stage::~Stage() {
    KillTimer(nullptr, timer_);
    win::SetErrorReporter(nullptr);
    End();
    if (clipboardFormat_ != 0) ReleaseStgMedium(&clipboard_);
    g_stage = nullptr;
}

bool Stage::Load() {
    try {
        panel_.Load();
        loaded_ = true;
        return true;
    } catch (const win::RuntimeError& error) {
        said_.push_back(std::string("The start ends: ") + error.what());
    } catch (const std::exception& error) {
        ForeignErrors().push_back(std::string("ends the start: ") + error.what());
    }
    panel_.Release();
    return false;
}

void Stage::End() {
    if (!loaded_) return;
    if (IsAlive()) Panel().Send(WM_CLOSE);
    RunMessages();
    panel_.Release();
    loaded_ = false;
    app::TakeQuitMessage();
}

std::vector<std::string> Stage::Open() const {
    std::vector<std::string> open = ledger_.Open();
    if (!targets_.empty()) open.push_back("RegisterDragDrop " + std::to_string(targets_.size()));
    return open;
}

void Stage::Report(HWND /*owner*/, const char* message) noexcept {
    try {
        throw;
    } catch (const win::RuntimeError&) {
        if (g_stage != nullptr) g_stage->said_.push_back(std::string("Error report: ") + message);
    } catch (...) {
        ForeignErrors().emplace_back(message);
    }
}

void Stage::Click(Window window) {
    if (!window) return;
    window.Send(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    if (window) window.Send(WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
}

void Stage::DoubleClick(Window window) {
    Click(window);
    if (window) window.Send(WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
    if (window) window.Send(WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
}

void Stage::RightClick(Window window) {
    if (!window) return;
    window.Send(WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(5, 5));
    if (window) window.Send(WM_RBUTTONUP, 0, MAKELPARAM(5, 5));
}

void Stage::Hover(Window window) {
    if (!window) return;
    window.Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
    window.Send(WM_MOUSEMOVE, 0, MAKELPARAM(6, 6));
}

void Stage::Paint(Window window) {
    if (window) window.Send(WM_PAINT);
}

void Stage::RunMessages() {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        if (message.message == WM_QUIT) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

void Stage::Drop(HWND window, testkit::DataObject& object) {
    const auto found = targets_.find(window);
    if (found == targets_.end()) return;
    DWORD effect = DROPEFFECT_COPY;
    found->second->DragEnter(&object, 0, {}, &effect);
    effect = DROPEFFECT_COPY;
    found->second->Drop(&object, 0, {}, &effect);
    RunMessages();
}

void Stage::PutOnClipboard(CLIPFORMAT format, testkit::DataObject& object) {
    if (clipboardFormat_ != 0) ReleaseStgMedium(&clipboard_);
    FORMATETC wanted{format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    clipboardFormat_ = format;
    EXPECT_EQ(object.GetData(&wanted, &clipboard_), S_OK);
}

void Stage::PlayShell() {
    const auto success = reinterpret_cast<HINSTANCE>(INT_PTR{42});
    fakes_.push_back(
        FAKE_CALL(ShellExecuteA, [success](HWND, LPCSTR, LPCSTR, LPCSTR, LPCSTR, INT) { return success; }));
    fakes_.push_back(FAKE_CALL(ShellExecuteExA, [](SHELLEXECUTEINFOA*) -> WINBOOL { return TRUE; }));
    fakes_.push_back(FAKE_CALL(SHFileOperationA, [](LPSHFILEOPSTRUCTA) { return 0; }));
    fakes_.push_back(FAKE_CALL(Sleep, [](DWORD) {}));
    fakes_.push_back(FAKE_CALL(MessageBoxW, [this](HWND, LPCWSTR text, LPCWSTR title, UINT) {
        said_.push_back(testkit::Utf8(title) + ": " + testkit::Utf8(text));
        return IDOK;
    }));
}

void Stage::PlayPickers() {
    fakes_.push_back(FAKE_CALL(GetOpenFileNameW, [this](LPOPENFILENAMEW record) -> WINBOOL {
        std::wcscpy(record->lpstrFile, testkit::Wide(File("notes.txt")).c_str());
        return TRUE;
    }));
    fakes_.push_back(FAKE_CALL(SHBrowseForFolderW, [](LPBROWSEINFOW) {
        // The product's own slot, so that the books are kept on it.
        LPITEMIDLIST list = nullptr;
        SHGetSpecialFolderLocation(nullptr, CSIDL_WINDOWS, &list);
        return list;
    }));
}

void Stage::PlayClipboard() {
    fakes_.push_back(FAKE_CALL(IsClipboardFormatAvailable,
                               [this](UINT format) -> WINBOOL { return format == clipboardFormat_; }));
    fakes_.push_back(FAKE_CALL(OpenClipboard, [](HWND) -> WINBOOL { return TRUE; }));
    fakes_.push_back(FAKE_CALL(CloseClipboard, []() -> WINBOOL { return TRUE; }));
    fakes_.push_back(FAKE_CALL(GetClipboardData, [this](UINT format) -> HANDLE {
        return format == clipboardFormat_ ? clipboard_.hGlobal : nullptr;
    }));
}

/// Three file types, and no entry for the next start of Windows.
void Stage::PlayRegistry() {
    fakes_.push_back(FAKE_CALL(
        RegEnumKeyExA,
        [](HKEY, DWORD index, LPSTR name, LPDWORD size, LPDWORD, LPSTR, LPDWORD, PFILETIME) -> LSTATUS {
            constexpr std::array kTypes{".aa", "noType", ".bb"};
            if (index >= kTypes.size()) return ERROR_NO_MORE_ITEMS;
            std::strcpy(name, kTypes.at(index));
            *size = static_cast<DWORD>(std::strlen(name));
            return ERROR_SUCCESS;
        }));
    fakes_.push_back(FAKE_CALL(RegSetValueExA, [](HKEY, LPCSTR, DWORD, DWORD, const BYTE*, DWORD) -> LSTATUS {
        return ERROR_SUCCESS;
    }));
    fakes_.push_back(FAKE_CALL(RegDeleteValueA, [](HKEY, LPCSTR) -> LSTATUS { return ERROR_SUCCESS; }));
}

void Stage::PlayDesktop() {
    fakes_.push_back(
        FAKE_CALL(TrackPopupMenu, [this](HMENU, UINT, int, int, int, HWND, const RECT*) -> WINBOOL {
            return std::exchange(chosen_, 0);
        }));
    // The uptime is shown in minutes, and a minute may pass between two runs.
    fakes_.push_back(FAKE_CALL(GetTickCount, [] { return DWORD{7'384'000}; }));
    fakes_.push_back(FAKE_CALL(SetForegroundWindow, [](HWND) -> WINBOOL { return TRUE; }));
    fakes_.push_back(FAKE_CALL(RegisterDragDrop, [this](HWND window, LPDROPTARGET target) {
        const HRESULT answer = ORIGINAL_CALL(RegisterDragDrop)(window, target);
        if (answer == S_OK) targets_[window] = target;
        return answer;
    }));
    fakes_.push_back(FAKE_CALL(RevokeDragDrop, [this](HWND window) {
        targets_.erase(window);
        return ORIGINAL_CALL(RevokeDragDrop)(window);
    }));
}

void CALLBACK Stage::Tick(HWND, UINT, UINT_PTR, DWORD) {
    if (g_stage != nullptr && g_stage->onTick) g_stage->onTick();
    const Window dialog(testkit::OpenDialog());
    if (dialog && g_stage != nullptr) g_stage->Answer(dialog);
}

/// Uses a dialog once. If it stays open it is cancelled, and ended if that does not help.
void Stage::Answer(Window dialog) {
    const auto ticks = static_cast<INT_PTR>(reinterpret_cast<UINT_PTR>(GetPropA(dialog.Handle(), kTouched)));
    SetPropA(dialog.Handle(), kTouched, reinterpret_cast<HANDLE>(ticks + 1));
    try {
        if (ticks == 0)
            UseDialog(dialog);
        else if (ticks < 4)
            dialog.Post(WM_COMMAND, IDCANCEL);
        else
            EndDialog(dialog.Handle(), 0);
    } catch (const std::exception&) {
        // A control is not there: that is what the fault has done. The next tick closes the dialog.
    }
}

void Stage::UseDialog(Window dialog) {
    const Window message = dialog.FindChild(dialogs::frmMsg::l1);
    if (message && message.IsVisible()) said_.push_back(message.Text());
    for (const auto& [control, use] : uses_) {
        if (!dialog.FindChild(control)) continue;
        // What fails again and again is given up.
        constexpr int kMostTries = 6;
        if (++tries_[control] > kMostTries) {
            dialog.Post(WM_COMMAND, IDCANCEL);
            return;
        }
        // By value: a dialog inside this one may be used meanwhile.
        const auto how = use;
        how(dialog);
        return;
    }
    if (message) dialog.Press(dialogs::frmMsg::b1);
}

}  // namespace faults
