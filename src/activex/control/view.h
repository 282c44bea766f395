// The control drawn by its container: inactive, in print, in a metafile.
#pragma once

#include "activex/com/face.h"

namespace marklet::activex {

class ControlPicture;
class Extent;

class ViewFace final : public Face<IViewObjectEx> {
 public:
  ViewFace(FaceOwner& owner, ControlPicture& picture, const Extent& extent)
      : Face(owner), picture_(picture), extent_(extent) {}

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

  // Tells the container that the control looks different.
  void NotifyChange();

 private:
  // Whether there is nothing of the control in this aspect.
  bool IsEmpty(DWORD aspect) const;

  ControlPicture& picture_;
  const Extent& extent_;
  ComPtr<IAdviseSink> sink_;
  DWORD aspects_ = 0;
  DWORD flags_ = 0;
};

}  // namespace marklet::activex
