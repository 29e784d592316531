#pragma once

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <string>

namespace win {

/// OLE for the user-interface thread, from construction to destruction (OleInitialize).
class OleThread {
  public:
    OleThread() noexcept;
    OleThread(const OleThread&) = delete;
    OleThread& operator=(const OleThread&) = delete;
    OleThread(OleThread&&) = delete;
    OleThread& operator=(OleThread&&) = delete;
    ~OleThread();

  private:
    HRESULT result_;
};

/// Owns one reference to a COM object; moves, never copies.
template <class T>
class ComPtr {
  public:
    ComPtr() = default;
    ComPtr(ComPtr&& other) noexcept : object_(other.object_) { other.object_ = nullptr; }
    ComPtr& operator=(ComPtr&&) = delete;
    ComPtr(const ComPtr&) = delete;
    ComPtr& operator=(const ComPtr&) = delete;
    ~ComPtr() {
        if (object_ != nullptr) object_->Release();
    }

    /// The place where a function of COM puts its result; only while nothing is owned.
    void** ReceiveVoid() noexcept { return reinterpret_cast<void**>(&object_); }

    /// The object; null when there is none.
    T* operator->() const noexcept { return object_; }

    /// The object, still owned here; null when there is none.
    [[nodiscard]] T* Get() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }

  private:
    T* object_ = nullptr;
};

/// A VARIANT that is cleared when this value goes.
class Variant {
  public:
    Variant() noexcept { VariantInit(&value_); }
    /// A copy of a text (SysAllocStringLen).
    explicit Variant(const std::wstring& text) noexcept;
    Variant(const Variant&) = delete;
    Variant& operator=(const Variant&) = delete;
    Variant(Variant&&) = delete;
    Variant& operator=(Variant&&) = delete;
    ~Variant() { VariantClear(&value_); }

    /// The value itself, for calls that read or fill it.
    VARIANT* Get() noexcept { return &value_; }

    /// The text it holds in the process code page; "" when it holds something else.
    [[nodiscard]] std::string Text() const;

  private:
    VARIANT value_{};
};

/// Calls a method (one text argument) or reads a property (none) by its name through IDispatch.
/// On failure it answers COM's error code.
HRESULT InvokeByName(IDispatch* object, const wchar_t* name, WORD kind, Variant* argument, Variant& result);

}  // namespace win
