// Objects of this very module, recognised behind interfaces that anybody may hand in.
#pragma once

#include "activex/com/com.h"

namespace marklet::activex {

// Whether the code of an interface pointer is this module's: another server, another version of this one
// beside it, and an object that answers every question with itself are not.
bool IsOwn(const void* interface_pointer);

// The object as one of this module's own interfaces, which carry C++ values and are reached only here; null
// when it is another's. `Interface` has its IID as kIid.
template <typename Interface>
ComPtr<Interface> AsOwn(IUnknown* object) {
  void* found = nullptr;
  if (!object || FAILED(object->QueryInterface(Interface::kIid, &found)) || !found) return {};
  if (IsOwn(found)) return Adopt(static_cast<Interface*>(found));
  static_cast<IUnknown*>(found)->Release();
  return {};
}

}  // namespace marklet::activex
