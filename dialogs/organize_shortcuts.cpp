#include "dialogs/organize_shortcuts.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>
#include <vector>

#include "config/patience.h"
#include "dialogs/edit_group.h"
#include "dialogs/edit_shortcut.h"
#include "dialogs/message_box.h"
#include "model/shortcut_store.h"
#include "res/resource.h"
#include "sys/mouse_wheel.h"
#include "win/text.h"
#include "win/window.h"

namespace dialogs {
namespace {

constexpr const char* kGroupTag = "g";
constexpr int kNotch = 102;  // layout pixels
constexpr RowLook kLook{.firstTop = 4,
                        .height = 47,
                        .gap = 4,
                        .bottom = 4,
                        .icon = {10, 15},
                        .name = {36, 6},
                        .targetTop = 24,
                        .framed = true,
                        .smallStep = 51,
                        .largeStep = 102};

std::vector<Row> RowsOf(const std::vector<model::StoredShortcut>& shortcuts) {
    std::vector<Row> rows;
    for (const model::StoredShortcut& shortcut : shortcuts) {
        const bool group = shortcut.target.find('|') != std::string::npos;
        rows.push_back({shortcut.name, shortcut.target, group ? kGroupTag : ""});
    }
    return rows;
}

/// Keeps the names where automation can read them: the rows are no windows.
void ListNames(HWND box, const std::vector<Row>& rows) {
    SendMessageW(box, LB_RESETCONTENT, 0, 0);
    for (const Row& row : rows)
        SendMessageW(box, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(win::ToWide(row.name).c_str()));
}

/// The target of a row in full: the last entry of a very long section was read cut short. Nothing when it
/// could not be read whole.
std::optional<std::string> WholeTarget(const Row& row) {
    const auto stored = model::ShortcutStore::Target(row.name);
    if (!stored) return std::nullopt;
    return model::ShortcutStore::WholeTarget(row.name,
                                             stored->starts_with(row.target) ? *stored : row.target);
}

}  // namespace

frmCuts::frmCuts(model::ButtonContext& context) : context_(context), list_(kLook) {}

void frmCuts::Show(HWND owner) {
    ShowModal(owner, IDD_ORGANIZE_SHORTCUTS);
    sys::UnhookWheel();
}

bool frmCuts::OnInit() {
    win::SetTopmost(true, Handle());
    list_.CreateOn(Item(pFrame), Item(Scr), pBasket, DialogScale());
    list_.onOpen = [this] { EditShortcut(); };
    list_.onDelete = [this] { DeleteShortcut(); };
    readAgain_.onTry = [this] { ReadShortcuts(); };
    ReadShortcuts();
    SetFocus(list_.Rows().empty() ? Item(Command1 + kQuit) : list_.Handle());
    return false;
}

void frmCuts::ReadShortcuts() {
    const HWND frame = Item(pFrame);
    const HWND focus = GetFocus();
    ShowWindow(frame, SW_HIDE);
    Say("Refreshing list...");
    const auto shortcuts = model::ShortcutStore::Shortcuts();
    if (!shortcuts) {
        // Another program has the file for a moment.
        EnableCommands(false);
        if (focus == list_.Handle()) SetFocus(Item(Command1 + kQuit));
        readAgain_.Again(Handle());
        return;
    }
    std::vector<Row> rows = RowsOf(*shortcuts);
    const size_t count = rows.size();
    ListNames(Item(List1), rows);
    list_.Assign(std::move(rows));
    win::SetText(Handle(), "Organize shortcuts - " + std::to_string(count) + " shortcuts found");
    EnableCommands(count > 0);
    if (count == 0) {
        Say("No shortcuts found");
        if (focus == list_.Handle()) SetFocus(Item(Command1 + kQuit));
        return;
    }
    Say("");
    ShowWindow(frame, SW_SHOW);
    // Hiding the list has taken the focus from it.
    if (focus == list_.Handle()) SetFocus(focus);
}

void frmCuts::Say(const char* text) const {
    const HWND label = Item(Label1);
    win::SetText(label, text);
    ShowWindow(label, *text == '\0' ? SW_HIDE : SW_SHOW);
    UpdateWindow(label);
}

void frmCuts::EnableCommands(bool enabled) const {
    const bool focused = GetFocus() == Item(Command1 + kEdit) || GetFocus() == Item(Command1 + kDelete);
    // A disabled control that has the focus would leave the keyboard without effect.
    if (!enabled && focused) SetFocus(Item(Command1 + kQuit));
    for (const int id : {Command1 + kEdit, Command1 + kDelete})
        EnableWindow(Item(id), enabled ? TRUE : FALSE);
}

bool frmCuts::OnCommand(int id, int notification) {
    if (notification != BN_CLICKED) return false;
    switch (id) {
        case Command1 + kEdit: EditShortcut(); return true;
        case Command1 + kDelete: DeleteShortcut(); return true;
        case Command1 + kQuit:
        case IDCANCEL: End(0); return true;
        default: return false;
    }
}

INT_PTR frmCuts::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_VSCROLL: list_.OnScroll(LOWORD(wParam)); return TRUE;
        case WM_TIMER: {
            const config::NoPatience hurry;
            return readAgain_.OnTimer(Handle(), wParam) ? TRUE : FALSE;
        }
        case WM_CTLCOLORSTATIC:
            // The frame goes on where the rows end.
            if (reinterpret_cast<HWND>(lParam) != Item(pFrame)) return FALSE;
            return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
        case WM_ACTIVATE: OnActivate(LOWORD(wParam) != WA_INACTIVE); return FALSE;
        default: return FALSE;
    }
}

