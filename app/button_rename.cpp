#include "app/button_rename.h"

#include "model/storable_name.h"
#include "res/resource.h"
#include "win/accessible.h"
#include "win/errors.h"
#include "win/text.h"
#include "win/window.h"

namespace app {
namespace {

// Layout pixels, in the button.
constexpr int kBoxHeight = 21;
constexpr int kBoxTop = 58;
constexpr int kBoxMargin = 3;

}  // namespace

bool RenameButton(PanelState& state, const model::ButtonPlace& place, const std::string& name) {
    const std::string storable = model::StorableName(name);
    const model::CButtonShortcut* button = state.ShownAt(place);
    if (storable.empty() || button == nullptr || button->IsFree()) return true;
    const std::string former = button->Naziv;
    const auto target = model::ShortcutStore::WholeTarget(former, button->FilePath);
    // A button that could not be read has no target to store under the new name.
    if (!target || target->empty()) return false;
    if (!state.Store().Rename({former, storable, *target,
                               model::ShortcutStore::Renaming::Records::kAfterTarget, place,
                               button->FileIcon}))
        return false;
    state.ShowChanged({former, storable}, place);
    return true;
}

void ButtonRename::CreateOn(HWND parent) {
    t1_ = CreateWindowExW(WS_EX_CLIENTEDGE, L"EDIT", L"", WS_CHILD | WS_CLIPSIBLINGS | ES_AUTOHSCROLL, 0, 0,
                          10, kBoxHeight, parent,
                          // NOLINTNEXTLINE(performance-no-int-to-ptr): a child's identifier.
                          reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_RENAME)), win::ModuleInstance(),
                          nullptr);
    if (t1_ == nullptr) throw win::RuntimeError("Could not create the rename box");
    label_ = win::AddHiddenLabel(parent, "New name");
    Rescale();
}

void ButtonRename::Rescale() {
    SendMessageW(t1_, WM_SETFONT, reinterpret_cast<WPARAM>(win::MessageFont(BoxScale())), TRUE);
    if (IsOpen()) PlaceBox();
}

void ButtonRename::PlaceBox() {
    const RECT place = buttons_.PlaceInWindow(place_.slot);
    const win::Scale scale = BoxScale();
    const int margin = scale(kBoxMargin);
    SetWindowPos(t1_, HWND_TOP, place.left + margin, place.top + scale(kBoxTop),
                 place.right - place.left - 2 * margin, scale(kBoxHeight), 0);
}

void ButtonRename::Begin() {
    if (IsOpen() || state_.Current().IsFree()) return;
    place_ = state_.CurrentPlace();
    // The size first: in a box too narrow for it the name would stay scrolled out of sight.
    PlaceBox();
    win::FillBox(t1_, state_.Button(place_.slot).Naziv);
    ShowWindow(t1_, SW_SHOW);
    // The label stays directly before the box that it names.
    SetWindowPos(label_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    SendMessageW(t1_, EM_SETSEL, 0, -1);
    SetFocus(t1_);
}

void ButtonRename::Accept() {
    const std::string name = win::WindowText(t1_);
    if (!IsOpen() || name.empty()) return;
    state_.Select(place_);
    // What could not be stored stays in the box and can be tried again.
    if (RenameButton(state_, place_, name)) Abandon();
}

void ButtonRename::Abandon() {
    if (!IsOpen()) return;
    const bool focused = GetFocus() == t1_;
    ShowWindow(t1_, SW_HIDE);
    if (focused) SetFocus(Button());
}

}  // namespace app
