// Automation values that free themselves.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

namespace designer {

class Variant : public VARIANT {
 public:
  Variant() { VariantInit(this); }
  explicit Variant(int number) : Variant() {
    vt = VT_I4;
    lVal = number;
  }
  explicit Variant(const std::wstring& text) : Variant() {
    vt = VT_BSTR;
    bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
  explicit Variant(IDispatch* object) : Variant() {
    vt = VT_DISPATCH;
    pdispVal = object;
    if (object) object->AddRef();
  }
  static Variant Truth(bool truth) {
    Variant result;
    result.vt = VT_BOOL;
    result.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
    return result;
  }
  Variant(Variant&& other) noexcept : VARIANT(other) { other.vt = VT_EMPTY; }
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(this); }

  // False: the value has no such type, and stays as it was.
  bool Become(VARTYPE type) { return SUCCEEDED(VariantChangeTypeEx(this, this, kEnglish, 0, type)); }
  std::wstring Text() const {
    return vt == VT_BSTR && bstrVal ? std::wstring(bstrVal, SysStringLen(bstrVal)) : std::wstring();
  }

 private:
  static constexpr LCID kEnglish = 0x409;  // so that fractions are written alike everywhere
};

// A text of the system's that frees itself.
class Bstr {
 public:
  Bstr() = default;
  ~Bstr() { SysFreeString(text_); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;
  BSTR* Out() { return &text_; }
  std::wstring Text() const { return text_ ? std::wstring(text_, SysStringLen(text_)) : std::wstring(); }

 private:
  BSTR text_ = nullptr;
};

}  // namespace designer
