#include "app/drop_target.h"

#include <ole2.h>

#include <utility>

#include "win/errors.h"
#include "win/trace.h"

namespace app {

DropTarget::~DropTarget() { Revoke(); }

void DropTarget::Register(HWND window, std::function<void(const sys::DroppedData&)> onDrop) {
    Revoke();
    onDrop_ = std::move(onDrop);
    const HRESULT answer = RegisterDragDrop(window, this);
    if (answer == S_OK)
        window_ = window;
    else
        win::TraceFailure("RegisterDragDrop", static_cast<DWORD>(answer));
}

void DropTarget::Revoke() noexcept {
    if (window_ != nullptr) RevokeDragDrop(window_);
    window_ = nullptr;
}

DWORD DropTarget::EffectFor(DWORD allowed) noexcept {
    if ((allowed & DROPEFFECT_COPY) != 0) return DROPEFFECT_COPY;
    if ((allowed & DROPEFFECT_LINK) != 0) return DROPEFFECT_LINK;
    return DROPEFFECT_NONE;
}

bool DropTarget::Accepts() const noexcept {
    // While a dialog is open the panel takes no input, and no drops either.
    return droppable_ && window_ != nullptr && IsWindowEnabled(GetAncestor(window_, GA_ROOT)) != 0;
}

HRESULT DropTarget::QueryInterface(REFIID id, void** object) noexcept {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (IsEqualIID(id, IID_IUnknown) == 0 && IsEqualIID(id, IID_IDropTarget) == 0) return E_NOINTERFACE;
    *object = static_cast<IDropTarget*>(this);
    AddRef();
    return S_OK;
}

ULONG DropTarget::AddRef() noexcept { return ++references_; }

ULONG DropTarget::Release() noexcept { return --references_; }

HRESULT DropTarget::DragEnter(IDataObject* object, DWORD keys, POINTL at, DWORD* effect) noexcept {
    droppable_ = object != nullptr && sys::OffersDroppableData(object);
    return DragOver(keys, at, effect);
}

HRESULT DropTarget::DragOver(DWORD /*keys*/, POINTL /*at*/, DWORD* effect) noexcept {
    if (effect == nullptr) return E_POINTER;
    *effect = Accepts() ? EffectFor(*effect) : static_cast<DWORD>(DROPEFFECT_NONE);
    return S_OK;
}

HRESULT DropTarget::DragLeave() noexcept {
    droppable_ = false;
    return S_OK;
}

HRESULT DropTarget::Drop(IDataObject* object, DWORD keys, POINTL at, DWORD* effect) noexcept {
    DragOver(keys, at, effect);
    if (effect != nullptr && *effect != DROPEFFECT_NONE) {
        win::Guarded(window_, 0, [&] {
            if (const auto data = sys::ReadDroppedData(object)) onDrop_(*data);
            return 0;
        });
    }
    return DragLeave();
}

}  // namespace app
