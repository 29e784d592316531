#include "dialogs/row_list.h"

#include <commctrl.h>
#include <oleacc.h>
#include <shellapi.h>
#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "model/launching.h"
#include "sys/utility.h"
#include "win/accessible.h"
#include "win/geometry.h"
#include "win/handles.h"
#include "win/icons.h"
#include "win/key_repeat.h"
#include "win/message_ban.h"
#include "win/text.h"

namespace dialogs {
namespace {

// Layout pixels.
constexpr int kRightMargin = 4;
constexpr int kIconSize = 16;
constexpr int kMarkWidth = 2;
constexpr int kEdgeWidth = 2;  // pixels
// Windows keeps the coordinates of a window in 16 bits.
constexpr int kHighestWindow = 30000;

/// The icon of a path in the size that is to be drawn: from the file that the shell names, else from the
/// system's lists, where it has this index; none when neither has it.
win::Icon IconOfSize(const std::string& path, UINT flags, int index, int size) {
    SHFILEINFOA info{};
    const UINT asked = flags & SHGFI_USEFILEATTRIBUTES;
    const bool named = SHGetFileInfoA(path.c_str(), FILE_ATTRIBUTE_NORMAL, &info, sizeof info,
                                      SHGFI_ICONLOCATION | asked) != 0 &&
                       info.szDisplayName[0] != '\0';
    // For many kinds of files the name is only a star.
    win::Icon icon =
        named ? win::FileIcon(info.szDisplayName, info.iIcon, size) : win::FileIcon(path, 0, size);
    return icon ? std::move(icon) : win::ListedIcon(index, size);
}

}  // namespace

RowLook Scaled(const RowLook& look, const win::Scale& scale) {
    return {.firstTop = scale(look.firstTop),
            .height = scale(look.height),
            .gap = scale(look.gap),
            .bottom = scale(look.bottom),
            .icon = scale(look.icon),
            .name = scale(look.name),
            .targetTop = scale(look.targetTop),
            .highlightLeft = scale(look.highlightLeft),
            .framed = look.framed,
            .smallStep = scale(look.smallStep),
            .largeStep = scale(look.largeStep)};
}

void RowList::CreateOn(HWND frame, HWND scrollBar, int id, const win::Scale& scale) {
    frame_ = frame;
    scale_ = scale;
    look_ = Scaled(layout_, scale_);
    rows_.clear();
    selected_ = 0;
    paintOffset_ = 0;
    RECT inside{};
    GetClientRect(frame, &inside);
    win::WindowOptions options;
    options.className = L"QuonRowList";
    options.style = WS_CHILD | WS_VISIBLE | WS_TABSTOP;
    options.place = {0, 0, inside.right, inside.bottom};
    options.parent = frame;
    options.id = id;
    options.classStyle = CS_DBLCLKS;
    Create(options);
    scroll_.Attach(scrollBar, {look_.smallStep, look_.largeStep, static_cast<int>(inside.bottom)});
    Layout();
}

void RowList::Assign(std::vector<Row> rows) {
    rows_ = std::move(rows);
    icons_.clear();
    icons_.resize(rows_.size());
    silent_ = {};
    selected_ = std::clamp(selected_, 0, std::max(0, Count() - 1));
    Layout();
    Repaint();
    TellName();
}

void RowList::Add(Row row) {
    rows_.push_back(std::move(row));
    icons_.emplace_back();
    Layout();
    Reveal(Count() - 1);
    Repaint();
    TellName();
}

const Row* RowList::SelectedRow() const noexcept {
    return selected_ < Count() ? &rows_[static_cast<size_t>(selected_)] : nullptr;
}

void RowList::Select(int index) {
    if (rows_.empty()) return;
    selected_ = std::clamp(index, 0, Count() - 1);
    Reveal(selected_);
    Repaint();
    TellName();
}

RECT RowList::RowPlace(int index) const {
    RECT inside{};
    GetClientRect(frame_, &inside);
    const int top = look_.firstTop + index * Step();
    return {0, top, inside.right, top + look_.height};
}

RECT RowList::HighlightPlace(int index) const {
    RECT place = RowPlace(index);
    place.left = look_.highlightLeft;
    return place;
}

win::Color RowList::ColorBehind(int index) const noexcept {
    return look_.framed && index % 2 != 0 ? win::Color::kOddRow : win::Color::kEvenRow;
}

COLORREF RowList::RowColor(int index) const { return win::ColorOf(ColorBehind(index)); }

COLORREF RowList::PlainRowColor(int index) const { return win::PlainColor(ColorBehind(index)); }

int RowList::ContentHeight() const noexcept {
    if (rows_.empty()) return 0;
    return look_.firstTop + (Count() - 1) * Step() + look_.height + look_.bottom;
}

int RowList::FrameHeight() const {
    RECT inside{};
    GetClientRect(frame_, &inside);
    return inside.bottom;
}

int RowList::RowAt(int contentY) const noexcept {
    if (contentY < look_.firstTop) return 0;
    return (contentY - look_.firstTop) / Step();
}

void RowList::Layout() {
    scroll_.SetMaximum(ContentHeight() - FrameHeight());
    PlaceContent();
}

void RowList::ScrollTo(int value) {
    scroll_.SetValue(value);
    Scr_Change();
}

void RowList::OnScroll(int code) {
    scroll_.Act(code);
    if (code == SB_THUMBTRACK)
        Scr_Scroll();
    else
        Scr_Change();
}

void RowList::Scr_Change() { PlaceContent(); }

void RowList::Scr_Scroll() { PlaceContent(); }

void RowList::PlaceContent() {
    const int frameHeight = FrameHeight();
    // An empty list fills its frame, so that something can have the focus.
    const int height = rows_.empty() ? frameHeight : std::min(ContentHeight(), kHighestWindow);
    const int shift = std::min(ScrollValue(), std::max(0, height - frameHeight));
    const int offset = ScrollValue() - shift;
    if (std::exchange(paintOffset_, offset) != offset) Repaint();
    RECT inside{};
    GetClientRect(frame_, &inside);
    SetWindowPos(Handle(), nullptr, 0, -shift, inside.right, height, SWP_NOZORDER | SWP_NOACTIVATE);
    if (IsWindowVisible(frame_) != 0) UpdateWindow(Handle());
}

void RowList::Reveal(int index) {
    const RECT place = RowPlace(index);
    const int bottom = place.bottom + (index == Count() - 1 ? look_.bottom : 0);
    const int top = index == 0 ? 0 : static_cast<int>(place.top);
    if (top < ScrollValue())
        ScrollTo(top);
    else if (bottom > ScrollValue() + FrameHeight())
        ScrollTo(bottom - FrameHeight());
}

void RowList::TellScreenReader() {
    told_ = true;
    win::TellRole(Handle(), ROLE_SYSTEM_LIST);
    const Row* row = SelectedRow();
    win::TellName(Handle(), row == nullptr ? "No items" : row->name);
}

void RowList::TellName() {
    const Row* row = SelectedRow();
    const std::string name = row == nullptr ? std::string() : row->name;
    const bool changed = win::WindowText(Handle()) != name;
    if (changed) win::SetText(Handle(), name);
    if (told_) TellScreenReader();
    // Windows tells of a window's new text by itself, but nobody of what is read out.
    if (changed) NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, Handle(), OBJID_CLIENT, CHILDID_SELF);
}

