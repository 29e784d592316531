#include "dialogs/options.h"

#include <windows.h>

#include <commctrl.h>

#include <array>
#include <string>

#include "config/settings.h"
#include "dialogs/caption_gap.h"
#include "dialogs/message_box.h"
#include "res/resource.h"
#include "win/colors.h"
#include "win/errors.h"
#include "win/process_start.h"
#include "win/text.h"
#include "win/trace.h"
#include "win/window.h"

namespace dialogs {
namespace {

using config::Settings;
using config::SettingsRecord;

struct Option {
    bool SettingsRecord::* setting;
    const char* title;
    const char* text;
};

constexpr const char* kChecked = "Default: checked";
constexpr const char* kUnchecked = "Default: unchecked";

constexpr std::array<Option, 10> kOptions{
    {{&SettingsRecord::StartWithWindows, kUnchecked,
      "If checked, Quon will start when you turn on your computer."},
     {&SettingsRecord::StartGlued, kUnchecked, "If checked, Quon will start on the edge of your screen."},
     {&SettingsRecord::HideAfterLaunch, kChecked,
      "If checked, Quon will move to the edge of your screen\nafter you open a file with it."},
     {&SettingsRecord::TaskbarProcessesOnly, kChecked,
      "If checked, Quon will show only processes that appear in taskbar.\n"
      "Otherwise, it will show all processes (even ones that have no window attached to it \n"
      "- usefull if program is in tray."},
     {&SettingsRecord::CloseButtonCloses, kUnchecked,
      "Means that Quon will move to the edge of the screen, and not close down."},
     {&SettingsRecord::ExtensiveTooltips, kChecked,
      "If checked, buttons in menu will show titles of menu buttons\n"
      "with all the files associated to buttons in appropriate group."},
     {&SettingsRecord::SingleClickOpen, kUnchecked,
      "If checked, you will need only one click to open the files\nassigned to buttons."},
     {&SettingsRecord::ShowCollected, kChecked,
      "If checked, Quon will include applications with file associations\nin the list of shortcuts."},
     {&SettingsRecord::PopOnHover, kChecked,
      "Show how much time Quon will wait before poping-up.\n"
      "If unchecked, Quon won't pop-up while you hover mouse over its window."},
     {&SettingsRecord::ClickShows, kChecked,
      "If checked, Quon will pop-up even if 'Hover XXX ms before poping-up' is disabled."}}};

struct Tip {
    const char* title;
    const char* text;
};

constexpr Tip kDelayTip{"", "One second = 1000 ms"};

constexpr Tip kHotKeyTip{"Default: none",
                         "Press the keys that bring Quon out, ready for typing a name, wherever you are.\n"
                         "Pressed again, they send it back to the edge. Backspace clears them."};

constexpr int kPopOnHover = 8;
constexpr int kClickShows = 9;
constexpr int kEdgeCount = 4;
constexpr UINT_PTR kTipTimer = 1;
constexpr int kWarningWidth = 2;    // layout pixels
constexpr int kCheckMarkSize = 13;  // layout pixels, beside the caption of a check box

constexpr const char* kRunKey = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr const char* kRunValue = "Quon";

win::RegistryKey OpenRunKey(REGSAM access) {
    HKEY key = nullptr;
    const LSTATUS error = RegOpenKeyExA(HKEY_LOCAL_MACHINE, kRunKey, 0, access, &key);
    if (error != ERROR_SUCCESS) {
        win::TraceFailure("RegOpenKeyExA", static_cast<DWORD>(error));
        return {};
    }
    return win::RegistryKey(key);
}

/// Makes Windows start the program; a failure is not reported.
void WriteRunEntry() {
    const win::RegistryKey key = OpenRunKey(KEY_SET_VALUE);
    if (!key) return;
    const std::string program = win::ProgramFolder() + "\\Quon.exe";
    const LSTATUS error =
        RegSetValueExA(key.Get(), kRunValue, 0, REG_SZ, reinterpret_cast<const BYTE*>(program.c_str()),
                       static_cast<DWORD>(program.size() + 1));
    if (error != ERROR_SUCCESS) win::TraceFailure("RegSetValueExA", static_cast<DWORD>(error));
}

/// Makes Windows no longer start the program; false when the key cannot be opened for full access.
bool DeleteRunEntry() {
    const win::RegistryKey key = OpenRunKey(KEY_ALL_ACCESS);
    if (!key) return false;
    RegDeleteValueA(key.Get(), kRunValue);
    return true;
}

}  // namespace

void frmSettings::Open() {
    const INITCOMMONCONTROLSEX hotKeys{sizeof hotKeys, ICC_HOTKEY_CLASS};
    InitCommonControlsEx(&hotKeys);
    ShowModal(win::ModalOwner(), IDD_OPTIONS);
}

bool frmSettings::OnInit() {
    // The docked panel must not cover the dialog every half second.
    host_.ShowQuon(false, false);
    host_.EnableTimer(false);
    ++OpenDialogCount;
    // Done before the tips exist: a window that owns topmost windows may not become topmost itself.
    win::SetTopmost(true, Handle());
    collectedBefore_ = Settings.ShowCollected;
    PlaceDelay();
    MakeWarningBrush();
    ShapeWarning();
    ShowSettings();
    delayTip_.SetTipText(kDelayTip.text);
    delayTip_.SetParentControl(Item(Text1));
    delayTip_.Create();
    for (int index = 0; index < kNoOption; ++index)
        WatchFocusOf(chSet + index);
    WatchFocusOf(Text1);
    WatchFocusOf(HotKey);
    return true;
}

/// Windows draws the mark at the screen's scale, whatever size the text has.
void frmSettings::PlaceDelay() const {
    const win::Scale screen(win::Scale::Of(Handle()).Dpi());
    PlaceInCaptionGap(Item(chSet + kPopOnHover), Item(Text1), screen(kCheckMarkSize));
}

void frmSettings::OnOtherScreen() { PlaceDelay(); }

void frmSettings::OnColors() {
    if (tip_) tip_->FollowColors();
    delayTip_.FollowColors();
    MakeWarningBrush();
}

void frmSettings::MakeWarningBrush() {
    warningBrush_.Reset(CreateSolidBrush(win::ColorOf(win::Color::kWarning)));
}

void frmSettings::ShowSettings() {
    for (int index = 0; index < static_cast<int>(kOptions.size()); ++index) {
        const bool on = Settings.*kOptions.at(static_cast<size_t>(index)).setting;
        CheckDlgButton(Handle(), chSet + index, on ? BST_CHECKED : BST_UNCHECKED);
        if (index == kPopOnHover) win::FillBox(Item(Text1), std::to_string(Settings.PopDelay));
    }
    // A key alone or with SHIFT would be lost for typing: CTRL and ALT are added.
    SendMessageW(Item(HotKey), HKM_SETRULES, HKCOMB_NONE | HKCOMB_S, HOTKEYF_CONTROL | HOTKEYF_ALT);
    SendMessageW(Item(HotKey), HKM_SETHOTKEY, Settings.HotKey, 0);
    // A stored number that is no edge marks no option and no other control, and stays until an edge is
    // chosen.
    edge_ = Settings.Edge;
    if (edge_ >= 1 && edge_ <= kEdgeCount) CheckDlgButton(Handle(), o1 + edge_, BST_CHECKED);
}

/// Leaves only a frame of the warning's window: what it frames is seen and clicked through it.
void frmSettings::ShapeWarning() {
    RECT all{};
    GetClientRect(Item(Picture2), &all);
    const int width = DialogScale()(kWarningWidth);
    InflateRect(&all, -width, -width);
    win::CutHole(Item(Picture2), all);
}

bool frmSettings::OnCommand(int id, int notification) {
    if (notification != BN_CLICKED) return false;
    switch (id) {
        case ltBut1 + kAccept: Accept(); return true;
        case ltBut1 + kCancel:
        case IDCANCEL: End(0); return true;
        default: break;
    }
    if (id >= chSet && id < chSet + kNoOption) {
        WarnOfUnreachablePanel();
        return true;
    }
    // An edge option that only gets the focus sends a click as well.
    if (id > o1 && id <= o1 + kEdgeCount && IsDlgButtonChecked(Handle(), id) == BST_CHECKED) edge_ = id - o1;
    return false;
}

INT_PTR frmSettings::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SETCURSOR:
            // The dialog gets this for each of its controls, before the mouse move itself.
            // NOLINTNEXTLINE(performance-no-int-to-ptr): Windows passes a window there.
            if (LOWORD(lParam) == HTCLIENT) OnPointer(reinterpret_cast<HWND>(wParam));
            return FALSE;
        case WM_CTLCOLORSTATIC:
            if (reinterpret_cast<HWND>(lParam) != Item(Picture2)) return FALSE;
            return reinterpret_cast<INT_PTR>(warningBrush_.Get());
        case WM_TIMER: HideFocusTip(); return TRUE;
        case WM_WINDOWPOSCHANGED:
            if ((reinterpret_cast<const WINDOWPOS*>(lParam)->flags & SWP_SHOWWINDOW) != 0) OnShown();
            return FALSE;
        case WM_DESTROY: Unload(); return FALSE;
        default: return FALSE;
    }
}

