#include "win/accessible.h"

#include <windows.h>

#include <commctrl.h>
#include <oleacc.h>

#include <array>

#include "win/com.h"
#include "win/text.h"
#include "win/window.h"

namespace win {
namespace {

ComPtr<IAccPropServices> Annotations() noexcept {
    ComPtr<IAccPropServices> services;
    CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices,
                     services.ReceiveVoid());
    return services;
}

constexpr DWORD kClient = static_cast<DWORD>(OBJID_CLIENT);

void Tell(HWND window, const MSAAPROPID& what, long number) noexcept {
    const ComPtr<IAccPropServices> services = Annotations();
    if (!services) return;
    VARIANT value{};
    value.vt = VT_I4;
    value.lVal = number;
    services->SetHwndProp(window, kClient, CHILDID_SELF, what, value);
}

/// Without memory of its own, because nothing may be thrown where it is called.
void TellText(HWND control) noexcept {
    const ComPtr<IAccPropServices> services = Annotations();
    if (!services) return;
    std::array<wchar_t, 64> text{};
    GetWindowTextW(control, text.data(), static_cast<int>(text.size()));
    services->SetHwndPropStr(control, kClient, CHILDID_SELF, PROPID_ACC_NAME, text.data());
}

/// The property of a control whose text has been told.
constexpr const wchar_t* kTold = L"QuonTold";

LRESULT CALLBACK TellTextWhenAsked(HWND control, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                   DWORD_PTR /*data*/) noexcept {
    const bool asked = message == WM_GETOBJECT && static_cast<LONG>(lParam) == OBJID_CLIENT;
    // Told only when somebody wants to know, because it takes COM.
    if (asked && GetPropW(control, kTold) == nullptr) {
        TellText(control);
        SetPropW(control, kTold, control);
    }
    if (message == WM_DESTROY) {
        if (RemovePropW(control, kTold) != nullptr) ForgetTold(control);
        RemoveWindowSubclass(control, &TellTextWhenAsked, id);
    }
    return DefSubclassProc(control, message, wParam, lParam);
}

}  // namespace

HWND AddHiddenLabel(HWND parent, std::string_view text) {
    return CreateWindowExW(0, L"STATIC", ToWide(text).c_str(), WS_CHILD, 0, 0, 0, 0, parent, nullptr,
                           ModuleInstance(), nullptr);
}

void TellRole(HWND window, long role) noexcept { Tell(window, PROPID_ACC_ROLE, role); }

void TellState(HWND window, long state) noexcept { Tell(window, PROPID_ACC_STATE, state); }

void TellName(HWND window, std::string_view name) {
    const ComPtr<IAccPropServices> services = Annotations();
    if (!services) return;
    services->SetHwndPropStr(window, kClient, CHILDID_SELF, PROPID_ACC_NAME, ToWide(name).c_str());
}

void NameByText(HWND control) noexcept { SetWindowSubclass(control, &TellTextWhenAsked, 0, 0); }

void ForgetTold(HWND window) noexcept {
    const ComPtr<IAccPropServices> services = Annotations();
    if (!services) return;
    const std::array told{PROPID_ACC_ROLE, PROPID_ACC_NAME, PROPID_ACC_STATE};
    services->ClearHwndProps(window, kClient, CHILDID_SELF, told.data(), static_cast<int>(told.size()));
}

}  // namespace win