void RowList::Repaint() const noexcept {
    // Given no window, Windows would repaint all windows.
    if (Handle() != nullptr) InvalidateRect(Handle(), nullptr, FALSE);
}

std::optional<LRESULT> RowList::OnMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT: OnPaint(); return 0;
        case WM_PRINTCLIENT: Print(reinterpret_cast<HDC>(wParam)); return 0;
        case WM_ERASEBKGND: return 1;
        case WM_GETOBJECT:
            // Told only when somebody wants to know, because it takes COM.
            if (static_cast<LONG>(lParam) == OBJID_CLIENT && !told_) TellScreenReader();
            return std::nullopt;
        case WM_DESTROY:
            if (std::exchange(told_, false)) win::ForgetTold(Handle());
            return std::nullopt;
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN: OnPress(GET_Y_LPARAM(lParam)); return 0;
        case WM_LBUTTONDBLCLK:
            if (OnPress(GET_Y_LPARAM(lParam)) && onOpen) onOpen();
            return 0;
        case WM_GETDLGCODE: return DLGC_WANTARROWS;
        case WM_KEYDOWN:
            return OnKey(wParam, win::IsKeyRepeat(lParam)) ? std::optional<LRESULT>(0) : std::nullopt;
        case WM_SETFOCUS:
        case WM_KILLFOCUS:
        case WM_UPDATEUISTATE: Repaint(); return std::nullopt;
        default: return std::nullopt;
    }
}

