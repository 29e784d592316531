#pragma once

#include <windows.h>

#include <oaidl.h>

namespace leaks {

class Account;

/// Stands in front of an automation object, and of each object that it answers with, and keeps account of it
/// from its first reference to its last.
class CountedDispatch : public IDispatch {
  public:
    /// Takes over one reference to `object`.
    CountedDispatch(IDispatch* object, Account& account);
    CountedDispatch(const CountedDispatch&) = delete;
    CountedDispatch& operator=(const CountedDispatch&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        return object_->GetTypeInfoCount(count);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override {
        return object_->GetTypeInfo(index, locale, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID id, LPOLESTR* names, UINT count, LCID locale,
                                            DISPID* members) override {
        return object_->GetIDsOfNames(id, names, count, locale, members);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID id, LCID locale, WORD kind, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argument) override;

  private:
    virtual ~CountedDispatch();

    IDispatch* object_;
    Account& account_;
    ULONG references_ = 1;
};

}  // namespace leaks
