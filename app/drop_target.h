#pragma once

#include <windows.h>

#include <oleidl.h>

#include <functional>

#include "sys/dropped_data.h"

namespace app {

/// Makes one window a target of drag and drop. The drop is only read here; `onDrop` must not keep waiting the
/// program that the drop comes from.
class DropTarget : public IDropTarget {
  public:
    DropTarget() = default;
    DropTarget(const DropTarget&) = delete;
    DropTarget& operator=(const DropTarget&) = delete;
    DropTarget(DropTarget&&) = delete;
    DropTarget& operator=(DropTarget&&) = delete;
    virtual ~DropTarget();

    /// Registers the window (RegisterDragDrop); this object must outlive it or be revoked.
    void Register(HWND window, std::function<void(const sys::DroppedData&)> onDrop);

    /// Takes the registration back; harmless when there is none.
    void Revoke() noexcept;

    /// The effect of a drop: copy where it is allowed, else link, else none.
    static DWORD EffectFor(DWORD allowed) noexcept;

    // IUnknown. The window part owns the object, so the references are counted only for show.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) noexcept override;
    ULONG STDMETHODCALLTYPE AddRef() noexcept override;
    ULONG STDMETHODCALLTYPE Release() noexcept override;

    // IDropTarget
    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* object, DWORD keys, POINTL at,
                                        DWORD* effect) noexcept override;
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keys, POINTL at, DWORD* effect) noexcept override;
    HRESULT STDMETHODCALLTYPE DragLeave() noexcept override;
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* object, DWORD keys, POINTL at,
                                   DWORD* effect) noexcept override;

  private:
    [[nodiscard]] bool Accepts() const noexcept;

    HWND window_ = nullptr;
    std::function<void(const sys::DroppedData&)> onDrop_;
    bool droppable_ = false;
    ULONG references_ = 1;
};

}  // namespace app
