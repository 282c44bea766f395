#include "activex/control/quick_activate.h"

#include "activex/automation/connection_points.h"
#include "activex/control/traits.h"

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
    ole_object_.SetClientSite(container->pClientSite);
    if (container->pAdviseSink) view_.SetAdvise(DVASPECT_CONTENT, 0, container->pAdviseSink);
    control->dwEventCookie = Connect(connections_.Events(), container->pUnkEventSink);
    control->dwPropNotifyCookie = Connect(connections_.Notifications(), container->pPropertyNotifySink);
    control->dwMiscStatus = kMiscStatus;
    view_.GetViewStatus(&control->dwViewStatus);
    return S_OK;
  });
}

HRESULT QuickActivateFace::SetContentExtent(LPSIZEL size) {
  return ole_object_.SetExtent(DVASPECT_CONTENT, size);
}
HRESULT QuickActivateFace::GetContentExtent(LPSIZEL size) {
  return ole_object_.GetExtent(DVASPECT_CONTENT, size);
}

}  // namespace marklet::activex
