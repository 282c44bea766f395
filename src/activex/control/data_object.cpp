#include "activex/control/data_object.h"

#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

#include "activex/control/extent.h"
#include "activex/control/picture.h"

namespace marklet::activex {

struct DataFace::Format {
  CLIPFORMAT format;
  DWORD medium;
  HRESULT (DataFace::*make)(STGMEDIUM& medium);
};

const DataFace::Format DataFace::kFormats[] = {
    {CF_METAFILEPICT, TYMED_MFPICT, &DataFace::MakeMetafile},
    {CF_ENHMETAFILE, TYMED_ENHMF, &DataFace::MakeEnhancedMetafile},
    {CF_DIB, TYMED_HGLOBAL, &DataFace::MakeBitmap},
};

// --- Formats ----------------------------------------------------------------------------------------------

HRESULT DataFace::Find(const FORMATETC& format, const Format*& found) {
  if (format.lindex != -1) return DV_E_LINDEX;
  if (format.dwAspect != DVASPECT_CONTENT && format.dwAspect != DVASPECT_DOCPRINT) return DV_E_DVASPECT;
  for (const Format& own : kFormats) {
    if (own.format != format.cfFormat) continue;
    found = &own;
    return (own.medium & format.tymed) != 0 ? S_OK : DV_E_TYMED;
  }
  return DV_E_FORMATETC;
}

HRESULT DataFace::GetData(FORMATETC* format, STGMEDIUM* medium) {
  if (!format || !medium) return E_POINTER;
  *medium = {};
  return Call([&] {
    const Format* found = nullptr;
    const HRESULT result = Find(*format, found);
    return SUCCEEDED(result) ? (this->*found->make)(*medium) : result;
  });
}

HRESULT DataFace::QueryGetData(FORMATETC* format) {
  if (!format) return E_POINTER;
  const Format* found = nullptr;
  return Find(*format, found);
}

HRESULT DataFace::EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) {
  if (!formats) return E_POINTER;
  *formats = nullptr;
  if (direction != DATADIR_GET) return E_NOTIMPL;
  return Call([&] {
    std::vector<FORMATETC> list;
    for (const Format& own : kFormats) list.push_back(FormatOf(own.format, own.medium));
    *formats = new FormatEnumerator(std::move(list));
    return S_OK;
  });
}

// --- Pictures ---------------------------------------------------------------------------------------------

HRESULT DataFace::DrawOn(::HDC dc) {
  const ::SIZE size = picture_.Size();
  const RECTL bounds = {0, 0, size.cx, size.cy};
  ::SetMapMode(dc, MM_ANISOTROPIC);
  ::SetWindowOrgEx(dc, 0, 0, nullptr);
  ::SetWindowExtEx(dc, size.cx, size.cy, nullptr);
  return Guarded([&] {
    picture_.Record(dc, bounds);
    return S_OK;
  });
}

HRESULT DataFace::MakeMetafile(STGMEDIUM& medium) {
  GlobalMemory memory(sizeof(METAFILEPICT));
  const ::HDC dc = ::CreateMetaFileW(nullptr);
  if (!dc) return E_OUTOFMEMORY;
  const HRESULT drawn = DrawOn(dc);
  const HMETAFILE metafile = ::CloseMetaFile(dc);
  if (FAILED(drawn) || !metafile) {
    if (metafile) ::DeleteMetaFile(metafile);
    return FAILED(drawn) ? drawn : E_OUTOFMEMORY;
  }
  const SIZEL size = extent_.Himetric();
  memory.With([&](void* picture) {
    *static_cast<METAFILEPICT*>(picture) = {MM_ANISOTROPIC, size.cx, size.cy, metafile};
  });
  medium.tymed = TYMED_MFPICT;
  medium.hMetaFilePict = memory.Take();
  return S_OK;
}

HRESULT DataFace::MakeEnhancedMetafile(STGMEDIUM& medium) {
  const SIZEL size = extent_.Himetric();
  const ::RECT frame = {0, 0, size.cx, size.cy};
  const ::HDC dc = ::CreateEnhMetaFileW(nullptr, nullptr, &frame, nullptr);
  if (!dc) return E_OUTOFMEMORY;
  // The frame in units of the device; the one who plays an old metafile sets this himself.
  ::SetMapMode(dc, MM_ANISOTROPIC);
  ::SetViewportExtEx(dc, ::MulDiv(size.cx, ::GetDeviceCaps(dc, HORZRES), ::GetDeviceCaps(dc, HORZSIZE) * 100),
                     ::MulDiv(size.cy, ::GetDeviceCaps(dc, VERTRES), ::GetDeviceCaps(dc, VERTSIZE) * 100),
                     nullptr);
  const HRESULT drawn = DrawOn(dc);
  const HENHMETAFILE metafile = ::CloseEnhMetaFile(dc);
  if (FAILED(drawn) || !metafile) {
    if (metafile) ::DeleteEnhMetaFile(metafile);
    return FAILED(drawn) ? drawn : E_OUTOFMEMORY;
  }
  medium.tymed = TYMED_ENHMF;
  medium.hEnhMetaFile = metafile;
  return S_OK;
}

// The header, then the rows bottom up.
HRESULT DataFace::MakeBitmap(STGMEDIUM& medium) {
  CDib24 surface;
  if (!picture_.PaintOn(surface)) return E_OUTOFMEMORY;
  const BITMAPINFOHEADER header = Describe(surface);
  GlobalMemory memory(sizeof header + header.biSizeImage);
  memory.With([&](void* bitmap) {
    std::memcpy(bitmap, &header, sizeof header);
    std::memcpy(static_cast<std::byte*>(bitmap) + sizeof header, surface.Bits(), header.biSizeImage);
  });
  medium.tymed = TYMED_HGLOBAL;
  medium.hGlobal = memory.Take();
  return S_OK;
}

// --- Advice -----------------------------------------------------------------------------------------------

HRESULT DataFace::DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink, DWORD* cookie) {
  if (!format || !cookie) return E_POINTER;
  *cookie = 0;
  return Call([&]() -> HRESULT {
    if (!advises_) {
      const HRESULT result = ::CreateDataAdviseHolder(advises_.GetAddressOf());
      if (FAILED(result)) return result;
    }
    return advises_->Advise(this, format, flags, sink, cookie);
  });
}

HRESULT DataFace::DUnadvise(DWORD cookie) {
  return Call([&]() -> HRESULT { return advises_ ? advises_->Unadvise(cookie) : OLE_E_NOCONNECTION; });
}

HRESULT DataFace::EnumDAdvise(IEnumSTATDATA** advises) {
  if (!advises) return E_POINTER;
  *advises = nullptr;
  return advises_ ? advises_->EnumAdvise(advises) : S_OK;
}

void DataFace::NotifyChange() {
  if (const ComPtr<IDataAdviseHolder> advises = advises_) advises->SendOnDataChange(this, 0, 0);
}

}  // namespace marklet::activex
