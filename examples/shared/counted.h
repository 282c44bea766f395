// References, counted once for all objects that a form hands to its controls.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <tuple>

namespace example {

// An object with these interfaces and IUnknown. It begins without a reference: assign it to a ComPtr, which
// counts the first one. It lives as long as anybody holds it.
template <typename... Interfaces>
class Counted : public Interfaces... {
 public:
  Counted() = default;
  Counted(const Counted&) = delete;
  Counted& operator=(const Counted&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    using First = std::tuple_element_t<0, std::tuple<Interfaces*...>>;
    *object = iid == __uuidof(IUnknown) ? static_cast<First>(this) : nullptr;
    ((iid == __uuidof(Interfaces) ? void(*object = static_cast<Interfaces*>(this)) : void()), ...);
    if (!*object) return E_NOINTERFACE;
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
  virtual ~Counted() = default;

 private:
  ULONG references_ = 0;
};

}  // namespace example
