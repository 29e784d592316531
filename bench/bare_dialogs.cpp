#include "bench/bare_dialogs.h"

#include <commctrl.h>
#include <shellapi.h>

#include <algorithm>

#include "dialogs/edit_group.h"
#include "dialogs/icon_chooser.h"
#include "dialogs/organize_shortcuts.h"
#include "res/resource.h"
#include "win/text.h"
#include "win/window.h"

namespace bench {
namespace {

constexpr const wchar_t* kRowsClass = L"QuonBenchRows";
constexpr const wchar_t* kIconClass = L"QuonBenchIcon";

/// What the dialog that is being opened shows.
struct Content {
    std::string ini;
    std::wstring name;
    const std::vector<BareRow>* rows = nullptr;
    BareLook look;
    int nameId = 0;
    int frameId = 0;
    int barId = 0;
    std::vector<HICON> icons;
};

void ReadSection(const std::string& ini) {
    static std::string buffer(20000, '\0');
    GetPrivateProfileSectionA("Cuts", buffer.data(), 20000, ini.c_str());
}

void PaintRows(HWND window, const Content& content) {
    PAINTSTRUCT paint{};
    HDC dc = BeginPaint(window, &paint);
    FillRect(dc, &paint.rcPaint, GetSysColorBrush(COLOR_WINDOW));
    HGDIOBJ font = SelectObject(dc, win::MessageFont());
    SetBkMode(dc, TRANSPARENT);
    RECT all{};
    GetClientRect(window, &all);
    int top = 0;
    for (const BareRow& row : *content.rows) {
        if (top >= paint.rcPaint.bottom) break;
        SHFILEINFOA info{};
        const DWORD_PTR list =
            SHGetFileInfoA(row.path.c_str(), 0, &info, sizeof info, SHGFI_SYSICONINDEX | SHGFI_SMALLICON);
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the function's answer is the handle of the list.
        ImageList_Draw(reinterpret_cast<HIMAGELIST>(list), info.iIcon, dc, 4, top + 2, ILD_NORMAL);
        RECT place{content.look.textLeft, top, all.right, top + content.look.height};
        for (const std::wstring* text : {&row.name, &row.target}) {
            std::wstring copy = *text;
            if (!copy.empty())
                DrawTextExW(dc, copy.data(), static_cast<int>(copy.size()), &place,
                            DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS, nullptr);
            place.top += 18;
        }
        RECT frame{0, top, all.right, top + content.look.height};
        if (content.look.framed) DrawEdge(dc, &frame, BDR_RAISEDOUTER | BDR_SUNKENINNER, BF_RECT);
        top += content.look.step;
    }
    SelectObject(dc, font);
    EndPaint(window, &paint);
}

LRESULT CALLBACK OnRows(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ERASEBKGND) return 1;
    if (message != WM_PAINT) return DefWindowProcW(window, message, wParam, lParam);
    PaintRows(window, *reinterpret_cast<const Content*>(GetWindowLongPtrW(window, GWLP_USERDATA)));
    return 0;
}

LRESULT CALLBACK OnIcon(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ERASEBKGND) return 1;
    if (message != WM_PAINT) return DefWindowProcW(window, message, wParam, lParam);
    PAINTSTRUCT paint{};
    HDC dc = BeginPaint(window, &paint);
    FillRect(dc, &paint.rcPaint, GetSysColorBrush(COLOR_WINDOW));
    DrawIcon(dc, 2, 2, reinterpret_cast<HICON>(GetWindowLongPtrW(window, GWLP_USERDATA)));
    EndPaint(window, &paint);
    return 0;
}

void Register(const wchar_t* name, WNDPROC procedure) {
    WNDCLASSW record{};
    record.lpfnWndProc = procedure;
    record.hInstance = win::ModuleInstance();
    record.lpszClassName = name;
    RegisterClassW(&record);
}

HWND Child(const wchar_t* className, HWND parent, RECT place, LPARAM data) {
    const HWND child = CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE, place.left, place.top,
                                       place.right - place.left, place.bottom - place.top, parent, nullptr,
                                       win::ModuleInstance(), nullptr);
    SetWindowLongPtrW(child, GWLP_USERDATA, data);
    return child;
}

void MakeTip(HWND control) {
    const HWND tip = CreateWindowExA(0, TOOLTIPS_CLASSA, nullptr, TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0, 0, 0,
                                     control, nullptr, win::ModuleInstance(), nullptr);
    char text[] = "Click to select all text";
    TTTOOLINFOA record{};
    record.cbSize = TTTOOLINFOA_V2_SIZE;
    record.uFlags = TTF_SUBCLASS;
    record.hwnd = control;
    record.lpszText = text;
    SendMessageA(tip, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&record));
}

