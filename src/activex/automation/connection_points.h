// The control's connection points: its events and its property notifications.
#pragma once

#include <functional>
#include <vector>

#include "activex/com/face.h"

namespace marklet::activex {

// One outgoing interface. It counts its references on the control, but has an identity of its own.
class ConnectionPoint final : public Face<IConnectionPoint> {
 public:
  // A sink must have `iid`, or `base` when that isn't null.
  ConnectionPoint(FaceOwner& owner, const IID& iid, const IID* base) : Face(owner), iid_(iid), base_(base) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP GetConnectionInterface(IID* iid) override;
  STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** container) override;
  STDMETHODIMP Advise(IUnknown* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumConnections(IEnumConnections** connections) override;

  const IID& Interface() const { return iid_; }
  bool HasSinks() const { return !sinks_.empty(); }
  void Clear() { sinks_.clear(); }
  std::function<void()> on_change;  // sinks have come or gone

  // Calls `each` for every sink that was there at the start and is still there at its turn: sinks may come
  // and go inside a call.
  template <typename Interface, typename Each>
  void ForEach(Each&& each) {
    for (const DWORD cookie : Cookies())
      if (const ComPtr<IUnknown> sink = Find(cookie)) each(*static_cast<Interface*>(sink.Get()));
  }

 private:
  struct Sink {
    DWORD cookie;
    ComPtr<IUnknown> object;  // the interface that was asked for, whatever its type here
  };
  std::vector<DWORD> Cookies() const;
  ComPtr<IUnknown> Find(DWORD cookie) const;

  const IID& iid_;
  const IID* base_;
  std::vector<Sink> sinks_;
  DWORD last_cookie_ = 0;
};

class ConnectionPointContainer final : public Face<IConnectionPointContainer> {
 public:
  explicit ConnectionPointContainer(FaceOwner& owner);

  STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** points) override;
  STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

  ConnectionPoint& Events() { return events_; }
  ConnectionPoint& Notifications() { return notifications_; }

 private:
  ConnectionPoint events_;
  ConnectionPoint notifications_;
};

}  // namespace marklet::activex
