#include "activex/automation/connection_points.h"

#include <algorithm>

#include "activex/com/enumerator.h"
#include "activex/com/guid.h"

namespace marklet::activex {
namespace {

struct GivePoint {
  static IConnectionPoint* Give(const ComPtr<IConnectionPoint>& point) {
    return ComPtr<IConnectionPoint>(point).Detach();
  }
};
using PointEnumerator =
    Enumerator<IEnumConnectionPoints, IConnectionPoint*, ComPtr<IConnectionPoint>, GivePoint>;

struct Connection {
  DWORD cookie;
  ComPtr<IUnknown> sink;
};
struct GiveConnection {
  static CONNECTDATA Give(const Connection& connection) {
    return {ComPtr<IUnknown>(connection.sink).Detach(), connection.cookie};
  }
};
using ConnectionEnumerator = Enumerator<IEnumConnections, CONNECTDATA, Connection, GiveConnection>;

}  // namespace

// --- ConnectionPoint --------------------------------------------------------------------------------------

HRESULT ConnectionPoint::QueryInterface(REFIID iid, void** object) {
  if (!object) return E_POINTER;
  const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(IConnectionPoint);
  *object = known ? static_cast<IConnectionPoint*>(this) : nullptr;
  if (!known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT ConnectionPoint::GetConnectionInterface(IID* iid) {
  if (!iid) return E_POINTER;
  *iid = iid_;
  return S_OK;
}

HRESULT ConnectionPoint::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (!container) return E_POINTER;
  return owner_.QueryOuter(IID_PPV_ARGS(container));
}

HRESULT ConnectionPoint::Advise(IUnknown* sink, DWORD* cookie) {
  if (!cookie) return E_POINTER;
  *cookie = 0;
  if (!sink) return E_POINTER;
  return Call([&]() -> HRESULT {
    ComPtr<IUnknown> object;
    const auto out = reinterpret_cast<void**>(object.GetAddressOf());
    if (FAILED(sink->QueryInterface(iid_, out)) && (!base_ || FAILED(sink->QueryInterface(*base_, out))))
      return CONNECT_E_CANNOTCONNECT;
    sinks_.push_back({++last_cookie_, std::move(object)});
    *cookie = last_cookie_;
    if (on_change) on_change();
    return S_OK;
  });
}

HRESULT ConnectionPoint::Unadvise(DWORD cookie) {
  return Call([&]() -> HRESULT {
    const auto found =
        std::find_if(sinks_.begin(), sinks_.end(), [&](const Sink& s) { return s.cookie == cookie; });
    if (found == sinks_.end()) return CONNECT_E_NOCONNECTION;
    const Sink removed =
        std::move(*found);  // its release, which may call back, comes after the list is in order
    sinks_.erase(found);
    if (on_change) on_change();
    return S_OK;
  });
}

HRESULT ConnectionPoint::EnumConnections(IEnumConnections** connections) {
  if (!connections) return E_POINTER;
  *connections = nullptr;
  return Call([&] {
    std::vector<Connection> list;
    for (const Sink& sink : sinks_) list.push_back({sink.cookie, sink.object});
    *connections = new ConnectionEnumerator(std::move(list));
    return S_OK;
  });
}

std::vector<DWORD> ConnectionPoint::Cookies() const {
  std::vector<DWORD> cookies;
  for (const Sink& sink : sinks_) cookies.push_back(sink.cookie);
  return cookies;
}

ComPtr<IUnknown> ConnectionPoint::Find(DWORD cookie) const {
  const auto found =
      std::find_if(sinks_.begin(), sinks_.end(), [&](const Sink& s) { return s.cookie == cookie; });
  return found == sinks_.end() ? nullptr : found->object;
}

// --- ConnectionPointContainer -----------------------------------------------------------------------------

// Hosts that don't know `__Marklet` connect plain automation objects to it.
ConnectionPointContainer::ConnectionPointContainer(FaceOwner& owner)
    : Face(owner),
      events_(owner, kEventsGuid, &__uuidof(IDispatch)),
      notifications_(owner, __uuidof(IPropertyNotifySink), nullptr) {}

HRESULT ConnectionPointContainer::EnumConnectionPoints(IEnumConnectionPoints** points) {
  if (!points) return E_POINTER;
  *points = nullptr;
  return Call([&] {
    *points =
        new PointEnumerator({ComPtr<IConnectionPoint>(&events_), ComPtr<IConnectionPoint>(&notifications_)});
    return S_OK;
  });
}

HRESULT ConnectionPointContainer::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  if (!point) return E_POINTER;
  *point = nullptr;
  for (ConnectionPoint* own : {&events_, &notifications_})
    if (own->Interface() == iid) *point = own;
  if (!*point) return CONNECT_E_NOCONNECTION;
  (*point)->AddRef();
  return S_OK;
}

}  // namespace marklet::activex