void FillList(HWND dialog, Content& content) {
    const HWND frame = GetDlgItem(dialog, content.frameId);
    RECT inside{};
    GetClientRect(frame, &inside);
    const int height = static_cast<int>(content.rows->size()) * content.look.step;
    Child(kRowsClass, frame, {0, 0, inside.right, std::min(height, 30000)},
          reinterpret_cast<LPARAM>(&content));
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE | SIF_POS;
    info.nMax = height - inside.bottom;
    SetScrollInfo(GetDlgItem(dialog, content.barId), SB_CTL, &info, TRUE);
}

INT_PTR CALLBACK OnListDialog(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
    if (message != WM_INITDIALOG) return FALSE;
    auto& content = *reinterpret_cast<Content*>(lParam);
    SetWindowPos(dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    ReadSection(content.ini);
    FillList(dialog, content);
    if (content.nameId == 0) {
        SetWindowTextW(dialog, content.name.c_str());
        return TRUE;
    }
    const HWND name = GetDlgItem(dialog, content.nameId);
    SetWindowTextW(name, content.name.c_str());
    SendMessageW(name, EM_SETSEL, 0, -1);
    MakeTip(GetDlgItem(dialog, dialogs::frmEditB::l1));
    // Whether the name is taken.
    ReadSection(content.ini);
    ShowWindow(GetDlgItem(dialog, dialogs::frmEditB::l1 + 3), SW_SHOW);
    return TRUE;
}

INT_PTR CALLBACK OnChooser(HWND dialog, UINT message, WPARAM, LPARAM lParam) {
    if (message != WM_INITDIALOG) return FALSE;
    const auto& content = *reinterpret_cast<const Content*>(lParam);
    SetWindowPos(dialog, HWND_TOPMOST, 300, 100, 238, 100, SWP_NOACTIVATE);
    const HWND view = GetDlgItem(dialog, dialogs::IcoChooser::View);
    MoveWindow(view, 5, 5, 222, 44, FALSE);
    const HWND strip = CreateWindowExW(WS_EX_CONTROLPARENT, L"Static", L"",
                                       WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | SS_WHITERECT, 0, 0, 10, 10,
                                       view, nullptr, win::ModuleInstance(), nullptr);
    int left = 4;
    for (HICON icon : content.icons) {
        Child(kIconClass, strip, {left, 2, left + 36, 38}, reinterpret_cast<LPARAM>(icon));
        left += 45;
    }
    MoveWindow(strip, 0, 0, left, 44, FALSE);
    MoveWindow(GetDlgItem(dialog, dialogs::IcoChooser::HScr), 5, 53, 200, 17, FALSE);
    SetScrollRange(GetDlgItem(dialog, dialogs::IcoChooser::HScr), SB_CTL, 0, left - 218, FALSE);
    return TRUE;
}

void Open(int templateId, DLGPROC procedure, Content& content) {
    Register(kRowsClass, &OnRows);
    Register(kIconClass, &OnIcon);
    DialogBoxParamW(win::ModuleInstance(), MAKEINTRESOURCEW(templateId), nullptr, procedure,
                    reinterpret_cast<LPARAM>(&content));
}

}  // namespace

void OpenBareGroup(const std::string& ini, const std::wstring& name, const std::vector<BareRow>& rows) {
    ReadSection(ini);
    Content content{ini,
                    name,
                    &rows,
                    {24, 18, 26, false},
                    dialogs::frmEditB::t1 + 0,
                    dialogs::frmEditB::pFrame,
                    dialogs::frmEditB::Scr,
                    {}};
    Open(IDD_EDIT_GROUP, &OnListDialog, content);
}

void OpenBareOrganiser(const std::string& ini, const std::vector<BareRow>& rows) {
    Content content{ini,
                    L"Organize shortcuts - 1000 shortcuts found",
                    &rows,
                    {51, 47, 36, true},
                    0,
                    dialogs::frmCuts::pFrame,
                    dialogs::frmCuts::Scr,
                    {}};
    Open(IDD_ORGANIZE_SHORTCUTS, &OnListDialog, content);
}

void OpenBareChooser(const std::string& file) {
    Content content;
    for (UINT index = 0;; ++index) {
        HICON icon = ExtractIconA(win::ModuleInstance(), file.c_str(), index);
        if (reinterpret_cast<UINT_PTR>(icon) <= 1) break;
        content.icons.push_back(icon);
    }
    Open(IDD_ICON_CHOOSER, &OnChooser, content);
    for (HICON icon : content.icons)
        DestroyIcon(icon);
}

}  // namespace bench
