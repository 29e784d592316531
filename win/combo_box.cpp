#include "win/combo_box.h"

#include "win/errors.h"
#include "win/geometry.h"
#include "win/text.h"
#include "win/window.h"

namespace win {

void ComboBox::CreateOn(HWND parent, int id, RECT place) {
    handle_ = CreateWindowExW(
        0, L"COMBOBOX", L"", WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL,
        place.left, place.top, place.right - place.left, place.bottom - place.top, parent,
        // NOLINTNEXTLINE(performance-no-int-to-ptr): Windows passes a child's identifier in the menu's place.
        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ModuleInstance(), nullptr);
    if (handle_ == nullptr) throw RuntimeError("Could not create a drop-down list");
    SendMessageW(handle_, WM_SETFONT, reinterpret_cast<WPARAM>(MessageFont(Scale::Of(parent))), FALSE);
    COMBOBOXINFO info{};
    info.cbSize = sizeof info;
    GetComboBoxInfo(handle_, &info);
    edit_ = info.hwndItem;
    list_ = info.hwndList;
}

void ComboBox::Rescale(RECT place) {
    const Scale scale = Scale::Of(GetParent(handle_));
    SendMessageW(handle_, WM_SETFONT, reinterpret_cast<WPARAM>(MessageFont(scale)), FALSE);
    SetWindowPos(handle_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void ComboBox::SetHeight(int height) {
    constexpr auto kField = static_cast<WPARAM>(-1);
    LRESULT field = SendMessageW(handle_, CB_GETITEMHEIGHT, kField, 0);
    // The field that is asked for does not have the same borders everywhere: what is missing shows then.
    for (int round = 0; round < 2; ++round) {
        RECT place{};
        GetWindowRect(handle_, &place);
        field += height - Height(place);
        SendMessageW(handle_, CB_SETITEMHEIGHT, kField, field);
    }
}

bool ComboBox::IsOpen() const noexcept { return SendMessageW(handle_, CB_GETDROPPEDSTATE, 0, 0) != 0; }

void ComboBox::SetItems(const std::vector<std::string>& items) {
    std::string all;
    for (const std::string& item : items)
        all.append(item).push_back('\0');
    items_ = ToWide(all);
    upperItems_ = UpperCase(items_);
    const std::string typed = Text();
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(edit_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    SendMessageW(handle_, WM_SETREDRAW, FALSE, 0);
    SendMessageW(handle_, CB_RESETCONTENT, 0, 0);
    // Sent straight to the list, which saves half of the time: the box need not pass them on.
    for (size_t at = 0; at < items_.size(); at = items_.find(L'\0', at) + 1)
        SendMessageW(list_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(&items_[at]));
    if (!typed.empty()) SetText(typed);
    SendMessageW(edit_, EM_SETSEL, start, static_cast<LPARAM>(end));
    SendMessageW(handle_, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(handle_, nullptr, TRUE);
}

std::vector<std::string> ComboBox::Items() const {
    std::vector<std::string> items;
    const LRESULT count = SendMessageW(handle_, CB_GETCOUNT, 0, 0);
    for (LRESULT index = 0; index < count; ++index) {
        const LRESULT length = SendMessageW(handle_, CB_GETLBTEXTLEN, static_cast<WPARAM>(index), 0);
        std::wstring text(static_cast<size_t>(length), L'\0');
        SendMessageW(handle_, CB_GETLBTEXT, static_cast<WPARAM>(index),
                     reinterpret_cast<LPARAM>(text.data()));
        items.push_back(ToBytes(text));
    }
    return items;
}

std::string ComboBox::Text() const { return WindowText(handle_); }

void ComboBox::SetText(const std::string& text) { win::SetText(handle_, text); }

std::optional<FoundItem> ComboBox::FindContaining(std::wstring_view text, std::wstring_view except) const {
    const std::wstring wanted = UpperCase(std::wstring(text));
    if (wanted.empty()) return std::nullopt;
    for (size_t at = upperItems_.find(wanted); at != std::wstring::npos;) {
        const size_t before = at == 0 ? std::wstring::npos : items_.rfind(L'\0', at - 1);
        const size_t start = before == std::wstring::npos ? 0 : before + 1;
        const size_t end = items_.find(L'\0', at);
        FoundItem found{items_.substr(start, end - start), at - start};
        if (found.item != except) return found;
        at = upperItems_.find(wanted, end);
    }
    return std::nullopt;
}

bool ComboBox::Has(std::wstring_view text) const {
    const std::wstring wanted = L'\0' + UpperCase(std::wstring(text)) + L'\0';
    return (L'\0' + upperItems_).find(wanted) != std::wstring::npos;
}

void ComboBox::TakeMarked() {
    if (!IsOpen()) return;
    const LRESULT marked = SendMessageW(list_, LB_GETCURSEL, 0, 0);
    SendMessageW(handle_, CB_SHOWDROPDOWN, FALSE, 0);
    if (marked != LB_ERR) SendMessageW(handle_, CB_SETCURSEL, static_cast<WPARAM>(marked), 0);
}

void ComboBox::SelectFrom(size_t start) {
    // The caret stands where the selection ends.
    SendMessageW(edit_, EM_SETSEL, start, static_cast<LPARAM>(WindowTextLength()));
    SendMessageW(edit_, EM_SCROLLCARET, 0, 0);
}

bool ComboBox::CaretIsAtEnd() const {
    DWORD start = 0;
    DWORD end = 0;
    SendMessageW(edit_, EM_GETSEL, reinterpret_cast<WPARAM>(&start), reinterpret_cast<LPARAM>(&end));
    return start == end && end == WindowTextLength();
}

size_t ComboBox::WindowTextLength() const { return static_cast<size_t>(GetWindowTextLengthW(edit_)); }

}  // namespace win
