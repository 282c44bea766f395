// The control drawn by its container: inactive, in print, in a metafile.
#pragma once

#include "activex/com/face.h"
#include "bitmaps/cdib24.h"

namespace marklet::activex {

// The surface's rows are bottom up, each on four bytes.
BITMAPINFOHEADER Describe(const CDib24& surface);

class ViewFace final : public Face<IViewObjectEx> {
 public:
  using Face::Face;

  STDMETHODIMP Draw(DWORD aspect, LONG index, void* aspect_info, DVTARGETDEVICE* device, ::HDC target_dc,
                    ::HDC dc, LPCRECTL bounds, LPCRECTL window_bounds,
                    BOOL(STDMETHODCALLTYPE* go_on)(ULONG_PTR), ULONG_PTR go_on_value) override;
  STDMETHODIMP GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, ::HDC, LOGPALETTE** colours) override;
  STDMETHODIMP Freeze(DWORD, LONG, void*, DWORD*) override { return E_NOTIMPL; }
  STDMETHODIMP Unfreeze(DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
  STDMETHODIMP GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;

  STDMETHODIMP GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, LPSIZEL size) override;

  STDMETHODIMP GetRect(DWORD aspect, LPRECTL rect) override;
  STDMETHODIMP GetViewStatus(DWORD* status) override;
  STDMETHODIMP QueryHitPoint(DWORD aspect, LPCRECT bounds, POINT point, LONG hint, DWORD* hit) override;
  STDMETHODIMP QueryHitRect(DWORD aspect, LPCRECT bounds, LPCRECT rect, LONG hint, DWORD* hit) override;
  STDMETHODIMP GetNaturalExtent(DWORD aspect, LONG index, DVTARGETDEVICE* device, ::HDC dc,
                                DVEXTENTINFO* info, LPSIZEL size) override;

  // The picture at the control's own size on a new surface. False, and empty, when there can't be one.
  bool PaintOn(CDib24& surface);
  // Tells the container that the control looks different.
  void NotifyChange();

 private:
  HRESULT DrawPicture(::HDC dc, const RECTL& bounds);

  ComPtr<IAdviseSink> sink_;
  DWORD aspects_ = 0;
  DWORD flags_ = 0;
};

}  // namespace marklet::activex
