#include "activex/control/view.h"

#include "activex/control/extent.h"
#include "activex/control/picture.h"

namespace marklet::activex {
// Those who draw in two passes see the control in one of them.
bool ViewFace::IsEmpty(DWORD aspect) const {
  return aspect == (picture_.IsOpaque() ? DVASPECT_TRANSPARENT : DVASPECT_OPAQUE);
}

// The context is that of the target device when a container prints, or a record made for it, and says all
// that the picture needs to know of it.
HRESULT ViewFace::Draw(DWORD aspect, LONG, void*, DVTARGETDEVICE*, ::HDC, ::HDC dc, LPCRECTL bounds, LPCRECTL,
                       BOOL(STDMETHODCALLTYPE* go_on)(ULONG_PTR), ULONG_PTR go_on_value) {
  if (!IsShown(aspect)) return DV_E_DVASPECT;
  if (!dc || !bounds) return E_INVALIDARG;
  if (IsEmpty(aspect)) return S_OK;
  return Call([&] {
    const auto ask = [&] { return go_on(go_on_value) != FALSE; };
    return picture_.Draw(dc, *bounds, go_on ? GoOn(ask) : GoOn());
  });
}

HRESULT ViewFace::GetColorSet(DWORD, LONG, void*, DVTARGETDEVICE*, ::HDC, LOGPALETTE** colours) {
  if (!colours) return E_POINTER;
  *colours = nullptr;
  return S_FALSE;
}

HRESULT ViewFace::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
  return Call([&] {
    sink_ = sink;
    aspects_ = aspects;
    flags_ = flags;
    if (flags & ADVF_PRIMEFIRST) NotifyChange();
    return S_OK;
  });
}

HRESULT ViewFace::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
  if (aspects) *aspects = aspects_;
  if (flags) *flags = flags_;
  if (sink) *sink = ComPtr<IAdviseSink>(sink_).Detach();
  return S_OK;
}

void ViewFace::NotifyChange() {
  const ComPtr<IAdviseSink> sink = sink_;
  if (!sink || (aspects_ & DVASPECT_CONTENT) == 0) return;
  if (flags_ & ADVF_ONLYONCE) sink_.Reset();
  sink->OnViewChange(DVASPECT_CONTENT, -1);
}

HRESULT ViewFace::GetExtent(DWORD aspect, LONG, DVTARGETDEVICE*, LPSIZEL size) {
  return extent_.Get(aspect, size);
}

HRESULT ViewFace::GetRect(DWORD aspect, LPRECTL rect) {
  if (!rect) return E_POINTER;
  if (!IsShown(aspect)) return DV_E_DVASPECT;
  const SIZEL size = IsEmpty(aspect) ? SIZEL{} : extent_.Himetric();
  *rect = {0, 0, size.cx, size.cy};
  return S_OK;
}

HRESULT ViewFace::GetViewStatus(DWORD* status) {
  if (!status) return E_POINTER;
  *status = VIEWSTATUS_DVASPECTOPAQUE | VIEWSTATUS_DVASPECTTRANSPARENT;
  if (picture_.IsOpaque()) *status |= VIEWSTATUS_OPAQUE;
  return S_OK;
}

HRESULT ViewFace::QueryHitPoint(DWORD aspect, LPCRECT bounds, POINT point, LONG, DWORD* hit) {
  if (!bounds || !hit) return E_POINTER;
  if (!IsShown(aspect)) return DV_E_DVASPECT;
  *hit = !IsEmpty(aspect) && ::PtInRect(bounds, point) ? HITRESULT_HIT : HITRESULT_OUTSIDE;
  return S_OK;
}

HRESULT ViewFace::QueryHitRect(DWORD aspect, LPCRECT bounds, LPCRECT rect, LONG, DWORD* hit) {
  if (!bounds || !rect || !hit) return E_POINTER;
  if (!IsShown(aspect)) return DV_E_DVASPECT;
  ::RECT common;
  *hit = !IsEmpty(aspect) && ::IntersectRect(&common, bounds, rect) ? HITRESULT_HIT : HITRESULT_OUTSIDE;
  return S_OK;
}

// The control has no size that it would rather have.
HRESULT ViewFace::GetNaturalExtent(DWORD, LONG, DVTARGETDEVICE*, ::HDC, DVEXTENTINFO*, LPSIZEL) {
  return E_NOTIMPL;
}

}  // namespace marklet::activex
