// What data objects of all kinds are made with: formats and the memory that goes over.
#pragma once

#include <cstddef>
#include <new>
#include <utility>

#include "activex/com/enumerator.h"

namespace marklet::activex {

inline FORMATETC FormatOf(CLIPFORMAT format, DWORD medium) {
  return {format, nullptr, DVASPECT_CONTENT, -1, medium};
}

// IDataObject::GetCanonicalFormatEtc of data that are the same for every target device.
inline HRESULT WithoutDevice(const FORMATETC* format, FORMATETC* canonical) {
  if (!format || !canonical) return E_POINTER;
  *canonical = *format;
  canonical->ptd = nullptr;
  return DATA_S_SAMEFORMATETC;
}

struct GiveFormat {
  static FORMATETC Give(const FORMATETC& format) { return format; }
};
using FormatEnumerator = Enumerator<IEnumFORMATETC, FORMATETC, FORMATETC, GiveFormat>;

// Memory that goes to the caller, or is freed.
class GlobalMemory {
 public:
  explicit GlobalMemory(std::size_t size) : handle_(::GlobalAlloc(GMEM_MOVEABLE, size)) {
    if (!handle_) throw std::bad_alloc();
  }
  ~GlobalMemory() {
    if (handle_) ::GlobalFree(handle_);
  }
  GlobalMemory(const GlobalMemory&) = delete;
  GlobalMemory& operator=(const GlobalMemory&) = delete;
  template <typename Fill>
  void With(Fill&& fill) {
    fill(::GlobalLock(handle_));
    ::GlobalUnlock(handle_);
  }
  HGLOBAL Take() { return std::exchange(handle_, nullptr); }

 private:
  HGLOBAL handle_;
};

// Owns what a data object gave.
class Medium : public STGMEDIUM {
 public:
  Medium() : STGMEDIUM() {}
  ~Medium() {
    if (tymed != TYMED_NULL) ::ReleaseStgMedium(this);
  }
  Medium(const Medium&) = delete;
  Medium& operator=(const Medium&) = delete;
};

}  // namespace marklet::activex
