#include "activex/control/quick_activate.h"

#include "activex/control/control_object.h"
#include "activex/server/registration_data.h"

namespace marklet::activex {
namespace {

DWORD Connect(ConnectionPoint& point, IUnknown* sink) {
  DWORD cookie = 0;
  if (sink) point.Advise(sink, &cookie);
  return cookie;
}

}  // namespace

HRESULT QuickActivateFace::QuickActivate(QACONTAINER* container, QACONTROL* control) {
  if (!container || !control) return E_POINTER;
  if (container->cbSize < sizeof(QACONTAINER) || control->cbSize < sizeof(QACONTROL)) return E_UNEXPECTED;
  return Call([&] {
    const DWORD size = control->cbSize;
    *control = {};
    control->cbSize = size;
    control_.ole_object.SetClientSite(container->pClientSite);
    if (container->pAdviseSink) control_.view.SetAdvise(DVASPECT_CONTENT, 0, container->pAdviseSink);
    control->dwEventCookie = Connect(control_.connections.Events(), container->pUnkEventSink);
    control->dwPropNotifyCookie =
        Connect(control_.connections.Notifications(), container->pPropertyNotifySink);
    control->dwMiscStatus = kMiscStatus;
    control_.view.GetViewStatus(&control->dwViewStatus);
    return S_OK;
  });
}

HRESULT QuickActivateFace::SetContentExtent(LPSIZEL size) {
  return control_.ole_object.SetExtent(DVASPECT_CONTENT, size);
}
HRESULT QuickActivateFace::GetContentExtent(LPSIZEL size) {
  return control_.ole_object.GetExtent(DVASPECT_CONTENT, size);
}

}  // namespace marklet::activex
