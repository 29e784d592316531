#include "app/button_rename.h"

#include "config/ini.h"
#include "config/ini_unit.h"
#include "model/storable_name.h"
#include "model/text_shortcut.h"
#include "res/resource.h"
#include "win/errors.h"
#include "win/text.h"
#include "win/window.h"

namespace app {
namespace {

constexpr int kBoxHeight = 21;
constexpr int kBoxTop = 58;

/// Stores the button's shortcut under another name; the former one is gone only together with this.
void StoreUnder(PanelState& state, const std::string& name) {
    const model::CButtonShortcut& button = state.Current();
    const std::string target = model::WholeTarget(button.Naziv, button.FilePath);
    config::IniUnit unit;
    config::RemoveRecord(model::kCutsSection, button.Naziv);
    config::WriteIni(model::kCutsSection, name, target);
    state.Context.Write(state.Context.CurrentButtonKey, name + "|" + std::to_string(button.FileIcon));
    model::MoveSwitch(button.Naziv, name, button.Switch);
    (void)unit.Finish();
}

}  // namespace

void RenameCurrentButton(PanelState& state, const std::string& name) {
    const std::string storable = model::StorableName(name);
    if (storable.empty() || state.Current().IsFree()) return;
    StoreUnder(state, storable);
    state.RefreshCurrent();
    if (state.RefillList) state.RefillList();
}

void ButtonRename::CreateOn(HWND parent) {
    box_ = CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", L"", WS_CHILD | WS_CLIPSIBLINGS | ES_AUTOHSCROLL, 0, 0,
                           10, kBoxHeight, parent,
                           // NOLINTNEXTLINE(performance-no-int-to-ptr): a child's identifier.
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_RENAME)), win::ModuleInstance(),
                           nullptr);
    if (box_ == nullptr) throw win::RuntimeError("Could not create the rename box");
    SendMessageW(box_, WM_SETFONT, reinterpret_cast<WPARAM>(win::MessageFont()), FALSE);
}

void ButtonRename::Begin() {
    if (IsOpen() || state_.Current().IsFree()) return;
    index_ = state_.Context.CurrentButtonIndex;
    const RECT place = buttons_.PlaceInWindow(index_);
    // The size first: in a box too narrow for it the name would stay scrolled out of sight.
    SetWindowPos(box_, HWND_TOP, place.left + 3, place.top + kBoxTop, place.right - place.left - 6,
                 kBoxHeight, SWP_SHOWWINDOW);
    win::SetText(box_, state_.Button(index_).Naziv);
    SendMessageW(box_, EM_SETSEL, 0, -1);
    SetFocus(box_);
}

void ButtonRename::Accept() {
    const std::string name = win::WindowText(box_);
    if (!IsOpen() || name.empty()) return;
    state_.Context.Select(index_);
    RenameCurrentButton(state_, name);
    Abandon();
}

void ButtonRename::Abandon() {
    if (!IsOpen()) return;
    const bool focused = GetFocus() == box_;
    ShowWindow(box_, SW_HIDE);
    if (focused) SetFocus(Button());
}

}  // namespace app