void frmSettings::WatchFocusOf(int control) {
    SetWindowSubclass(Item(control), &frmSettings::WatchFocus, 0, reinterpret_cast<DWORD_PTR>(this));
}

LRESULT CALLBACK frmSettings::WatchFocus(HWND control, UINT message, WPARAM wParam, LPARAM lParam,
                                         UINT_PTR id, DWORD_PTR options) noexcept {
    const LRESULT result = DefSubclassProc(control, message, wParam, lParam);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the subclass's own value.
    auto* self = reinterpret_cast<frmSettings*>(options);
    if (message == WM_NCDESTROY) RemoveWindowSubclass(control, &frmSettings::WatchFocus, id);
    if (message == WM_KILLFOCUS) self->HideFocusTip();
    if (message != WM_SETFOCUS) return result;
    return win::Guarded(control, result, [&] {
        self->OnFocus(control);
        return result;
    });
}

/// Explains the control that the keyboard has come to; the mouse has the explanations under its pointer.
void frmSettings::OnFocus(HWND control) {
    const bool marked = (SendMessageW(control, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS) == 0;
    const bool pressed = GetKeyState(VK_LBUTTON) < 0;
    if (!marked || pressed || IsWindowVisible(Handle()) == 0) return;
    PrepareTip(GetDlgCtrlID(control) - chSet);
    tip_->ShowBelow();
    hovered_ = kNoOption;
    tipOfFocus_ = true;
    pointerThen_ = win::PointerPlace();
    // As long as Windows lets a tip stand under the pointer.
    SetTimer(Handle(), kTipTimer, GetDoubleClickTime() * 10, nullptr);
}

/// The first control has had the focus since before the dialog could be seen.
void frmSettings::OnShown() {
    if (GetFocus() == Item(chSet)) OnFocus(GetFocus());
}

void frmSettings::HideFocusTip() {
    if (!tipOfFocus_) return;
    tipOfFocus_ = false;
    KillTimer(Handle(), kTipTimer);
    tip_.reset();
}

void frmSettings::OnPointer(HWND window) {
    if (tipOfFocus_) {
        // Windows sends a move to a pointer that rests, too, when a tip comes up.
        const POINT now = win::PointerPlace();
        if (now.x == pointerThen_.x && now.y == pointerThen_.y) return;
        HideFocusTip();
    }
    const int index = GetDlgCtrlID(window) - chSet;
    const bool explained = index == kHotKey || (index >= 0 && index < kNoOption);
    if (window == Handle()) {
        hovered_ = kNoOption;
        tip_.reset();
    } else if (explained && index != hovered_) {
        ShowTip(index);
    }
}

void frmSettings::ShowTip(int index) {
    PrepareTip(index);
    tip_->Create();
    hovered_ = index;
}

/// Gives the tip the texts for a control; it is still to be made.
void frmSettings::PrepareTip(int index) {
    const auto tipOf = [index] {
        if (index == kHotKey) return kHotKeyTip;
        if (index == kDelay) return kDelayTip;
        const Option& option = kOptions.at(static_cast<size_t>(index));
        return Tip{option.title, option.text};
    };
    const Tip tip = tipOf();
    if (!tip_) tip_ = std::make_unique<sys::clsToolTip>();
    tip_->SetTitle(tip.title);
    tip_->SetTipText(tip.text);
    tip_->SetParentControl(Item(chSet + index));
}

void frmSettings::WarnOfUnreachablePanel() {
    if (Checked(kPopOnHover) || Checked(kClickShows)) return;
    ShowWindow(Item(Picture2), SW_SHOWNA);
    ShowMessage(
        "Please note:\n\nSince you cleared both settings for poping-up Quon, (framed in red), the only way "
        "to call it is clicking on the tray icon.",
        1, "Accept");
    ShowWindow(Item(Picture2), SW_HIDE);
}

bool frmSettings::Checked(int index) const {
    return IsDlgButtonChecked(Handle(), chSet + index) == BST_CHECKED;
}

void frmSettings::Accept() {
    if (!TakeHotKey()) return;
    CopySettings();
    if (Settings.StartWithWindows) {
        WriteRunEntry();
    } else if (!DeleteRunEntry()) {
        MessageBoxW(Handle(), L"Couldn't make startup entry.", L"Quon: Error report", MB_OK);
        return;
    }
    End(0);
}

bool frmSettings::TakeHotKey() const {
    const auto word = static_cast<std::uint16_t>(SendMessageW(Item(HotKey), HKM_GETHOTKEY, 0, 0));
    if (host_.TakeHotKey(word)) {
        Settings.HotKey = word;
        return true;
    }
    ShowNote("Another program uses these keys already.\nPlease press others, or none.");
    SetFocus(Item(HotKey));
    return false;
}

/// In this order: when the delay is no number, the settings before it stay copied.
void frmSettings::CopySettings() {
    for (int index = 0; index <= 4; ++index)
        Copy(index);
    Settings.Edge = edge_;
    for (const int index : {5, 7, kPopOnHover, kClickShows})
        Copy(index);
    Settings.PopDelay = TypedDelay();
    host_.ShowTooltipSetting();
    Copy(6);
    host_.TakeCloseSetting();
}

void frmSettings::Copy(int index) const {
    Settings.*kOptions.at(static_cast<size_t>(index)).setting = Checked(index);
}

std::int32_t frmSettings::TypedDelay() const {
    const HWND box = Item(Text1);
    try {
        return config::ToNumber(win::WindowText(box), "the delay in milliseconds before showing Quon");
    } catch (const win::RuntimeError&) {
        SetFocus(box);
        SendMessageW(box, EM_SETSEL, 0, -1);
        throw;
    }
}

void frmSettings::Unload() {
    --OpenDialogCount;
    host_.EnableTimer(true);
    host_.ShowQuon(true, false);
    if (Settings.ShowCollected != collectedBefore_) host_.RefillList();
}

}  // namespace dialogs