bool RowList::OnKey(WPARAM key, bool repeated) {
    const int page = std::max(1, FrameHeight() / Step());
    switch (key) {
        case VK_UP: Select(selected_ - 1); return true;
        case VK_DOWN: Select(selected_ + 1); return true;
        case VK_PRIOR: Select(selected_ - page); return true;
        case VK_NEXT: Select(selected_ + page); return true;
        case VK_HOME: Select(0); return true;
        case VK_END: Select(Count() - 1); return true;
        case VK_DELETE:
            if (onDelete && !rows_.empty() && !repeated) onDelete();
            return true;
        default: return false;
    }
}

bool RowList::OnPress(int y) {
    SetFocus(Handle());
    const int index = RowAt(y + paintOffset_);
    if (index >= Count()) return false;
    Select(index);
    return true;
}

RowList::ShellIcon RowList::FetchIcon(const std::string& target) {
    win::AssertMayPump("FetchIcon");
    std::string path = win::Before(target, '|');
    // A server that does not answer takes many seconds to say so: it is asked once for all rows.
    const bool answers = sys::LookAtTarget(path, silent_).kind != sys::TargetKind::kUnknown;
    if (sys::IsUrl(path)) path = model::DefaultBrowserPath.empty() ? ".htm" : model::DefaultBrowserPath;
    constexpr UINT kSmall = SHGFI_SYSICONINDEX | SHGFI_SMALLICON;
    SHFILEINFOA info{};
    UINT flags = kSmall;
    DWORD_PTR list = answers ? SHGetFileInfoA(path.c_str(), 0, &info, sizeof info, flags) : 0;
    // A file that is gone or out of reach still has the icon of its kind.
    if (list == 0) {
        flags |= SHGFI_USEFILEATTRIBUTES;
        list = SHGetFileInfoA(path.c_str(), FILE_ATTRIBUTE_NORMAL, &info, sizeof info, flags);
    }
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the function's answer is the handle of the list.
    ShellIcon icon{reinterpret_cast<HANDLE>(list), info.iIcon, {}};
    const int size = scale_(kIconSize);
    if (icon.list != nullptr && size != GetSystemMetrics(SM_CXSMICON))
        icon.own = IconOfSize(path, flags, info.iIcon, size);
    return icon;
}

void RowList::DrawShellIcon(HDC dc, const ShellIcon& icon, int left, int top) const {
    if (icon.list == nullptr) return;
    const auto list = static_cast<HIMAGELIST>(icon.list);
    const int size = scale_(kIconSize);
    if (size == GetSystemMetrics(SM_CXSMICON)) {
        ImageList_Draw(list, icon.index, dc, left, top, ILD_NORMAL);
        return;
    }
    // An icon that does not come in that size is stretched or shrunk.
    win::Icon stretched;
    if (!icon.own) stretched.Reset(ImageList_GetIcon(list, icon.index, ILD_NORMAL));
    DrawIconEx(dc, left, top, icon.own ? icon.own.Get() : stretched.Get(), size, size, 0, nullptr, DI_NORMAL);
}

void RowList::FetchIcons(int top, int bottom) {
    for (int index = RowAt(top); index < Count() && RowPlace(index).top < bottom; ++index) {
        const auto slot = static_cast<size_t>(index);
        if (icons_[slot]) continue;
        // The shell may let messages run, which may change the rows.
        const std::string target = rows_[slot].target;
        ShellIcon icon = FetchIcon(target);
        if (slot < rows_.size() && rows_[slot].target == target) icons_[slot] = std::move(icon);
    }
}

