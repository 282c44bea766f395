// Text between the control and automation strings.
#pragma once

#include <new>
#include <string>
#include <string_view>

#include "activex/com/com.h"

namespace marklet::activex {

// A new string, which the caller frees. It may hold NULs.
inline BSTR NewBstr(std::u16string_view text) {
  const BSTR result = ::SysAllocStringLen(Native(text.data()), static_cast<UINT>(text.size()));
  if (!result) throw std::bad_alloc();
  return result;
}

inline BSTR NewBstr(std::string_view ascii) { return NewBstr(std::u16string(ascii.begin(), ascii.end())); }

// A null string is an empty one. A length in odd bytes loses the last one.
inline std::u16string FromBstr(BSTR text) {
  return text ? std::u16string(Wrap(text), ::SysStringLen(text)) : std::u16string();
}

// Whether a name that a caller gives is this one. Names are compared without regard to case.
inline bool SameName(const wchar_t* given, std::string_view name) {
  return ::CompareStringOrdinal(given, -1, Wide(name).c_str(), -1, TRUE) == CSTR_EQUAL;
}

// Owns a string that a call hands out.
class BstrResult {
 public:
  BstrResult() = default;
  ~BstrResult() { ::SysFreeString(text_); }
  BstrResult(const BstrResult&) = delete;
  BstrResult& operator=(const BstrResult&) = delete;
  BSTR* Out() { return &text_; }
  BSTR Get() const { return text_; }

 private:
  BSTR text_ = nullptr;
};

// Owns a variant.
class Variant : public VARIANT {
 public:
  Variant() { ::VariantInit(this); }
  ~Variant() { ::VariantClear(this); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;
};

}  // namespace marklet::activex
