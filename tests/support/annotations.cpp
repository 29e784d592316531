#include "tests/support/annotations.h"

#include <oleacc.h>

#include <map>

#include "tests/support/text.h"

namespace testkit {

/// Windows' object, as far as the program uses it.
class Annotations::Services : public IAccPropServices {
  public:
    struct Told {
        std::optional<long> role;
        std::optional<long> state;
        std::string name;
    };

    STDMETHODIMP QueryInterface(REFIID, void** object) override {
        *object = this;
        return S_OK;
    }
    STDMETHODIMP_(ULONG) AddRef() override { return 1; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }

    STDMETHODIMP SetHwndProp(HWND window, DWORD object, DWORD child, MSAAPROPID what,
                             VARIANT value) override {
        if (!IsWindowItself(object, child) || value.vt != VT_I4) return E_INVALIDARG;
        if (what != PROPID_ACC_ROLE && what != PROPID_ACC_STATE) return E_INVALIDARG;
        (what == PROPID_ACC_ROLE ? told[window].role : told[window].state) = value.lVal;
        return S_OK;
    }
    STDMETHODIMP SetHwndPropStr(HWND window, DWORD object, DWORD child, MSAAPROPID what,
                                LPCWSTR text) override {
        if (!IsWindowItself(object, child) || what != PROPID_ACC_NAME) return E_INVALIDARG;
        told[window].name = Utf8(text);
        return S_OK;
    }
    STDMETHODIMP ClearHwndProps(HWND window, DWORD object, DWORD child, const MSAAPROPID* which,
                                int count) override {
        if (!IsWindowItself(object, child)) return E_INVALIDARG;
        for (int index = 0; index < count; ++index) {
            if (which[index] == PROPID_ACC_ROLE) told[window].role.reset();
            if (which[index] == PROPID_ACC_STATE) told[window].state.reset();
            if (which[index] == PROPID_ACC_NAME) told[window].name.clear();
        }
        return S_OK;
    }

    STDMETHODIMP SetPropValue(const BYTE*, DWORD, MSAAPROPID, VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP SetPropServer(const BYTE*, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                               AnnoScope) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP ClearProps(const BYTE*, DWORD, const MSAAPROPID*, int) override { return E_NOTIMPL; }
    STDMETHODIMP SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                   AnnoScope) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE**, DWORD*) override { return E_NOTIMPL; }
    STDMETHODIMP DecomposeHwndIdentityString(const BYTE*, DWORD, HWND*, DWORD*, DWORD*) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) override { return E_NOTIMPL; }
    STDMETHODIMP SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) override { return E_NOTIMPL; }
    STDMETHODIMP SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID*, int, IAccPropServer*,
                                    AnnoScope) override {
        return E_NOTIMPL;
    }
    STDMETHODIMP ClearHmenuProps(HMENU, DWORD, const MSAAPROPID*, int) override { return E_NOTIMPL; }
    STDMETHODIMP ComposeHmenuIdentityString(HMENU, DWORD, BYTE**, DWORD*) override { return E_NOTIMPL; }
    STDMETHODIMP DecomposeHmenuIdentityString(const BYTE*, DWORD, HMENU*, DWORD*) override {
        return E_NOTIMPL;
    }

    std::map<HWND, Told> told;

  private:
    static bool IsWindowItself(DWORD object, DWORD child) {
        return object == static_cast<DWORD>(OBJID_CLIENT) && child == CHILDID_SELF;
    }
};

Annotations::Annotations()
    : services_(std::make_unique<Services>()),
      create_(FAKE_CALL(
          CoCreateInstance,
          [this](REFCLSID type, LPUNKNOWN outer, DWORD context, REFIID id, LPVOID* object) -> HRESULT {
              if (type != CLSID_AccPropServices)
                  return ORIGINAL_CALL(CoCreateInstance)(type, outer, context, id, object);
              *object = static_cast<IAccPropServices*>(services_.get());
              return S_OK;
          })) {}

Annotations::~Annotations() = default;

std::optional<long> Annotations::RoleOf(HWND window) const {
    const auto found = services_->told.find(window);
    return found == services_->told.end() ? std::nullopt : found->second.role;
}

std::optional<long> Annotations::StateOf(HWND window) const {
    const auto found = services_->told.find(window);
    return found == services_->told.end() ? std::nullopt : found->second.state;
}

std::string Annotations::NameOf(HWND window) const {
    const auto found = services_->told.find(window);
    return found == services_->told.end() ? std::string() : found->second.name;
}

std::size_t Annotations::Count() const {
    std::size_t count = 0;
    for (const auto& [window, told] : services_->told)
        if (told.role || told.state || !told.name.empty()) ++count;
    return count;
}

}  // namespace testkit
