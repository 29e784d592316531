#include "dialogs/edit_shortcut.h"

#include "config/ini.h"
#include "dialogs/message_box.h"
#include "dialogs/pick_target.h"
#include "model/shortcut_store.h"
#include "model/storable_name.h"
#include "model/target_icon.h"
#include "res/resource.h"
#include "win/colors.h"
#include "win/icons.h"
#include "win/text.h"
#include "win/window.h"

namespace dialogs {
namespace {

constexpr int kIconSize = 32;  // layout pixels

}  // namespace

void frmEdit::PrepareWindow(const std::string& name, const std::string& fileText, COLORREF color) {
    OldName = name;
    OldFile = win::Before(fileText, '\n');
    color_ = color;
}

void frmEdit::Show(HWND owner) { ShowModal(owner, IDD_EDIT_SHORTCUT); }

bool frmEdit::OnInit() {
    // Done before the tip exists: a window that owns topmost windows may not become topmost itself.
    win::SetTopmost(true, Handle());
    CreatePicture();
    background_.Reset(CreateSolidBrush(color_));
    name_.Attach(Handle(), t1 + kName, l1, l1 + kExists);
    // The box would cut a text that is too long already.
    SendMessageW(Item(t1 + kFile), EM_LIMITTEXT, 0, 0);
    win::FillBox(Item(t1 + kFile), OldFile);
    fileLimit_.Attach(Item(t1 + kFile), config::kLongestValue);
    name_.SetName(OldName);
    DrawFileIcon();
    return true;
}

/// The template says where the picture stands; its size is an icon's.
void frmEdit::CreatePicture() {
    RECT place{};
    GetWindowRect(Item(p1), &place);
    DestroyWindow(Item(p1));
    MapWindowPoints(nullptr, Handle(), reinterpret_cast<POINT*>(&place), 2);
    const int size = DialogScale()(kIconSize);
    picture_.CreateOn(Handle(), p1, {place.left, place.top, place.left + size, place.top + size}, false);
    picture_.SetMeaning("Icon");
    picture_.SetAccessible(ROLE_SYSTEM_GRAPHIC);
}

bool frmEdit::OnCommand(int id, int notification) {
    if (name_.OnCommand(id, notification)) return true;
    if (id == t1 + kFile && notification == EN_CHANGE) {
        fileLimit_.OnChange();
        name_.Test();
        return true;
    }
    if (notification != BN_CLICKED) return false;
    switch (id) {
        case c1 + kSelectFile: Pick(false); return true;
        case c1 + kSelectFolder: Pick(true); return true;
        case c1 + kApply: Apply(); return true;
        case c1 + kCancel:
        case IDCANCEL: End(0); return true;
        default: return false;
    }
}

INT_PTR frmEdit::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_CTLCOLOREDIT) return FALSE;
    const auto dc = reinterpret_cast<HDC>(wParam);
    // The text's colours follow a contrast theme, so the ground has to.
    const bool contrast = win::ContrastTheme();
    SetBkColor(dc, contrast ? GetSysColor(COLOR_WINDOW) : color_);
    if (contrast) SetTextColor(dc, GetSysColor(COLOR_WINDOWTEXT));
    name_.ColorText(reinterpret_cast<HWND>(lParam), dc);
    return reinterpret_cast<INT_PTR>(contrast ? GetSysColorBrush(COLOR_WINDOW) : background_.Get());
}

void frmEdit::OnColors() {
    name_.FollowColors();
    // Its ground is part of the picture.
    DrawPicture();
}

void frmEdit::DrawFileIcon() {
    icon_ = model::TargetIcon(File(), 0, DialogScale()(kIconSize));
    DrawPicture();
}

void frmEdit::DrawPicture() {
    picture_.Clear();
    win::DrawIconOfSize(picture_.Dc(), {0, 0}, icon_.Get(), DialogScale()(kIconSize));
    picture_.Refresh();
}

void frmEdit::Pick(bool folder) {
    const std::string path = PickTarget(folder);
    if (path.empty()) return;
    win::SetText(Item(t1 + kFile), path);
    DrawFileIcon();
}

std::string frmEdit::File() const { return win::WindowText(Item(t1 + kFile)); }

std::string frmEdit::NameToStore() const {
    const std::string typed = name_.Name();
    const std::string name = model::StorableName(typed);
    // An empty name is written as it stands; a name of which nothing can be stored leaves the old one.
    return typed.empty() || !name.empty() ? name : OldName;
}

void frmEdit::Apply() {
    const std::string name = NameToStore();
    if (!Store(name)) {
        ShowNote(kCouldNotMake);
        return;
    }
    storedName_ = name;
    End(0);
}

bool frmEdit::Store(const std::string& name) {
    const std::string file = model::StorableTarget(File());
    // A target that is too long to be read at once may stay as it is.
    if (file != OldFile && !model::IsStorableTarget(file)) return false;
    return model::ShortcutStore(context_.Records).Rename({OldName, name, file});
}

}  // namespace dialogs
