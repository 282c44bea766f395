// One interface of the control. Each of its interfaces is an object of its own, a member of ControlObject,
// that hands identity and lifetime on to the control.
#pragma once

#include <utility>

#include "activex/com/boundary.h"
#include "activex/com/com.h"

namespace marklet::activex {

class ControlObject;

// The identity of the control as the outside sees it: the outer object's when it is aggregated.
IUnknown& OuterOf(ControlObject& control);

// A call from outside: an interface method, a window message. The control lives until the last one has
// returned, even when its host lets go of it in the middle, and what the outermost one borrowed for painting
// goes back with it.
class Entry {
 public:
  explicit Entry(ControlObject& control);
  ~Entry();
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;

 private:
  ControlObject& control_;
};

template <typename Interface>
class Face : public Interface {
 public:
  explicit Face(ControlObject& control) : control_(control) {}
  Face(const Face&) = delete;
  Face& operator=(const Face&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    return OuterOf(control_).QueryInterface(iid, object);
  }
  STDMETHODIMP_(ULONG) AddRef() override { return OuterOf(control_).AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return OuterOf(control_).Release(); }

 protected:
  ~Face() = default;

  // The body of a method that may call the host or change the control.
  template <typename Body>
  HRESULT Call(Body&& body) {
    const Entry entry(control_);
    return Guarded(std::forward<Body>(body));
  }

  ControlObject& control_;
};

}  // namespace marklet::activex
