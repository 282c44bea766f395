#include "activex/control/ole_object.h"

#include <iterator>

#include "activex/com/enumerator.h"
#include "activex/com/guid.h"
#include "activex/com/task_memory.h"
#include "activex/control/drag_source.h"
#include "activex/control/extent.h"
#include "activex/control/in_place.h"
#include "activex/control/persist.h"
#include "activex/control/property_frame.h"
#include "activex/control/site.h"
#include "activex/control/traits.h"

namespace marklet::activex {
namespace {

// The caller frees the name.
struct GiveVerb {
  static OLEVERB Give(const Verb& verb) {
    return {verb.number, NewTaskString(Wide(verb.name)), verb.menu_flags, verb.attributes};
  }
};
using VerbEnumerator = Enumerator<IEnumOLEVERB, OLEVERB, Verb, GiveVerb>;

}  // namespace

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

// --- The end ----------------------------------------------------------------------------------------------

// Whatever the site and the listeners do inside it, it is one.
HRESULT OleObjectFace::Close(DWORD save) {
  return Call([&] {
    if (closing_) return S_OK;
    closing_ = true;
    CloseOnce(save);
    closing_ = false;
    return S_OK;
  });
}

// Where the caller wants a question asked first there is none: what is in a document is saved with it, and
// the user is asked about the document.
void OleObjectFace::CloseOnce(DWORD save) {
  in_place_.Deactivate();
  const ComPtr<IOleClientSite> site = site_.Get();
  if (site && save != OLECLOSE_NOSAVE && persist_.IsDirty()) site->SaveObject();
  if (const ComPtr<IOleAdviseHolder> advises = advises_) advises->SendOnClose();
}

void OleObjectFace::TellSaved() {
  if (const ComPtr<IOleAdviseHolder> advises = advises_) advises->SendOnSave();
}

// --- Its name ---------------------------------------------------------------------------------------------

// Listeners hear the full name, for which the site is asked when only a part of it is another.
HRESULT OleObjectFace::SetMoniker(DWORD which, IMoniker* moniker) {
  if (which < OLEWHICHMK_CONTAINER || which > OLEWHICHMK_OBJFULL) return E_INVALIDARG;
  return Call([&] {
    ComPtr<IMoniker> full;
    if (which == OLEWHICHMK_OBJFULL)
      full = moniker;
    else if (moniker)
      GetMoniker(OLEGETMONIKER_ONLYIFTHERE, OLEWHICHMK_OBJFULL, full.GetAddressOf());
    const ComPtr<IOleAdviseHolder> advises = advises_;
    if (full && advises) advises->SendOnRename(full.Get());
    return S_OK;
  });
}

HRESULT OleObjectFace::GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) {
  if (!moniker) return E_POINTER;
  *moniker = nullptr;
  return Call([&]() -> HRESULT {
    const ComPtr<IOleClientSite> site = site_.Get();
    return site ? site->GetMoniker(assign, which, moniker) : E_FAIL;
  });
}

// --- Verbs ------------------------------------------------------------------------------------------------

HRESULT OleObjectFace::DoVerb(LONG verb, LPMSG, IOleClientSite*, LONG, ::HWND parent, LPCRECT) {
  return Call([&] { return RunVerb(verb, parent); });
}

HRESULT OleObjectFace::RunVerb(LONG verb, ::HWND parent) {
  switch (verb) {
    case OLEIVERB_PRIMARY:
    case OLEIVERB_SHOW:
    case OLEIVERB_OPEN:  // there is no window of its own to open
    case OLEIVERB_INPLACEACTIVATE:
      return in_place_.Activate();
    case OLEIVERB_UIACTIVATE:
      return in_place_.ActivateUi();
    case OLEIVERB_HIDE:
      return in_place_.Hide();
    case OLEIVERB_DISCARDUNDOSTATE:
      return S_OK;
    case OLEIVERB_PROPERTIES:
    case kPropertiesVerb:
      return ShowProperties(parent);
    case kDragVerb:
      return drag_source_.OLEDrag();
    default:
      break;
  }
  if (verb < 0) return E_NOTIMPL;
  // A verb of its own that the control hasn't got stands for the primary one.
  const HRESULT result = RunVerb(OLEIVERB_PRIMARY, parent);
  return SUCCEEDED(result) ? OLEOBJ_S_INVALIDVERB : result;
}

// A site may show a window of its own, in which the host's properties of the control stand too. The frame of
// the container waits for the system's.
HRESULT OleObjectFace::ShowProperties(::HWND parent) {
  const auto control_site = site_.Query<IOleControlSite>();
  if (control_site && control_site->ShowPropertyFrame() == S_OK) return S_OK;
  ComPtr<IUnknown> object;
  const HRESULT result = QueryInterface(IID_PPV_ARGS(object.GetAddressOf()));
  if (FAILED(result)) return result;
  const LCID locale = SiteAmbient(site_).LocaleId();
  const ComPtr<IOleInPlaceFrame> frame = in_place_.Frame();
  if (frame) frame->EnableModeless(FALSE);
  const HRESULT shown = ShowPropertyFrame(*object.Get(), parent, Wide(library::kClass.name), locale);
  if (frame) frame->EnableModeless(TRUE);
  return shown;
}

// From the table itself, since a control may run without being registered.
HRESULT OleObjectFace::EnumVerbs(IEnumOLEVERB** verbs) {
  if (!verbs) return E_POINTER;
  *verbs = nullptr;
  return Call([&] {
    *verbs = new VerbEnumerator({std::begin(kVerbs), std::end(kVerbs)});
    return S_OK;
  });
}

// --- What it is -------------------------------------------------------------------------------------------

HRESULT OleObjectFace::GetClipboardData(DWORD, IDataObject** data) {
  if (!data) return E_POINTER;
  *data = nullptr;
  return E_NOTIMPL;
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
    const SIZEL before = extent_.Himetric();
    if (size->cx != before.cx || size->cy != before.cy) persist_.SetDirty(true);
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
