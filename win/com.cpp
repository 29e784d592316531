#include "win/com.h"

#include <ole2.h>

#include "win/text.h"

namespace win {

OleThread::OleThread() noexcept : result_(OleInitialize(nullptr)) {}

OleThread::~OleThread() {
    if (SUCCEEDED(result_)) OleUninitialize();
}

Variant::Variant(const std::wstring& text) noexcept {
    value_.vt = VT_BSTR;
    value_.bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

std::string Variant::Text() const {
    if (value_.vt != VT_BSTR || value_.bstrVal == nullptr) return {};
    return ToBytes({value_.bstrVal, SysStringLen(value_.bstrVal)});
}

HRESULT InvokeByName(IDispatch* object, const wchar_t* name, WORD kind, Variant* argument, Variant& result) {
    std::wstring copy = name;
    LPOLESTR names = copy.data();
    DISPID member = 0;
    const HRESULT found = object->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &member);
    if (FAILED(found)) return found;
    DISPPARAMS parameters{};
    if (argument != nullptr) {
        parameters.rgvarg = argument->Get();
        parameters.cArgs = 1;
    }
    return object->Invoke(member, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, result.Get(), nullptr,
                          nullptr);
}

}  // namespace win
