#include "tests/leaks/counted_dispatch.h"

#include "tests/leaks/ledger.h"

namespace leaks {

CountedDispatch::CountedDispatch(IDispatch* object, Account& account) : object_(object), account_(account) {
    account_.Take("automation object", reinterpret_cast<Account::Thing>(this));
}

CountedDispatch::~CountedDispatch() {
    account_.Give(reinterpret_cast<Account::Thing>(this));
    object_->Release();
}

HRESULT CountedDispatch::QueryInterface(REFIID id, void** object) {
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch)) return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    AddRef();
    return S_OK;
}

ULONG CountedDispatch::Release() {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
}

HRESULT CountedDispatch::Invoke(DISPID member, REFIID id, LCID locale, WORD kind, DISPPARAMS* parameters,
                                VARIANT* result, EXCEPINFO* exception, UINT* argument) {
    const HRESULT answer = object_->Invoke(member, id, locale, kind, parameters, result, exception, argument);
    if (SUCCEEDED(answer) && result != nullptr && result->vt == VT_DISPATCH && result->pdispVal != nullptr)
        result->pdispVal = new CountedDispatch(result->pdispVal, account_);
    return answer;
}

}  // namespace leaks
