#include "dialogs/edit_group.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "config/ini.h"
#include "dialogs/message_box.h"
#include "dialogs/pick_target.h"
#include "model/shortcut_store.h"
#include "model/storable_name.h"
#include "res/resource.h"
#include "sys/utility.h"
#include "win/text.h"
#include "win/window.h"

namespace dialogs {
namespace {

constexpr RowLook kLook{.firstTop = 4,
                        .height = 18,
                        .gap = 6,
                        .bottom = 5,
                        .icon = {4, 1},
                        .name = {26, 1},
                        .highlightLeft = 22,
                        .smallStep = 20,
                        .largeStep = 60};

/// Says that there can be no such group.
void Refuse() { ShowNote(kCouldNotMake); }

}  // namespace

frmEditB::frmEditB(model::ButtonContext& context) : context_(context), list_(kLook) {}

bool frmEditB::PrepareWindow(const std::string& groupName) {
    OldName = groupName;
    storedName_.clear();
    firstItems_.clear();
    const auto read = model::ShortcutStore::Target(groupName);
    const auto members = read ? model::ShortcutStore::WholeTarget(groupName, *read) : std::nullopt;
    if (!members) return false;
    longestItems_ = std::max(members->size(), config::kLongestValue);
    if (members->empty()) return true;
    for (const std::string& path : win::Split(*members, '|'))
        firstItems_.push_back({path, path, ""});
    return true;
}

void frmEditB::Show(HWND owner) { ShowModal(owner, IDD_EDIT_GROUP); }

bool frmEditB::OnInit() {
    // Done before the tip exists: a window that owns topmost windows may not become topmost itself.
    win::SetTopmost(true, Handle());
    list_.CreateOn(Item(pFrame), Item(Scr), pBasket, DialogScale());
    list_.onDelete = [this] { DeleteItem(); };
    list_.Assign(std::exchange(firstItems_, {}));
    name_.Attach(Handle(), t1 + kName, l1, l1 + kExists);
    name_.SetName(OldName);
    name_.SelectAll();
    return false;
}

bool frmEditB::OnCommand(int id, int notification) {
    if (name_.OnCommand(id, notification)) return true;
    if (notification != BN_CLICKED) return false;
    switch (id) {
        case c1 + kAddFile: Pick(false); return true;
        case c1 + kAddFolder: Pick(true); return true;
        case c1 + kAddUrl: AddUrl(); return true;
        case c1 + kDeleteItem: DeleteItem(); return true;
        case c1 + kApply: Apply(); return true;
        case c1 + kCancel:
        case IDCANCEL: End(0); return true;
        default: return false;
    }
}

INT_PTR frmEditB::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_VSCROLL: list_.OnScroll(LOWORD(wParam)); return TRUE;
        case WM_MOUSEWHEEL: {
            const int notches =
                wheel_.Add(GET_WHEEL_DELTA_WPARAM(wParam), static_cast<std::uint32_t>(GetMessageTime()));
            for (int notch = 0; notch < std::abs(notches); ++notch)
                list_.OnScroll(notches < 0 ? SB_PAGEDOWN : SB_PAGEUP);
            return TRUE;
        }
        case WM_CTLCOLORSTATIC:
            // The frame goes on where the rows end.
            if (reinterpret_cast<HWND>(lParam) != Item(pFrame)) return FALSE;
            return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
        case WM_CTLCOLOREDIT: {
            const auto dc = reinterpret_cast<HDC>(wParam);
            SetBkColor(dc, GetSysColor(COLOR_WINDOW));
            name_.ColorText(reinterpret_cast<HWND>(lParam), dc);
            return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_WINDOW));
        }
        default: return FALSE;
    }
}

void frmEditB::AddItem(const std::string& path) {
    std::vector<std::string> items = Items();
    items.push_back(path);
    if (!model::IsStorableTarget(path) || win::Join(items, '|').size() > config::kLongestValue)
        Refuse();
    else
        list_.Add({path, path, ""});
}

void frmEditB::Pick(bool folder) {
    const std::string path = PickTarget(folder);
    if (!path.empty()) AddItem(path);
}

void frmEditB::AddUrl() {
    const std::string answer =
        ShowMessage("Enter complete URL (please include 'http://' or similar if exists): ", 2, "OK", "Cancel",
                    "", true, "http://");
    if (answer == "Cancel") return;
    if (sys::IsUrl(answer))
        AddItem(model::StorableTarget(answer));
    else
        ShowNote(
            "Sorry, couldn't recognize this as valid URL.\n"
            "Quon will not be able to open it, and so can not add it to the group.");
}

void frmEditB::DeleteItem() {
    std::vector<Row> rows = list_.Rows();
    if (ItemCount() == 0) return;
    rows.erase(rows.begin() + SelectedItem());
    list_.Assign(std::move(rows));
}

std::vector<std::string> frmEditB::Items() const {
    std::vector<std::string> items;
    std::transform(list_.Rows().begin(), list_.Rows().end(), std::back_inserter(items),
                   [](const Row& row) { return row.name; });
    return items;
}

std::string frmEditB::NameToStore() const {
    const std::string name = model::StorableName(name_.Name());
    return name.empty() ? model::StorableName(OldName) : name;
}

void frmEditB::Apply() {
    const std::string name = NameToStore();
    if (name.empty()) {
        Refuse();
        name_.SelectAll();
        return;
    }
    if (!Store(name)) {
        Refuse();
        return;
    }
    storedName_ = name;
    End(1);
}

bool frmEditB::Store(const std::string& name) {
    using Records = model::ShortcutStore::Renaming::Records;
    const std::string items = win::Join(Items(), '|');
    return items.size() <= longestItems_ &&
           model::ShortcutStore(context_.Records)
               .Rename({OldName, name, items, name == OldName ? Records::kLeft : Records::kAsGroup});
}

}  // namespace dialogs
