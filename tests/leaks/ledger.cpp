#include "tests/leaks/ledger.h"

#include <oleacc.h>
#include <tlhelp32.h>

#include "tests/leaks/counted_dispatch.h"

namespace leaks {
namespace {

template <class Thing>
Account::Thing Number(Thing thing) {
    if constexpr (std::is_pointer_v<Thing>)
        return reinterpret_cast<Account::Thing>(thing);
    else
        return static_cast<Account::Thing>(thing);
}

/// Functions answer null, 1 or INVALID_HANDLE_VALUE for "nothing".
bool IsNothing(Account::Thing thing) { return thing <= 1 || thing == static_cast<Account::Thing>(-1); }

/// A timer or a subclass: a number that is a window's own.
Account::Thing PartOf(HWND window, UINT_PTR id) { return id << 32 | (Number(window) & 0xFFFFFFFF); }
bool WindowOfPartExists(Account::Thing part) {
    const Account::Thing window = part & 0xFFFFFFFF;
    return window == 0 || IsWindow(reinterpret_cast<HWND>(window));
}

bool MenuExists(Account::Thing menu) { return IsMenu(reinterpret_cast<HMENU>(menu)); }

}  // namespace

void Account::Take(const char* kind, Thing thing) {
    if (!IsNothing(thing)) held_.emplace(thing, kind);
}

void Account::TakeOnce(const char* kind, Thing thing) {
    if (!held_.contains(thing)) held_.emplace(thing, kind);
}

void Account::TakeUnlessShared(const char* kind, Thing thing) {
    if (held_.contains(thing)) {
        held_.erase(thing);
        shared_.insert(thing);
    }
    if (!shared_.contains(thing)) Take(kind, thing);
}

void Account::Give(Thing thing) {
    if (shared_.contains(thing)) return;
    const auto found = held_.find(thing);
    if (found != held_.end())
        held_.erase(found);
    else
        ++strays_;
}

void Account::Prune() {
    if (exists_) std::erase_if(held_, [this](const auto& held) { return !exists_(held.first); });
}

void Account::AddTo(std::map<std::string, long>& counts) const {
    for (const auto& [thing, kind] : held_)
        ++counts[kind];
    if (strays_ != 0) counts[std::string(name_) + " of nobody's given back"] = strays_;
}

template <class Fakes>
void Ledger::Makes(Account& account, const char* kind) {
    calls_.push_back(Fakes::Add([&account, kind](auto... arguments) {
        const auto made = Fakes::Original()(arguments...);
        account.Take(kind, Number(made));
        return made;
    }));
}

template <class Fakes, class Success>
void Ledger::Ends(Account& account, Success succeeded) {
    calls_.push_back(Fakes::Add([&account, succeeded](auto thing, auto... rest) {
        const auto answer = Fakes::Original()(thing, rest...);
        if (succeeded(answer)) account.Give(Number(thing));
        return answer;
    }));
}

template <class Fakes>
void Ledger::EndsUnlessNull(Account& account) {
    Ends<Fakes>(account, [](auto answer) { return answer != decltype(answer){}; });
}

template <class Fakes>
void Ledger::EndsWithZero(Account& account) {
    Ends<Fakes>(account, [](auto answer) { return answer == decltype(answer){}; });
}

#define OF(function) TESTKIT_FAKES_OF(function)

Ledger::Ledger()
    : menus_("menu", &MenuExists),
      timers_("timer", &WindowOfPartExists),
      subclasses_("subclass", &WindowOfPartExists) {
    RecordIconsAndMenus();
    RecordDrawing();
    RecordDeviceContexts();
    RecordKernelObjects();
    RecordWindowParts();
    RecordMemory();
    RecordOle();
}

Ledger::~Ledger() { Settle(); }

void Ledger::RecordIconsAndMenus() {
    Makes<OF(CopyIcon)>(icons_, "icon");
    Makes<OF(ExtractIconA)>(icons_, "icon");
    calls_.push_back(FAKE_CALL(ExtractAssociatedIconA, [this](HINSTANCE module, LPSTR path, WORD* index) {
        const HICON icon = ORIGINAL_CALL(ExtractAssociatedIconA)(module, path, index);
        icons_.TakeUnlessShared("icon", Number(icon));
        return icon;
    }));
    calls_.push_back(FAKE_CALL(
        SHGetFileInfoA, [this](LPCSTR path, DWORD attributes, SHFILEINFOA* info, UINT size, UINT flags) {
            const DWORD_PTR answer = ORIGINAL_CALL(SHGetFileInfoA)(path, attributes, info, size, flags);
            if (answer != 0 && (flags & SHGFI_ICON) != 0)
                icons_.TakeUnlessShared("icon", Number(info->hIcon));
            return answer;
        }));
    calls_.push_back(FAKE_CALL(
        LoadImageW, [this](HINSTANCE module, LPCWSTR name, UINT type, int width, int height, UINT flags) {
            const HANDLE image = ORIGINAL_CALL(LoadImageW)(module, name, type, width, height, flags);
            if ((flags & LR_SHARED) == 0) {
                if (type == IMAGE_BITMAP)
                    drawing_.Take("bitmap", Number(image));
                else
                    icons_.Take("icon", Number(image));
            }
            return image;
        }));
    EndsUnlessNull<OF(DestroyIcon)>(icons_);
    // A menu takes its submenus along.
    Makes<OF(CreatePopupMenu)>(menus_, "menu");
    EndsUnlessNull<OF(DestroyMenu)>(menus_);
}

void Ledger::RecordDrawing() {
    Makes<OF(CreateFontIndirectW)>(drawing_, "font");
    Makes<OF(CreateSolidBrush)>(drawing_, "brush");
    Makes<OF(CreatePen)>(drawing_, "pen");
    Makes<OF(CreateCompatibleBitmap)>(drawing_, "bitmap");
    Makes<OF(CreateRectRgn)>(drawing_, "region");
    Makes<OF(CreateRectRgnIndirect)>(drawing_, "region");
    calls_.push_back(FAKE_CALL(SelectObject, [this](HDC dc, HGDIOBJ object) {
        const HGDIOBJ former = ORIGINAL_CALL(SelectObject)(dc, object);
        if (former != nullptr && former != HGDI_ERROR) Select(dc, object);
        return former;
    }));
    calls_.push_back(FAKE_CALL(DeleteObject, [this](HGDIOBJ object) {
        if (IsSelected(object)) ++deletedWhileSelected_;
        const BOOL deleted = ORIGINAL_CALL(DeleteObject)(object);
        if (deleted) drawing_.Give(Number(object));
        return deleted;
    }));
    calls_.push_back(FAKE_CALL(SetWindowRgn, [this](HWND window, HRGN region, BOOL redraw) {
        const int set = ORIGINAL_CALL(SetWindowRgn)(window, region, redraw);
        // The window owns it from now on.
        if (set != 0 && region != nullptr) drawing_.Give(Number(region));
        return set;
    }));
}

void Ledger::Select(HDC dc, HGDIOBJ object) {
    const DWORD type = GetObjectType(object);
    if (type != OBJ_REGION) selected_[dc][type] = object;
}

bool Ledger::IsSelected(HGDIOBJ object) const {
    return std::any_of(selected_.begin(), selected_.end(), [object](const auto& context) {
        return std::any_of(context.second.begin(), context.second.end(),
                           [object](const auto& held) { return held.second == object; });
    });
}

void Ledger::RecordDeviceContexts() {
    Makes<OF(CreateCompatibleDC)>(memoryDcs_, "memory device context");
    calls_.push_back(FAKE_CALL(DeleteDC, [this](HDC dc) {
        const BOOL deleted = ORIGINAL_CALL(DeleteDC)(dc);
        if (deleted) memoryDcs_.Give(Number(dc));
        selected_.erase(dc);
        return deleted;
    }));
    Makes<OF(GetDC)>(windowDcs_, "window's device context");
    calls_.push_back(FAKE_CALL(ReleaseDC, [this](HWND window, HDC dc) {
        const int released = ORIGINAL_CALL(ReleaseDC)(window, dc);
        if (released != 0) windowDcs_.Give(Number(dc));
        selected_.erase(dc);
        return released;
    }));
    calls_.push_back(FAKE_CALL(BeginPaint, [this](HWND window, LPPAINTSTRUCT paint) {
        const HDC dc = ORIGINAL_CALL(BeginPaint)(window, paint);
        paints_.Take("paint", Number(window));
        return dc;
    }));
    calls_.push_back(WATCH_CALL(EndPaint, [this](HWND window, const PAINTSTRUCT* paint) {
        selected_.erase(paint->hdc);
        paints_.Give(Number(window));
    }));
}

void Ledger::RecordKernelObjects() {
    Makes<OF(OpenProcess)>(kernel_, "process");
    Makes<OF(CreateToolhelp32Snapshot)>(kernel_, "snapshot");
    Makes<OF(CreateFileA)>(kernel_, "file");
    Makes<OF(CreateFileW)>(kernel_, "file");
    EndsUnlessNull<OF(CloseHandle)>(kernel_);
    Makes<OF(FindFirstFileA)>(searches_, "file search");
    Makes<OF(FindFirstFileW)>(searches_, "file search");
    EndsUnlessNull<OF(FindClose)>(searches_);
    calls_.push_back(
        FAKE_CALL(RegOpenKeyExA, [this](HKEY root, LPCSTR path, DWORD options, REGSAM access, PHKEY key) {
            const LSTATUS answer = ORIGINAL_CALL(RegOpenKeyExA)(root, path, options, access, key);
            if (answer == ERROR_SUCCESS) keys_.Take("registry key", Number(*key));
            return answer;
        }));
    EndsWithZero<OF(RegCloseKey)>(keys_);
}

void Ledger::RecordWindowParts() {
    calls_.push_back(
        FAKE_CALL(SetTimer, [this](HWND window, UINT_PTR id, UINT interval, TIMERPROC procedure) {
            const UINT_PTR timer = ORIGINAL_CALL(SetTimer)(window, id, interval, procedure);
            if (timer != 0) timers_.TakeOnce("timer", PartOf(window, window ? id : timer));
            return timer;
        }));
    calls_.push_back(FAKE_CALL(KillTimer, [this](HWND window, UINT_PTR id) {
        const BOOL killed = ORIGINAL_CALL(KillTimer)(window, id);
        if (killed && timers_.Has(PartOf(window, id))) timers_.Give(PartOf(window, id));
        return killed;
    }));
    calls_.push_back(FAKE_CALL(
        SetWindowSubclass, [this](HWND window, SUBCLASSPROC procedure, UINT_PTR id, DWORD_PTR data) {
            const BOOL set = ORIGINAL_CALL(SetWindowSubclass)(window, procedure, id, data);
            if (set) subclasses_.TakeOnce("subclass", PartOf(window, id));
            return set;
        }));
    calls_.push_back(
        FAKE_CALL(RemoveWindowSubclass, [this](HWND window, SUBCLASSPROC procedure, UINT_PTR id) {
            const BOOL removed = ORIGINAL_CALL(RemoveWindowSubclass)(window, procedure, id);
            if (removed) subclasses_.Give(PartOf(window, id));
            return removed;
        }));
    Makes<OF(SetWindowsHookExW)>(hooks_, "hook");
    EndsUnlessNull<OF(UnhookWindowsHookEx)>(hooks_);
    Makes<OF(SetWinEventHook)>(eventHooks_, "event hook");
    EndsUnlessNull<OF(UnhookWinEvent)>(eventHooks_);
}

void Ledger::RecordMemory() {
    Makes<OF(GlobalAlloc)>(global_, "global memory");
    EndsWithZero<OF(GlobalFree)>(global_);
    calls_.push_back(FAKE_CALL(ReleaseStgMedium, [this](LPSTGMEDIUM medium) {
        if (medium->tymed == TYMED_HGLOBAL && medium->pUnkForRelease == nullptr)
            global_.Give(Number(medium->hGlobal));
        ORIGINAL_CALL(ReleaseStgMedium)(medium);
    }));
    calls_.push_back(FAKE_CALL(GlobalLock, [this](HGLOBAL memory) {
        const LPVOID bytes = ORIGINAL_CALL(GlobalLock)(memory);
        if (bytes != nullptr) locks_.Take("lock on global memory", Number(memory));
        return bytes;
    }));
    calls_.push_back(WATCH_CALL(GlobalUnlock, [this](HGLOBAL memory) { locks_.Give(Number(memory)); }));
    Makes<OF(CoTaskMemAlloc)>(shellMemory_, "shell memory");
    calls_.push_back(
        FAKE_CALL(SHGetSpecialFolderLocation, [this](HWND owner, int folder, LPITEMIDLIST* list) {
            const HRESULT answer = ORIGINAL_CALL(SHGetSpecialFolderLocation)(owner, folder, list);
            if (answer == S_OK) shellMemory_.Take("shell memory", Number(*list));
            return answer;
        }));
    calls_.push_back(FAKE_CALL(CoTaskMemFree, [this](LPVOID memory) {
        if (memory != nullptr) shellMemory_.Give(Number(memory));
        ORIGINAL_CALL(CoTaskMemFree)(memory);
    }));
    Makes<OF(SysAllocStringLen)>(texts_, "automation text");
    calls_.push_back(WATCH_CALL(VariantClear, [this](VARIANTARG* value) {
        // A text that COM has answered with is not known here.
        if (value->vt == VT_BSTR && texts_.Has(Number(value->bstrVal))) texts_.Give(Number(value->bstrVal));
    }));
}

void Ledger::RecordOle() {
    calls_.push_back(FAKE_CALL(OleInitialize, [this](LPVOID reserved) {
        const HRESULT answer = ORIGINAL_CALL(OleInitialize)(reserved);
        if (SUCCEEDED(answer)) Take("OLE");
        return answer;
    }));
    calls_.push_back(FAKE_CALL(OleUninitialize, [this] {
        Give("OLE");
        ORIGINAL_CALL(OleUninitialize)();
    }));
    calls_.push_back(FAKE_CALL(RegisterDragDrop, [this](HWND window, LPDROPTARGET target) {
        const HRESULT answer = ORIGINAL_CALL(RegisterDragDrop)(window, target);
        if (answer == S_OK) dropTargets_.Take("drop target", Number(window));
        return answer;
    }));
    EndsWithZero<OF(RevokeDragDrop)>(dropTargets_);
    calls_.push_back(FAKE_CALL(
        CoCreateInstance, [this](REFCLSID type, LPUNKNOWN outer, DWORD context, REFIID id, LPVOID* object) {
            return Create(type, outer, context, id, object);
        }));
}

HRESULT Ledger::Create(REFCLSID type, LPUNKNOWN outer, DWORD context, REFIID id, LPVOID* object) {
    const HRESULT answer = ORIGINAL_CALL(CoCreateInstance)(type, outer, context, id, object);
    // The accessibility's services are one object for everybody, which does not count who has it.
    if (FAILED(answer) || IsEqualCLSID(type, CLSID_AccPropServices)) return answer;
    if (IsEqualIID(id, IID_IDispatch)) {
        *object = static_cast<IDispatch*>(new CountedDispatch(static_cast<IDispatch*>(*object), dispatches_));
    } else {
        objects_.push_back(static_cast<IUnknown*>(*object));
        objects_.back()->AddRef();
    }
    return answer;
}

void Ledger::Settle() {
    for (Account* account : {&menus_, &timers_, &subclasses_})
        account->Prune();
    for (IUnknown* object : objects_)
        if (object->Release() != 0) ++objectsHeld_;
    objects_.clear();
}

Ledger::Counts Ledger::Held() {
    Settle();
    Counts counts;
    for (const Account* account : {&icons_, &menus_, &drawing_, &memoryDcs_, &windowDcs_, &paints_, &kernel_,
                                   &searches_, &keys_, &timers_, &subclasses_, &hooks_, &eventHooks_,
                                   &dropTargets_, &shellMemory_, &global_, &locks_, &texts_, &dispatches_})
        account->AddTo(counts);
    for (const auto& [kind, count] : others_)
        if (count != 0) counts[kind] += count;
    if (objectsHeld_ != 0) counts["COM object"] = objectsHeld_;
    if (deletedWhileSelected_ != 0) counts["drawing object deleted while selected"] = deletedWhileSelected_;
    return counts;
}

}  // namespace leaks
