#include "tests/support/data_object.h"

#include <ole2.h>
#include <shlobj.h>

#include <cstring>

#include "tests/support/text.h"

namespace testkit {
namespace {

FORMATETC InMemory(CLIPFORMAT format) { return {format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL}; }

std::string BytesOf(const std::wstring& text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

}  // namespace

void DataObject::OfferText(std::string_view utf8) { Offer(CF_UNICODETEXT, BytesOf(Wide(utf8) + L'\0')); }

void DataObject::OfferFiles(const std::vector<std::string>& paths) {
    DROPFILES head = {};
    head.pFiles = sizeof head;
    head.fWide = TRUE;
    std::wstring names;
    for (const std::string& path : paths)
        names += Wide(path) + L'\0';
    names += L'\0';
    Offer(CF_HDROP, std::string(reinterpret_cast<const char*>(&head), sizeof head) + BytesOf(names));
}

bool DataObject::Offers(const FORMATETC& format) const {
    return (format.tymed & TYMED_HGLOBAL) != 0 &&
           (formats_.contains(format.cfFormat) || format.cfFormat == promised_);
}

HRESULT DataObject::QueryInterface(REFIID id, void** object) {
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDataObject)) {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    *object = static_cast<IDataObject*>(this);
    AddRef();
    return S_OK;
}

HRESULT DataObject::QueryGetData(FORMATETC* format) {
    calls_.push_back("query " + std::to_string(format->cfFormat));
    return Offers(*format) ? S_OK : DV_E_FORMATETC;
}

HRESULT DataObject::GetData(FORMATETC* format, STGMEDIUM* medium) {
    calls_.push_back("get " + std::to_string(format->cfFormat));
    const auto found = formats_.find(format->cfFormat);
    if (!Offers(*format) || found == formats_.end()) return DV_E_FORMATETC;
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, found->second.size());
    if (!memory) return E_OUTOFMEMORY;
    std::memcpy(GlobalLock(memory), found->second.data(), found->second.size());
    GlobalUnlock(memory);
    *medium = {};
    medium->tymed = TYMED_HGLOBAL;
    medium->hGlobal = memory;
    ++media_given_;
    return S_OK;
}

HRESULT DataObject::EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) {
    if (direction != DATADIR_GET) return E_NOTIMPL;
    std::vector<FORMATETC> list;
    for (const auto& [format, bytes] : formats_)
        list.push_back(InMemory(format));
    return SHCreateStdEnumFmtEtc(static_cast<UINT>(list.size()), list.data(), formats);
}

}  // namespace testkit
