// What a program that starts a drag offers to the one it is dropped on.
//
//     DataObject data;
//     data.OfferFiles({"C:\\a.txt", "C:\\b.txt"});
//     target.Drop(&data, 0, {}, &effect);
//     EXPECT_THAT(data.Calls(), ElementsAre("query 13", "query 15", "get 15"));
//
// It lives on the stack: its references are counted, but the last one does not delete it.
#pragma once

#include <windows.h>

#include <objidl.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace testkit {

class DataObject : public IDataObject {
  public:
    DataObject() = default;
    DataObject(const DataObject&) = delete;
    DataObject& operator=(const DataObject&) = delete;
    virtual ~DataObject() = default;

    /// CF_UNICODETEXT, ended by a NUL.
    void OfferText(std::string_view utf8);
    /// CF_HDROP.
    void OfferFiles(const std::vector<std::string>& paths);
    /// Any format with exactly these bytes.
    void Offer(CLIPFORMAT format, std::string bytes) { formats_[format] = std::move(bytes); }
    /// A format that is offered, but whose GetData fails.
    void Promise(CLIPFORMAT format) { promised_ = format; }

    /// Which formats were asked for, in order: "query 13", "get 13".
    const std::vector<std::string>& Calls() const { return calls_; }
    /// How many media were handed out; whoever got one frees it.
    int MediaGiven() const { return media_given_; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override { return --references_; }

    HRESULT STDMETHODCALLTYPE GetData(FORMATETC* format, STGMEDIUM* medium) override;
    HRESULT STDMETHODCALLTYPE GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE QueryGetData(FORMATETC* format) override;
    HRESULT STDMETHODCALLTYPE GetCanonicalFormatEtc(FORMATETC*, FORMATETC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override;
    HRESULT STDMETHODCALLTYPE DAdvise(FORMATETC*, DWORD, IAdviseSink*, DWORD*) override {
        return OLE_E_ADVISENOTSUPPORTED;
    }
    HRESULT STDMETHODCALLTYPE DUnadvise(DWORD) override { return OLE_E_ADVISENOTSUPPORTED; }
    HRESULT STDMETHODCALLTYPE EnumDAdvise(IEnumSTATDATA**) override { return OLE_E_ADVISENOTSUPPORTED; }

  private:
    bool Offers(const FORMATETC& format) const;

    std::map<CLIPFORMAT, std::string> formats_;
    CLIPFORMAT promised_ = 0;
    std::vector<std::string> calls_;
    int media_given_ = 0;
    ULONG references_ = 1;
};

}  // namespace testkit
