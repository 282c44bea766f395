#include "activex/control/ole_object.h"

#include "activex/com/guid.h"
#include "activex/com/task_memory.h"
#include "activex/control/extent.h"
#include "activex/control/in_place.h"
#include "activex/control/persist.h"
#include "activex/control/site.h"
#include "activex/control/traits.h"

namespace marklet::activex {

// A control that is still active leaves its old site first.
HRESULT OleObjectFace::SetClientSite(IOleClientSite* site) {
  return Call([&] {
    if (site != site_.Get()) in_place_.Deactivate();
    site_.Set(site);
    return S_OK;
  });
}

HRESULT OleObjectFace::GetClientSite(IOleClientSite** site) {
  if (!site) return E_POINTER;
  *site = ComPtr<IOleClientSite>(site_.Get()).Detach();
  return S_OK;
}

HRESULT OleObjectFace::Close(DWORD save) {
  return Call([&] {
    in_place_.Deactivate();
    const ComPtr<IOleClientSite> site = site_.Get();
    if (site && save == OLECLOSE_SAVEIFDIRTY && persist_.IsDirty()) site->SaveObject();
    if (const ComPtr<IOleAdviseHolder> advises = advises_) advises->SendOnClose();
    return S_OK;
  });
}

HRESULT OleObjectFace::GetMoniker(DWORD, DWORD, IMoniker** moniker) {
  if (!moniker) return E_POINTER;
  *moniker = nullptr;
  return E_NOTIMPL;
}

HRESULT OleObjectFace::GetClipboardData(DWORD, IDataObject** data) {
  if (!data) return E_POINTER;
  *data = nullptr;
  return E_NOTIMPL;
}

HRESULT OleObjectFace::DoVerb(LONG verb, LPMSG, IOleClientSite*, LONG, ::HWND, LPCRECT) {
  return Call([&] { return RunVerb(verb); });
}

HRESULT OleObjectFace::RunVerb(LONG verb) {
  switch (verb) {
    case OLEIVERB_PRIMARY:
    case OLEIVERB_SHOW:
    case OLEIVERB_INPLACEACTIVATE:
      return in_place_.Activate();
    case OLEIVERB_UIACTIVATE:
      return in_place_.ActivateUi();
    case OLEIVERB_HIDE:
      return in_place_.Hide();
    case OLEIVERB_DISCARDUNDOSTATE:
      return S_OK;
    default:
      // A verb of its own that the control hasn't got stands for the first one.
      return verb > 0 ? OLEOBJ_S_INVALIDVERB : E_NOTIMPL;
  }
}

HRESULT OleObjectFace::EnumVerbs(IEnumOLEVERB** verbs) {
  if (!verbs) return E_POINTER;
  *verbs = nullptr;
  return ::OleRegEnumVerbs(kClassGuid, verbs);
}

HRESULT OleObjectFace::GetUserClassID(CLSID* class_id) {
  if (!class_id) return E_POINTER;
  *class_id = kClassGuid;
  return S_OK;
}

HRESULT OleObjectFace::GetUserType(DWORD, LPOLESTR* type) {
  if (!type) return E_POINTER;
  *type = nullptr;
  return Call([&] {
    *type = NewTaskString(Wide(library::kClass.name));
    return S_OK;
  });
}

// A container that has placed the window sets its size with it; this is the size of a control without one.
HRESULT OleObjectFace::SetExtent(DWORD aspect, SIZEL* size) {
  if (!size) return E_POINTER;
  if (aspect != DVASPECT_CONTENT) return DV_E_DVASPECT;
  if (size->cx < 0 || size->cy < 0) return E_INVALIDARG;
  return Call([&] {
    extent_.SetHimetric(*size);
    listener_.SizeMayHaveChanged();
    return S_OK;
  });
}

HRESULT OleObjectFace::GetExtent(DWORD aspect, SIZEL* size) { return extent_.Get(aspect, size); }

HRESULT OleObjectFace::Advise(IAdviseSink* sink, DWORD* cookie) {
  if (!cookie) return E_POINTER;
  if (!advises_) {
    const HRESULT result = ::CreateOleAdviseHolder(advises_.GetAddressOf());
    if (FAILED(result)) return result;
  }
  return advises_->Advise(sink, cookie);
}

HRESULT OleObjectFace::Unadvise(DWORD cookie) {
  return advises_ ? advises_->Unadvise(cookie) : OLE_E_NOCONNECTION;
}

HRESULT OleObjectFace::EnumAdvise(IEnumSTATDATA** advises) {
  if (!advises) return E_POINTER;
  *advises = nullptr;
  return advises_ ? advises_->EnumAdvise(advises) : S_OK;
}

HRESULT OleObjectFace::GetMiscStatus(DWORD aspect, DWORD* status) {
  if (!status) return E_POINTER;
  *status = aspect == DVASPECT_CONTENT ? kMiscStatus : 0;
  return S_OK;
}

}  // namespace marklet::activex
