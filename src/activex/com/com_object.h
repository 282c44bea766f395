// Reference counting for the small objects of the server that have an identity of their own.
#pragma once

#include "activex/com/module.h"

namespace marklet::activex {

// From here on the analyzer leaves the object to others. It can't see them count references, and took every
// object that the platform was given for a leak.
#ifdef __clang_analyzer__
void GiveToOthers(void* object);
#else
inline void GiveToOthers(void* /*object*/) {}
#endif

// An object with the interface `Interface` and IUnknown. It is born with one reference, which belongs to its
// maker.
template <typename Interface>
class ComObject : public Interface {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    const bool known = iid == __uuidof(IUnknown) || iid == __uuidof(Interface);
    *object = known ? static_cast<Interface*>(this) : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  ComObject() { GiveToOthers(this); }
  virtual ~ComObject() = default;
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

 private:
  ULONG references_ = 1;
  ModuleReference module_;
};

}  // namespace marklet::activex
