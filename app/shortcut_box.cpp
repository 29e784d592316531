#include "app/shortcut_box.h"

#include <algorithm>
#include <utility>

#include "app/add_to_button.h"
#include "app/panel_layout.h"
#include "config/settings.h"
#include "dialogs/message_box.h"
#include "model/collected_apps.h"
#include "model/storable_name.h"
#include "model/text_shortcut.h"
#include "res/resource.h"
#include "win/accessible.h"
#include "win/handles.h"
#include "win/picture_box.h"
#include "win/text.h"

namespace app {
namespace {

constexpr int kOpenListHeight = 240;  // layout pixels
constexpr RECT kPlace =
    layout::At(layout::kMargin, layout::kShortcutsTop,
               layout::kClientWidth - 2 * layout::kMargin - layout::kGoWidth - 2, kOpenListHeight);

bool IsNameKey(WPARAM key) { return (key >= '0' && key <= '9') || (key >= 'A' && key <= 'Z'); }

}  // namespace

void ShortcutBox::CreateOn(HWND parent) {
    const win::Scale scale = win::Scale::Of(parent);
    win::AddHiddenLabel(parent, "Shortcuts");
    cMain_.CreateOn(parent, IDC_SHORTCUTS, scale(kPlace));
    cMain_.SetHeight(scale(layout::kShortcutsHeight));
}

void ShortcutBox::Rescale() {
    const win::Scale scale = win::Scale::Of(GetParent(cMain_.Handle()));
    cMain_.Rescale(scale(kPlace));
    cMain_.SetHeight(scale(layout::kShortcutsHeight));
}

void ShortcutBox::Attach(HWND window) {
    // The edit field covers most of the box: a drop there must not depend on the search for a parent that
    // takes it.
    const std::array windows{cMain_.Handle(), cMain_.Edit()};
    for (size_t index = 0; index < windows.size(); ++index) {
        targets_.at(index).Register(windows.at(index), [this, window](const sys::DroppedData& data) {
            waiting_.push_back(data);
            PostMessageW(window, WM_QUON_DROP, 0, 0);
        });
    }
}

void ShortcutBox::Detach() noexcept {
    for (DropTarget& target : targets_)
        target.Revoke();
}

void ShortcutBox::Refill() {
    if (!model::CTextShortcut(&cMain_).FillCombo() && state_.Context.onUnread) state_.Context.onUnread();
}

void ShortcutBox::Go() {
    if (ShowsRefreshItem()) {
        OnChosen();
        return;
    }
    if (config::Settings.HideAfterLaunch) dock_.ShowQuon(false, false);
    Fire();
}

void ShortcutBox::Fire() {
    if (model::CTextShortcut::FireShortcut(NameToOpen()) == model::FireResult::kSearchToolMissing)
        dialogs::ShowNote(model::SearchToolMessage());
}

std::string ShortcutBox::NameToOpen() const {
    std::string typed = cMain_.Text();
    // For a match inside a name the box shows a text that need not be the name of any shortcut.
    if (typed != completion_.shown || cMain_.Has(win::ToWide(typed))) return typed;
    return cMain_.Has(win::ToWide(completion_.item)) ? completion_.item : typed;
}

bool ShortcutBox::ShowsRefreshItem() const { return cMain_.Text() == model::kRefreshItem; }

void ShortcutBox::Enter() {
    cMain_.TakeMarked();
    if (ShowsRefreshItem()) {
        OnChosen();
        return;
    }
    Fire();
    cMain_.ClearSelection();
    if (config::Settings.HideAfterLaunch) dock_.ShowQuon(false, false);
}

void ShortcutBox::Escape() {
    if (cMain_.Text().empty()) dock_.ShowQuon(false, false);
    cMain_.SetText("");
}

void ShortcutBox::TakeFocus() {
    SetFocus(cMain_.Edit());
    SendMessageW(cMain_.Edit(), EM_SETSEL, 0, -1);
}

bool ShortcutBox::PreTranslate(const MSG& message) {
    if (message.hwnd != cMain_.Edit()) return false;
    if (message.message == WM_KEYUP) OnKeyUp(message.wParam);
    if (message.message != WM_KEYDOWN) return false;
    // A fast typist presses Enter before letting go of the last letter; what opens must not depend on that.
    if (message.wParam == VK_RETURN) CompleteTyped();
    NoteKeyDown(message.wParam);
    // Esc in an open list belongs to the list: it closes the list and does nothing more.
    if (message.wParam == VK_ESCAPE && cMain_.IsOpen()) return false;
    if (message.wParam == VK_RETURN) Enter();
    if (message.wParam == VK_ESCAPE) Escape();
    return message.wParam == VK_RETURN || message.wParam == VK_ESCAPE;
}

void ShortcutBox::NoteKeyDown(WPARAM key) {
    if (key == VK_SHIFT || key == VK_CONTROL || key == VK_MENU) return;
    const win::ShiftState held = win::HeldModifiers() & (win::kControl | win::kAlt);
    // CTRL and ALT together are AltGr, which types.
    typing_ = IsNameKey(key) && (held == 0 || held == (win::kControl | win::kAlt));
    if (typing_) beforeKey_ = cMain_.Text();
}

void ShortcutBox::OnKeyUp(WPARAM key) {
    if (IsNameKey(key)) CompleteTyped();
}

void ShortcutBox::CompleteTyped() {
    // A fast typist presses the next key before letting go of this one: whichever goes up first completes,
    // once.
    if (!typing_ || cMain_.Text() == beforeKey_) return;
    typing_ = false;
    // In the middle of a text the caret stays where the user works.
    if (cMain_.CaretIsAtEnd()) Complete();
}

void ShortcutBox::Complete() {
    const std::wstring typed = win::ToWide(cMain_.Text());
    SendMessageA(cMain_.Handle(), WM_SETREDRAW, 0, 0);
    if (const auto found = cMain_.FindContaining(typed, win::ToWide(model::kRefreshItem))) {
        // A match at the beginning shows the item as it is spelt.
        const std::wstring shown =
            found->at == 0 ? found->item : typed + found->item.substr(found->at + typed.size());
        completion_ = {win::ToBytes(shown), win::ToBytes(found->item)};
        cMain_.SetText(completion_.shown);
        cMain_.SelectFrom(typed.size());
    }
    SendMessageA(cMain_.Handle(), WM_SETREDRAW, static_cast<WPARAM>(-1), 0);
    // Painting was off in between; the rest of the box has not changed.
    InvalidateRect(cMain_.Edit(), nullptr, TRUE);
}

void ShortcutBox::OnNotification(int code) {
    switch (code) {
        case CBN_DROPDOWN:
            listOpen_ = true;
            chosen_ = false;
            break;
        // Arrow keys and wheel over the closed list send the same notification, but only fill the box.
        case CBN_SELENDOK: chosen_ = listOpen_; break;
        case CBN_SELENDCANCEL: chosen_ = false; break;
        case CBN_CLOSEUP:
            listOpen_ = false;
            // The text may change only after the notification.
            if (std::exchange(chosen_, false)) PostMessageW(GetParent(cMain_.Handle()), WM_QUON_CHOSEN, 0, 0);
            break;
        default: break;
    }
}

void ShortcutBox::OnChosen() {
    if (!ShowsRefreshItem()) return;
    Refill();
    cMain_.SetText("");
    if (config::Settings.ShowCollected) CollectApplications();
}

void ShortcutBox::CollectApplications() {
    bool stored = false;
    {
        const win::Hourglass hourglass;
        cMain_.SetText("Please wait...");
        stored = model::clsCollectedApps().CreateAppList();
        // Messages that were handled meanwhile may have ended the program.
        if (IsWindow(cMain_.Handle()) == 0) return;
        Refill();
        cMain_.SetText("");
    }
    dialogs::ShowNote(stored ? "To start the application, just choose it from drop-down box."
                             : dialogs::kCouldNotMake);
}

void ShortcutBox::ActOnDrops() {
    // Taken out first, because the notes let further drops come in.
    for (const sys::DroppedData& data : std::exchange(waiting_, {}))
        Store(data);
}

void ShortcutBox::Store(const sys::DroppedData& data) {
    const DroppedShortcut shortcut = ShortcutFromDrop(data);
    // A tabulator does no harm inside a line.
    std::string withoutTabs = shortcut.target;
    std::replace(withoutTabs.begin(), withoutTabs.end(), '\t', ' ');
    if (!model::IsStorableTarget(withoutTabs) || !state_.Store().Put(shortcut.name, shortcut.target)) {
        dialogs::ShowNote(dialogs::kCouldNotMake);
        return;
    }
    if (!shortcut.commandSwitch.empty() || shortcut.switchTooLong)
        dialogs::ShowNote(
            "This shortcut has command switch. Quon will make this text shortcut, but you can use command "
            "switches only with button shortcuts.");
    state_.ShowChanged({shortcut.name});
}

}  // namespace app
