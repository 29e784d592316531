// The library that a test program hooks into another program, to see what no message tells from outside. Wine
// keeps menus private to their process, and a tip's text is never marshalled between processes anywhere.
#include <windows.h>

#include <commctrl.h>

#include <cwchar>

#include "tests/support/agent/protocol.h"

namespace testkit::agent {
namespace {

constexpr UINT kGetMenuOfPopup = 0x01E1;  // MN_GETHMENU

void ReadMenu(HWND popup, Answer& answer) {
    const auto menu = reinterpret_cast<HMENU>(SendMessageW(popup, kGetMenuOfPopup, 0, 0));
    const int count = GetMenuItemCount(menu);
    for (int index = 0; index < count && answer.count < kMostItems; ++index) {
        const UINT position = static_cast<UINT>(index);
        MenuItemAnswer& item = answer.items[answer.count];
        MENUITEMINFOW info = {};
        info.cbSize = sizeof info;
        info.fMask = MIIM_ID | MIIM_STATE | MIIM_FTYPE | MIIM_SUBMENU | MIIM_STRING;
        info.dwTypeData = item.caption;
        info.cch = ARRAYSIZE(item.caption);
        if (!GetMenuItemInfoW(menu, position, TRUE, &info)) continue;
        item.id = info.wID;
        item.type = info.fType;
        item.state = info.fState;
        item.has_submenu = info.hSubMenu != nullptr;
        GetMenuItemRect(nullptr, menu, position, &item.rect);
        ++answer.count;
    }
}

/// The title that a tooltip was given last; Wine's tooltips do not tell it.
struct TipTitle {
    HWND tooltip;
    UINT icon;
    wchar_t text[512];
};
TipTitle titles[64];

/// The tooltip's own place, or a free one.
TipTitle* TitleOf(HWND tooltip) {
    for (TipTitle& title : titles) {
        if (title.tooltip == tooltip || !IsWindow(title.tooltip)) return &title;
    }
    return nullptr;
}

void KeepTitle(const CWPSTRUCT& message) {
    TipTitle* title = TitleOf(message.hwnd);
    if (!title) return;
    *title = {message.hwnd, static_cast<UINT>(message.wParam), {}};
    if (!message.lParam) return;
    if (message.message == TTM_SETTITLEW) {
        lstrcpynW(title->text, reinterpret_cast<const wchar_t*>(message.lParam), ARRAYSIZE(title->text));
    } else {
        MultiByteToWideChar(CP_ACP, 0, reinterpret_cast<const char*>(message.lParam), -1, title->text,
                            ARRAYSIZE(title->text) - 1);
    }
}

void ReadToolTip(HWND tooltip, Answer& answer) {
    if (const TipTitle* title = TitleOf(tooltip); title && title->tooltip == tooltip) {
        answer.tip.icon = title->icon;
        lstrcpynW(answer.tip.title, title->text, ARRAYSIZE(answer.tip.title));
    }
    TOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    if (!SendMessageW(tooltip, TTM_GETCURRENTTOOLW, 0, reinterpret_cast<LPARAM>(&tool)) &&
        !SendMessageW(tooltip, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool))) {
        return;
    }
    tool.lpszText = answer.tip.text;
    // The wparam is the room in the buffer; older libraries ignore it.
    SendMessageW(tooltip, TTM_GETTEXTW, ARRAYSIZE(answer.tip.text), reinterpret_cast<LPARAM>(&tool));
}

/// Tries every number that a handle can have; its upper half may be zero.
void CountMenusAndIcons(Answer& answer) {
    for (ULONG_PTR number = 0x20; number < 0xFFF0; number += 2) {
        if (IsMenu(reinterpret_cast<HMENU>(number))) {
            ++answer.count;
            continue;
        }
        ICONINFO icon = {};
        if (!GetIconInfo(reinterpret_cast<HICON>(number), &icon)) continue;
        ++answer.count;
        if (icon.hbmColor) DeleteObject(icon.hbmColor);
        if (icon.hbmMask) DeleteObject(icon.hbmMask);
    }
}

void AnswerQuestion(HWND window, Question question, DWORD asker) {
    wchar_t name[64];
    swprintf(name, ARRAYSIZE(name), kMemoryNameFormat, asker);
    HANDLE memory = OpenFileMappingW(FILE_MAP_WRITE, FALSE, name);
    if (!memory) return;
    if (auto* answer = static_cast<Answer*>(MapViewOfFile(memory, FILE_MAP_WRITE, 0, 0, sizeof(Answer)))) {
        // With two hooks in place the question comes by twice.
        if (!answer->done) {
            switch (question) {
                case Question::kMenu: ReadMenu(window, *answer); break;
                case Question::kToolTip: ReadToolTip(window, *answer); break;
                case Question::kMenusAndIcons: CountMenusAndIcons(*answer); break;
                case Question::kWaitingMessages:
                    answer->count = HIWORD(GetQueueStatus(QS_INPUT | QS_POSTMESSAGE | QS_PAINT));
                    break;
                case Question::kErrorModes:
                    answer->count = (GetErrorMode() << 16) | GetThreadErrorMode();
                    break;
            }
            answer->done = TRUE;
        }
        UnmapViewOfFile(answer);
    }
    CloseHandle(memory);
}

void OnSentMessage(const CWPSTRUCT& message) {
    static const UINT kMessage = RegisterWindowMessageW(kMessageName);
    if (message.message == TTM_SETTITLEA || message.message == TTM_SETTITLEW) KeepTitle(message);
    if (message.message != kMessage) return;
    AnswerQuestion(message.hwnd, static_cast<Question>(message.wParam), static_cast<DWORD>(message.lParam));
}

}  // namespace
}  // namespace testkit::agent

extern "C" __declspec(dllexport) LRESULT CALLBACK AgentHook(int code, WPARAM wparam, LPARAM lparam) {
    if (code == HC_ACTION) testkit::agent::OnSentMessage(*reinterpret_cast<const CWPSTRUCT*>(lparam));
    return CallNextHookEx(nullptr, code, wparam, lparam);
}