void frmCuts::OnActivate(bool active) {
    if (!active) {
        sys::UnhookWheel();
        return;
    }
    sys::HookWheel(Handle(), [this](const sys::WheelTurn& turn) {
        const int notches = wheel_.Add(turn.Rotation, static_cast<std::uint32_t>(GetMessageTime()));
        for (int notch = 0; notch < std::abs(notches); ++notch)
            MouseWheel(turn.Keys, notches < 0 ? -WHEEL_DELTA : WHEEL_DELTA, turn.X, turn.Y);
    });
}

void frmCuts::MouseWheel(std::int32_t /*Keys*/, std::int32_t Rotation, std::int32_t /*X*/,
                         std::int32_t /*Y*/) {
    const int notch = DialogScale()(kNotch);
    if (Rotation < 0) list_.ScrollTo(list_.ScrollValue() + notch);
    if (Rotation > 0) list_.ScrollTo(list_.ScrollValue() - notch);
}

/// The selected row; null when there is none, and for one that no name leads to, which is said. Of several
/// records of one name Windows reads, changes and removes the first.
const Row* frmCuts::RowToChange() const {
    const Row* selected = list_.SelectedRow();
    if (selected == nullptr) return nullptr;
    const auto first = std::find_if(list_.Rows().begin(), list_.Rows().end(), [&](const Row& row) {
        return win::EqualIgnoringCase(row.name, selected->name);
    });
    if (&*first == selected) return selected;
    ShowNote(
        "Another shortcut of this name stands before this one, and Quon uses only the first.\n"
        "Please rename or delete that one before.");
    return nullptr;
}

void frmCuts::EditShortcut() {
    const Row* selected = RowToChange();
    if (selected == nullptr) return;
    const Row row = *selected;
    if (row.tag == kGroupTag) {
        frmEditB editor(context_);
        if (!editor.PrepareWindow(row.name)) return;
        editor.Show(Handle());
        if (!editor.StoredName().empty()) TellChanged({row.name, editor.StoredName()});
    } else {
        const auto target = WholeTarget(row);
        if (!target) return;
        frmEdit editor(context_);
        editor.PrepareWindow(row.name, *target + "\n", list_.PlainRowColor(list_.Selected()));
        editor.Show(Handle());
        if (const auto stored = editor.StoredName()) TellChanged({row.name, *stored});
    }
    ReadShortcuts();
}

void frmCuts::DeleteShortcut() {
    const Row* selected = RowToChange();
    if (selected == nullptr) return;
    const std::string name = selected->name;
    const auto key = model::FindButtonKey(name);
    if (!key) return;
    std::optional<model::ButtonPlace> button;
    if (!key->empty()) {
        button = model::ButtonPlace::Parse(*key);
        const std::string answer =
            ShowMessage("You have this shortcut on the button too (Tab " + std::to_string(button->tab) +
                            ", button " + std::to_string(button->slot) + ").\nPlease confirm deletion.",
                        2, "Delete", "Cancel");
        if (answer != "Delete") return;
    }
    if (model::ShortcutStore(context_.Records).Remove(name, button)) TellChanged({name});
    ReadShortcuts();
}

void frmCuts::TellChanged(const std::vector<std::string>& names) const {
    if (context_.onChanged) context_.onChanged(names);
}

}  // namespace dialogs
