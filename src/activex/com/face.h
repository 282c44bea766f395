// One interface of an object that has many. Each is an object of its own, a member of its owner, to which it
// hands on identity and lifetime.
#pragma once

#include <utility>

#include "activex/com/boundary.h"
#include "activex/com/com.h"

namespace marklet::activex {

// The object that faces belong to, as they know it. Its identity towards the outside is the outer object's
// when it is aggregated. Not inline: every interface has these calls.
class FaceOwner {
 public:
  HRESULT QueryOuter(REFIID iid, void** object);
  ULONG AddRefOuter();
  ULONG ReleaseOuter();

 protected:
  explicit FaceOwner(IUnknown& outer) : outer_(&outer) {}
  ~FaceOwner() = default;
  void SetOuter(IUnknown& outer) { outer_ = &outer; }
  // The last call from outside is about to return.
  virtual void LastCallEnds() = 0;

 private:
  friend class Entry;
  IUnknown* outer_;     // not counted: it holds the owner
  unsigned depth_ = 0;  // of calls from outside
};

// A call from outside: an interface method, a window message. The owner lives until the last one has
// returned, even when its host lets go of it in the middle, and what the outermost one borrowed for painting
// goes back with it.
class Entry {
 public:
  explicit Entry(FaceOwner& owner);
  ~Entry();
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;

 private:
  FaceOwner& owner_;
};

template <typename Interface>
class Face : public Interface {
 public:
  explicit Face(FaceOwner& owner) : owner_(owner) {}
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override { return owner_.QueryOuter(iid, object); }
  STDMETHODIMP_(ULONG) AddRef() override { return owner_.AddRefOuter(); }
  STDMETHODIMP_(ULONG) Release() override { return owner_.ReleaseOuter(); }

 protected:
  ~Face() = default;

  // The body of a method that may call the host or change the control.
  template <typename Body>
  HRESULT Call(Body&& body) {
    const Entry entry(owner_);
    return Guarded(std::forward<Body>(body));
  }

  FaceOwner& owner_;
};

}  // namespace marklet::activex