void RowList::OnPaint() {
    RECT dirty{};
    GetUpdateRect(Handle(), &dirty, FALSE);
    FetchIcons(dirty.top + paintOffset_, dirty.bottom + paintOffset_);
    const win::Paint paint(Handle());
    GetClipBox(paint.Dc(), &dirty);
    const int width = win::Width(dirty);
    const int height = win::Height(dirty);
    if (width <= 0 || height <= 0) return;
    // In this order: a bitmap can be deleted only after the device context that holds it.
    const win::Bitmap bitmap(CreateCompatibleBitmap(paint.Dc(), width, height));
    const win::MemoryDc dc(CreateCompatibleDC(paint.Dc()));
    SelectObject(dc.Get(), bitmap.Get());
    SetViewportOrgEx(dc.Get(), -dirty.left, -dirty.top, nullptr);
    Draw(dc.Get(), dirty);
    BitBlt(paint.Dc(), dirty.left, dirty.top, width, height, dc.Get(), dirty.left, dirty.top, SRCCOPY);
}

void RowList::Print(HDC dc) {
    RECT part{};
    GetClipBox(dc, &part);
    FetchIcons(part.top + paintOffset_, part.bottom + paintOffset_);
    Draw(dc, part);
}

void RowList::Draw(HDC dc, const RECT& part) const {
    FillRect(dc, &part, GetSysColorBrush(COLOR_WINDOW));
    const win::Selection font(dc, win::MessageFont(scale_));
    SetBkMode(dc, TRANSPARENT);
    POINT origin{};
    OffsetViewportOrgEx(dc, 0, -paintOffset_, &origin);
    for (int index = RowAt(part.top + paintOffset_);
         index < Count() && RowPlace(index).top < part.bottom + paintOffset_; ++index)
        DrawRow(dc, index);
    DrawFocus(dc);
    SetViewportOrgEx(dc, origin.x, origin.y, nullptr);
}

void RowList::DrawRow(HDC dc, int index) const {
    const auto slot = static_cast<size_t>(index);
    RECT place = RowPlace(index);
    const bool selected = index == selected_;
    const bool focused = GetFocus() == Handle();
    const win::Brush back(CreateSolidBrush(RowColor(index)));
    FillRect(dc, &place, back.Get());
    if (selected) {
        const RECT bar = HighlightPlace(index);
        const win::Brush color(
            CreateSolidBrush(focused ? GetSysColor(COLOR_HIGHLIGHT) : win::ColorOf(win::Color::kQuietBar)));
        FillRect(dc, &bar, color.Get());
    }
    if (look_.framed) DrawEdge(dc, &place, BDR_RAISEDOUTER | BDR_SUNKENINNER, BF_RECT);
    if (const auto& icon = icons_[slot])
        DrawShellIcon(dc, *icon, place.left + look_.icon.x, place.top + look_.icon.y);
    // Under a contrast theme the bar has the same colour in both cases.
    const bool bright = selected && (focused || win::ContrastTheme());
    const int right = place.right - scale_(kRightMargin);
    SetTextColor(dc, GetSysColor(bright ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
    DrawLine(dc, rows_[slot].name, place.left + look_.name.x, place.top + look_.name.y, right);
    if (look_.targetTop == 0) return;
    if (!bright) SetTextColor(dc, win::ColorOf(win::Color::kRemark));
    DrawLine(dc, rows_[slot].target, place.left + look_.name.x, place.top + look_.targetTop, right);
}

void RowList::DrawLine(HDC dc, const std::string& text, int left, int top, int right) const {
    RECT place{left, top, right, top + look_.height};
    // The end of a path that is too long for its row says most.
    const UINT cut = text.find('\\') == std::string::npos ? DT_END_ELLIPSIS : DT_PATH_ELLIPSIS;
    win::DrawPlainText(dc, text, place, DT_SINGLELINE | DT_NOPREFIX | cut);
}

void RowList::DrawFocus(HDC dc) const {
    if (GetFocus() != Handle()) return;
    if ((SendMessageW(Handle(), WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS) != 0) return;
    RECT mark = HighlightPlace(selected_);
    // Inside the edge, whose width is the same at every scale.
    if (look_.framed) InflateRect(&mark, -kEdgeWidth, -kEdgeWidth);
    win::DrawSystemFrame(dc, mark, scale_(kMarkWidth), COLOR_HIGHLIGHT);
    // Within the bar, whose colour is the same, only a line inside lets the mark be seen.
    win::DrawSystemFrame(dc, mark, scale_(1), COLOR_HIGHLIGHTTEXT);
}

}  // namespace dialogs
