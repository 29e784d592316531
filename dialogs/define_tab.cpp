#include "dialogs/define_tab.h"

#include <windows.h>

#include <string>

#include "config/ini.h"
#include "config/settings.h"
#include "dialogs/caption_gap.h"
#include "model/shortcut_store.h"
#include "model/storable_name.h"
#include "res/resource.h"
#include "win/text.h"
#include "win/window.h"

namespace dialogs {
namespace {

constexpr size_t kLongestLabel = 7;  // characters

/// The label as far as the box would have let it be typed. Another program is not bound by the box's limit,
/// and a label too long to be read back would leave a record that ends the next start.
std::string LimitedLabel(const std::string& typed) {
    std::wstring label = win::ToWide(typed).substr(0, kLongestLabel);
    // Half of a character that takes two units is no character.
    if (!label.empty() && IS_HIGH_SURROGATE(label.back())) label.pop_back();
    return win::ToBytes(label);
}

}  // namespace

void frmTabPrep::Open() { ShowModal(win::ModalOwner(), IDD_DEFINE_TAB); }

bool frmTabPrep::OnInit() {
    // Done before a tip exists: a window that owns topmost windows may not become topmost itself.
    win::SetTopmost(true, Handle());
    PlaceInCaptionGap(Item(Label1 + 1), Item(Text1 + kLabel), 0);
    SendMessageW(Item(Text1 + kLabel), EM_LIMITTEXT, kLongestLabel, 0);
    SendMessageW(Item(Text1 + kDescription), EM_LIMITTEXT, 0, 0);
    const model::clsTab& tab = host_.Tab(tab_);
    win::FillBox(Item(Text1 + kLabel), tab.Label);
    win::FillBox(Item(Text1 + kDescription), tab.Description);
    LimitDescription();
    CheckDlgButton(Handle(), Check1, config::Settings.TabDescriptions ? BST_CHECKED : BST_UNCHECKED);
    return true;
}

bool frmTabPrep::OnCommand(int id, int notification) {
    if (id == Text1 + kLabel && notification == EN_CHANGE) LimitDescription();
    if (id == Text1 + kDescription && notification == EN_CHANGE) descriptionLimit_.OnChange();
    if (notification != BN_CLICKED) return false;
    switch (id) {
        case Command1 + kApply: Apply(); return true;
        case Command1 + kCancel:
        case IDCANCEL: End(0); return true;
        default: return false;
    }
}

INT_PTR frmTabPrep::OnMessage(UINT message, WPARAM wParam, LPARAM /*lParam*/) {
    // The dialog gets this for each of its controls, before the mouse move itself.
    if (message == WM_SETCURSOR) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): Windows passes a window there.
        const HWND window = reinterpret_cast<HWND>(wParam);
        if (window == Item(Check1)) ShowContentsTip();
    }
    return FALSE;
}

void frmTabPrep::OnColors() {
    if (tip_) tip_->FollowColors();
}

/// Label and description are read back together, with the bar between them.
void frmTabPrep::LimitDescription() {
    const size_t label = LimitedLabel(win::WindowText(Item(Text1 + kLabel))).size();
    descriptionLimit_.Attach(Item(Text1 + kDescription), config::kLongestValue - 1 - label);
}

void frmTabPrep::ShowContentsTip() {
    if (tip_) return;
    tip_ = std::make_unique<sys::clsToolTip>();
    tip_->SetTitle("Tab contents:");
    tip_->SetTipText("List of shortcuts (files, URLs) assigned to buttons on the tab.");
    tip_->SetParentControl(Item(Check1));
    tip_->Create();
}

void frmTabPrep::Apply() {
    // A "|" in the label is not refused: what follows it is read back as the description's beginning.
    const std::string record = model::WithoutControls(LimitedLabel(win::WindowText(Item(Text1 + kLabel))) +
                                                      "|" + win::WindowText(Item(Text1 + kDescription)));
    // What is longer would be read back cut short.
    if (record.size() > config::kLongestValue ||
        !model::ShortcutStore(host_.Context().Records).PutRecord({tab_, 0}, record)) {
        // What was typed stays and can be applied again.
        MessageBeep(MB_ICONWARNING);
        return;
    }
    host_.Tab(tab_).INIstring(record);
    config::Settings.TabDescriptions = IsDlgButtonChecked(Handle(), Check1) == BST_CHECKED;
    End(0);
}

}  // namespace dialogs
