#pragma once

#include <string>
#include <string_view>
#include <utility>

#include <ole2.h>

namespace quillmate::host {

/// One reference to an object of another process.
template <typename Interface>
class ComPointer {
 public:
  ComPointer() = default;
  ~ComPointer() { Reset(); }
  ComPointer(const ComPointer& other) noexcept : pointer_(other.pointer_) {
    if (pointer_ != nullptr) pointer_->AddRef();
  }
  ComPointer(ComPointer&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPointer& operator=(ComPointer other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }

  void Reset() noexcept {
    if (Interface* const pointer = std::exchange(pointer_, nullptr); pointer != nullptr) pointer->Release();
  }
  /// For a call that hands out a reference.
  Interface** Out() noexcept {
    Reset();
    return &pointer_;
  }
  Interface* Get() const noexcept { return pointer_; }
  Interface* operator->() const noexcept { return pointer_; }
  explicit operator bool() const noexcept { return pointer_ != nullptr; }

 private:
  Interface* pointer_ = nullptr;
};

/// An argument or a result of a call.
class ComValue {
 public:
  ComValue() noexcept { VariantInit(&value_); }
  explicit ComValue(int number) noexcept : ComValue() {
    value_.vt = VT_I4;
    value_.lVal = number;
  }
  explicit ComValue(std::u16string_view text) : ComValue() {
    const std::wstring wide(text.begin(), text.end());
    value_.vt = VT_BSTR;
    value_.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  }
  ~ComValue() { VariantClear(&value_); }
  ComValue(ComValue&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
  ComValue(const ComValue&) = delete;
  ComValue& operator=(const ComValue&) = delete;
  ComValue& operator=(ComValue&&) = delete;

  const VARIANT& Get() const noexcept { return value_; }
  VARIANT* Out() noexcept {
    VariantClear(&value_);
    return &value_;
  }
  /// False when it can't be turned into the type.
  bool Become(VARTYPE type) noexcept {
    return SUCCEEDED(VariantChangeTypeEx(&value_, &value_, LOCALE_INVARIANT, VARIANT_NOUSEROVERRIDE, type));
  }
  /// Of a value of type VT_BSTR.
  std::wstring_view Text() const noexcept {
    return value_.bstrVal == nullptr ? std::wstring_view()
                                     : std::wstring_view(value_.bstrVal, SysStringLen(value_.bstrVal));
  }

 private:
  VARIANT value_;
};

}  // namespace quillmate::host
