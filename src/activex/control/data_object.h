// The control's picture as data, for containers that keep one of a control that isn't there.
#pragma once

#include "activex/com/face.h"
#include "activex/com/transfer.h"

namespace marklet::activex {

class ControlPicture;
class Extent;

// Gives metafiles, old and enhanced, and a device-independent bitmap, each of the picture at the control's
// size. Takes nothing.
class DataFace final : public Face<IDataObject> {
 public:
  DataFace(FaceOwner& owner, ControlPicture& picture, const Extent& extent)
      : Face(owner), picture_(picture), extent_(extent) {}

  STDMETHODIMP GetData(FORMATETC* format, STGMEDIUM* medium) override;
  STDMETHODIMP GetDataHere(FORMATETC*, STGMEDIUM*) override { return E_NOTIMPL; }
  STDMETHODIMP QueryGetData(FORMATETC* format) override;
  STDMETHODIMP GetCanonicalFormatEtc(FORMATETC* format, FORMATETC* canonical) override {
    return WithoutDevice(format, canonical);
  }
  STDMETHODIMP SetData(FORMATETC*, STGMEDIUM*, BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP EnumFormatEtc(DWORD direction, IEnumFORMATETC** formats) override;
  STDMETHODIMP DAdvise(FORMATETC* format, DWORD flags, IAdviseSink* sink, DWORD* cookie) override;
  STDMETHODIMP DUnadvise(DWORD cookie) override;
  STDMETHODIMP EnumDAdvise(IEnumSTATDATA** advises) override;

  // Tells the sinks that the data have changed.
  void NotifyChange();

 private:
  HRESULT DrawOn(::HDC dc);
  HRESULT MakeMetafile(STGMEDIUM& medium);
  HRESULT MakeEnhancedMetafile(STGMEDIUM& medium);
  HRESULT MakeBitmap(STGMEDIUM& medium);
  struct Format;
  static const Format kFormats[];
  static HRESULT Find(const FORMATETC& format, const Format*& found);

  ControlPicture& picture_;
  const Extent& extent_;
  ComPtr<IDataAdviseHolder> advises_;
};

}  // namespace marklet::activex
